#include "app/command.h"

#include "app/frmmain.h"

namespace {

constexpr Command fileMenu[] = {
    { 1, QT_TRANSLATE_NOOP("frmMain", "&New"), "corvex/menu/new", nullptr, &frmMain::slotCmdFileNew },
    { 2, QT_TRANSLATE_NOOP("frmMain", "&Open  (Fn+O)"), "corvex/menu/folderopen", nullptr,
        &frmMain::slotCmdFileOpen },
    { 3, QT_TRANSLATE_NOOP("frmMain", "&Reload"), "corvex/menu/reload", nullptr, &frmMain::slotCmdFileReload,
        SeparatorAfter },
    { 4, QT_TRANSLATE_NOOP("frmMain", "&Properties"), "corvex/menu/property", nullptr,
        &frmMain::slotCmdFileProp, SeparatorAfter },
    { 5, QT_TRANSLATE_NOOP("frmMain", "&Save  (Fn+S)"), "corvex/menu/save", nullptr,
        qOverload<>(&frmMain::slotCmdFileSave) },
    { 6, QT_TRANSLATE_NOOP("frmMain", "Save &As"), "corvex/menu/rename", nullptr,
        qOverload<>(&frmMain::slotCmdFileSaveAs) },
    { 7, QT_TRANSLATE_NOOP("frmMain", "&Close  (Cancel)"), nullptr, nullptr, &frmMain::slotCmdFileCloseTab,
        SeparatorAfter },
    { 8, QT_TRANSLATE_NOOP("frmMain", "Save A&ll"), "corvex/menu/save", nullptr,
        &frmMain::slotCmdFileSaveAll },
    { 9, QT_TRANSLATE_NOOP("frmMain", "Quit &with Save"), "corvex/menu/close", nullptr,
        &frmMain::slotCmdFileQuitSave },
    { 10, QT_TRANSLATE_NOOP("frmMain", "&Quit  (Fn+Q)"), "corvex/menu/close", nullptr,
        &frmMain::slotCmdFileQuitNoSave, SeparatorAfter },
    { 11, QT_TRANSLATE_NOOP("frmMain", "R&ecent Files"), "corvex/menu/recent", nullptr, nullptr,
        RecentSubmenu },
};

constexpr Command editMenu[] = {
    { 1, QT_TRANSLATE_NOOP("frmMain", "&Undo  (Fn+Z)"), "corvex/menu/undo", "corvex/menu/undo_d",
        &frmMain::slotCmdEditUndo, DisabledAtStart },
    { 2, QT_TRANSLATE_NOOP("frmMain", "&Redo"), "corvex/menu/redo", "corvex/menu/redo_d",
        &frmMain::slotCmdEditRedo, DisabledAtStart | SeparatorAfter },
    { 3, QT_TRANSLATE_NOOP("frmMain", "Cu&t  (Fn+X)"), "corvex/menu/cut", "corvex/menu/cut_d",
        &frmMain::slotCmdEditCut, DisabledAtStart },
    { 4, QT_TRANSLATE_NOOP("frmMain", "&Copy  (Fn+C)"), "corvex/menu/copy", "corvex/menu/copy_d",
        &frmMain::slotCmdEditCopy, DisabledAtStart },
    { 5, QT_TRANSLATE_NOOP("frmMain", "&Paste  (Fn+V)"), "corvex/menu/past", nullptr,
        &frmMain::slotCmdEditPast, SeparatorAfter },
    { 6, QT_TRANSLATE_NOOP("frmMain", "Select &All  (Fn+A)"), "corvex/menu/multisel2", nullptr,
        &frmMain::slotCmdEditSelAll },
    { 7, QT_TRANSLATE_NOOP("frmMain", "&Date and Time"), nullptr, nullptr, &frmMain::slotCmdEditDateTime,
        SeparatorAfter },
    { 8, QT_TRANSLATE_NOOP("frmMain", "&Options..."), nullptr, nullptr, &frmMain::slotCmdEditOption },
};

constexpr Command viewMenu[] = {
    { 1, QT_TRANSLATE_NOOP("frmMain", "&Prev Window"), nullptr, nullptr, &frmMain::slotCmdViewWinPrev },
    { 2, QT_TRANSLATE_NOOP("frmMain", "&Next Window"), nullptr, nullptr, &frmMain::slotCmdViewWinNext,
        SeparatorAfter },
    { 3, QT_TRANSLATE_NOOP("frmMain", "&Search  (Fn+N)"), "corvex/menu/search", nullptr,
        &frmMain::slotCmdViewSearch },
    { 4, QT_TRANSLATE_NOOP("frmMain", "Search &Before  (Fn+1)"), "corvex/menu/srchbefo", nullptr,
        &frmMain::slotCmdViewSrchBefo },
    { 5, QT_TRANSLATE_NOOP("frmMain", "Search &Next  (Fn+2)"), "corvex/menu/srchnext", nullptr,
        &frmMain::slotCmdViewSrchNext },
    { 6, QT_TRANSLATE_NOOP("frmMain", "&Replace  (Fn+M)"), "corvex/menu/replace", nullptr,
        &frmMain::slotCmdViewReplace, SeparatorAfter },
    { 7, QT_TRANSLATE_NOOP("frmMain", "Line &Jump"), nullptr, nullptr, &frmMain::slotCmdViewGyoJump },
    { 8, QT_TRANSLATE_NOOP("frmMain", "&Last Edited Pos  (Fn+5)"), nullptr, nullptr,
        &frmMain::slotCmdViewLastEdit, SeparatorAfter },
    { 9, QT_TRANSLATE_NOOP("frmMain", "&Full Screen"), "corvex/menu/fullscreen", nullptr,
        &frmMain::slotCmdViewFull, SeparatorAfter },
    { 10, QT_TRANSLATE_NOOP("frmMain", "&Language"), nullptr, nullptr, nullptr,
        SeparatorAfter | LanguageSubmenu },
    { 11, QT_TRANSLATE_NOOP("frmMain", "&Help"), "corvex/menu/help", nullptr, &frmMain::slotCmdViewHelp,
        DisabledAtStart },
    { 12, QT_TRANSLATE_NOOP("frmMain", "&About"), "corvex/menu/about", nullptr, &frmMain::slotCmdViewAbout },
};

constexpr Command languageMenu[] = {
    { 1, QT_TRANSLATE_NOOP("frmMain", "&Japanese"), nullptr, nullptr, &frmMain::slotCmdViewLangJa },
    { 2, QT_TRANSLATE_NOOP("frmMain", "&English"), nullptr, nullptr, &frmMain::slotCmdViewLangEn },
    { 3, QT_TRANSLATE_NOOP("frmMain", "&French"), nullptr, nullptr, &frmMain::slotCmdViewLangFr },
};

constexpr ToolButton toolBarButtons[] = {
    { MenuId::File, 1, "New" },
    { MenuId::File, 2, "Open" },
    { MenuId::File, 5, "Save" },
    { MenuId::Edit, 1, "Undo" },
    { MenuId::Edit, 3, "Cut" },
    { MenuId::Edit, 4, "Copy" },
    { MenuId::Edit, 5, "Paste" },
    { MenuId::View, 9, "Full Screen" },
    { MenuId::View, 3, "Search" },
    { MenuId::View, 5, "Search Next" },
};

} // namespace

std::span<const Command> commandsOf(MenuId menu)
{
    switch (menu) {
    case MenuId::File:
        return fileMenu;
    case MenuId::Edit:
        return editMenu;
    case MenuId::View:
        return viewMenu;
    case MenuId::Language:
        return languageMenu;
    }
    Q_UNREACHABLE();
}

std::span<const ToolButton> toolButtons()
{
    return toolBarButtons;
}
