#include "widget/qmultilineedit_p.h"
#include "rows/rowcanvas.h"
#include "rows/rowpainter.h"

#include <QGuiApplication>
#include <QPaintEvent>
#include <QPainter>
#include <QStyleHints>

#include <cmath>

namespace {
constexpr int widestLineEnd = 8; ///< widths of "x" that cursor, selection or a mark take behind a row's text
} // namespace

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
    const qreal end = margin + layout.rightEdge() + widestLineEnd * measure->xWidth() - qreal(left);
    ink.setEnd(line, endIsShown ? qCeil(qBound<qreal>(0, end, q->viewport()->width())) : LineInk::everywhere);
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
    const QRect whole = QRectF(0, cell.y(), q->viewport()->width(), cell.height()).toAlignedRect();
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

void QMultiLineEdit::Private::paintDropCursor(QPainter &painter) const
{
    if (dropOffset < 0)
        return;
    const QColor base = q->palette().color(QPalette::Base);
    const RowCol place = store.rowColAt(dropOffset);
    painter.fillRect(cursorBoxAt(place.row, xOf(place)), base.lightness() < 128 ? Qt::white : Qt::black);
}

// The public side of painting.

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

InsertedText QMultiLineEdit::compositionInRow(qint64 row) const
{
    const RowCol cursor = cursorPosition();
    return row == cursor.row ? InsertedText{ .column = cursor.column, .text = preedit().text }
                             : InsertedText{};
}

bool QMultiLineEdit::markedInRow(qint64 row, qint64 *begin, qint64 *end) const
{
    RowCol first;
    RowCol last;
    if (!getMarkedRegion(&first.row, &first.column, &last.row, &last.column) || row < first.row
        || row > last.row)
        return false;
    const InsertedText composed = compositionInRow(row);
    const auto displayed = [&composed](qint64 column) {
        return column > composed.column ? column + composed.text.size() : column;
    };
    *begin = row == first.row ? displayed(first.column) : 0;
    *end = row == last.row ? displayed(last.column) : store().row(row).length + composed.text.size() + 1;
    return *begin != *end;
}

void QMultiLineEdit::drawCursorInRow(RowPainter &row, const QColor &color, int width) const
{
    const RowCol cursor = cursorPosition();
    const Preedit &composed = preedit();
    if (row.layout().row() != cursor.row || !hasFocus() || !isCursorOn() || !composed.cursorVisible)
        return;
    const qint64 column = qMin(cursor.column + composed.cursor, row.layout().length());
    // What is composed is put in, whatever is replaced when it is done.
    if (isOverwriteMode() && !isComposing())
        row.drawBlockCursor(column, color);
    else
        row.drawCursor(column, color, width);
}

RowPlace QMultiLineEdit::rowPlace(qint64 row, const QRectF &cell, const QRect &update)
{
    return { .store = store(),
        .row = row,
        .cell = cell,
        .update = update,
        .margin = qreal(hMargin()),
        .pictureTop = d->pictures.take(row) };
}

void QMultiLineEdit::finishRow(RowPainter &row)
{
    row.copyToTarget();
    d->noteInk(row.layout());
}

void QMultiLineEdit::paintCell(QPainter &target, qint64 row, const QRectF &cell, const QRect &update)
{
    if (row < 0 || row >= numLines())
        return;
    const QPalette &colors = palette();
    const InsertedText composed = compositionInRow(row);
    RowPainter painter(
        target, *fontMeasure(), rowPlace(row, cell, update), colors.color(QPalette::Base), composed);
    painter.drawText(colors.color(QPalette::Text));
    RowPainter::Selection marked;
    if (markedInRow(row, &marked.begin, &marked.end))
        painter.drawSelection(
            marked, colors.color(QPalette::Highlight), colors.color(QPalette::HighlightedText));
    if (!composed.text.isEmpty())
        painter.drawComposition(
            composed.column, composed.text.size(), preedit().formats, colors.color(QPalette::Text));
    drawCursorInRow(painter, colors.color(QPalette::Base), cursorWidth);
    finishRow(painter);
}
