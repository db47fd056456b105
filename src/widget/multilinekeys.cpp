#include "widget/qmultilineedit_p.h"

#include "text/enteredtext.h"

#include <QKeyEvent>

#include <algorithm>

namespace {

/// Moves; with Shift held as well they mark.
struct MoveKey {
    QKeyCombination keys;
    Move move;
};
constexpr MoveKey moveKeys[] = {
    { Qt::Key_Left, Move::CharacterBack },
    { Qt::Key_Right, Move::CharacterForward },
    { Qt::CTRL | Qt::Key_Left, Move::WordBack },
    { Qt::CTRL | Qt::Key_Right, Move::WordForward },
    { Qt::Key_Up, Move::RowUp },
    { Qt::Key_Down, Move::RowDown },
    { Qt::Key_PageUp, Move::PageUp },
    { Qt::Key_PageDown, Move::PageDown },
    { Qt::Key_Home, Move::RowStart },
    { Qt::Key_End, Move::RowEnd },
    { Qt::CTRL | Qt::Key_Home, Move::TextStart },
    { Qt::CTRL | Qt::Key_End, Move::TextEnd },
};

const MoveKey *moveFor(QKeyCombination keys)
{
    const auto found = std::ranges::find(moveKeys, keys, &MoveKey::keys);
    return found == std::end(moveKeys) ? nullptr : found;
}

enum class Effect { Looks, Changes };

/// The keys of an event as the tables write them: the keypad's count as the others.
QKeyCombination keysOf(const QKeyEvent &event)
{
    const auto key = event.key() == Qt::Key_Enter ? Qt::Key_Return : Qt::Key(event.key());
    return (event.modifiers() & ~Qt::KeypadModifier) | key;
}

/// Whether a key event brings text to write. Ctrl and Alt together are how some keyboards say AltGr.
bool bringsText(const QKeyEvent &event)
{
    const Qt::KeyboardModifiers modifiers = event.modifiers();
    const bool isControl = modifiers.testFlag(Qt::ControlModifier);
    if (modifiers.testFlag(Qt::MetaModifier) || isControl != modifiers.testFlag(Qt::AltModifier))
        return false;
    if (event.text().isEmpty())
        return false;
    const QChar first = event.text().at(0);
    return first.isPrint() || first.isSurrogate() || first.category() == QChar::Other_Format
        || first.category() == QChar::Other_PrivateUse;
}

} // namespace

/// One row of the table of keys that do something else than moving.
struct QMultiLineEdit::Private::Command {
    QKeyCombination keys;
    Effect effect; ///< what changes the text does nothing in a read-only editor
    void (*run)(Private &edit);

    static const Command table[];
    static const Command *of(QKeyCombination keys, bool readOnly);
};

