#include "text/nodebin.h"

#include "text/textnode.h"

#include <utility>

namespace {

/// Nodes above leaves that are freed at once: a text of two megabytes at most.
constexpr int nodesAtOnce = 16;

/// There is no more room in a bin, since none may be asked for where something is freed. Of one tree there
/// are never more than the children of a node for each of its levels.
constexpr size_t mostNodes = 4096;

thread_local NodeBin *binOfThread = nullptr;

/// Of a tree that is being built the children may have gone elsewhere.
bool isAboveLeafMemory(const TextInner &node)
{
    const TextTree &first = *node.begin();
    return !first.isEmpty() && first.isLeaf() && leafOf(first).isInLeafMemory;
}

} // namespace

NodeBin::NodeBin(std::function<void()> filled)
    : m_filled(std::move(filled))
{
    m_nodes.reserve(mostNodes);
    if (!binOfThread)
        binOfThread = this;
}

NodeBin::~NodeBin()
{
    empty(QDeadlineTimer::Forever);
    if (binOfThread == this)
        binOfThread = nullptr;
}

bool NodeBin::empty(QDeadlineTimer end, qint64 mostNodes)
{
    const qint64 before = m_freedNodes;
    do
        freeSome(1);
    while (!isEmpty() && !end.hasExpired() && m_freedNodes - before < mostNodes);
    if (isEmpty())
        m_isTold = false;
    return isEmpty();
}

void NodeBin::take(TextInner *node)
{
    if (binOfThread)
        binOfThread->put(node);
    else
        delete node;
}

void NodeBin::put(TextInner *node)
{
    if (m_nodes.size() == mostNodes) {
        delete node;
        return;
    }
    m_nodes.push_back(node);
    if (m_isFreeing) // it is a child of the one that is being freed
        return;
    freeSome(nodesAtOnce);
    if (!isEmpty() && !std::exchange(m_isTold, true))
        m_filled();
}

void NodeBin::freeSome(int nodes)
{
    m_isFreeing = true;
    for (; nodes > 0 && !isEmpty(); --nodes)
        freeLast();
    m_isFreeing = false;
}

/// Its children that nobody else holds come into the bin, but for leaves.
void NodeBin::freeLast()
{
    const TextInner *const node = m_nodes.back();
    m_nodes.pop_back();
    m_freedNodes += isAboveLeafMemory(*node) ? 0 : 1;
    delete node;
}
