#include "text/leaflayout.h"
#include "text/texttree.h"

#include <algorithm>

namespace {

void checkSummary(const TextSummary &kept, const TextSummary &right)
{
    Q_ASSERT(kept.units == right.units && kept.lineEnds == right.lineEnds);
    Q_ASSERT(kept.head.before == right.head.before && kept.head.after == right.head.after);
    Q_ASSERT(kept.widestUnit == right.widestUnit && kept.even == right.even);
    if (right.lineEnds > 0) {
        Q_ASSERT(kept.tail == right.tail && kept.widest == right.widest);
        Q_ASSERT(kept.breaks == right.breaks && kept.tailFill == right.tailFill);
    }
}

void checkLeaf(const TextTree &tree, bool isRoot, const TextLayout &layout)
{
    const TextLeaf &leaf = leafOf(tree);
    Q_ASSERT(leaf.size >= (isRoot ? 1 : layout.sizes().fewestUnits()));
    Q_ASSERT(leaf.size <= layout.sizes().leafUnits && leaf.size <= leaf.capacity);
    const auto isWide = [](QChar unit) { return unit.unicode() > 0xff; };
    Q_ASSERT(!leaf.wide || std::any_of(leaf.utf16().begin(), leaf.utf16().end(), isWide));
    if (leaf.spellings) {
        Q_ASSERT(!leaf.spellings->isEmpty());
        Q_ASSERT(leaf.spellings->place(0) >= 0);
        Q_ASSERT(leaf.spellings->place(leaf.spellings->count() - 1) < leaf.size);
    }
    checkSummary(tree.summary, summaryOf(leaf, layout));
}

void checkNode(const TextTree &tree, bool isRoot, const TextLayout &layout)
{
    if (tree.isLeaf())
        return checkLeaf(tree, isRoot, layout);
    const TextInner &node = innerOf(tree);
    Q_ASSERT(node.count >= (isRoot ? 2 : layout.sizes().fewestChildren())
        && node.count <= layout.sizes().children);
    Q_ASSERT(node.stamp == layout.stamp());
    TextTree again = tree;
    summarise(again, layout);
    checkSummary(tree.summary, again.summary);
    for (const TextTree &child : node) {
        Q_ASSERT(child.height() == tree.height() - 1);
        checkNode(child, false, layout);
    }
    for (const TextTree *child = node.begin() + 1; child != node.end(); ++child)
        Q_ASSERT(!isPair(unitAt(child[-1], child[-1].end() - 1), unitAt(*child, {})));
}

} // namespace

void checkTree(const TextTree &tree, const TextLayout &layout)
{
    if (!tree.isEmpty())
        checkNode(tree, true, layout);
}
