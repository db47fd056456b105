#pragma once

#include <QDeadlineTimer>

#include <functional>
#include <limits>

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

    /// Goes on until nothing is left, true, or the time is over, or freedBytes() is so many more. A call
    /// gets on by a node at least.
    bool empty(QDeadlineTimer end, qint64 mostBytes = std::numeric_limits<qint64>::max());
    bool isEmpty() const { return !m_last; }
    /// What the heap has got back so far. Leaves in LeafMemory and what others still hold do not count.
    qint64 freedBytes() const { return m_freedBytes; }

    /// Frees a node that nobody holds, or puts it into the bin of this thread.
    static void take(TextInner *node);

    /// While one lives, whatever this thread lets go stays in its bin: of many texts each may be short that
    /// are long together.
    class Gathering {
    public:
        Gathering();
        ~Gathering();
        Q_DISABLE_COPY_MOVE(Gathering)

    private:
        NodeBin *const m_bin; ///< null: this thread has none
    };

private:
    void put(TextInner *node);
    void freeShort();
    void freeSome(int nodes);
    void freeLast();

    const std::function<void()> m_filled;
    TextInner *m_last = nullptr; ///< each knows the one that was put before it, and holds its children
    qint64 m_freedBytes = 0;
    int m_gatherings = 0;
    bool m_isFreeing = false;
    bool m_isTold = false; ///< that there is something
};
