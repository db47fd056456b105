#include "platform/scrollrange.h"

#include <QTest>

/// Rows of any document on a scroll bar that counts in int.
class ScrollRangeTest : public QObject {
    Q_OBJECT

private slots:
    void fitsTheBar_data();
    void fitsTheBar();
};

void ScrollRangeTest::fitsTheBar_data()
{
    QTest::addColumn<qint64>("lastTop");
    QTest::newRow("nothing to scroll") << 0LL;
    QTest::newRow("one row") << 1LL;
    QTest::newRow("a million rows") << 1'000'000LL;
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
    QFETCH(qint64, lastTop);
    const ScrollRange range(lastTop);
    QVERIFY(range.maximum() >= 0 && range.maximum() < std::numeric_limits<int>::max());
    QCOMPARE(range.toRow(0), 0);
    QCOMPARE(range.toRow(range.maximum()), lastTop);
    QCOMPARE(range.toBar(lastTop), range.maximum());
    QCOMPARE(range.toBar(lastTop + 100), range.maximum());
    QVERIFY(range.pageStep(40) >= 1);
    for (const qint64 row : { lastTop / 7, lastTop / 3, lastTop - lastTop / 5 }) {
        const int value = range.toBar(row);
        QVERIFY(value >= 0 && value <= range.maximum());
        QCOMPARE(range.toBar(range.toRow(value)), value);
        QVERIFY(qAbs(range.toRow(value) - row) <= lastTop / qMax(1, range.maximum()) + 1);
        if (lastTop < (1LL << 30))
            QCOMPARE(range.toRow(value), row);
    }
}

QTEST_MAIN(ScrollRangeTest)
#include "scrollrange_test.moc"
