#include "platform/qmultilineedit_p.h"

#include "platform/viewscrollbar.h"

#include <QApplication>
#include <QWheelEvent>

#include <cmath>

namespace {
constexpr int wheelNotch = 120; ///< eighths of a degree

/// Pixels that stay free beside a cursor that is scrolled to, so that the next keys need not scroll again.
constexpr int reserve(int viewWidth)
{
    return viewWidth / 4;
}
} // namespace

qint64 QMultiLineEdit::Private::visibleRows(int height) const
{
    return qMax<qint64>(1, qint64(height / measure->height()));
}

qint64 QMultiLineEdit::Private::visibleRows() const
{
    return visibleRows(q->viewport()->height());
}

bool QMultiLineEdit::Private::isCursorRowVisible(int height) const
{
    const qint64 row = rowColOf(cursor).row;
    return top <= row && row < top + visibleRows(height);
}

qint64 QMultiLineEdit::Private::rowAt(qreal y) const
{
    return top + qint64(std::floor(y / measure->height()));
}

/// Behind the widest row there is space for the cursor and a line-end mark.
qreal QMultiLineEdit::Private::contentWidth() const
{
    qreal widest = measure->toPixels(store.widestRow());
    if (q->isComposing()) {
        const RowLayout composed = layoutOf(rowColOf(cursor).row, 0);
        widest = qMax(widest, composed.x(composed.length()));
    }
    return margin + widest + 2 * measure->xWidth() + cursorWidth;
}

void QMultiLineEdit::Private::updateScrollBars()
{
    rows = ScrollRange(qMax<qint64>(0, store.rowCount() - visibleRows()));
    syncingBar = true;
    verticalBar->setPageStep(rows.pageStep(visibleRows()));
    verticalBar->setLast(rows.maximum());
    syncingBar = false;
    setTop(top);

    const int view = q->viewport()->width();
    const qreal wider = wrap == WidgetWidth ? 0 : contentWidth() - view;
    // In steps, so that the bar does not change with every key in the widest row.
    const int step = qMax(1, reserve(view));
    const qreal hidden = wider > 0 ? step * std::ceil(wider / step + 1) : 0;
    constexpr int most = std::numeric_limits<int>::max() / 2;
    horizontalBar->setPageStep(view);
    horizontalBar->setSingleStep(qMax(1, qRound(2 * measure->xWidth())));
    horizontalBar->setLast(qCeil(qBound<qreal>(0, hidden, most)));
}

void QMultiLineEdit::Private::setTop(qint64 row)
{
    const qint64 before = top;
    top = qBound<qint64>(0, row, rows.lastTop());
    syncingBar = true;
    verticalBar->setValue(rows.toBar(top));
    syncingBar = false;
    if (top != before)
        shiftView(0, top - before);
}

bool QMultiLineEdit::Private::isScaleWhole() const
{
    const qreal scale = q->devicePixelRatioF();
    return scale == std::floor(scale);
}

/// Moves what is painted already, else repaints: at a fractional scale what is moved and what is painted
/// beside it would not meet.
void QMultiLineEdit::Private::shiftView(int dx, qint64 rowsDown)
{
    QWidget *const viewport = q->viewport();
    const qreal dy = -qreal(rowsDown) * measure->height();
    if (dx == 0)
        ink.shift(rowsDown);
    else
        updateView();
    hasMoved = true;
    const bool stays = std::abs(dx) < viewport->width() && std::abs(dy) < viewport->height();
    if (stays && dy == std::floor(dy) && isScaleWhole())
        viewport->scroll(dx, int(dy));
    else if (stays && dx == 0)
        viewport->update(inkRegion());
    else
        viewport->update();
}

RowLayout QMultiLineEdit::Private::layoutOf(qint64 row, qreal x) const
{
    const qreal width = q->viewport()->width();
    const qreal left = q->xOffset() - margin;
    const qreal start = x >= left && x <= left + width ? left : x - width / 2;
    return { store, row, *measure, start, start + width, q->compositionInRow(row) };
}

qreal QMultiLineEdit::Private::xOf(RowCol position) const
{
    const InsertedText composed = q->compositionInRow(position.row);
    const qint64 before = position.column > composed.column ? composed.text.size() : 0;
    return layoutOf(position.row, measure->toPixels(store.xAt(position))).x(position.column + before);
}

qreal QMultiLineEdit::Private::cursorX() const
{
    const RowCol at = rowColOf(cursor);
    return layoutOf(at.row, measure->toPixels(store.xAt(at))).x(at.column + preedit.cursor);
}

CursorPlace QMultiLineEdit::Private::placeAtX(qint64 row, qreal x) const
{
    const InsertedText composed = q->compositionInRow(row);
    const qint64 column = layoutOf(row, x).cursorAt(x);
    return placeAt(row, column - qBound<qint64>(0, column - composed.column, composed.text.size()));
}

CursorPlace QMultiLineEdit::Private::placeAtPoint(QPointF point) const
{
    const qint64 row = qBound<qint64>(0, rowAt(point.y()), store.rowCount() - 1);
    return placeAtX(row, point.x() + q->xOffset() - margin);
}

/// The box of a cursor that stands `x` from a row's start.
QRectF QMultiLineEdit::Private::boxAt(qint64 row, qreal x) const
{
    const QRectF cell = q->cellRect(row);
    return { cell.x() + margin + x - 1, cell.y(), cursorWidth, cell.height() };
}

