#include "widget/qmultilineedit.h"

#include "platform/menu.h"
#include "rows/rowpainter.h"
#include "widget/editorparts.h"

#include <QContextMenuEvent>
#include <QDropEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollEvent>
#include <QTabletEvent>
#include <QTouchEvent>
#include <QWheelEvent>

bool QMultiLineEdit::event(QEvent *event)
{
    if (event->type() == QEvent::ShortcutOverride && d->keys.handles(*static_cast<QKeyEvent *>(event))) {
        event->accept();
        return true;
    }
    if (event->type() == QEvent::ScreenChangeInternal)
        d->layout.setStale();
    if (event->type() == QEvent::LayoutRequest)
        d->layout.followView();
    return QAbstractScrollArea::event(event);
}

bool QMultiLineEdit::viewportEvent(QEvent *event)
{
    switch (event->type()) {
    case QEvent::TabletPress:
    case QEvent::TabletMove:
    case QEvent::TabletRelease:
        event->setAccepted(viewLaidOut().pointer.tablet(*static_cast<QTabletEvent *>(event)));
        return event->isAccepted();
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TouchCancel:
        viewLaidOut().touch.touch(*static_cast<QTouchEvent *>(event));
        event->accept();
        return true;
    case QEvent::ScrollPrepare:
        laidOut().scroller.prepare(*static_cast<QScrollPrepareEvent *>(event));
        event->accept();
        return true;
    case QEvent::Scroll:
        laidOut().scroller.scrollTo(*static_cast<QScrollEvent *>(event));
        event->accept();
        return true;
    default:
        return QAbstractScrollArea::viewportEvent(event);
    }
}

void QMultiLineEdit::changeEvent(QEvent *event)
{
    QAbstractScrollArea::changeEvent(event);
    updateView();
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        d->layout.setStale();
    else if (event->type() == QEvent::LanguageChange)
        nameScrollBars();
}

void QMultiLineEdit::showEvent(QShowEvent *event)
{
    QAbstractScrollArea::showEvent(event);
    // It may be another screen.
    d->layout.setStale();
    d->layout.update();
}

/// Who is told of an edit may make or take room for something else in the middle of it, when the cursor may
/// stand behind the text. The end of an edit shows the cursor.
void QMultiLineEdit::resizeEvent(QResizeEvent *event)
{
    QAbstractScrollArea::resizeEvent(event);
    Parts &parts = laidOut();
    const bool wasVisible =
        !parts.edits.isUnderWay() && parts.view.isCursorRowVisible(event->oldSize().height());
    parts.scroller.updateBars();
    if (wasVisible)
        parts.scroller.showCursor();
    parts.layout.noteMove();
}

void QMultiLineEdit::scrollContentsBy(int dx, int dy)
{
    if (dx != 0)
        laidOut().scroller.followHorizontalBar();
    if (dy != 0)
        laidOut().scroller.followVerticalBar();
    d->layout.noteMove();
}

void QMultiLineEdit::wheelEvent(QWheelEvent *event)
{
    viewLaidOut().scroller.wheel(*event);
    event->accept();
}

void QMultiLineEdit::focusInEvent(QFocusEvent *event)
{
    QAbstractScrollArea::focusInEvent(event);
    laidOut().blink.restart();
    updateView();
}

void QMultiLineEdit::focusOutEvent(QFocusEvent *event)
{
    QAbstractScrollArea::focusOutEvent(event);
    d->document.history().breakJoining();
    laidOut().blink.stop();
    updateView();
}

/// Tab and Backtab are the editor's, or they are keys of the window.
bool QMultiLineEdit::focusNextPrevChild(bool next)
{
    Q_UNUSED(next)
    return false;
}

void QMultiLineEdit::keyPressEvent(QKeyEvent *event)
{
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    const bool endsComposing = isComposing() && isReturn;
    if (endsComposing)
        commitPreedit();
    event->setAccepted(endsComposing || viewLaidOut().keys.handle(*event));
}

void QMultiLineEdit::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::MiddleButton)
        viewLaidOut().clipboard.pasteSelection(event->position());
    if (event->button() == Qt::LeftButton)
        viewLaidOut().pointer.press(*event);
}

void QMultiLineEdit::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        viewLaidOut().pointer.doubleClick(*event);
}

void QMultiLineEdit::mouseMoveEvent(QMouseEvent *event)
{
    if (event->buttons() & Qt::LeftButton)
        viewLaidOut().pointer.move(event->position());
}

void QMultiLineEdit::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        viewLaidOut().pointer.release(event->position());
}

void QMultiLineEdit::dragEnterEvent(QDragEnterEvent *event)
{
    dragMoveEvent(event);
}

void QMultiLineEdit::dragMoveEvent(QDragMoveEvent *event)
{
    if (!TextDrag::accepts(*event)) {
        event->ignore();
        return;
    }
    TextDrag &drag = viewLaidOut().drag;
    event->setDropAction(drag.actionOf(*event));
    event->accept();
    drag.moveOver(event->position());
}

