#include "app/keymap.h"

#include "app/frmmain.h"
#include "platform/digitkey.h"
#include "settings/moresettings.h"

#include <QKeyEvent>

#include <algorithm>

namespace {

constexpr Qt::KeyboardModifiers control = Qt::ControlModifier;
constexpr Qt::KeyboardModifiers controlShift = Qt::ControlModifier | Qt::ShiftModifier;
constexpr Qt::KeyboardModifiers all = Qt::KeyboardModifierMask;
constexpr Qt::KeyboardModifiers allButShift = all & ~Qt::KeyboardModifiers(Qt::ShiftModifier);

/// The rows of what fingers know from other programs come behind the handheld's.
constexpr Qt::Key firstKnown = Qt::Key_T;

constexpr KeyBinding keyMap[] = {
    { Qt::Key_N, control, all, 0x2019, &frmMain::slotCmdViewSearch },
    { Qt::Key_M, control, all, 0x201A, &frmMain::slotCmdViewReplace },
    { Qt::Key_1, control, all, 0x200F, &frmMain::slotCmdViewSrchBefo },
    { Qt::Key_2, control, all, 0x2010, &frmMain::slotCmdViewSrchNext },
    { Qt::Key_5, control, all, 0x201B, &frmMain::slotCmdViewLastEdit },
    { Qt::Key_Tab, controlShift, controlShift, 0, &frmMain::slotCmdViewWinPrev },
    { Qt::Key_Tab, control, controlShift, 0, &frmMain::slotCmdViewWinNext },
    { Qt::Key_O, control, all, 0x2015, &frmMain::slotCmdFileOpen },
    { Qt::Key_S, control, all, 0x2018, qOverload<>(&frmMain::slotCmdFileSave) },
    { Qt::Key_Q, control, all, 0x2014, &frmMain::slotCmdFileQuitNoSave },
    { Qt::Key_Z, control, all, 0, &frmMain::slotCmdEditUndo },
    { Qt::Key_X, control, all, 0, &frmMain::slotCmdEditCut },
    { Qt::Key_C, control, all, 0, &frmMain::slotCmdEditCopy },
    { Qt::Key_V, control, all, 0, &frmMain::slotCmdEditPast },
    { Qt::Key_A, control, all, 0x2017, &frmMain::slotCmdEditSelAll },
    { Qt::Key_F6, Qt::NoModifier, all, 0, &frmMain::slotEtcNotice },
    { Qt::Key_F10, control, all, 0, &frmMain::slotEtcTabMenu },
    // Some window managers go to another desktop by the one above.
    { Qt::Key_F10, controlShift, all, 0, &frmMain::slotEtcTabMenu },
    { Qt::Key_F1, Qt::NoModifier, all, 0, &frmMain::slotEtcKeys },

    // From here on what can be switched off.
    { Qt::Key_T, control, all, 0, &frmMain::slotCmdFileNew },
    { Qt::Key_S, controlShift, all, 0, qOverload<>(&frmMain::slotCmdFileSaveAs) },
    { Qt::Key_W, control, all, 0, &frmMain::slotCmdFileCloseTab },
    { Qt::Key_F, control, all, 0, &frmMain::slotCmdViewSearch },
    { Qt::Key_H, control, all, 0, &frmMain::slotCmdViewReplace },
    { Qt::Key_F3, Qt::ShiftModifier, all, 0, &frmMain::slotCmdViewSrchBefo },
    { Qt::Key_F3, Qt::NoModifier, all, 0, &frmMain::slotCmdViewSrchNext },
    { Qt::Key_G, control, all, 0, &frmMain::slotCmdViewGyoJump },
    { Qt::Key_PageUp, control, all, 0, &frmMain::slotCmdViewWinPrev },
    { Qt::Key_PageDown, control, all, 0, &frmMain::slotCmdViewWinNext },
    // "+" is behind Shift on many keyboards, with "=" before it.
    { Qt::Key_Plus, control, allButShift, 0, &frmMain::slotEtcTextLarger },
    { Qt::Key_Equal, control, all, 0, &frmMain::slotEtcTextLarger },
    { Qt::Key_Minus, control, all, 0, &frmMain::slotEtcTextSmaller },
    { Qt::Key_0, control, all, 0, &frmMain::slotEtcTextAsUsual },
    { Qt::Key_F11, Qt::NoModifier, all, 0, &frmMain::slotCmdViewFull },
    { Qt::Key_F10, Qt::NoModifier, all, 0, &frmMain::slotEtcMenus },
};

struct Key {
    int code;
    Qt::KeyboardModifiers modifiers;
};

Key keyOf(const QKeyEvent &press)
{
    const Qt::KeyboardModifiers modifiers = press.modifiers() & ~Qt::KeypadModifier;
    if (press.key() == Qt::Key_Backtab)
        return { Qt::Key_Tab, modifiers | Qt::ShiftModifier };
    return { press.key(), modifiers };
}

/// As on French keyboards; where a digit needs no Shift, Shift makes another character of it. A press that
/// comes from no place on a keyboard is the one that it says.
bool isDigitByShift(const QKeyEvent &press)
{
    const bool isDigit = press.key() >= Qt::Key_0 && press.key() <= Qt::Key_9;
    return isDigit && press.modifiers() == controlShift && press.nativeScanCode() != 0;
}

bool matches(const KeyBinding &binding, const Key &key, bool hasText)
{
    if (key.code == binding.key && (key.modifiers & binding.mask) == binding.modifiers)
        return true;
    return binding.deviceKey != 0 && key.code == binding.deviceKey && !hasText;
}

QList<CommandSlot> commandsFor(const Key &key, bool hasText)
{
    QList<CommandSlot> commands;
    for (const KeyBinding &binding : keyBindings()) {
        if (matches(binding, key, hasText))
            commands.append(binding.slot);
    }
    return commands;
}

} // namespace

std::span<const KeyBinding> keyBindings()
{
    const std::span<const KeyBinding> rows = keyMap;
    const auto known = std::ranges::find(rows, firstKnown, &KeyBinding::key);
    return moreSettings().KnownKeys != 0 ? rows : std::span(rows.begin(), known);
}

QList<CommandSlot> commandsForKey(const QKeyEvent &press)
{
    if (isDigitByShift(press))
        return commandsFor({ press.key(), control }, true);
    const Key key = keyOf(press);
    QList<CommandSlot> commands = commandsFor(key, !press.text().isEmpty());
    // "+" is before the 1 of a Czech keyboard.
    if ((!commands.isEmpty() && key.code != Qt::Key_Plus) || key.modifiers != control)
        return commands;
    const std::optional<int> digit = digitBehindShift(press);
    return digit ? commandsFor({ Qt::Key_0 + *digit, control }, true) : commands;
}