QRectF QMultiLineEdit::Private::cursorBox() const
{
    return boxAt(rowColOf(cursor).row, cursorX());
}

void QMultiLineEdit::Private::makeCursorVisible()
{
    showRow(rowColOf(cursor).row);
    showX(cursorX(), cursorWidth);
}

/// Scrolls as little as needed; a place further away than a page comes to the middle.
void QMultiLineEdit::Private::showRow(qint64 row)
{
    const qint64 page = visibleRows();
    const qint64 last = top + page - 1;
    if (row >= top && row <= last)
        return;
    const bool far = row < top - page || row > last + page;
    if (far)
        setTop(row - page / 2);
    else
        setTop(row < top ? row : row - page + 1);
}

/// Scrolls by a quarter of the view at a time, so that typing at its edge does not repaint it with every key.
void QMultiLineEdit::Private::showX(qreal x, qreal width)
{
    const int view = q->viewport()->width();
    const qreal left = margin + x - q->xOffset();
    if (left < margin)
        q->setXOffset(qFloor(qMax<qreal>(0, x - reserve(view))));
    else if (left + width > view)
        q->setXOffset(qCeil(margin + x + width - view + reserve(view)));
}

/// Rows for turns of the wheel, with Shift pixels to the side; parts of a row add up.
void QMultiLineEdit::Private::wheel(QWheelEvent &event)
{
    QPoint turned = event.angleDelta();
    if (event.modifiers().testFlag(Qt::ShiftModifier) && turned.x() == 0)
        turned = turned.transposed();
    if (event.phase() == Qt::ScrollBegin || turned.y() * wheelRest < 0)
        wheelRest = 0;
    wheelRest += turned.y() * QApplication::wheelScrollLines();
    const int rowsTurned = wheelRest / wheelNotch;
    wheelRest -= rowsTurned * wheelNotch;
    const qreal pixels = turned.x() * QApplication::wheelScrollLines() * 2 * measure->xWidth() / wheelNotch;
    setTop(top - rowsTurned);
    q->setXOffset(q->xOffset() - qRound(pixels));
}

// The public side of the view.

int QMultiLineEdit::xOffset() const
{
    return d->horizontalBar->value();
}

int QMultiLineEdit::yOffset() const
{
    return int(qMin<qint64>(d->top * cellHeight(), std::numeric_limits<int>::max()));
}

void QMultiLineEdit::setXOffset(int pixels)
{
    d->horizontalBar->setValue(pixels);
}

void QMultiLineEdit::setYOffset(int pixels)
{
    d->setTop(pixels / cellHeight());
}

qint64 QMultiLineEdit::topRow() const
{
    return d->top;
}

void QMultiLineEdit::setTopRow(qint64 row)
{
    d->setTop(row);
}

qreal QMultiLineEdit::rowHeight() const
{
    return d->measure->height();
}

int QMultiLineEdit::cellHeight() const
{
    return qMax(1, qRound(rowHeight()));
}

int QMultiLineEdit::cellWidth() const
{
    return d->horizontalBar->maximum() + viewport()->width();
}

QRectF QMultiLineEdit::cellRect(qint64 row) const
{
    return { qreal(-xOffset()), qreal(row - d->top) * rowHeight(), qreal(cellWidth()), rowHeight() };
}

QRect QMultiLineEdit::cursorRect() const
{
    return d->cursorBox().toAlignedRect();
}

qint64 QMultiLineEdit::offsetAt(const QPoint &point) const
{
    return d->placeAtPoint(point).offset;
}

void QMultiLineEdit::makeCursorVisible()
{
    d->makeCursorVisible();
}

void QMultiLineEdit::scrollContentsBy(int dx, int dy)
{
    if (dx != 0)
        d->shiftView(isRightToLeft() ? -dx : dx, 0);
    if (dy != 0 && !d->syncingBar)
        d->setTop(d->rows.toRow(d->verticalBar->value()));
}

void QMultiLineEdit::resizeEvent(QResizeEvent *event)
{
    QAbstractScrollArea::resizeEvent(event);
    const bool wasVisible = d->isCursorRowVisible(event->oldSize().height());
    if (d->wrap == WidgetWidth)
        d->layoutChanged();
    d->updateScrollBars();
    if (wasVisible)
        d->makeCursorVisible();
}

void QMultiLineEdit::wheelEvent(QWheelEvent *event)
{
    d->wheel(*event);
    event->accept();
}

void QMultiLineEdit::timerEvent(QTimerEvent *event)
{
    if (event->timerId() == d->blinkTimer.timerId())
        d->blink();
    else if (event->timerId() == d->pointer.autoScroll.timerId())
        d->autoScroll();
    else if (event->timerId() == d->dropScroll.timerId())
        d->scrollForDrop();
    else if (event->timerId() == d->pointer.longPress.timerId())
        d->longPressed();
    else if (event->timerId() == d->pointer.tripleClick.timerId())
        d->pointer.tripleClick.stop();
    else
        QAbstractScrollArea::timerEvent(event);
}

void QMultiLineEdit::focusInEvent(QFocusEvent *event)
{
    QAbstractScrollArea::focusInEvent(event);
    d->restartBlink();
    d->updateView();
}

void QMultiLineEdit::focusOutEvent(QFocusEvent *event)
{
    QAbstractScrollArea::focusOutEvent(event);
    d->history.breakJoining();
    d->stopBlink();
    d->updateView();
}
