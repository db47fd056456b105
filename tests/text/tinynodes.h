#pragma once

#include "text/nodesizes.h"

/// Leaves of so many units; where that is few, nodes of few children too: deep trees of short texts.
inline NodeSizes nodesOf(int leafUnits)
{
    NodeSizes sizes;
    sizes.leafUnits = leafUnits;
    if (leafUnits < 64)
        sizes.children = 4;
    return sizes;
}
