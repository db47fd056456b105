#pragma once

#include "app/command.h"

#include <QList>

class QKeyEvent;

/// One row of the window's key map.
struct KeyBinding {
    int key; ///< a Qt::Key
    Qt::KeyboardModifiers modifiers; ///< to be held …
    Qt::KeyboardModifiers mask; ///< … of these; the others do not matter
    int deviceKey; ///< code that a handheld's Fn combination sends in its place; 0: none
    CommandSlot slot;
};

/// Without the keys of other programs where they are switched off. Escape is no row of it: what that key does
/// depends on the window.
std::span<const KeyBinding> keyBindings();

/// The commands of every row that a key press matches, in the rows' order. The keypad's keys count as the
/// others do; Shift+Tab is Tab with Shift, however it arrives. A device key code counts only without a text:
/// the codes are characters (quotation marks, dashes) that other keyboards type. Where digits need Shift,
/// Ctrl with a digit's key stands for Ctrl with the digit, unless the key has a row of its own.
QList<CommandSlot> commandsForKey(const QKeyEvent &press);
