#pragma once

#include <QSize>

/// What the toolkit is told for all of a program's life. What it reads from the environment when the
/// application object is made is to be set before.

/// One platform pixel is 1/72 inch: fonts are 72 dots per inch, and the whole interface is scaled by the
/// screen's density / 72, or by less where a dialog of `largestDialog` platform pixels would not fit the
/// screen; unless the toolkit's own variables (QT_SCALE_FACTOR, QT_SCREEN_SCALE_FACTORS,
/// QT_ENABLE_HIGHDPI_SCALING, QT_FONT_DPI) say otherwise. Cost: that of platformPixelScale().
void prepareScale(const QSize &largestDialog = {});

/// The toolkit waits for events by itself and not through GLib, which nothing here needs and which takes
/// twice as long to see that there are none; unless QT_NO_GLIB is set already, be it to nothing.
void prepareEventLoop();

/// Starts the threads in which the toolkit paints large areas, which stay: it would wait for ever for one
/// that the system refuses when it is needed.
void startPaintingThreads();
