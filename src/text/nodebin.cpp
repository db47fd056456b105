#include "text/nodebin.h"

#include "text/textnode.h"

#include <utility>

namespace {

/// Nodes above leaves that are freed at once: a text of two megabytes at most.
constexpr int nodesAtOnce = 16;

thread_local NodeBin *binOfThread = nullptr;

/// What the heap gets back when a node is freed, but for inner nodes below it. Of a tree that is being built
/// the children may have gone elsewhere.
qint64 bytesOf(const TextInner &node)
{
    qint64 bytes = sizeof(TextInner);
    for (const TextTree &child : node) {
        if (!child.isEmpty() && child.isLeaf() && !child.node.isShared())
            bytes += leafOf(child).heapBytes();
    }
    return bytes;
}

} // namespace

NodeBin::Gathering::Gathering()
    : m_bin(binOfThread)
{
    if (m_bin)
        ++m_bin->m_gatherings;
}

NodeBin::Gathering::~Gathering()
{
    if (m_bin && --m_bin->m_gatherings == 0)
        m_bin->freeShort();
}

NodeBin::NodeBin(std::function<void()> filled)
    : m_filled(std::move(filled))
{
    if (!binOfThread)
        binOfThread = this;
}

NodeBin::~NodeBin()
{
    empty(QDeadlineTimer::Forever);
    if (binOfThread == this)
        binOfThread = nullptr;
}

bool NodeBin::empty(QDeadlineTimer end, qint64 mostBytes)
{
    const qint64 before = m_freedBytes;
    do
        freeSome(1);
    while (!isEmpty() && !end.hasExpired() && m_freedBytes - before < mostBytes);
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

/// Of a node that is being freed the children come here.
void NodeBin::put(TextInner *node)
{
    node->beforeInBin = std::exchange(m_last, node);
    if (!m_isFreeing && m_gatherings == 0)
        freeShort();
}

/// Where something long was put, all else waits with it: none of many texts is freed in the turn that lets
/// them go.
void NodeBin::freeShort()
{
    if (m_isTold)
        return;
    freeSome(nodesAtOnce);
    if (isEmpty())
        return;
    m_isTold = true;
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
    const TextInner *const node = std::exchange(m_last, m_last->beforeInBin);
    m_freedBytes += bytesOf(*node);
    delete node;
}
