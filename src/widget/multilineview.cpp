#include "widget/qmultilineedit_p.h"

#include "widget/viewscrollbar.h"

#include <QApplication>
#include <QScopedValueRollback>
#include <QWheelEvent>

#include <cmath>

namespace {
constexpr int wheelNotch = 120; ///< eighths of a degree
constexpr qreal farOutside = 1 << 24; ///< of any view, logical pixels

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

/// Right end of the widest row.
qreal QMultiLineEdit::Private::textEnd() const
{
    qreal widest = measure->toPixels(store.widestRow());
    if (q->isComposing()) {
        const RowLayout composed = layoutOf(rowColOf(cursor).row, 0);
        widest = qMax(widest, composed.x(composed.length()));
    }
    return margin + widest;
}

/// A full row may be a pixel wider than the view; the cursor behind it still shows then.
bool QMultiLineEdit::Private::rowsFit() const
{
    const qreal end = margin + measure->toPixels(store.widestRow());
    return wrap != NoWrap && end - cursorWidth < q->viewport()->width();
}

/// Text that fits has nowhere to move. Behind wider text there is space for the cursor and a line-end mark,
/// in steps, so that the bar does not change with every key in the widest row.
qint64 QMultiLineEdit::Private::lastLeft() const
{
    const int view = q->viewport()->width();
    const qreal end = textEnd();
    if (rowsFit() || end - cursorWidth < view)
        return 0;
    const int step = qMax(1, reserve(view));
    const qreal wider = end + 2 * measure->xWidth() + cursorWidth - view;
    return step * qint64(std::ceil(wider / step + 1));
}

/// What is composed is not wrapped before it is done. In a view that does not move to the side its row moves
/// alone, so that its end is seen, or its cursor where it is wider than the view.
qint64 QMultiLineEdit::Private::composedShift(qint64 row) const
{
    if (!q->isComposing() || !rowsFit())
        return 0;
    const RowCol at = rowColOf(cursor);
    if (row != at.row)
        return 0;
    const qreal view = q->viewport()->width();
    const qreal start = measure->toPixels(store.xAt(at));
    const RowLayout layout(store, row, *measure, start - view, start + view, q->compositionInRow(row));
    const qreal beyond = margin + layout.x(at.column + preedit.text.size()) + cursorWidth - view;
    const qreal beforeCursor = layout.x(at.column + preedit.cursor);
    return qint64(std::ceil(qMax<qreal>(0, qMin(beyond, beforeCursor))));
}

void QMultiLineEdit::Private::updateScrollBars()
{
    rows = ScrollRange(qMax<qint64>(0, store.rowCount() - visibleRows()));
    columns = ScrollRange(lastLeft());
    {
        const QScopedValueRollback following(followingView, true);
        verticalBar->setPageStep(rows.step(visibleRows()));
        verticalBar->setLast(rows.maximum());
        horizontalBar->setPageStep(columns.step(q->viewport()->width()));
        horizontalBar->setSingleStep(columns.step(sideStep()));
        horizontalBar->setLast(columns.maximum());
    }
    setTop(top);
    setLeft(left);
}

void QMultiLineEdit::Private::showOnBar(ViewScrollBar &bar, int value)
{
    const QScopedValueRollback following(followingView, true);
    bar.setValue(value);
}

void QMultiLineEdit::Private::setTop(qint64 row)
{
    const qint64 before = std::exchange(top, qBound<qint64>(0, row, rows.last()));
    showOnBar(*verticalBar, rows.toBar(top));
    if (top != before)
        shiftView(top - before);
}

void QMultiLineEdit::Private::setLeft(qint64 pixels)
{
    const qint64 before = std::exchange(left, qBound<qint64>(0, pixels, columns.last()));
    showOnBar(*horizontalBar, columns.toBar(left));
    if (left != before)
        updateView();
}

qint64 QMultiLineEdit::Private::sideStep() const
{
    return qMax(1, qRound(2 * measure->xWidth()));
}

/// Steps and pages of the bar are as long as those of a short row where a value of it stands for many pixels.
void QMultiLineEdit::Private::stepSideways(int action)
{
    const qint64 page = q->viewport()->width();
    switch (action) {
    case QAbstractSlider::SliderSingleStepAdd:
        return setLeft(left + sideStep());
    case QAbstractSlider::SliderSingleStepSub:
        return setLeft(left - sideStep());
    case QAbstractSlider::SliderPageStepAdd:
        return setLeft(left + page);
    case QAbstractSlider::SliderPageStepSub:
        return setLeft(left - page);
    default:
        break;
    }
}

bool QMultiLineEdit::Private::isScaleWhole() const
{
    const qreal scale = q->devicePixelRatioF();
    return scale == std::floor(scale);
}

/// Moves what is painted already, else repaints: at a fractional scale what is moved and what is painted
/// beside it would not meet.
void QMultiLineEdit::Private::shiftView(qint64 rowsDown)
{
    QWidget *const viewport = q->viewport();
    const qreal dy = -qreal(rowsDown) * measure->height();
    ink.shift(rowsDown);
    hasMoved = true;
    const bool stays = std::abs(dy) < viewport->height();
    if (stays && dy == std::floor(dy) && isScaleWhole())
        viewport->scroll(0, int(dy));
    else if (stays)
        viewport->update(inkRegion());
    else
        viewport->update();
}

RowLayout QMultiLineEdit::Private::layoutOf(qint64 row, qreal x) const
{
    const qreal width = q->viewport()->width();
    const qreal viewStart = rowLeft(row) - margin;
    const qreal start = x >= viewStart && x <= viewStart + width ? viewStart : x - width / 2;
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
    const RowLayout layout = layoutOf(row, x);
    // Where the cursor is shown before a row's first character, that place is meant.
    const bool isFirst = x >= layout.x(0) && x <= shownCursorX(layout.x(0));
    const qint64 column = isFirst ? 0 : layout.cursorAt(x);
    return placeAt(row, column - qBound<qint64>(0, column - composed.column, composed.text.size()));
}

CursorPlace QMultiLineEdit::Private::placeAtPoint(QPointF point) const
{
    const qint64 row = qBound<qint64>(0, rowAt(point.y()), store.rowCount() - 1);
    return placeAtX(row, point.x() + rowLeft(row) - margin);
}

/// Where a row is shown `x` from its start, as wide as a cursor. Others take it in whole numbers, where the
/// ends of a very long row have no place.
QRectF QMultiLineEdit::Private::boxAt(qint64 row, qreal x) const
{
    const QRectF cell = q->cellRect(row);
    const qreal boxLeft = qBound(-farOutside, cell.x() + margin + x - 1, farOutside);
    return { boxLeft, cell.y(), cursorWidth, cell.height() };
}

QRectF QMultiLineEdit::Private::cursorBoxAt(qint64 row, qreal x) const
{
    return boxAt(row, shownCursorX(x));
}

QRectF QMultiLineEdit::Private::cursorBox() const
{
    return cursorBoxAt(rowColOf(cursor).row, cursorX());
}

void QMultiLineEdit::Private::makeCursorVisible()
{
    showRow(rowColOf(cursor).row);
    showX(cursorX(), overwrite ? measure->xWidth() : cursorWidth);
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
    const qreal shown = margin + x - qreal(left);
    if (shown < margin)
        setLeft(qint64(std::floor(x - reserve(view))));
    else if (shown + width > view)
        setLeft(qint64(std::ceil(margin + x + width - view + reserve(view))));
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
    setLeft(left - qRound(pixels));
}

// The public side of the view.

qint64 QMultiLineEdit::xOffset() const
{
    return d->left;
}

qint64 QMultiLineEdit::yOffset() const
{
    return d->top * cellHeight();
}

void QMultiLineEdit::setXOffset(qint64 pixels)
{
    d->setLeft(pixels);
}

void QMultiLineEdit::setYOffset(qint64 pixels)
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

qint64 QMultiLineEdit::cellWidth() const
{
    return d->columns.last() + viewport()->width();
}

QRectF QMultiLineEdit::cellRect(qint64 row) const
{
    const qreal left = d->rowLeft(row);
    return { -left, qreal(row - d->top) * rowHeight(), qreal(cellWidth()) + left - qreal(d->left),
        rowHeight() };
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
    if (d->followingView)
        return;
    if (dx != 0)
        d->setLeft(d->columns.toPlace(d->horizontalBar->value()));
    if (dy != 0)
        d->setTop(d->rows.toPlace(d->verticalBar->value()));
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
    else if (event->timerId() == d->pointer.nextClick.timerId())
        d->pointer.nextClick.stop();
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
