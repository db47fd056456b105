#include "text/nodebin.h"

#include "tests/testprogram.h"
#include "tests/text/storecompare.h"
#include "text/layoutcopy.h"
#include "text/leafmemory.h"

#include <QTest>

#include <thread>

using namespace Qt::StringLiterals;

namespace {

/// Of tens of thousands of nodes.
const QString manyNodes = u"abcdefgh"_s.repeated(10'000);
const NodeSizes fewUnits = nodesOf(4);

TextStore storeOfManyNodes()
{
    return storeOf(manyNodes, {}, fewUnits);
}

int callsUntilEmpty(NodeBin &bin)
{
    int calls = 1;
    while (!bin.empty(QDeadlineTimer(0)))
        ++calls;
    return calls;
}

} // namespace

/// Long texts that are freed some at a time.
class NodeBinTest : public QObject {
    Q_OBJECT

private slots:
    void longTextIsFreedBitByBit();
    void soManyNodesAreFreed();
    void nodesAboveMemoryOfTheirOwnAreNotCounted();
    void shortTextIsFreedAtOnce();
    void tellsOfEachFilling();
    void whatOthersHoldStays();
    void otherThreadsFreeAtOnce();
    void manyTextsAtOnce();
    void secondOneStaysEmpty();
    void freesAtOnceWithoutOne();
};

void NodeBinTest::longTextIsFreedBitByBit()
{
    NodeBin bin([] {});
    {
        const TextStore store = storeOfManyNodes();
        QVERIFY(bin.isEmpty());
    }
    QVERIFY(!bin.isEmpty());
    QVERIFY(callsUntilEmpty(bin) > 1000);
    QVERIFY(bin.isEmpty());
    QVERIFY(bin.empty(QDeadlineTimer(0)));
}

void NodeBinTest::soManyNodesAreFreed()
{
    NodeBin bin([] {});
    {
        const TextStore store = storeOfManyNodes();
    }
    const qint64 before = bin.freedNodes();
    QVERIFY(!bin.empty(QDeadlineTimer::Forever, 100));
    QCOMPARE(bin.freedNodes() - before, 100);
    QVERIFY(bin.empty(QDeadlineTimer::Forever));
    QVERIFY(bin.freedNodes() > 5000);
}

void NodeBinTest::nodesAboveMemoryOfTheirOwnAreNotCounted()
{
    NodeBin bin([] {});
    LeafMemory memory;
    const LayoutCopy layout{ TextStore({}, fewUnits) };
    {
        TextStore::Builder builder(layout, &memory);
        builder.append(manyNodes);
        const TextStore store = builder.finish();
    }
    QVERIFY(!bin.isEmpty());
    QVERIFY(bin.empty(QDeadlineTimer::Forever));
    QVERIFY(bin.freedNodes() < 2500);
}

void NodeBinTest::shortTextIsFreedAtOnce()
{
    NodeBin bin([] {});
    {
        const TextStore store = storeOf(manyNodes);
    }
    QVERIFY(bin.isEmpty());
}

void NodeBinTest::tellsOfEachFilling()
{
    int filled = 0;
    NodeBin bin([&filled] { ++filled; });
    std::optional<TextStore> first(storeOfManyNodes());
    std::optional<TextStore> second(storeOfManyNodes());
    first.reset();
    second.reset();
    QCOMPARE(filled, 1);
    QVERIFY(bin.empty(QDeadlineTimer::Forever));
    first.emplace(storeOfManyNodes());
    first.reset();
    QCOMPARE(filled, 2);
}

/// Pieces of the text, as undoing and clipboards have them, and the text that was made of it.
void NodeBinTest::whatOthersHoldStays()
{
    NodeBin bin([] {});
    std::optional<TextStore> store(storeOfManyNodes());
    const TextPiece piece = store->piece(Offset(1000), 70'000);
    TextStore other({}, fewUnits);
    other.insert({}, store->piece({}, store->length()));
    other.replace(Offset(40'000), 10, u"other");
    store.reset();
    other.replace(Offset(5), 1, u"x");
    while (!bin.empty(QDeadlineTimer(0))) { }
    other.checkInvariants();
    QCOMPARE(piece.text(), manyNodes.sliced(1000, 70'000));
    QCOMPARE(other.text(), QString(manyNodes).replace(40'000, 10, u"other"_s).replace(5, 1, u"x"_s));
}

void NodeBinTest::otherThreadsFreeAtOnce()
{
    int filled = 0;
    const NodeBin bin([&filled] { ++filled; });
    std::thread([] { const TextStore store = storeOfManyNodes(); }).join();
    QVERIFY(bin.isEmpty());
    QCOMPARE(filled, 0);
}

/// More than there is room for.
void NodeBinTest::manyTextsAtOnce()
{
    NodeBin bin([] {});
    std::vector<TextStore> stores;
    for (int i = 0; i < 400; ++i)
        stores.push_back(storeOf(manyNodes.first(2000), {}, fewUnits));
    stores.clear();
    bin.empty(QDeadlineTimer::Forever);
    QVERIFY(bin.isEmpty());
}

void NodeBinTest::secondOneStaysEmpty()
{
    NodeBin first([] {});
    {
        const NodeBin second([] {});
        {
            const TextStore store = storeOfManyNodes();
        }
        QVERIFY(second.isEmpty());
    }
    QVERIFY(!first.isEmpty());
}

void NodeBinTest::freesAtOnceWithoutOne()
{
    {
        NodeBin bin([] {});
        const TextStore store = storeOfManyNodes();
    } // the bin goes behind the text, and frees it
    const TextStore store = storeOfManyNodes();
    QVERIFY(store.length() > 0);
}

REGISTER_TEST(runPlainTest<NodeBinTest>)
#include "nodebin_test.moc"
