#include "tests/testprogram.h"
#include "widget/scrollrange.h"

#include <QTest>

/// Rows or pixels of any document on a scroll bar that counts in int.
class ScrollRangeTest : public QObject {
    Q_OBJECT

private slots:
    void fitsTheBar_data();
    void fitsTheBar();
};

void ScrollRangeTest::fitsTheBar_data()
{
    QTest::addColumn<qint64>("last");
    QTest::newRow("nothing to scroll") << 0LL;
    QTest::newRow("one place") << 1LL;
    QTest::newRow("a million places") << 1'000'000LL;
    QTest::newRow("2^30 - 1") << (1LL << 30) - 1;
    QTest::newRow("2^30") << (1LL << 30);
    QTest::newRow("2^31 - 1") << (1LL << 31) - 1;
    QTest::newRow("2^31") << (1LL << 31);
    QTest::newRow("2^31 + 1") << (1LL << 31) + 1;
    QTest::newRow("2^40 + 12345") << (1LL << 40) + 12345;
    QTest::newRow("2^62") << (1LL << 62);
}

void ScrollRangeTest::fitsTheBar()
{
    QFETCH(qint64, last);
    const ScrollRange range(last);
    QVERIFY(range.maximum() >= 0 && range.maximum() < std::numeric_limits<int>::max());
    QCOMPARE(range.toPlace(0), 0);
    QCOMPARE(range.toPlace(range.maximum()), last);
    QCOMPARE(range.toBar(last), range.maximum());
    QCOMPARE(range.toBar(last + 100), range.maximum());
    QVERIFY(range.step(40) >= 1);
    for (const qint64 place : { last / 7, last / 3, last - last / 5 }) {
        const int value = range.toBar(place);
        QVERIFY(value >= 0 && value <= range.maximum());
        QCOMPARE(range.toBar(range.toPlace(value)), value);
        QVERIFY(qAbs(range.toPlace(value) - place) <= last / qMax(1, range.maximum()) + 1);
        if (last < (1LL << 30))
            QCOMPARE(range.toPlace(value), place);
    }
}

REGISTER_TEST(runWindowTest<ScrollRangeTest>)
#include "scrollrange_test.moc"
