#include "app/command.h"

#include "app/frmmain.h"

namespace {

constexpr Command fileMenu[] = {
    { FileCommand::New, QT_TRANSLATE_NOOP("frmMain", "&New"), "corvex/menu/new", nullptr,
        &frmMain::slotCmdFileNew },
    { FileCommand::Open, QT_TRANSLATE_NOOP("frmMain", "&Open  (Fn+O)"), "corvex/menu/folderopen", nullptr,
        &frmMain::slotCmdFileOpen },
    { FileCommand::Reload, QT_TRANSLATE_NOOP("frmMain", "&Reload"), "corvex/menu/reload", nullptr,
        &frmMain::slotCmdFileReload, SeparatorAfter },
    { FileCommand::Properties, QT_TRANSLATE_NOOP("frmMain", "&Properties"), "corvex/menu/property", nullptr,
        &frmMain::slotCmdFileProp, SeparatorAfter },
    { FileCommand::Save, QT_TRANSLATE_NOOP("frmMain", "&Save  (Fn+S)"), "corvex/menu/save", nullptr,
        qOverload<>(&frmMain::slotCmdFileSave) },
    { FileCommand::SaveAs, QT_TRANSLATE_NOOP("frmMain", "Save &As"), "corvex/menu/rename", nullptr,
        qOverload<>(&frmMain::slotCmdFileSaveAs) },
    { FileCommand::Close, QT_TRANSLATE_NOOP("frmMain", "&Close  (Cancel)"), nullptr, nullptr,
        &frmMain::slotCmdFileCloseTab, SeparatorAfter },
    { FileCommand::SaveAll, QT_TRANSLATE_NOOP("frmMain", "Save A&ll"), "corvex/menu/save", nullptr,
        &frmMain::slotCmdFileSaveAll },
    { FileCommand::QuitWithSave, QT_TRANSLATE_NOOP("frmMain", "Quit &with Save"), "corvex/menu/close",
        nullptr, &frmMain::slotCmdFileQuitSave },
    { FileCommand::Quit, QT_TRANSLATE_NOOP("frmMain", "&Quit  (Fn+Q)"), "corvex/menu/close", nullptr,
        &frmMain::slotCmdFileQuitNoSave, SeparatorAfter },
    { FileCommand::RecentFiles, QT_TRANSLATE_NOOP("frmMain", "R&ecent Files"), "corvex/menu/recent", nullptr,
        nullptr },
};

constexpr Command editMenu[] = {
    { EditCommand::Undo, QT_TRANSLATE_NOOP("frmMain", "&Undo  (Fn+Z)"), "corvex/menu/undo",
        "corvex/menu/undo_d", &frmMain::slotCmdEditUndo, DisabledAtStart },
    { EditCommand::Redo, QT_TRANSLATE_NOOP("frmMain", "&Redo"), "corvex/menu/redo", "corvex/menu/redo_d",
        &frmMain::slotCmdEditRedo, DisabledAtStart | SeparatorAfter },
    { EditCommand::Cut, QT_TRANSLATE_NOOP("frmMain", "Cu&t  (Fn+X)"), "corvex/menu/cut", "corvex/menu/cut_d",
        &frmMain::slotCmdEditCut, DisabledAtStart },
    { EditCommand::Copy, QT_TRANSLATE_NOOP("frmMain", "&Copy  (Fn+C)"), "corvex/menu/copy",
        "corvex/menu/copy_d", &frmMain::slotCmdEditCopy, DisabledAtStart },
    { EditCommand::Paste, QT_TRANSLATE_NOOP("frmMain", "&Paste  (Fn+V)"), "corvex/menu/past", nullptr,
        &frmMain::slotCmdEditPast, SeparatorAfter },
    { EditCommand::SelectAll, QT_TRANSLATE_NOOP("frmMain", "Select &All  (Fn+A)"), "corvex/menu/multisel2",
        nullptr, &frmMain::slotCmdEditSelAll },
    { EditCommand::DateAndTime, QT_TRANSLATE_NOOP("frmMain", "&Date and Time"), nullptr, nullptr,
        &frmMain::slotCmdEditDateTime, SeparatorAfter },
    { EditCommand::Options, QT_TRANSLATE_NOOP("frmMain", "&Options..."), nullptr, nullptr,
        &frmMain::slotCmdEditOption },
};

constexpr Command viewMenu[] = {
    { ViewCommand::PrevWindow, QT_TRANSLATE_NOOP("frmMain", "&Prev Window"), nullptr, nullptr,
        &frmMain::slotCmdViewWinPrev },
    { ViewCommand::NextWindow, QT_TRANSLATE_NOOP("frmMain", "&Next Window"), nullptr, nullptr,
        &frmMain::slotCmdViewWinNext, SeparatorAfter },
    { ViewCommand::Search, QT_TRANSLATE_NOOP("frmMain", "&Search  (Fn+N)"), "corvex/menu/search", nullptr,
        &frmMain::slotCmdViewSearch },
    { ViewCommand::SearchBefore, QT_TRANSLATE_NOOP("frmMain", "Search &Before  (Fn+1)"),
        "corvex/menu/srchbefo", nullptr, &frmMain::slotCmdViewSrchBefo },
    { ViewCommand::SearchNext, QT_TRANSLATE_NOOP("frmMain", "Search &Next  (Fn+2)"), "corvex/menu/srchnext",
        nullptr, &frmMain::slotCmdViewSrchNext },
    { ViewCommand::Replace, QT_TRANSLATE_NOOP("frmMain", "&Replace  (Fn+M)"), "corvex/menu/replace", nullptr,
        &frmMain::slotCmdViewReplace, SeparatorAfter },
    { ViewCommand::LineJump, QT_TRANSLATE_NOOP("frmMain", "Line &Jump"), nullptr, nullptr,
        &frmMain::slotCmdViewGyoJump },
    { ViewCommand::LastEditedPos, QT_TRANSLATE_NOOP("frmMain", "&Last Edited Pos  (Fn+5)"), nullptr, nullptr,
        &frmMain::slotCmdViewLastEdit, SeparatorAfter },
    { ViewCommand::FullScreen, QT_TRANSLATE_NOOP("frmMain", "&Full Screen"), "corvex/menu/fullscreen",
        nullptr, &frmMain::slotCmdViewFull, SeparatorAfter },
    { ViewCommand::Language, QT_TRANSLATE_NOOP("frmMain", "&Language"), nullptr, nullptr, nullptr,
        SeparatorAfter },
    { ViewCommand::Help, QT_TRANSLATE_NOOP("frmMain", "&Help"), "corvex/menu/help", nullptr,
        &frmMain::slotCmdViewHelp, DisabledAtStart },
    { ViewCommand::About, QT_TRANSLATE_NOOP("frmMain", "&About"), "corvex/menu/about", nullptr,
        &frmMain::slotCmdViewAbout },
};

constexpr Command languageMenu[] = {
    { LanguageCommand::Japanese, QT_TRANSLATE_NOOP("frmMain", "&Japanese"), nullptr, nullptr,
        &frmMain::slotCmdViewLangJa },
    { LanguageCommand::English, QT_TRANSLATE_NOOP("frmMain", "&English"), nullptr, nullptr,
        &frmMain::slotCmdViewLangEn },
    { LanguageCommand::French, QT_TRANSLATE_NOOP("frmMain", "&French"), nullptr, nullptr,
        &frmMain::slotCmdViewLangFr },
};

constexpr ToolButton toolBarButtons[] = {
    { FileCommand::New, "New" },
    { FileCommand::Open, "Open" },
    { FileCommand::Save, "Save" },
    { EditCommand::Undo, "Undo" },
    { EditCommand::Cut, "Cut" },
    { EditCommand::Copy, "Copy" },
    { EditCommand::Paste, "Paste" },
    { ViewCommand::FullScreen, "Full Screen" },
    { ViewCommand::Search, "Search" },
    { ViewCommand::SearchNext, "Search Next" },
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
