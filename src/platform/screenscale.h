#pragma once

#include <QByteArray>
#include <QSize>

#include <optional>

/// Density in dots per inch that the text of an X server's resource database asks for ("Xft.dpi:\t120");
/// nothing where it asks for none or for nonsense.
std::optional<double> densityFromResources(const QByteArray &resources);

/// `scale`, or what lets a window of `window` platform pixels and its title bar fit a screen of `screen`
/// device pixels where that is less. An empty size stands for one that is not known.
double scaleThatFits(double scale, const QSize &screen, const QSize &window);

/// What one platform pixel, 1/72 inch, is to be multiplied by on the screen that the environment leads to, on
/// top of what the windowing system itself scales by: so that it is 1/72 inch, or less where a window of
/// `largestWindow` platform pixels would not fit the screen. Never below 1, which is also that of the
/// platforms that have no screen.
/// Cost: a connection to the X server and one question to it, that of waylandScreenSize(), a question to
/// the frame buffer, or nothing.
double platformPixelScale(const QSize &largestWindow = {});
