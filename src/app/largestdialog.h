#pragma once

#include <QSize>

/// Platform pixels of the largest dialogs of the screen's class in any language, without their frames.
/// Message boxes make themselves as small as the screen.
QSize largestDialog();
