#pragma once

#include <QSize>

/// Of the Wayland compositor that the environment names, before the application object is made.

/// Room for a window on whichever of its screens, in the units of windows: device pixels over the screen's
/// own scale, which some compositors tell only rounded up. Empty where nobody answers or has a screen, and
/// where a connection was handed over (WAYLAND_SOCKET), as the toolkit needs it. Cost: a connection and two
/// questions.
QSize waylandScreenSize();

/// Whether it answers. Cost: a connection.
bool hasCompositor();
