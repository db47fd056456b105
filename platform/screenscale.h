#pragma once

#include <QByteArray>

#include <optional>

/// Density in dots per inch that the text of an X server's resource database asks for ("Xft.dpi:\t120");
/// nothing where it asks for none or for nonsense.
std::optional<double> densityFromResources(const QByteArray &resources);

/// What one platform pixel, 1/72 inch, is to be multiplied by on the screen that the environment leads to, on
/// top of what the windowing system itself scales by. 1 for the platforms that have no screen.
/// Cost: a connection to the X server and one question to it, or nothing.
double platformPixelScale();
