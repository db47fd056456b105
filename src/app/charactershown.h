#pragma once

#include <QString>

/// A character of a text for people to read within a line: itself, or its number where it cannot be seen by
/// itself; of the escape of a byte that byte.
QString shownCharacter(char32_t character);
