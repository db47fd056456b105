#include "widget/qmultilineedit_p.h"

#include "text/enteredtext.h"
#include "platform/menu.h"
#include "platform/requesthold.h"
#include "widget/textmimedata.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QDrag>
#include <QDropEvent>
#include <QGuiApplication>
#include <QMimeData>

namespace {

/// Units of a primary selection that are kept when the text is marked no more.
constexpr qint64 primaryKept = qint64(4) << 20;
/// How near the view's edge dragged text makes it scroll, and how long it takes for each row.
constexpr int dropScrollMargin = 16;
constexpr int dropScrollInterval = 60; ///< ms

QClipboard *clipboard()
{
    return QGuiApplication::clipboard();
}

TextMimeData::Source sourceOf(TextPiece piece)
{
    return [shared = std::make_shared<TextPiece>(std::move(piece))] { return *shared; };
}

/// With LF for each CR+LF and CR, which another document may have for its line ends.
TextPiece withLineFeeds(const TextPiece &piece)
{
    const QString text = piece.text();
    if (!text.contains(u'\r'))
        return piece;
    TextStore store;
    store.insert(0, piece);
    for (qsizetype at = text.size(); --at >= 0;) {
        if (text[at] == u'\r')
            store.replace(at, 1, QStringView(text).sliced(at + 1).startsWith(u'\n') ? QStringView() : u"\n");
    }
    return store.piece(0, store.length());
}

/// Which edges of a view a point is near: -1 left or top, 1 right or bottom, 0 neither.
QPoint edgeNear(QPointF point, QSize view)
{
    const auto side = [](qreal at, int length) {
        const int margin = qMin(dropScrollMargin, length / 4);
        return at < margin ? -1 : at >= length - margin ? 1 : 0;
    };
    return { side(point.x(), view.width()), side(point.y(), view.height()) };
}

} // namespace

bool QMultiLineEdit::Private::canPaste(const QMimeData *data) const
{
    return !readOnly && data && data->hasText();
}

TextPiece QMultiLineEdit::Private::pieceOf(const QMimeData &data) const
{
    const auto *const own = qobject_cast<const TextMimeData *>(&data);
    if (!own || own->byteCode() != byteCode)
        return TextPiece(pastedText(data.text()));
    return own->isFrom(q) ? own->piece() : withLineFeeds(own->piece());
}

TextPiece QMultiLineEdit::Private::markedPiece() const
{
    return store.piece(marked().start, marked().end - marked().start);
}

void QMultiLineEdit::Private::copyMarked() const
{
    if (hasMarked())
        clipboard()->setMimeData(new TextMimeData(sourceOf(markedPiece()), byteCode, q));
}

void QMultiLineEdit::Private::pasteFrom(const QMimeData *data)
{
    if (!data)
        return;
    const TextPiece text = pieceOf(*data);
    if (!text.isEmpty())
        insertPiece(text);
}

void QMultiLineEdit::paste()
{
    if (!d->readOnly)
        d->pasteFrom(clipboard()->mimeData());
}

void QMultiLineEdit::Private::offerPrimary()
{
    if (!clipboard()->supportsSelection() || !hasMarked())
        return;
    auto *const data = new TextMimeData([this] { return markedPiece(); }, byteCode, q);
    primary = data;
    clipboard()->setMimeData(data, QClipboard::Selection);
}

void QMultiLineEdit::Private::freezePrimary()
{
    if (!primary || !hasMarked())
        return;
    TextMimeData *const data = std::exchange(primary, nullptr);
    if (marked().end - marked().start <= primaryKept) {
        data->setSource(sourceOf(markedPiece()));
        return;
    }
    data->setSource([] { return TextPiece(); });
    clipboard()->clear(QClipboard::Selection);
}

void QMultiLineEdit::Private::pastePrimary(QPointF at)
{
    if (readOnly || !clipboard()->supportsSelection())
        return;
    const QMimeData *const data = clipboard()->mimeData(QClipboard::Selection);
    if (!data)
        return;
    const TextPiece text = pieceOf(*data);
    moveTo(placeAtPoint(at), Marking::Drop);
    if (!text.isEmpty())
        insertPiece(text);
}

/// Other events go on meanwhile, which may close the editor: the drag is not its child.
void QMultiLineEdit::Private::startDrag()
{
    const RequestHold requestsWait;
    const QPointer<QMultiLineEdit> edit(q);
    textDrag = new QDrag(qApp);
    textDrag->setMimeData(new TextMimeData(sourceOf(markedPiece()), byteCode, q));
    const Qt::DropActions actions = readOnly ? Qt::CopyAction : Qt::CopyAction | Qt::MoveAction;
    const Qt::DropAction done = textDrag->exec(actions, readOnly ? Qt::CopyAction : Qt::MoveAction);
    if (!edit)
        return;
    const QDrag *const finished = std::exchange(textDrag, nullptr);
    pointer.gesture = Gesture::None;
    // A drop inside this editor has moved the text itself.
    if (done == Qt::MoveAction && finished->target() != q->viewport() && finished->target() != q)
        eraseMarked();
}

