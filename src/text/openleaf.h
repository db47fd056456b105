#pragma once

#include "text/texttree.h"

/// The leaf of a tree that is being edited: its text is as it should be, what the nodes above say of it is
/// not yet.
///
/// Edits near one another so cost the text they move and nothing more. Only when somebody asks for more than
/// the text is the leaf measured and everything above it summed up, once for all the edits.
class OpenLeaf {
public:
    /// Replaces within the leaf that holds `offset`, which is open from now on; closes any other. False: it
    /// takes more than that; none is open and nothing was done.
    bool replace(
        TextTree &tree, Offset offset, qint64 removed, QStringView inserted, const TextLayout &layout);
    /// Brings the tree up to date; nothing when no leaf is open.
    void close(TextTree &tree, const TextLayout &layout);

    /// Whether units `from`..`to` of the text lie in the open leaf.
    bool holds(Offset from, Offset to) const
    {
        return m_leaf && m_start <= from && to <= m_start + leaf().size;
    }
    const TextLeaf &leaf() const { return leafOf(*m_leaf); }
    /// Offset of the leaf's first unit.
    Offset start() const { return m_start; }
    /// Units by which the text is longer than the tree says.
    qint64 growth() const { return m_growth; }

private:
    void find(TextTree &tree, Offset offset);
    void own(TextTree &tree);
    // Places are counted in the leaf.
    bool canEdit(qint64 place, qint64 removed, QStringView inserted, const NodeSizes &sizes) const;
    bool edit(qint64 place, qint64 removed, QStringView inserted, const TextLayout &layout);
    bool divide(qint64 place, qint64 removed, QStringView inserted, const TextLayout &layout);

    TextTree *m_leaf = nullptr; ///< among its parent's children; null: none is open
    TextInner *m_parent = nullptr; ///< null: the leaf is the whole tree
    bool m_isOwned = false; ///< nobody else holds the nodes above the leaf, and what they tell of it is old
    Offset m_start;
    qint64 m_growth = 0;
    char32_t m_before = U'\n'; ///< on the other side of the leaf's ends; LF where there is nothing
    char32_t m_behind = U'\n';
};
