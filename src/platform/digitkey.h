#pragma once

#include <optional>

class QKeyEvent;

/// The digit, 0 to 9, that stands on the pressed key beside another character and needs Shift, as on French
/// keyboards; nothing where the press gives a digit by itself, and on keyboards whose digits need no Shift.
/// An X server is asked what the key gives with Shift; elsewhere the key's place in the row of digits counts.
/// Cost: a question to the X server for a key that is no digit.
std::optional<int> digitBehindShift(const QKeyEvent &press);
