#include "text/layoutchange.h"

#include "text/nodebin.h"
#include "text/rowflow.h"
#include "text/texttree.h"

LayoutChange::LayoutChange(const LayoutRule &rule, const NodeSizes &sizes)
    : m_layout(rule, sizes)
{
}

LayoutChange::LayoutChange(const TextLayout &layout)
    : m_layout(layout)
{
}

/// Nodes that the text has given up for their twins are held by these alone, thousands of them.
LayoutChange::~LayoutChange()
{
    const NodeBin::Gathering together;
    m_twins.clear();
}

bool LayoutChange::isMeasured(const TextTree &inner) const
{
    return innerOf(inner).stamp == m_layout.stamp();
}

bool LayoutChange::measure(const TextTree &tree, QDeadlineTimer end)
{
    if (tree.isEmpty() || tree.isLeaf() || isMeasured(tree) || m_twins.contains(tree.node.get()))
        return true;
    for (const TextTree &child : std::as_const(innerOf(tree))) {
        if (!measure(child, end))
            return false;
        if (child.isLeaf())
            m_measured += child.units();
    }
    m_twins.emplace(tree.node.get(), Twin{ tree.node, twinOf(tree) });
    return !end.hasExpired();
}

TextTree LayoutChange::twinOf(const TextTree &tree) const
{
    if (tree.isEmpty())
        return {};
    if (tree.isLeaf())
        return leafTree(tree.node, m_layout);
    if (isMeasured(tree))
        return looseTreeUnder(tree.node, m_layout);
    if (const auto found = m_twins.find(tree.node.get()); found != m_twins.end())
        return found->second.tree;
    TextTrees children;
    for (const TextTree &child : std::as_const(innerOf(tree)))
        children.append(twinOf(child));
    TextTree twin = parentOf(std::move(children), m_layout);
    prepareTable(twin, m_layout);
    return twin;
}
