#pragma once

#include <QDeadlineTimer>

#include <functional>
#include <limits>
#include <vector>

struct TextInner;

/// Where the nodes of a long text go that nobody holds any more. To free a gigabyte takes a tenth of a
/// second; from here it is freed some at a time. A text of a megabyte goes at once.
///
/// A bin is for the thread that makes it, which has one at most; in threads without one nodes are freed at
/// once. The bin is emptied by who has it, and when it goes.
class NodeBin {
public:
    /// `filled` is called when there is something to be freed, and again after it was emptied.
    explicit NodeBin(std::function<void()> filled);
    ~NodeBin();
    Q_DISABLE_COPY_MOVE(NodeBin)

    /// Goes on until nothing is left, true, or the time is over, or freedNodes() is so many more. A call
    /// gets on by a node at least.
    bool empty(QDeadlineTimer end, qint64 mostNodes = std::numeric_limits<qint64>::max());
    bool isEmpty() const { return m_nodes.empty(); }
    /// Nodes that are no leaves and were freed so far, but for those above leaves in LeafMemory, which the
    /// heap does not keep. One has 128 KiB of text at most, or 256 KiB where that is wide.
    qint64 freedNodes() const { return m_freedNodes; }

    /// Frees a node that nobody holds, or puts it into the bin of this thread.
    static void take(TextInner *node);

private:
    void put(TextInner *node);
    void freeSome(int nodes);
    void freeLast();

    const std::function<void()> m_filled;
    std::vector<TextInner *> m_nodes; ///< of which each holds its children
    qint64 m_freedNodes = 0;
    bool m_isFreeing = false;
    bool m_isTold = false; ///< that there is something
};
