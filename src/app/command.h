#pragma once

#include <cstddef>
#include <span>

class frmMain;

using CommandSlot = void (frmMain::*)();

/// The menus whose items are commands; Language is a submenu of View.
enum class MenuId { File, Edit, View, Language };
constexpr std::size_t menuCount = 4;

// The items of each menu: their ids, from 1, in the menu's order.
enum class FileCommand {
    New = 1,
    Open = 2,
    Reload = 3,
    Properties = 4,
    Save = 5,
    SaveAs = 6,
    Close = 7,
    SaveAll = 8,
    QuitWithSave = 9,
    Quit = 10,
    RecentFiles = 11,
};
enum class EditCommand {
    Undo = 1,
    Redo = 2,
    Cut = 3,
    Copy = 4,
    Paste = 5,
    SelectAll = 6,
    DateAndTime = 7,
    Options = 8,
};
enum class ViewCommand {
    PrevWindow = 1,
    NextWindow = 2,
    Search = 3,
    SearchBefore = 4,
    SearchNext = 5,
    Replace = 6,
    LineJump = 7,
    LastEditedPos = 8,
    FullScreen = 9,
    Language = 10,
    Help = 11,
    About = 12,
};
enum class LanguageCommand {
    Japanese = 1,
    English = 2,
    French = 3,
};

/// One item of any menu.
struct CommandId {
    constexpr CommandId(FileCommand command)
        : menu(MenuId::File)
        , id(int(command))
    {
    }
    constexpr CommandId(EditCommand command)
        : menu(MenuId::Edit)
        , id(int(command))
    {
    }
    constexpr CommandId(ViewCommand command)
        : menu(MenuId::View)
        , id(int(command))
    {
    }
    constexpr CommandId(LanguageCommand command)
        : menu(MenuId::Language)
        , id(int(command))
    {
    }
    bool operator==(const CommandId &) const = default;

    MenuId menu;
    int id;
};

/// One item of a menu with everything about it.
struct Command { // NOLINT(clang-analyzer-optin.performance.Padding): rows read in this order
    CommandId id;
    const char *text; ///< English; translated in the context "frmMain"
    const char *icon; ///< name of the picture; null: none
    const char *disabledIcon; ///< picture of the disabled state; null: derived from `icon`
    CommandSlot slot; ///< null: a submenu opens
    unsigned flags = 0;
};

/// Flags of a command.
enum : unsigned {
    SeparatorAfter = 1,
    DisabledAtStart = 2,
};

/// One button of the tool bar: a menu's command under a label that is never translated.
struct ToolButton {
    CommandId command;
    const char *label;
};

/// In the order of the menu.
std::span<const Command> commandsOf(MenuId menu);
std::span<const ToolButton> toolButtons();
