#include "widget/rowupdates.h"

#include "rows/rowcanvas.h"
#include "rows/rowlayout.h"
#include "text/textstore.h"
#include "widget/rowformat.h"
#include "widget/textcursor.h"
#include "widget/textview.h"

#include <QPainter>
#include <QWidget>

#include <cmath>
#include <utility>

static constexpr int widestLineEnd = 8; ///< widths of "x" that cursor, selection or a sign take behind a row

RowUpdates::RowUpdates(QWidget &viewport, const TextStore &store, const RowFormat &format,
    const TextCursor &cursor, const TextView &view)
    : m_viewport(viewport)
    , m_store(store)
    , m_format(format)
    , m_cursor(cursor)
    , m_view(view)
{
}

/// The first row behind the view's end, or the one that is cut there.
RowIndex RowUpdates::lastShownRow() const
{
    return m_view.rowAt(m_view.height());
}

void RowUpdates::updateRows(RowIndex first, RowIndex last)
{
    m_pictures.forget(first, last);
    const RowIndex top = m_view.top();
    first = qMax(first, top);
    last = qMin(last, lastShownRow());
    if (first > last)
        return;
    for (RowIndex row = first; row <= last; ++row)
        m_ink.setEnd(row - top, SlotInk::everywhere);
    m_viewport.update(slotsRect(first - top, last - first + 1, m_viewport.width()));
}

void RowUpdates::updateCursorRow()
{
    updateRow(m_cursor.row());
}

void RowUpdates::updateSelection()
{
    if (!m_cursor.hasSelection())
        return;
    const TextRange range = m_cursor.selection();
    updateRows(m_store.rowColAt(range.start).row, m_store.rowColAt(range.end).row);
}

void RowUpdates::updateAll()
{
    m_ink.forget();
    m_pictures.forget();
    m_viewport.update();
}

/// At a fractional scale what is moved and what is painted beside it would not meet.
void RowUpdates::viewMoved(qint64 rowsDown)
{
    const qreal dy = -qreal(rowsDown) * m_view.rowHeight();
    m_ink.shift(rowsDown);
    m_hasMoved = true;
    const bool stays = std::abs(dy) < m_viewport.height();
    if (stays && dy == std::floor(dy) && m_view.isScaleWhole())
        m_viewport.scroll(0, int(dy));
    else if (stays)
        m_viewport.update(inkRegion());
    else
        m_viewport.update();
}

/// The area of `count` slots from `slot` on; complete at every scale.
QRect RowUpdates::slotsRect(qint64 slot, qint64 count, int width) const
{
    const qreal height = m_view.rowHeight();
    const QRectF area(0, qreal(slot) * height, width, qreal(count) * height);
    // The toolkit rounds an area's height for itself and may end it before the row at a fractional scale.
    const int rest = m_view.isScaleWhole() ? 0 : 1;
    return area.toAlignedRect().adjusted(0, -rest, 0, rest);
}

/// What may change when the view goes on by whole rows.
QRegion RowUpdates::inkRegion() const
{
    QRegion region;
    for (qint64 slot = 0; m_view.top() + slot <= lastShownRow(); ++slot)
        region += slotsRect(slot, 1, qMin(m_viewport.width(), m_ink.end(slot)));
    return region;
}

void RowUpdates::rowPainted(const RowLayout &layout)
{
    const qint64 slot = layout.row() - m_view.top();
    if (slot < 0 || layout.row() > lastShownRow())
        return;
    // The row of the cursor may be underlined over the whole width.
    const bool endIsShown = layout.lastColumn() == layout.length() && layout.row() != m_cursor.row();
    const qreal behind = widestLineEnd * m_format.measure().xWidth();
    const qreal end = m_format.margin() + layout.rightEdge() + behind - qreal(m_view.left());
    m_ink.setEnd(slot, endIsShown ? qCeil(qBound<qreal>(0, end, m_viewport.width())) : SlotInk::everywhere);
}

/// A repaint of everything that nobody has asked for here, as when the desktop's colours change, shows
/// nothing that was kept.
void RowUpdates::preparePictures(const QRect &area)
{
    const qreal scale = m_format.measure().devicePixelRatio();
    const qint64 slotCount = m_view.isScaleWhole() ? 0 : lastShownRow() - m_view.top() + 1;
    m_pictures.setView(
        int(slotCount), QSize(qCeil(m_viewport.width() * scale), qRound(m_view.rowHeight() * scale)));
    if (!std::exchange(m_hasMoved, false) && area == m_viewport.rect())
        m_pictures.forget();
}

void RowUpdates::paint(
    QPainter &painter, const QRegion &area, const QBrush &background, const PaintCell &paintCell)
{
    const QRect bounds = area.boundingRect();
    preparePictures(bounds);
    const RowIndex last = qMin(m_view.rowAt(bounds.bottom() + 1), m_store.lastRow());
    // First what is below the text: the last row may reach a part of a pixel into it.
    const int end = qFloor(m_view.cellRect(last).bottom());
    if (end <= bounds.bottom())
        painter.fillRect(
            QRect(QPoint(bounds.left(), qMax(end, bounds.top())), bounds.bottomRight()), background);
    for (RowIndex row = m_view.rowAt(bounds.top()); row <= last; ++row)
        paintRow(painter, row, area, paintCell);
    const RowIndex lastPainted = m_view.rowAt(bounds.bottom());
    for (RowIndex row = qMax(last + 1, m_view.rowAt(bounds.top())); row <= lastPainted; ++row)
        m_ink.setEnd(row - m_view.top(), 0);
}

void RowUpdates::paintRow(QPainter &painter, RowIndex row, const QRegion &area, const PaintCell &paintCell)
{
    const QRectF cell = m_view.cellRect(row);
    const QRect whole = QRectF(0, cell.y(), m_viewport.width(), cell.height()).toAlignedRect();
    QRect update = (area & whole).boundingRect();
    if (update.isEmpty())
        return;
    if (m_pictures.keepsRows()) // which are drawn over their whole height
        update = QRect(update.left(), whole.top(), update.width(), whole.height());
    const qint64 slot = row - m_view.top();
    if (m_pictures.has(row)) {
        const qreal scale = m_format.measure().devicePixelRatio();
        RowFrame(painter, cell, update, scale, m_pictures.top(row)).copyTo(painter);
        m_ink.setEnd(slot, m_pictures.inkEnd(row));
        return;
    }
    paintCell(row, cell, update);
    if (update.width() >= m_viewport.width())
        m_pictures.keep(row, m_ink.end(slot));
}
