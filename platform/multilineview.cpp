#include "platform/qmultilineedit_p.h"

#include "platform/rowcanvas.h"
#include "platform/viewscrollbar.h"

#include <QApplication>
#include <QPaintEvent>
#include <QPainter>
#include <QStyleHints>
#include <QWheelEvent>

#include <cmath>

namespace {
constexpr int cursorWidth = 2;
constexpr int widestLineEnd = 8; ///< widths of "x" that cursor, selection or a mark take behind a row's text
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

QRect QMultiLineEdit::Private::linesRect(qint64 line, qint64 count, int width) const
{
    const qreal height = measure->height();
    const QRectF area(0, qreal(line) * height, width, qreal(count) * height);
    // The toolkit rounds an area's height for itself and may end it before the row at a fractional scale.
    const int rest = isScaleWhole() ? 0 : 1;
    return area.toAlignedRect().adjusted(0, -rest, 0, rest);
}

QRegion QMultiLineEdit::Private::inkRegion() const
{
    const QWidget *const viewport = q->viewport();
    QRegion region;
    for (qint64 line = 0; top + line <= rowAt(viewport->height()); ++line)
        region += linesRect(line, 1, qMin(viewport->width(), ink.end(line)));
    return region;
}

void QMultiLineEdit::Private::noteInk(const RowLayout &layout)
{
    const qint64 line = layout.row() - top;
    if (line < 0 || layout.row() > rowAt(q->viewport()->height()))
        return;
    // The row of the cursor may be marked over the whole width.
    const bool endIsShown = layout.lastColumn() == layout.length() && layout.row() != rowColOf(cursor).row;
    const qreal end = margin + layout.rightEdge() + widestLineEnd * measure->xWidth() - q->xOffset();
    ink.setEnd(line, endIsShown ? qCeil(qMax<qreal>(0, end)) : LineInk::everywhere);
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

void QMultiLineEdit::Private::updateRows(qint64 first, qint64 last)
{
    QWidget *const viewport = q->viewport();
    pictures.forget(first, last);
    first = qMax(first, top);
    last = qMin(last, rowAt(viewport->height()));
    if (first > last)
        return;
    for (qint64 row = first; row <= last; ++row)
        ink.setEnd(row - top, LineInk::everywhere);
    viewport->update(linesRect(first - top, last - first + 1, viewport->width()));
}

void QMultiLineEdit::Private::updateView()
{
    ink.forget();
    pictures.forget();
    q->viewport()->update();
}

void QMultiLineEdit::Private::updateMarkedRows()
{
    if (!hasMarked())
        return;
    const TextRange range = marked();
    updateRows(store.rowColAt(range.start).row, store.rowColAt(range.end).row);
}

void QMultiLineEdit::Private::restartBlink()
{
    const int flash = QGuiApplication::styleHints()->cursorFlashTime();
    if (q->hasFocus() && flash > 1)
        blinkTimer.start(flash / 2, q);
    else
        blinkTimer.stop();
    if (!cursorOn) {
        cursorOn = true;
        updateRow(rowColOf(cursor).row);
    }
}

void QMultiLineEdit::Private::stopBlink()
{
    blinkTimer.stop();
    cursorOn = true;
    updateRow(rowColOf(cursor).row);
}

void QMultiLineEdit::Private::blink()
{
    cursorOn = !cursorOn;
    updateRow(rowColOf(cursor).row);
}

void QMultiLineEdit::Private::paintDropCursor(QPainter &painter) const
{
    if (dropOffset < 0)
        return;
    const QColor base = q->palette().color(QPalette::Base);
    const RowCol place = store.rowColAt(dropOffset);
    painter.fillRect(boxAt(place.row, xOf(place)), base.lightness() < 128 ? Qt::white : Qt::black);
}

/// A repaint of everything that nobody has asked for here, as when the desktop's colours change, shows
/// nothing that was kept.
void QMultiLineEdit::Private::preparePictures(const QRect &area)
{
    const QWidget *const viewport = q->viewport();
    const qreal scale = measure->devicePixelRatio();
    const qint64 lines = isScaleWhole() ? 0 : rowAt(viewport->height()) - top + 1;
    pictures.setView(int(lines), QSize(qCeil(viewport->width() * scale), qRound(measure->height() * scale)));
    if (!std::exchange(hasMoved, false) && area == viewport->rect())
        pictures.forget();
}

void QMultiLineEdit::Private::paintRow(QPainter &painter, qint64 row, const QRegion &area)
{
    const QRectF cell = q->cellRect(row);
    const QRect whole = cell.toAlignedRect();
    QRect update = (area & whole).boundingRect();
    if (update.isEmpty())
        return;
    if (pictures.keepsRows()) // which are drawn over their whole height
        update = QRect(update.left(), whole.top(), update.width(), whole.height());
    if (pictures.has(row)) {
        RowFrame(painter, cell, update, measure->devicePixelRatio(), pictures.top(row)).copyTo(painter);
        ink.setEnd(row - top, pictures.inkEnd(row));
        return;
    }
    q->paintCell(painter, row, cell, update);
    if (update.width() >= q->viewport()->width())
        pictures.keep(row, ink.end(row - top));
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

bool QMultiLineEdit::isCursorOn() const
{
    return d->cursorOn;
}

void QMultiLineEdit::updateRow(qint64 row)
{
    d->updateRow(row);
}

void QMultiLineEdit::updateView()
{
    d.asTheyAre().updateView();
}

void QMultiLineEdit::paintEvent(QPaintEvent *event)
{
    QPainter painter(viewport());
    const QRect area = event->rect();
    d->preparePictures(area);
    const qint64 last = qMin(d->rowAt(area.bottom() + 1), d->store.rowCount() - 1);
    // First what is below the text: the last row may reach a part of a pixel into it.
    const int end = qFloor(cellRect(last).bottom());
    if (end <= area.bottom())
        painter.fillRect(QRect(area.left(), qMax(end, area.top()), area.width(), area.bottom() - end + 1),
            palette().brush(QPalette::Base));
    for (qint64 row = d->rowAt(area.top()); row <= last; ++row)
        d->paintRow(painter, row, event->region());
    for (qint64 row = qMax(last + 1, d->rowAt(area.top())); row <= d->rowAt(area.bottom()); ++row)
        d->ink.setEnd(row - d->top, 0);
    d->paintDropCursor(painter);
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
