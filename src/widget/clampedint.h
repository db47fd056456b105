#pragma once

#include "text/units.h"

#include <limits>

/// A row, column or offset for those who can only take an int, the described interface and the toolkit: what
/// is larger becomes the largest one.
inline int clampedInt(qint64 value)
{
    return int(qMin<qint64>(value, std::numeric_limits<int>::max()));
}
template <typename Unit> int clampedInt(Position<Unit> place)
{
    return clampedInt(place.value());
}
