#include "settings/moresettings.h"

#include <QtGlobal>

namespace {

constexpr MoreSwitch switches[] = {
    { "StatusLine", &MoreSettings::StatusLine, QT_TRANSLATE_NOOP("frmMoreOptions", "&Status line"),
        QT_TRANSLATE_NOOP(
            "frmMoreOptions", "Line and column, selection, code, line end and file name below the tabs.") },
    { "OpenSession", &MoreSettings::OpenSession, QT_TRANSLATE_NOOP("frmMoreOptions", "&Open what was open"),
        QT_TRANSLATE_NOOP(
            "frmMoreOptions", "The files that were open at the end are open at the next start.") },
    { "KnownKeys", &MoreSettings::KnownKeys, QT_TRANSLATE_NOOP("frmMoreOptions", "&Keys of other programs"),
        QT_TRANSLATE_NOOP("frmMoreOptions", "Ctrl+F, Ctrl+W, F3 and the like. F1 shows them.") },
    { "TabsByMouse", &MoreSettings::TabsByMouse, QT_TRANSLATE_NOOP("frmMoreOptions", "&Tabs by mouse"),
        QT_TRANSLATE_NOOP(
            "frmMoreOptions", "The middle button closes a tab, dragging moves it, the wheel scrolls them.") },
    { "WheelTextSize", &MoreSettings::WheelTextSize,
        QT_TRANSLATE_NOOP("frmMoreOptions", "Text size by &wheel"),
        QT_TRANSLATE_NOOP(
            "frmMoreOptions", "Ctrl and the wheel change the size of the text of all documents.") },
    { "NoticesOfText", &MoreSettings::NoticesOfText, QT_TRANSLATE_NOOP("frmMoreOptions", "Notices of co&des"),
        QT_TRANSLATE_NOOP(
            "frmMoreOptions", "Characters that cannot be saved, bytes that do not fit the code.") },
    { "NoticesOfDisk", &MoreSettings::NoticesOfDisk, QT_TRANSLATE_NOOP("frmMoreOptions", "Notices of &files"),
        QT_TRANSLATE_NOOP(
            "frmMoreOptions", "Another program has changed the file, or it cannot be written.") },
    { "KeepTexts", &MoreSettings::KeepTexts, QT_TRANSLATE_NOOP("frmMoreOptions", "&Recovery"),
        QT_TRANSLATE_NOOP("frmMoreOptions", "What is not saved comes back after a crash.") },
    { "KeepWindowSize", &MoreSettings::KeepWindowSize,
        QT_TRANSLATE_NOOP("frmMoreOptions", "Size of the w&indow"),
        QT_TRANSLATE_NOOP(
            "frmMoreOptions", "The window has its last size again when it is no longer maximised.") },
};

} // namespace

std::span<const MoreSwitch> moreSwitches()
{
    return switches;
}

MoreSettings &moreSettings()
{
    static MoreSettings settings;
    return settings;
}
