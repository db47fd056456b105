#pragma once

#include "text/textnode.h"

#include <utility>

/// Editing of trees as values: what goes in is used up, nodes that nobody else holds are used again.
///
/// Invariants: all leaves are equally deep; nodes are of the sizes the layout tells, but the root has two
/// children or more, and a lone leaf one unit or more; a surrogate pair lies within one leaf; a leaf is wide
/// only if a unit of it needs that.
///
/// A leaf is laid out without a look at its neighbours, and so leaves are cut between characters as people
/// see them. Only one of more than sizes().fewestUnits(), or a row of flags as long, may be cut inside, where
/// editing happens to do so: it may then be wrapped there, and no edit has to walk through it.

/// A tree of one leaf; of none for an empty text.
TextTree leafTree(TextNodeRef leaf, const TextLayout &layout);
/// The tree under a node, its text measured by `layout` as far as it was not.
TextTree treeUnder(TextNodeRef node, const TextLayout &layout);
/// A node over 1..2 * sizes().children trees of one height, or two nodes under a root if that is too many;
/// the tree itself if there is but one.
TextTree parentOf(TextTrees &&children, const TextLayout &layout);

/// Both texts in a row. O(log n).
TextTree concatenate(TextTree &&left, TextTree &&right, const TextLayout &layout);
/// The text before and from `offset` on. O(log n).
std::pair<TextTree, TextTree> split(TextTree &&tree, Offset offset, const TextLayout &layout);
/// Sums an inner node's children up anew.
void summarise(TextTree &tree, const TextLayout &layout);
/// The tree under a node that is not to be shown but to be joined with others: stays measured as it is.
TextTree looseTreeUnder(TextNodeRef node, const TextLayout &layout);
/// Has a tree that nobody else holds measured anew by the next layOut().
void forgetLayout(TextTree &tree);
/// Measures the nodes that were not measured by `layout`.
void layOut(TextTree &tree, const TextLayout &layout);

/// Makes an inner node that others hold the tree's own.
void detach(TextTree &tree);
/// The first child that `passes(child)` does not say to pass. The last one is never passed, nor asked about.
template <typename Passes> TextTree &firstNotPassed(TextInner &node, Passes &&passes)
{
    TextTree *child = node.begin();
    while (child + 1 != node.end() && passes(std::as_const(*child)))
        ++child;
    return *child;
}
/// The leaf that is reached by choosing so at every node from the root down: every descent is this one.
/// `passes` keeps count of what it has passed.
template <typename Passes> const TextTree &descend(const TextTree &tree, Passes &&passes)
{
    const TextTree *at = &tree;
    while (!at->isLeaf())
        at = &firstNotPassed(innerOf(*at), passes);
    return *at;
}
/// For descents to an offset: passes what lies before it; `offset` becomes that behind what was passed.
inline bool passUnits(const TextTree &child, Offset &offset)
{
    if (offset < child.end())
        return false;
    offset -= child.units();
    return true;
}

/// The child that holds unit `offset`, or the last one; `offset` becomes that in the child.
TextTree &childAt(const TextTree &tree, Offset &offset);
/// Copies units `from`..`from + count` to `to`.
void copyUnits(const TextTree &tree, Offset from, qint64 count, char16_t *to);
/// Makes a leaf of them, with their spellings; at most as many as a leaf may have.
TextNodeRef copyOf(const TextTree &tree, Offset from, qint64 count);
/// The leaf that holds unit `offset` (the last one for the end of the text), and where it begins.
const TextLeaf &leafAt(const TextTree &tree, Offset offset, Offset &leafStart);

char16_t unitAt(const TextTree &tree, Offset offset);
/// The code point that begins at `offset`, or that ends there.
char32_t codePointAt(const TextTree &tree, Offset offset);
char32_t codePointBefore(const TextTree &tree, Offset offset);
/// Whether cutting between two units would cut a surrogate pair.
inline bool isPair(char16_t before, char16_t behind)
{
    return QChar::isHighSurrogate(before) && QChar::isLowSurrogate(behind);
}
/// The last place up to `wanted` at which a text, itself the start of a leaf, may be cut into leaves; at most
/// sizes.fewestUnits() before it. Units behind `wanted` are looked at as far as they are there.
qint64 cutPlace(QStringView text, qint64 wanted, const NodeSizes &sizes);
/// Whether a character may go on from the end of one text into the next.
bool joinsAcross(const TextTree &left, const TextTree &right);

/// Asserts the invariants, and that all summaries are what the text says.
void checkTree(const TextTree &tree, const TextLayout &layout);