void QMultiLineEdit::dragLeaveEvent(QDragLeaveEvent *event)
{
    laidOut().drag.leave();
    event->accept();
}

void QMultiLineEdit::dropEvent(QDropEvent *event)
{
    TextDrag &drag = viewLaidOut().drag;
    drag.leave();
    event->setAccepted(TextDrag::accepts(*event));
    if (event->isAccepted())
        drag.drop(*event);
}

void QMultiLineEdit::contextMenuEvent(QContextMenuEvent *event)
{
    QPoint at = event->globalPos();
    if (event->reason() == QContextMenuEvent::Keyboard) {
        laidOut().scroller.showCursor();
        at = viewport()->mapToGlobal(cursorRect().bottomLeft());
    }
    QMenu *const menu = createContextMenu();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(at);
    event->accept();
}

QMenu *QMultiLineEdit::createContextMenu()
{
    auto *const menu = new Menu(this);
    const auto add = [this, menu](const QString &text, const char *keys, bool enabled,
                         void (QMultiLineEdit::*slot)()) {
        QAction *const action = menu->addAction(text, this, slot);
        action->setShortcut(QKeySequence(QLatin1StringView(keys)));
        action->setShortcutContext(Qt::WidgetShortcut);
        action->setEnabled(enabled);
    };
    const bool hasSelection = hasMarkedText();
    add(tr("&Undo"), "Ctrl+Z", history().canUndo(), &QMultiLineEdit::undo);
    add(tr("&Redo"), "Ctrl+Y", history().canRedo(), &QMultiLineEdit::redo);
    menu->addSeparator();
    add(tr("Cu&t"), "Ctrl+X", hasSelection, &QMultiLineEdit::cut);
    add(tr("&Copy"), "Ctrl+C", hasSelection, &QMultiLineEdit::copy);
    add(tr("&Paste"), "Ctrl+V", TextClipboard::canPaste(), &QMultiLineEdit::paste);
    menu->addSeparator();
    add(tr("Select &All"), "Ctrl+A", store().length() > 0, &QMultiLineEdit::selectAll);
    return menu;
}

void QMultiLineEdit::paintEvent(QPaintEvent *event)
{
    Parts &parts = viewLaidOut();
    QPainter painter(viewport());
    parts.updates.paint(painter, event->region(), palette().brush(QPalette::Base),
        [&](RowIndex row, const QRectF &cell, const QRect &update) {
            paintCell(painter, row, cell, update);
        });
    const QColor base = palette().color(QPalette::Base);
    parts.drag.paintDropPlace(painter, base.lightness() < 128 ? Qt::white : Qt::black);
}

void QMultiLineEdit::paintCell(QPainter &target, RowIndex row, const QRectF &cell, const QRect &update)
{
    if (row < RowIndex() || row > store().lastRow())
        return;
    Parts &parts = laidOut();
    const QPalette &colors = palette();
    const InsertedText composed = parts.view.composedInRow(row);
    const RowPlace place = { .store = parts.document.store(),
        .row = row,
        .cell = cell,
        .update = update,
        .margin = qreal(hMargin()),
        .pictureTop = parts.updates.takePicture(row) };
    RowPainter painter(target, parts.format.measure(), place, colors.color(QPalette::Base), composed);
    const CellLook look = cellLook(painter.layout());
    drawUnderText(painter);
    painter.drawText(look.text);
    if (const auto selected = parts.view.selectedInRow(row))
        painter.drawSelection({ selected->begin, selected->end, look.lineEndWidth },
            colors.color(QPalette::Highlight), colors.color(QPalette::HighlightedText));
    if (!composed.text.isEmpty())
        painter.drawComposition(composed.column, composed.text.size(), preedit().formats, look.text);
    drawOverText(painter);
    if (row == cursorPosition().row)
        drawCursor(painter);
    drawOverCursor(painter, cell);
    painter.copyToTarget();
    parts.updates.rowPainted(painter.layout());
}

void QMultiLineEdit::drawCursor(RowPainter &row) const
{
    const Preedit &composed = preedit();
    if (!hasFocus() || !d->blink.isOn() || !composed.cursorVisible)
        return;
    const qint64 column = qMin(cursorPosition().column + composed.cursor, row.layout().length());
    const CursorLook look = cursorLook();
    // What is composed is put in, whatever is replaced when it is done.
    if (isOverwriteMode() && !isComposing())
        row.drawBlockCursor(column, look.color);
    else
        row.drawCursor(column, look.color, look.width);
}

QMultiLineEdit::CellLook QMultiLineEdit::cellLook(const RowLayout &row) const
{
    Q_UNUSED(row)
    return { .text = palette().color(QPalette::Text) };
}

QMultiLineEdit::CursorLook QMultiLineEdit::cursorLook() const
{
    return { .color = palette().color(QPalette::Base), .width = cursorWidth };
}

void QMultiLineEdit::drawUnderText(RowPainter &) const { }

void QMultiLineEdit::drawOverText(RowPainter &) const { }

void QMultiLineEdit::drawOverCursor(RowPainter &, const QRectF &) const { }
