#include "app/keystext.h"

#include "app/frmmain.h"
#include "app/keymap.h"
#include "settings/moresettings.h"

#include <QCoreApplication>
#include <QKeySequence>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace {

/// What no menu names.
struct NamedSlot {
    CommandSlot slot;
    const char *name; ///< translated in the context "frmMain"
};
constexpr NamedSlot slotsWithoutItem[] = {
    { &frmMain::slotEtcNotice, QT_TRANSLATE_NOOP("frmMain", "To the notice above the text, and back") },
    { &frmMain::slotEtcTabMenu, QT_TRANSLATE_NOOP("frmMain", "Menu of the tab") },
    { &frmMain::slotEtcTextLarger, QT_TRANSLATE_NOOP("frmMain", "Larger text") },
    { &frmMain::slotEtcTextSmaller, QT_TRANSLATE_NOOP("frmMain", "Smaller text") },
    { &frmMain::slotEtcTextAsUsual, QT_TRANSLATE_NOOP("frmMain", "Text as usual") },
    { &frmMain::slotEtcMenus, QT_TRANSLATE_NOOP("frmMain", "Menus") },
    { &frmMain::slotEtcKeys, QT_TRANSLATE_NOOP("frmMain", "Guide") },
};

/// Keys that the text has for itself.
struct NamedKeys {
    QKeyCombination keys;
    const char *name;
};
constexpr NamedKeys keysOfText[] = {
    { Qt::Key_Escape, QT_TRANSLATE_NOOP("frmMain", "Close, or leave full screen") },
    { Qt::CTRL | Qt::Key_Y, QT_TRANSLATE_NOOP("frmMain", "&Redo") },
    { Qt::Key_Tab, QT_TRANSLATE_NOOP("frmMain", "Indent the selected lines") },
    { Qt::SHIFT | Qt::Key_Tab, QT_TRANSLATE_NOOP("frmMain", "Unindent the selected lines") },
    { Qt::Key_Insert, QT_TRANSLATE_NOOP("frmMain", "Overwrite, or insert") },
};

QString keyName(QKeyCombination keys)
{
    return QKeySequence(keys).toString(QKeySequence::NativeText);
}

/// A menu's text without the letter to press and the handheld's key.
QString plainLabel(const char *text)
{
    static const QRegularExpression beside(u"\\(&.\\)|&| *\\([^()]*\\)$|\\.\\.\\.$"_s);
    return QCoreApplication::translate("frmMain", text).remove(beside).trimmed();
}

/// Null for a slot that is no command's.
const char *itemOf(CommandSlot slot)
{
    for (std::size_t menu = 0; menu < menuCount; ++menu) {
        for (const Command &command : commandsOf(MenuId(menu))) {
            if (command.slot == slot)
                return command.text;
        }
    }
    return nullptr;
}

QString labelOf(CommandSlot slot)
{
    const char *text = itemOf(slot);
    for (const NamedSlot &named : slotsWithoutItem) {
        if (named.slot == slot)
            text = named.name;
    }
    Q_ASSERT(text);
    return plainLabel(text);
}

QString keysOf(CommandSlot slot)
{
    QStringList names;
    for (const KeyBinding &binding : keyBindings()) {
        if (binding.slot == slot)
            names << keyName(QKeyCombination(binding.modifiers, Qt::Key(binding.key)));
    }
    return names.join(u", "_s);
}

QString rowOf(const QString &keys, const QString &label)
{
    return u"| %1 | %2 |\n"_s.arg(keys, label);
}

} // namespace

QString keysTable()
{
    QString text = rowOf(frmMain::tr("Key"), frmMain::tr("What it does")) + u"| --- | --- |\n"_s;
    QList<CommandSlot> told;
    for (const KeyBinding &binding : keyBindings()) {
        if (told.contains(binding.slot))
            continue;
        told << binding.slot;
        text += rowOf(keysOf(binding.slot), labelOf(binding.slot));
    }
    for (const NamedKeys &named : keysOfText)
        text += rowOf(keyName(named.keys), plainLabel(named.name));
    if (moreSettings().WheelTextSize != 0)
        text += rowOf(frmMain::tr("Ctrl+Wheel"), frmMain::tr("Size of the text"));
    return text;
}
