#include "tests/testprogram.h"
#include "widget/slotink.h"

/// What is known of the slots of a view when that goes on.
class SlotInkTest : public QObject {
    Q_OBJECT

private slots:
    void nothingIsKnownAtFirst();
    void goesAlongWithTheView_data();
    void goesAlongWithTheView();
};

static constexpr int everywhere = SlotInk::everywhere;

void SlotInkTest::nothingIsKnownAtFirst()
{
    SlotInk ink;
    QCOMPARE(ink.end(0), everywhere);
    QCOMPARE(ink.end(-1), everywhere);
    ink.setEnd(2, 30);
    QCOMPARE(ink.end(1), everywhere);
    QCOMPARE(ink.end(2), 30);
    QCOMPARE(ink.end(3), everywhere);
    ink.forget();
    QCOMPARE(ink.end(2), everywhere);
}

void SlotInkTest::goesAlongWithTheView_data()
{
    QTest::addColumn<int>("rows");
    QTest::addColumn<QList<int>>("ends");
    QTest::newRow("stays") << 0 << QList<int>{ 10, 40, 20, 30 };
    QTest::newRow("a row down") << 1 << QList<int>{ 40, 40, 30, everywhere };
    QTest::newRow("a row up") << -1 << QList<int>{ everywhere, 40, 40, 30 };
    QTest::newRow("further than the view") << 9 << QList<int>(4, everywhere);
}

/// Each slot is to be painted as far as it showed anything or will.
void SlotInkTest::goesAlongWithTheView()
{
    QFETCH(int, rows);
    QFETCH(QList<int>, ends);
    SlotInk ink;
    const int before[] = { 10, 40, 20, 30 };
    for (int slot = 0; slot < 4; ++slot)
        ink.setEnd(slot, before[slot]);
    ink.shift(rows);
    for (int slot = 0; slot < 4; ++slot)
        QCOMPARE(ink.end(slot), ends[slot]);
}

REGISTER_TEST(runPlainTest<SlotInkTest>)
#include "slotink_test.moc"
