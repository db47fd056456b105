#include "widget/textview.h"

#include "text/cursorstops.h"
#include "widget/preedit.h"
#include "widget/rowformat.h"
#include "widget/textcursor.h"

#include <cmath>

static constexpr qreal farOutside = 1 << 24; ///< of any view, logical pixels

TextView::TextView(const QWidget &viewport, const TextStore &store, const RowFormat &format,
    const TextCursor &cursor, const Preedit &preedit)
    : m_viewport(viewport)
    , m_store(store)
    , m_format(format)
    , m_cursor(cursor)
    , m_preedit(preedit)
{
}

void TextView::updateLast()
{
    m_lastTop = qMax(RowIndex(), m_store.lastRow() + 1 - visibleRows());
    m_lastLeft = farthestLeft();
}

qreal TextView::rowHeight() const
{
    return m_format.measure().height();
}

bool TextView::isScaleWhole() const
{
    const qreal scale = m_viewport.devicePixelRatioF();
    return scale == std::floor(scale);
}

qint64 TextView::visibleRows(int height) const
{
    return qMax<qint64>(1, qint64(height / rowHeight()));
}

bool TextView::isCursorRowVisible(int height) const
{
    const RowIndex row = m_cursor.row();
    return m_top <= row && row < m_top + visibleRows(height);
}

RowIndex TextView::rowAt(qreal y) const
{
    return m_top + qint64(std::floor(y / rowHeight()));
}

QRectF TextView::cellRect(RowIndex row) const
{
    const qreal left = rowLeft(row);
    return { -left, qreal(row - m_top) * rowHeight(), qreal(cellWidth()) + left - qreal(m_left),
        rowHeight() };
}

bool TextView::isComposing() const
{
    return !m_preedit.text.isEmpty();
}

InsertedText TextView::composedInRow(RowIndex row) const
{
    const RowCol cursor = m_cursor.position();
    return row == cursor.row ? InsertedText{ .column = cursor.column, .text = m_preedit.text }
                             : InsertedText{};
}

std::optional<TextView::Columns> TextView::selectedInRow(RowIndex row) const
{
    if (!m_cursor.hasSelection())
        return std::nullopt;
    const RowCol first = m_store.rowColAt(m_cursor.selectionBegin());
    const RowCol last = m_store.rowColAt(m_cursor.selectionEnd());
    if (row < first.row || row > last.row)
        return std::nullopt;
    const InsertedText composed = composedInRow(row);
    const auto displayed = [&composed](qint64 column) {
        return column > composed.column ? column + composed.text.size() : column;
    };
    const Columns columns = { row == first.row ? displayed(first.column) : 0,
        row == last.row ? displayed(last.column) : m_store.row(row).length + composed.text.size() + 1 };
    return columns.begin != columns.end ? std::optional(columns) : std::nullopt;
}

/// Right end of the widest row.
qreal TextView::textEnd() const
{
    qreal widest = m_format.measure().toPixels(m_store.widestRow());
    if (isComposing()) {
        const RowLayout composed = layoutOf(m_cursor.row(), 0);
        widest = qMax(widest, composed.x(composed.length()));
    }
    return m_format.margin() + widest;
}

/// Whether the view shows wrapped rows over their whole width, so that it need not move to the side. A full
/// row may be a pixel wider than the view; the cursor behind it still shows then.
bool TextView::rowsFit() const
{
    const qreal end = m_format.margin() + m_format.measure().toPixels(m_store.widestRow());
    return m_format.wraps() && end - cursorWidth < width();
}

/// Text that fits has nowhere to move. Behind wider text there is space for the cursor and a line end's sign,
/// in steps, so that the bar does not change with every key in the widest row.
qint64 TextView::farthestLeft() const
{
    const qreal end = textEnd();
    if (rowsFit() || end - cursorWidth < width())
        return 0;
    const int step = qMax(1, scrollReserve(width()));
    const qreal wider = end + 2 * m_format.measure().xWidth() + cursorWidth - width();
    return step * qint64(std::ceil(wider / step + 1));
}

