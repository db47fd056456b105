#pragma once

#include <QSize>

/// Whether the environment names a display of the large class, in QWS_DISPLAY.
bool isVgaDisplay();

/// Platform pixels of the largest dialogs of the display's class in any language, without their frames.
/// Message boxes make themselves as small as the screen.
QSize largestDialog();
