#include "document/placesintext.h"

#include "tests/seeds.h"
#include "tests/testprogram.h"

#include <QRandomGenerator>

#include <algorithm>

namespace {

QList<qint64> listOf(const PlacesInText &places)
{
    QList<qint64> list;
    for (qint64 i = 0; i < places.count(); ++i)
        list << places.at(i).value();
    return list;
}

} // namespace

class PlacesInTextTest : public QObject {
    Q_OBJECT

private slots:
    void followEdits_data();
    void followEdits();
    void areAMovingList_data() { addSeeds(20); }
    void areAMovingList();
};

void PlacesInTextTest::followEdits_data()
{
    QTest::addColumn<TextChange>("change");
    QTest::addColumn<QList<qint64>>("places"); // of 2, 5 and 6 in a text of 8
    using List = QList<qint64>;
    QTest::newRow("..x|..xx.") << TextChange{ Offset(3), 0, 4 } << List{ 2, 9, 10 };
    QTest::newRow("..|x..xx.") << TextChange{ Offset(2), 0, 1 } << List{ 3, 6, 7 };
    QTest::newRow("..[x..]xx.") << TextChange{ Offset(2), 3, 0 } << List{ 2, 3 };
    QTest::newRow("..[x..x]x.") << TextChange{ Offset(2), 4, 1 } << List{ 3 };
    QTest::newRow("[..x..xx.]") << TextChange{ Offset(0), 8, 0 } << List{};
    QTest::newRow("..x..xx.|") << TextChange{ Offset(8), 0, 9 } << List{ 2, 5, 6 };
}

void PlacesInTextTest::followEdits()
{
    QFETCH(TextChange, change);
    PlacesInText places(8);
    for (const qint64 offset : { 6, 2, 5 })
        places.add(Offset(offset));
    QCOMPARE(listOf(places), QList<qint64>({ 2, 5, 6 }));
    places.follow(change);
    QTEST(listOf(places), "places");
}

/// Against a list that is shifted one by one.
void PlacesInTextTest::areAMovingList()
{
    QFETCH(quint32, seed);
    QRandomGenerator random(seed);
    const auto below = [&](qint64 end) { return qint64(random.bounded(int(end))); };
    qint64 length = 50;
    PlacesInText places(length);
    QList<qint64> model;
    for (int step = 0; step < 2000; ++step) {
        const qint64 offset = below(length + 1);
        if (below(3) > 0) {
            const TextChange change{ Offset(offset), below(qMin<qint64>(5, length - offset) + 1), below(6) };
            places.follow(change);
            model.removeIf([&](qint64 at) { return at >= offset && at < offset + change.removed; });
            for (qint64 &at : model)
                at += at >= offset ? change.inserted - change.removed : 0;
            length += change.inserted - change.removed;
        } else if (!model.contains(offset)) {
            places.add(Offset(offset));
            model.insert(std::ranges::lower_bound(model, offset), offset);
        }
        const qint64 asked = below(length + 2);
        QCOMPARE(places.indexBehind(Offset(asked)), std::ranges::lower_bound(model, asked) - model.begin());
        QCOMPARE(listOf(places), model);
    }
}

REGISTER_TEST(runPlainTest<PlacesInTextTest>)
#include "placesintext_test.moc"
