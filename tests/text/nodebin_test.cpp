#include "text/nodebin.h"

#include "tests/testprogram.h"
#include "tests/text/storecompare.h"
#include "text/layoutchange.h"
#include "text/layoutcopy.h"
#include "text/leafmemory.h"
#include "text/undohistory.h"

#include <QTest>

#include <optional>
#include <thread>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

/// Of tens of thousands of nodes.
const QString manyNodes = u"abcdefgh"_s.repeated(10'000);
const NodeSizes fewUnits = nodesOf(4);
/// More than the nodes that are freed at once.
constexpr qint64 fewBytes = 200'000;

TextStore storeOfManyNodes()
{
    return storeOf(manyNodes, {}, fewUnits);
}

/// Of more nodes than there are in any tree that is not long.
std::vector<TextStore> manyShortTexts()
{
    std::vector<TextStore> stores;
    for (int i = 0; i < 400; ++i)
        stores.push_back(storeOf(manyNodes.first(100), {}, fewUnits));
    return stores;
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
    void soManyBytesAreFreed();
    void leavesInMemoryOfTheirOwnAreNotCounted();
    void whatOthersHoldIsNotCounted();
    void shortTextIsFreedAtOnce();
    void tellsOfEachFilling();
    void whatOthersHoldStays();
    void otherThreadsFreeAtOnce();
    void shortTextsAreFreedOneByOne();
    void gatheredTextsAreFreedBitByBit();
    void shortGatheringIsFreedAtItsEnd();
    void textsBehindALongOneWait();
    void changeOfLayoutIsFreedBitByBit();
    void historyIsFreedBitByBit();
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

void NodeBinTest::soManyBytesAreFreed()
{
    constexpr qint64 most = 1'000'000;
    NodeBin bin([] {});
    {
        const TextStore store = storeOfManyNodes();
    }
    const qint64 before = bin.freedBytes();
    QVERIFY(!bin.empty(QDeadlineTimer::Forever, most));
    QVERIFY(bin.freedBytes() - before >= most);
    QVERIFY(bin.freedBytes() - before < most + most / 10);
    QVERIFY(bin.empty(QDeadlineTimer::Forever));
    QVERIFY(bin.freedBytes() > 10 * most);
}

void NodeBinTest::leavesInMemoryOfTheirOwnAreNotCounted()
{
    NodeBin bin([] {});
    LeafMemory memory;
    const LayoutCopy layout{ TextStore() };
    const QString text = manyNodes.repeated(200);
    {
        TextStore::Builder builder(layout, &memory);
        builder.append(text);
        const TextStore store = builder.finish();
    }
    QVERIFY(bin.empty(QDeadlineTimer::Forever));
    QVERIFY(bin.freedBytes() > 0);
    QVERIFY(bin.freedBytes() < text.size() / 10);
}

void NodeBinTest::whatOthersHoldIsNotCounted()
{
    NodeBin bin([] {});
    const QString text = manyNodes.repeated(200);
    std::optional<TextStore> store(storeOf(text));
    TextStore same = storeOf(QString());
    same.insert({}, store->piece({}, store->length()));
    same.setLayoutRule(ruleOf(Widths::None, 0, 16));
    const qint64 before = bin.freedBytes();
    store.reset();
    QVERIFY(bin.empty(QDeadlineTimer::Forever));
    QVERIFY(bin.freedBytes() - before < text.size() / 10);
    same = storeOf(QString());
    QVERIFY(bin.empty(QDeadlineTimer::Forever));
    QVERIFY(bin.freedBytes() - before > text.size());
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

void NodeBinTest::shortTextsAreFreedOneByOne()
{
    const NodeBin bin([] {});
    std::vector<TextStore> stores = manyShortTexts();
    stores.clear();
    QVERIFY(bin.isEmpty());
}

void NodeBinTest::gatheredTextsAreFreedBitByBit()
{
    int filled = 0;
    NodeBin bin([&filled] { ++filled; });
    std::vector<TextStore> stores = manyShortTexts();
    const qint64 before = bin.freedBytes();
    {
        const NodeBin::Gathering outer;
        {
            const NodeBin::Gathering inner;
            stores.clear();
        }
        QCOMPARE(bin.freedBytes(), before);
        QCOMPARE(filled, 0);
    }
    QCOMPARE(filled, 1);
    QVERIFY(callsUntilEmpty(bin) > 1000);
}

void NodeBinTest::shortGatheringIsFreedAtItsEnd()
{
    int filled = 0;
    const NodeBin bin([&filled] { ++filled; });
    {
        const NodeBin::Gathering gathering;
        {
            const TextStore store = storeOf(manyNodes);
        }
        QVERIFY(!bin.isEmpty());
    }
    QVERIFY(bin.isEmpty());
    QCOMPARE(filled, 0);
}

void NodeBinTest::textsBehindALongOneWait()
{
    NodeBin bin([] {});
    std::vector<TextStore> stores = manyShortTexts();
    {
        const TextStore store = storeOfManyNodes();
    }
    const qint64 before = bin.freedBytes();
    stores.clear();
    QCOMPARE(bin.freedBytes(), before);
    QVERIFY(callsUntilEmpty(bin) > 1000);
}

/// The text has other nodes at once; those of before, which the change has held, go one by one.
void NodeBinTest::changeOfLayoutIsFreedBitByBit()
{
    NodeBin bin([] {});
    TextStore store = storeOfManyNodes();
    std::optional<LayoutChange> change(std::in_place, ruleOf(Widths::None, 0, 16), fewUnits);
    while (!store.setLayout(*change, QDeadlineTimer(0))) { }
    const qint64 before = bin.freedBytes();
    change.reset();
    QVERIFY(bin.freedBytes() - before < fewBytes);
    QVERIFY(callsUntilEmpty(bin) > 1000);
    store.checkInvariants();
    QCOMPARE(store.text(), manyNodes);
}

void NodeBinTest::historyIsFreedBitByBit()
{
    NodeBin bin([] {});
    TextStore store = storeOfManyNodes();
    UndoHistory history;
    for (int step = 0; step < 200; ++step)
        history.replace(store, Offset(step), 100, QStringView());
    QVERIFY(bin.empty(QDeadlineTimer::Forever));
    const qint64 before = bin.freedBytes();
    history.clear();
    QVERIFY(bin.freedBytes() - before < fewBytes);
    QVERIFY(callsUntilEmpty(bin) > 100);
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