/// Files are the window's to open, even when they come with their names as text.
bool QMultiLineEdit::Private::acceptsDrop(const QDropEvent &event) const
{
    return canPaste(event.mimeData()) && !event.mimeData()->hasUrls();
}

void QMultiLineEdit::Private::setDropOffset(qint64 offset)
{
    if (offset == dropOffset)
        return;
    for (const qint64 place : { dropOffset, offset }) {
        if (place >= 0)
            updateRow(store.rowColAt(place).row);
    }
    dropOffset = offset;
}

void QMultiLineEdit::Private::dragOver(QPointF point)
{
    dropPoint = point;
    setDropOffset(placeAtPoint(point).offset);
    if (edgeNear(point, q->viewport()->size()).isNull())
        dropScroll.stop();
    else if (!dropScroll.isActive())
        dropScroll.start(dropScrollInterval, q);
}

void QMultiLineEdit::Private::endDragOver()
{
    dropScroll.stop();
    setDropOffset(-1);
}

/// One row, or the width of a character, towards the edge that the text is held near.
void QMultiLineEdit::Private::scrollForDrop()
{
    const QPoint direction = edgeNear(dropPoint, q->viewport()->size());
    const qint64 oldTop = top;
    const qint64 oldLeft = left;
    setTop(top + direction.y());
    setLeft(left + direction.x() * qCeil(measure->xWidth()));
    if (top == oldTop && left == oldLeft)
        dropScroll.stop();
    setDropOffset(placeAtPoint(dropPoint).offset);
}

void QMultiLineEdit::Private::drop(QDropEvent &event)
{
    const TextPiece text = pieceOf(*event.mimeData());
    qint64 to = placeAtPoint(event.position()).offset;
    const bool moves = textDrag && event.dropAction() == Qt::MoveAction;
    if (moves && marked().start <= to && to <= marked().end)
        return;
    Operation operation(*this);
    history.beginGroup();
    if (moves) {
        const TextRange from = marked();
        const qint64 length = from.end - from.start;
        replace(from.start, length, {});
        if (to > from.start)
            to -= length;
    }
    replaceByPiece(to, 0, text);
    history.endGroup();
    anchor = { to };
    cursor = { to + text.length() };
}

void QMultiLineEdit::Private::showContextMenu(const QPoint &globalPosition)
{
    QMenu *const menu = q->createContextMenu();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(globalPosition);
}

void QMultiLineEdit::Private::showContextMenuAtCursor()
{
    makeCursorVisible();
    showContextMenu(q->viewport()->mapToGlobal(q->cursorRect().bottomLeft()));
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
    const bool writable = !isReadOnly();
    const bool marked = hasMarkedText();
    add(tr("&Undo"), "Ctrl+Z", writable && d->history.canUndo(), &QMultiLineEdit::undo);
    add(tr("&Redo"), "Ctrl+Y", writable && d->history.canRedo(), &QMultiLineEdit::redo);
    menu->addSeparator();
    add(tr("Cu&t"), "Ctrl+X", writable && marked, &QMultiLineEdit::cut);
    add(tr("&Copy"), "Ctrl+C", marked, &QMultiLineEdit::copy);
    add(tr("&Paste"), "Ctrl+V", d->canPaste(clipboard()->mimeData()), &QMultiLineEdit::paste);
    menu->addSeparator();
    add(tr("Select &All"), "Ctrl+A", d->store.length() > 0, &QMultiLineEdit::selectAll);
    return menu;
}

void QMultiLineEdit::contextMenuEvent(QContextMenuEvent *event)
{
    if (event->reason() == QContextMenuEvent::Keyboard)
        d->showContextMenuAtCursor();
    else
        d->showContextMenu(event->globalPos());
    event->accept();
}

void QMultiLineEdit::dragEnterEvent(QDragEnterEvent *event)
{
    dragMoveEvent(event);
}

void QMultiLineEdit::dragMoveEvent(QDragMoveEvent *event)
{
    if (!d->acceptsDrop(*event)) {
        event->ignore();
        return;
    }
    const bool copies = event->modifiers().testFlag(Qt::ControlModifier) || !d->textDrag;
    event->setDropAction(copies ? Qt::CopyAction : Qt::MoveAction);
    event->accept();
    d->dragOver(event->position());
}

void QMultiLineEdit::dragLeaveEvent(QDragLeaveEvent *event)
{
    d->endDragOver();
    event->accept();
}

void QMultiLineEdit::dropEvent(QDropEvent *event)
{
    d->endDragOver();
    if (!d->acceptsDrop(*event)) {
        event->ignore();
        return;
    }
    event->accept();
    d->drop(*event);
}
