#pragma once

#include <QtGlobal>

/// Device pixels to a pixel, on the screens that there are.
inline constexpr qreal scales[] = { 1, 1.25, 1.33, 1.5, 2 };
