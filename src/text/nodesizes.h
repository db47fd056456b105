#pragma once

#include <QtGlobal>

/// How large the nodes of a text's tree may become. The usual sizes are the quick ones; tests take tiny
/// nodes, to have deep trees of short texts.
struct NodeSizes {
    int leafUnits = 4096; ///< UTF-16 units in a leaf: 4..16384
    int children = 32; ///< of an inner node: 4..32
    /// The fewest of a leaf that has neighbours, and of an inner node that is no root.
    int fewestUnits() const { return qMax(1, leafUnits / 4); }
    int fewestChildren() const { return children / 2; }
    friend bool operator==(const NodeSizes &, const NodeSizes &) = default;
};
