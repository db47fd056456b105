#pragma once

#include <QFont>

/// "lcfont", the family that texts are shown in unless the user chose another: an installed fixed-pitch
/// Japanese font, whose half-width characters are half as wide as its full-width ones.

/// Makes the family known to the toolkit, so that every QFont("lcfont") resolves to the first installed of
/// our candidates, or to the system's fixed-pitch font where none is. Costs nothing before a font is used.
void registerLcFont();

/// "lcfont" at a size that can be read: like a bitmap font it has a smallest size, 8 pixels, and small steps
/// up to 10, from which on it is as large as asked for. Row numbers of four digits fit into their margins so.
QFont lcFont(int pointSize);
