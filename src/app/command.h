#pragma once

#include <cstddef>
#include <span>

class frmMain;

using CommandSlot = void (frmMain::*)();

/// The menus whose items are commands; Language is a submenu of View.
enum class MenuId { File, Edit, View, Language };
constexpr std::size_t menuCount = 4;

/// One item of a menu with everything about it.
struct Command { // NOLINT(clang-analyzer-optin.performance.Padding): rows read in this order
    int id; ///< from 1, in the menu's order
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
    RecentSubmenu = 4,
    LanguageSubmenu = 8,
};

/// One button of the tool bar: a menu's command under a label that is never translated.
struct ToolButton {
    MenuId menu;
    int id;
    const char *label;
};

std::span<const Command> commandsOf(MenuId menu);
std::span<const ToolButton> toolButtons();
