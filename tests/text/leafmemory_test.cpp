#include "text/leafmemory.h"

#include "tests/seeds.h"
#include "tests/testprogram.h"
#include "text/textnode.h"

#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <cstring>
#include <thread>
#include <vector>

#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

namespace {

constexpr size_t leafSize = 8192;
constexpr int manyLeaves = 1000; ///< do not fit one piece

enum class Page { Unmapped, Fresh, Touched };

/// What there is at an address.
Page pageAt(const void *memory)
{
    const auto page = quintptr(sysconf(_SC_PAGESIZE));
    unsigned char state = 0;
    void *const start = reinterpret_cast<void *>(reinterpret_cast<quintptr>(memory) / page * page);
    if (mincore(start, 1, &state) != 0)
        return Page::Unmapped;
    return (state & 1) != 0 ? Page::Touched : Page::Fresh;
}

/// Leaves that are told apart by what stands in them.
class Leaves {
public:
    void add(LeafMemory &memory, size_t size)
    {
        auto *const leaf = static_cast<char *>(memory.allocate(size));
        m_leaves.push_back({ leaf, size, char(m_leaves.size()) });
        std::memset(leaf, m_leaves.back().mark, size);
    }
    bool areWhole() const
    {
        return std::ranges::all_of(m_leaves, [](const Leaf &leaf) {
            return std::all_of(leaf.bytes, leaf.bytes + leaf.size, [&](char c) { return c == leaf.mark; });
        });
    }
    bool areAllUnmapped() const
    {
        return std::ranges::all_of(
            m_leaves, [](const Leaf &leaf) { return pageAt(leaf.bytes) == Page::Unmapped; });
    }
    void shuffle(QRandomGenerator &random) { std::shuffle(m_leaves.begin(), m_leaves.end(), random); }
    void free(size_t from, size_t to) const
    {
        for (size_t i = from; i < to; ++i)
            LeafMemory::free(m_leaves[i].bytes);
    }
    size_t count() const { return m_leaves.size(); }
    char *at(size_t i) const { return m_leaves[i].bytes; }

private:
    struct Leaf {
        char *bytes;
        size_t size;
        char mark;
    };
    std::vector<Leaf> m_leaves;
};

} // namespace

class LeafMemoryTest : public QObject {
    Q_OBJECT

private slots:
    void leavesDoNotOverlap();
    void goesBackWhenAllIsFreed();
    void isFreedInAnyThread();
    void restOfTheLastPieceGoesBack();
    void isMoved();
    void systemHasNoMore();
};

void LeafMemoryTest::leavesDoNotOverlap()
{
    QRandomGenerator random(seedOr(20040229));
    LeafMemory memory;
    Leaves leaves;
    for (int i = 0; i < manyLeaves; ++i) {
        leaves.add(memory, size_t(1 + random.bounded(40'000)));
        QCOMPARE(reinterpret_cast<quintptr>(leaves.at(size_t(i))) % alignof(TextLeaf), 0U);
    }
    QVERIFY(leaves.areWhole());
    leaves.free(0, leaves.count());
}

void LeafMemoryTest::goesBackWhenAllIsFreed()
{
    QRandomGenerator random(seedOr(20040301));
    Leaves leaves;
    {
        LeafMemory memory;
        for (int i = 0; i < manyLeaves; ++i)
            leaves.add(memory, leafSize);
        leaves.shuffle(random);
        leaves.free(0, leaves.count() / 2);
    }
    QCOMPARE(pageAt(leaves.at(leaves.count() - 1)), Page::Touched);
    leaves.free(leaves.count() / 2, leaves.count());
    QVERIFY(leaves.areAllUnmapped());
}

void LeafMemoryTest::isFreedInAnyThread()
{
    Leaves leaves;
    {
        LeafMemory memory;
        for (int i = 0; i < manyLeaves; ++i)
            leaves.add(memory, leafSize);
        std::thread first([&] { leaves.free(0, leaves.count() / 2); });
        std::thread second([&] { leaves.free(leaves.count() / 2, leaves.count()); });
        first.join();
        second.join();
    }
    QVERIFY(leaves.areAllUnmapped());
}

/// Though the system may have given it at once, as one large page.
void LeafMemoryTest::restOfTheLastPieceGoesBack()
{
    Leaves leaves;
    {
        LeafMemory memory;
        leaves.add(memory, leafSize);
        std::memset(leaves.at(0) + leafSize, 1, leafSize * 8);
        QCOMPARE(pageAt(leaves.at(0) + leafSize * 4), Page::Touched);
    }
    QVERIFY(leaves.areWhole());
    QCOMPARE(pageAt(leaves.at(0) + leafSize * 4), Page::Fresh);
    leaves.free(0, 1);
}

void LeafMemoryTest::isMoved()
{
    LeafMemory memory;
    Leaves leaves;
    leaves.add(memory, leafSize);
    LeafMemory other(std::move(memory));
    leaves.add(other, leafSize);
    QCOMPARE(leaves.at(1), leaves.at(0) + leafSize);
    leaves.free(0, 2);
}

void LeafMemoryTest::systemHasNoMore()
{
    LeafMemory memory;
    rlimit usual = {};
    QCOMPARE(getrlimit(RLIMIT_AS, &usual), 0);
    const rlimit none = { 1, usual.rlim_max };
    QCOMPARE(setrlimit(RLIMIT_AS, &none), 0);
    void *const refused = memory.allocate(leafSize);
    QCOMPARE(setrlimit(RLIMIT_AS, &usual), 0);
    QCOMPARE(refused, nullptr);
    void *const leaf = memory.allocate(leafSize);
    QVERIFY(leaf);
    LeafMemory::free(leaf);
}

REGISTER_TEST(runPlainTest<LeafMemoryTest>)
#include "leafmemory_test.moc"
