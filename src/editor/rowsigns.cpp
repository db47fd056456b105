#include "editor/rowsigns.h"

#include "rows/rowpainter.h"

#include <cmath>

namespace {

constexpr char16_t tab = u'\t';
constexpr char16_t fullWidthSpace = 0x3000;

constexpr QColor signColor(160, 160, 160);
constexpr QColor fullWidthSpaceColor(80, 80, 80);

/// Calls `draw` with the device pixel of the left edge of each visible `unit`, which in right-to-left text is
/// not where the cursor stands before it.
template <typename Draw> void forEachVisible(const RowPainter &row, char16_t unit, Draw draw)
{
    const RowLayout &layout = row.layout();
    for (qint64 column = layout.firstColumn(); column < layout.lastColumn(); ++column) {
        if (layout.at(column) == unit)
            draw(row.layoutX(layout.spans(column, column + 1).front().left));
    }
}

/// Every second one of the squares along the border of `rect`.
void drawDottedRect(QPainter &painter, const QRect &rect, int stroke, const QColor &color)
{
    const QRect right(rect.right() + 1 - stroke, rect.top(), stroke, stroke);
    const QRect bottom(rect.left(), rect.bottom() + 1 - stroke, stroke, stroke);
    for (int x = rect.left(); x < rect.right(); x += 2 * stroke) {
        painter.fillRect(x, rect.top(), stroke, stroke, color);
        painter.fillRect(x, bottom.top(), stroke, stroke, color);
    }
    for (int y = rect.top(); y < rect.bottom(); y += 2 * stroke) {
        painter.fillRect(rect.left(), y, stroke, stroke, color);
        painter.fillRect(right.left(), y, stroke, stroke, color);
    }
}

/// An arrow that comes down and turns left, as tall as the row.
void drawHookedArrow(RowPainter &row, int from, qreal x, qreal height)
{
    const qreal half = std::floor(x / 2);
    const QRect strokes[] = {
        row.rect(from, half + 2, 5, 2, height - 10),
        row.rect(from, 1, height - 7, half + 2, 2),
        row.rect(from, 2, height - 8, 1, 4),
        row.rect(from, 3, height - 9, 1, 6),
    };
    for (const QRect &stroke : strokes)
        row.painter().fillRect(stroke, signColor);
}

} // namespace

void drawLineEndSign(RowPainter &row, const FontMeasure &measure, LineEndSign sign)
{
    const RowLayout &layout = row.layout();
    if (sign == LineEndSign::None || layout.lastColumn() != layout.length())
        return;
    const int end = row.columnX(layout.length());
    const qreal height = row.canvas().rowHeight();
    if (sign == LineEndSign::Arrow)
        drawHookedArrow(row, end, measure.xWidth(), height);
    else
        row.drawCharacters(measure, QPoint(end, row.canvas().y(height - 2)), u"[EOF]", signColor);
}

void drawTabSigns(RowPainter &row)
{
    const RowCanvas &canvas = row.canvas();
    const qreal middle = std::floor(canvas.rowHeight() / 2);
    forEachVisible(row, tab, [&](int x) {
        row.painter().setPen(QPen(signColor, canvas.thickness(1)));
        const QPoint tip(x + canvas.pixels(6), canvas.y(middle));
        row.painter().drawLine(QPoint(x + canvas.pixels(1), canvas.y(middle - 2)), tip);
        row.painter().drawLine(QPoint(x + canvas.pixels(1), canvas.y(middle + 2)), tip);
    });
}

void drawFullWidthSpaceSigns(RowPainter &row, const FontMeasure &measure)
{
    const RowCanvas &canvas = row.canvas();
    forEachVisible(row, fullWidthSpace, [&](int x) {
        const QRect box = row.rect(x, 3, 4, 2 * measure.xWidth() - 6, canvas.rowHeight() - 7);
        drawDottedRect(row.painter(), box, canvas.thickness(1), fullWidthSpaceColor);
    });
}
