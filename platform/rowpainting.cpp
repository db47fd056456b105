#include "platform/qmultilineedit.h"

#include "platform/rowlayout.h"

#include <QPainter>

void QMultiLineEdit::paintCell(QPainter &target, qint64 row, const QRectF &cell, const QRect &update)
{
    if (row < 0 || row >= numLines())
        return;
    const qreal left = cell.x() + hMargin();
    target.save();
    target.setClipRect(update);
    target.fillRect(update, palette().brush(QPalette::Base));
    const RowLayout layout(store(), row, *fontMeasure(), update.left() - left, update.right() + 1 - left);
    layout.draw(target, { left, cell.y() }, palette().color(QPalette::Text));
    if (hasFocus() && isCursorOn() && row == cursorPosition().row)
        target.fillRect(cursorRect(), palette().color(QPalette::Text));
    target.restore();
}
