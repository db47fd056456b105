#include "rows/rowpainter.h"

#include "rows/rowruns.h"

#include <QGlyphRun>
#include <QTextCharFormat>

#include <cmath>
#include <utility>

namespace {

/// Of a length that is whole device pixels but for what the division by the scale left behind.
constexpr qreal tolerance = 1e-4;

} // namespace

RowPainter::RowPainter(QPainter &target, const FontMeasure &measure, const RowPlace &place,
    const QColor &background, const InsertedText &inserted)
    : m_measure(measure)
    , m_background(background)
    , m_margin(place.margin)
    , m_canvas(target,
          RowFrame(target, place.cell, place.update, measure.devicePixelRatio(), place.pictureTop),
          background)
    , m_layout(place.store, place.row, measure, place.update.left() - place.cell.left() - place.margin,
          place.update.right() + 1 - place.cell.left() - place.margin, inserted)
{
}

int RowPainter::layoutX(qreal x) const
{
    return RowCanvas::toInt(m_canvas.origin(m_margin) + qRound64(x * m_canvas.scale()));
}

QRect RowPainter::rect(int from, qreal left, qreal top, qreal width, qreal height) const
{
    const QPoint corner(from + m_canvas.pixels(left), m_canvas.y(top));
    const QPoint end(from + m_canvas.pixels(left + width), m_canvas.y(top + height));
    return { corner, QSize(end.x() - corner.x(), end.y() - corner.y()).expandedTo(QSize(1, 1)) };
}

void RowPainter::drawText(const QColor &color)
{
    m_layout.draw(painter(), QPointF(qreal(m_canvas.origin(m_margin)), m_canvas.y(0)), color);
}

void RowPainter::drawOver(const QRect &rect, const QColor &background, const QColor &color)
{
    painter().save();
    painter().setClipRect(rect);
    painter().fillRect(rect, background);
    drawText(color);
    painter().restore();
}

void RowPainter::drawSelection(
    const Selection &selection, const QColor &highlight, const QColor &highlightedText)
{
    std::vector<RowLayout::Span> spans = m_layout.spans(selection.begin, selection.end);
    const bool selectsLineEnd =
        selection.end > m_layout.length() && m_layout.lastColumn() == m_layout.length();
    const qreal end = selectsLineEnd ? m_layout.x(m_layout.length()) : 0;
    if (selectsLineEnd && (spans.empty() || spans.back().right != end))
        spans.push_back({ .left = end, .right = end });
    // Rounded up, so that nothing is short of a pixel at its end.
    const auto beyond = [this](qreal width) { return int(std::ceil(width * m_canvas.scale() - tolerance)); };
    for (std::size_t i = 0; i < spans.size(); ++i) {
        const bool isFirst = i == 0 && selection.begin == 0;
        const bool isLast = selectsLineEnd && i + 1 == spans.size();
        const int left = layoutX(spans[i].left) + beyond(isFirst ? -2 : -1);
        const int right = layoutX(spans[i].right) + beyond(isLast ? selection.lineEndWidth - 1 : -1);
        const QRect row = m_canvas.rowRect();
        drawOver(QRect(left, row.top(), right - left, row.height()), highlight, highlightedText);
    }
}

void RowPainter::drawComposition(
    qint64 column, qsizetype length, const QList<QInputMethodEvent::Attribute> &formats, const QColor &color)
{
    const QRect row = m_canvas.rowRect();
    for (const QInputMethodEvent::Attribute &attribute : formats) {
        const QTextCharFormat format = attribute.value.value<QTextFormat>().toCharFormat();
        const bool hasBackground = format.background().style() != Qt::NoBrush;
        const bool hasForeground = format.foreground().style() != Qt::NoBrush;
        if (!hasBackground && !hasForeground)
            continue;
        const qint64 start = column + attribute.start;
        for (const RowLayout::Span &span : m_layout.spans(start, start + attribute.length)) {
            const int left = layoutX(span.left);
            drawOver(QRect(left, row.top(), layoutX(span.right) - left, row.height()),
                hasBackground ? format.background().color() : m_background,
                hasForeground ? format.foreground().color() : color);
        }
    }
    const int stroke = m_canvas.thickness(1);
    for (const RowLayout::Span &span : m_layout.spans(column, column + length)) {
        const int left = layoutX(span.left);
        painter().fillRect(left, row.bottom() + 1 - 2 * stroke, layoutX(span.right) - left, stroke, color);
    }
}

void RowPainter::drawCursor(qint64 column, const QColor &color, qreal width)
{
    const int stroke = m_canvas.thickness(width);
    drawCursorRect(layoutX(shownCursorX(m_layout.x(column))) - stroke, stroke, color);
}

void RowPainter::drawBlockCursor(qint64 column, const QColor &color)
{
    qint64 end = qMin(column + 1, m_layout.length());
    while (!m_layout.isCursorStop(end))
        ++end;
    const std::vector<RowLayout::Span> spans = m_layout.spans(column, end);
    const int stroke = m_canvas.thickness(cursorOverhang);
    if (spans.empty()) {
        // Behind the text of a full row there is no more room than a bar takes.
        drawCursorRect(columnX(column) - stroke, m_canvas.pixels(m_measure.xWidth()), color);
        return;
    }
    const int left = layoutX(qMax(spans.front().left, -cursorOverhang));
    drawCursorRect(left, qMax(stroke, layoutX(spans.back().right) - left), color);
}

void RowPainter::drawCursorRect(int left, int width, const QColor &color)
{
    const int height = m_canvas.pixels(m_measure.height() - 1);
    painter().setCompositionMode(QPainter::RasterOp_SourceXorDestination);
    painter().fillRect(left, m_canvas.y(0), width, height, color);
    painter().setCompositionMode(QPainter::CompositionMode_SourceOver);
}

void RowPainter::drawCharacters(
    const FontMeasure &measure, QPoint baseline, QStringView text, const QColor &color)
{
    painter().setPen(color);
    int font = 0;
    QList<quint32> glyphs;
    QList<QPointF> places;
    const auto drawRun = [&] {
        QGlyphRun run;
        run.setRawFont(measure.rawFont(font));
        run.setGlyphIndexes(std::exchange(glyphs, {}));
        run.setPositions(std::exchange(places, {}));
        painter().drawGlyphRun(baseline, run);
    };
    int x = 0;
    for (qsizetype at = 0; at < text.size(); at += unitsOf(codePointAt(text, at))) {
        const char32_t codePoint = codePointAt(text, at);
        const FontMeasure::Glyph glyph = measure.glyph(codePoint);
        if (glyph.font != font && !glyphs.isEmpty())
            drawRun();
        font = glyph.font;
        glyphs.append(glyph.index);
        places.append(QPointF(x + glyph.offset, 0));
        x += int(measure.advances().advanceOf(codePoint) / subpixelsPerPixel);
    }
    if (!glyphs.isEmpty())
        drawRun();
}