/// How far a row is moved to the left beyond the others. What is composed is not wrapped before it is done.
/// In a view that does not move to the side its row moves alone, so that its end is seen, or its cursor where
/// it is wider than the view.
qint64 TextView::composedShift(RowIndex row) const
{
    if (!isComposing() || !rowsFit())
        return 0;
    const RowCol at = m_cursor.position();
    if (row != at.row)
        return 0;
    const FontMeasure &measure = m_format.measure();
    const qreal view = width();
    const qreal start = measure.toPixels(m_store.xAt(at));
    const RowLayout layout(m_store, row, measure, start - view, start + view, composedInRow(row));
    const qreal end = layout.x(at.column + m_preedit.text.size());
    const qreal beyond = m_format.margin() + end + cursorWidth - view;
    const qreal beforeCursor = layout.x(at.column + m_preedit.cursor);
    return qint64(std::ceil(qMax<qreal>(0, qMin(beyond, beforeCursor))));
}

/// Layout of the part of a row that is in the view or, when `x` is outside it, around `x`.
RowLayout TextView::layoutOf(RowIndex row, qreal x) const
{
    const qreal viewStart = rowLeft(row) - m_format.margin();
    const qreal start = x >= viewStart && x <= viewStart + width() ? viewStart : x - width() / 2.0;
    return { m_store, row, m_format.measure(), start, start + width(), composedInRow(row) };
}

qreal TextView::xOf(RowCol position) const
{
    const InsertedText composed = composedInRow(position.row);
    const qint64 before = position.column > composed.column ? composed.text.size() : 0;
    const qreal near = m_format.measure().toPixels(m_store.xAt(position));
    return layoutOf(position.row, near).x(position.column + before);
}

qreal TextView::cursorX() const
{
    const RowCol at = m_cursor.position();
    const qreal near = m_format.measure().toPixels(m_store.xAt(at));
    return layoutOf(at.row, near).x(at.column + m_preedit.cursor);
}

CursorPlace TextView::placeAtX(RowIndex row, qreal x) const
{
    const InsertedText composed = composedInRow(row);
    const RowLayout layout = layoutOf(row, x);
    // Where the cursor is shown before a row's first character, that place is meant.
    const bool isFirst = x >= layout.x(0) && x <= shownCursorX(layout.x(0));
    const qint64 column = isFirst ? 0 : layout.cursorAt(x);
    const qint64 inComposed = qBound<qint64>(0, column - composed.column, composed.text.size());
    return m_store.placeAt({ row, column - inComposed });
}

CursorPlace TextView::placeAt(QPointF point) const
{
    const RowIndex row = qBound(RowIndex(), rowAt(point.y()), m_store.lastRow());
    return placeAtX(row, point.x() + rowLeft(row) - m_format.margin());
}

/// Others take it in whole numbers, where the ends of a very long row have no place.
QRectF TextView::boxAt(RowIndex row, qreal x) const
{
    const QRectF cell = cellRect(row);
    const qreal boxLeft = qBound(-farOutside, cell.x() + m_format.margin() + x - 1, farOutside);
    return { boxLeft, cell.y(), cursorWidth, cell.height() };
}

QRectF TextView::cursorBoxAt(RowIndex row, qreal x) const
{
    return boxAt(row, shownCursorX(x));
}

QRectF TextView::cursorBox() const
{
    return cursorBoxAt(m_cursor.row(), cursorX());
}

QRectF TextView::characterBox(Offset offset) const
{
    const RowCol at = m_store.rowColAt(offset);
    const qint64 behind = at.column + (nextCursorStop(m_store, offset) - offset);
    QRectF box = boxAt(at.row, xOf(at));
    box.translate(1, 0);
    if (behind <= m_store.row(at.row).length)
        box.setWidth(xOf({ at.row, behind }) - xOf(at));
    return box;
}
