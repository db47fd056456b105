#include "widget/keybindings.h"

#include "text/enteredtext.h"
#include "widget/cursormoves.h"
#include "widget/qmultilineedit.h"
#include "widget/textedits.h"
#include "widget/viewscroller.h"

#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QKeyEvent>

#include <algorithm>

namespace {

using Joining = TextEdits::Joining;

/// Moves; with Shift held as well they select.
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

QKeyCombination withoutShift(QKeyCombination keys)
{
    return (keys.keyboardModifiers() & ~Qt::ShiftModifier) | keys.key();
}

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

void askForMenu(QMultiLineEdit &edit)
{
    QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(), QPoint());
    QCoreApplication::sendEvent(&edit, &event);
}

} // namespace

/// One row of the table of keys that do something else than moving.
struct KeyBindings::Command {
    QKeyCombination keys;
    void (*run)(KeyBindings &);

    static const Command table[];
    static const Command *of(QKeyCombination keys);
};

const KeyBindings::Command KeyBindings::Command::table[] = {
    { Qt::Key_Return, [](KeyBindings &k) { k.m_edits.insert(u"\n", Joining::Never); } },
    { Qt::SHIFT | Qt::Key_Return, [](KeyBindings &k) { k.m_edits.insert(u"\n", Joining::Never); } },
    { Qt::CTRL | Qt::Key_Return, [](KeyBindings &k) { k.m_edits.insert(u"\n", Joining::Never); } },
    { Qt::CTRL | Qt::SHIFT | Qt::Key_Return,
        [](KeyBindings &k) { k.m_edits.insert(u"\n", Joining::Never); } },
    { Qt::Key_Tab, [](KeyBindings &k) { k.m_edits.insert(u"\t", Joining::Typing); } },
    { Qt::SHIFT | Qt::Key_Backtab, [](KeyBindings &) { /* keeps the focus */ } },
    { Qt::SHIFT | Qt::Key_Tab, [](KeyBindings &) { /* keeps the focus */ } },
    { Qt::Key_Backspace, [](KeyBindings &k) { k.m_edits.erase(Move::CharacterBack); } },
    { Qt::SHIFT | Qt::Key_Backspace, [](KeyBindings &k) { k.m_edits.erase(Move::CharacterBack); } },
    { Qt::Key_Delete, [](KeyBindings &k) { k.m_edits.erase(Move::CharacterForward); } },
    { Qt::CTRL | Qt::Key_Backspace, [](KeyBindings &k) { k.m_edits.erase(Move::WordBack); } },
    { Qt::CTRL | Qt::Key_Delete, [](KeyBindings &k) { k.m_edits.erase(Move::WordForward); } },
    { Qt::Key_Insert, [](KeyBindings &k) { k.m_edit.setOverwriteMode(!k.m_edit.isOverwriteMode()); } },
    { Qt::SHIFT | Qt::Key_Insert, [](KeyBindings &k) { k.m_edit.paste(); } },
    { Qt::CTRL | Qt::Key_Insert, [](KeyBindings &k) { k.m_edit.copy(); } },
    { Qt::SHIFT | Qt::Key_Delete, [](KeyBindings &k) { k.m_edit.cut(); } },
    { Qt::Key_Paste, [](KeyBindings &k) { k.m_edit.paste(); } },
    { Qt::Key_Copy, [](KeyBindings &k) { k.m_edit.copy(); } },
    { Qt::Key_Cut, [](KeyBindings &k) { k.m_edit.cut(); } },
    { Qt::Key_Undo, [](KeyBindings &k) { k.m_edit.undo(); } },
    { Qt::Key_Redo, [](KeyBindings &k) { k.m_edit.redo(); } },
    { Qt::CTRL | Qt::Key_Y, [](KeyBindings &k) { k.m_edit.redo(); } },
    { Qt::CTRL | Qt::SHIFT | Qt::Key_Z, [](KeyBindings &k) { k.m_edit.redo(); } },
    { Qt::CTRL | Qt::Key_Up, [](KeyBindings &k) { k.m_scroller.scrollRows(-1); } },
    { Qt::CTRL | Qt::Key_Down, [](KeyBindings &k) { k.m_scroller.scrollRows(1); } },
    { Qt::Key_Menu, [](KeyBindings &k) { askForMenu(k.m_edit); } },
    { Qt::SHIFT | Qt::Key_F10, [](KeyBindings &k) { askForMenu(k.m_edit); } },
};

const KeyBindings::Command *KeyBindings::Command::of(QKeyCombination keys)
{
    const auto found = std::ranges::find(table, keys, &Command::keys);
    return found == std::end(table) ? nullptr : found;
}

KeyBindings::KeyBindings(QMultiLineEdit &edit, ViewScroller &scroller, CursorMoves &moves, TextEdits &edits)
    : m_edit(edit)
    , m_scroller(scroller)
    , m_moves(moves)
    , m_edits(edits)
{
}

bool KeyBindings::handles(const QKeyEvent &event) const
{
    const QKeyCombination keys = keysOf(event);
    return Command::of(keys) || moveFor(withoutShift(keys)) || bringsText(event);
}

bool KeyBindings::handle(const QKeyEvent &event)
{
    const QKeyCombination keys = keysOf(event);
    if (const Command *const command = Command::of(keys)) {
        command->run(*this);
        return true;
    }
    if (const MoveKey *const row = moveFor(withoutShift(keys))) {
        const bool selects = keys.keyboardModifiers().testFlag(Qt::ShiftModifier);
        m_moves.moveBy(row->move, selects ? Selecting::Extend : Selecting::Drop);
        return true;
    }
    if (!bringsText(event))
        return false;
    m_edits.type(typedText(event.text()));
    return true;
}
