#include "platform/fontmeasure.h"
#include "platform/qmultilineedit_p.h"
#include "platform/rowpainter.h"

namespace {

constexpr int cursorWidth = 2;

} // namespace

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
    row.drawCursor(qMin(cursor.column + composed.cursor, row.layout().length()), color, width);
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