const QMultiLineEdit::Private::Command QMultiLineEdit::Private::Command::table[] = {
    { Qt::Key_Return, Effect::Changes, [](Private &edit) { edit.breakLine(); } },
    { Qt::SHIFT | Qt::Key_Return, Effect::Changes, [](Private &edit) { edit.breakLine(); } },
    { Qt::CTRL | Qt::Key_Return, Effect::Changes, [](Private &edit) { edit.breakLine(); } },
    { Qt::CTRL | Qt::SHIFT | Qt::Key_Return, Effect::Changes, [](Private &edit) { edit.breakLine(); } },
    { Qt::Key_Tab, Effect::Changes, [](Private &edit) { edit.insertText(u"\t", Joining::Typing); } },
    { Qt::SHIFT | Qt::Key_Backtab, Effect::Looks, [](Private &) { /* keeps the focus */ } },
    { Qt::SHIFT | Qt::Key_Tab, Effect::Looks, [](Private &) { /* keeps the focus */ } },
    { Qt::Key_Backspace, Effect::Changes, [](Private &edit) { edit.eraseBack(); } },
    { Qt::SHIFT | Qt::Key_Backspace, Effect::Changes, [](Private &edit) { edit.eraseBack(); } },
    { Qt::Key_Delete, Effect::Changes, [](Private &edit) { edit.eraseForward(); } },
    { Qt::CTRL | Qt::Key_Backspace, Effect::Changes, [](Private &edit) { edit.eraseWordBack(); } },
    { Qt::CTRL | Qt::Key_Delete, Effect::Changes, [](Private &edit) { edit.eraseWordForward(); } },
    { Qt::Key_Insert, Effect::Changes, [](Private &edit) { edit.q->setOverwriteMode(!edit.overwrite); } },
    { Qt::SHIFT | Qt::Key_Insert, Effect::Changes, [](Private &edit) { edit.q->paste(); } },
    { Qt::CTRL | Qt::Key_Insert, Effect::Looks, [](Private &edit) { edit.q->copy(); } },
    { Qt::SHIFT | Qt::Key_Delete, Effect::Changes, [](Private &edit) { edit.q->cut(); } },
    { Qt::Key_Paste, Effect::Changes, [](Private &edit) { edit.q->paste(); } },
    { Qt::Key_Copy, Effect::Looks, [](Private &edit) { edit.q->copy(); } },
    { Qt::Key_Cut, Effect::Changes, [](Private &edit) { edit.q->cut(); } },
    { Qt::Key_Undo, Effect::Changes, [](Private &edit) { edit.q->undo(); } },
    { Qt::Key_Redo, Effect::Changes, [](Private &edit) { edit.q->redo(); } },
    { Qt::CTRL | Qt::Key_Y, Effect::Changes, [](Private &edit) { edit.q->redo(); } },
    { Qt::CTRL | Qt::SHIFT | Qt::Key_Z, Effect::Changes, [](Private &edit) { edit.q->redo(); } },
    { Qt::CTRL | Qt::Key_Up, Effect::Looks, [](Private &edit) { edit.setTop(edit.top - 1); } },
    { Qt::CTRL | Qt::Key_Down, Effect::Looks, [](Private &edit) { edit.setTop(edit.top + 1); } },
    { Qt::Key_Menu, Effect::Looks, [](Private &edit) { edit.showContextMenuAtCursor(); } },
    { Qt::SHIFT | Qt::Key_F10, Effect::Looks, [](Private &edit) { edit.showContextMenuAtCursor(); } },
};

const QMultiLineEdit::Private::Command *QMultiLineEdit::Private::Command::of(
    QKeyCombination keys, bool readOnly)
{
    const auto found = std::ranges::find(table, keys, &Command::keys);
    const bool applies = found != std::end(table) && !(readOnly && found->effect == Effect::Changes);
    return applies ? found : nullptr;
}

bool QMultiLineEdit::Private::handles(const QKeyEvent &event) const
{
    const QKeyCombination keys = keysOf(event);
    const QKeyCombination unshifted = (keys.keyboardModifiers() & ~Qt::ShiftModifier) | keys.key();
    return Command::of(keys, readOnly) || moveFor(unshifted) || (!readOnly && bringsText(event));
}

bool QMultiLineEdit::Private::handleKey(const QKeyEvent &event)
{
    const QKeyCombination keys = keysOf(event);
    if (const Command *const command = Command::of(keys, readOnly)) {
        command->run(*this);
        return true;
    }
    const Qt::KeyboardModifiers modifiers = keys.keyboardModifiers();
    const bool marks = modifiers.testFlag(Qt::ShiftModifier);
    if (const MoveKey *const row = moveFor((modifiers & ~Qt::ShiftModifier) | keys.key())) {
        moveBy(row->move, marks ? Marking::Extend : Marking::Drop);
        return true;
    }
    if (readOnly || !bringsText(event))
        return false;
    typeText(typedText(event.text()));
    return true;
}

void QMultiLineEdit::keyPressEvent(QKeyEvent *event)
{
    const bool endsComposing = isComposing() && keysOf(*event).key() == Qt::Key_Return;
    if (endsComposing)
        commitPreedit();
    event->setAccepted(endsComposing || d->handleKey(*event));
}

/// Tab and Backtab are the editor's, or they are keys of the window.
bool QMultiLineEdit::focusNextPrevChild(bool next)
{
    Q_UNUSED(next)
    return false;
}
