#include "editor/ctlediter.h"

#include "editor/rowsigns.h"
#include "platform/screenclass.h"
#include "rows/fontmeasure.h"
#include "rows/rowpainter.h"
#include "settings/settings.h"

#include <cmath>

namespace {

constexpr int blackIndex = 1;
constexpr int largeFontSize = 15; ///< from here on row numbers stand a little higher

enum RowNumberSize { NoRowNumbers = 0, SmallRowNumbers = 1 };

int rowNumberFontSize()
{
    if (appSettings().RowNo == SmallRowNumbers)
        return forScreen(3, 5);
    return forScreen(6, 16);
}

LineEndSign lineEndSign(const RowLayout &layout, RowIndex lastRow)
{
    const AppSettings &settings = appSettings();
    if (!layout.endsLine())
        return LineEndSign::None;
    if (layout.row() == lastRow)
        return settings.ShowEOF == 1 ? LineEndSign::EndOfFile : LineEndSign::None;
    return settings.ShowKAI == 1 ? LineEndSign::Arrow : LineEndSign::None;
}

/// Relative luminance, 0 black to 1 white, as the Web Content Accessibility Guidelines 2 define it.
double luminance(const QColor &color)
{
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

/// Whether black on a colour has less than the contrast of 3 to 1 that those guidelines ask for what is no
/// text.
bool isBlackFaintOn(const QColor &color)
{
    return luminance(color) + 0.05 < 3 * 0.05;
}

} // namespace

QMultiLineEdit::CellLook ctlEditer::cellLook(const RowLayout &row) const
{
    const bool coversSign = row.endsLine() && appSettings().ShowKAI != 0;
    return { .text = m_foreColor, .lineEndWidth = coversSign ? 2 + fontMeasure()->xWidth() : 0 };
}

QMultiLineEdit::CursorLook ctlEditer::cursorLook() const
{
    return { .color = cursorColor(), .width = appSettings().BackColor == blackIndex ? 1 : 2 };
}

void ctlEditer::drawOverText(RowPainter &row) const
{
    const AppSettings &settings = appSettings();
    const auto measure = fontMeasure();
    drawLineEndSign(row, *measure, lineEndSign(row.layout(), store().lastRow()));
    if (settings.ShowTAB == 1)
        drawTabSigns(row);
    if (settings.ShowZEN == 1)
        drawFullWidthSpaceSigns(row, *measure);
}

/// The colour that is combined with the background: its own gives black, and its opposite white where black
/// would hardly be seen. What is combined with a black background shows as it is.
QColor ctlEditer::cursorColor() const
{
    if (appSettings().BackColor == blackIndex)
        return m_foreColor;
    const QColor base = palette().color(QPalette::Base);
    return isBlackFaintOn(base) ? QColor::fromRgb(base.rgb() ^ 0xffffffU) : base;
}

/// Numbers count logical lines, and stand on their first rows; only the last digits have room.
QString ctlEditer::rowNumber(RowIndex row) const
{
    const Offset start = store().row(row).start;
    if (start > Offset() && store().at(start - 1) != u'\n')
        return {};
    const qint64 number = lineOfRow(store(), row).value() + 1;
    return QString::number(number).rightJustified(rowNumberDigits).right(rowNumberDigits);
}

/// The number of the row, and the rule between numbers and text.
void ctlEditer::drawUnderText(RowPainter &row) const
{
    const AppSettings &settings = appSettings();
    if (settings.RowNo == NoRowNumbers)
        return;
    const RowCanvas &canvas = row.canvas();
    const QColor color = settings.RowNoColor != 0 ? m_rowNoColor : m_foreColor;
    const QRect area = canvas.rowRect();
    const int left = canvas.x(1);
    const int rule = canvas.x(hMargin() - 3);
    m_rowNumberFont.fit(rowNumberFontSize(), canvas.scale(), QSize(rule - left, area.height()));
    const FontMeasure &measure = m_rowNumberFont.measure();
    const int gap = settings.FontSize >= largeFontSize ? 3 : 2;
    const int top = canvas.y(canvas.rowHeight() - measure.height() - gap);
    // In a low row they stand where they are whole.
    const int baseline = qMax(area.top() + m_rowNumberFont.digitHeight(),
        qMin(top + canvas.pixels(measure.ascent()), area.bottom() + 1 - m_rowNumberFont.digitDepth()));
    row.drawCharacters(measure, QPoint(left, baseline), rowNumber(row.layout().row()), color);
    row.painter().fillRect(rule, area.top(), canvas.thickness(1), area.height(), color);
}

/// The underline of the cursor's row.
void ctlEditer::drawOverCursor(RowPainter &row, const QRectF &cell) const
{
    if (row.layout().row() != cursorPosition().row || appSettings().ActiveHLine <= 0)
        return;
    const RowCanvas &canvas = row.canvas();
    const qint64 marginShown = hMargin() - xOffset();
    const int left = canvas.x(marginShown < 1 ? -2 : qreal(marginShown - 2));
    const int right = canvas.x(cell.width());
    const int stroke = canvas.thickness(1);
    row.painter().fillRect(
        left, canvas.rowRect().bottom() + 1 - stroke, right - left, stroke, m_activeLineColor);
}
