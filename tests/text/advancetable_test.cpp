#include "tests/testprogram.h"
#include "text/advancetable.h"

#include <QList>
#include <QTest>

class AdvanceTableTest : public QObject {
    Q_OBJECT

private slots:
    void latin1IsMeasuredAtOnce();
    void eachCharacterIsMeasuredOnce();
    void widthsAsMeasured_data();
    void widthsAsMeasured();
};

void AdvanceTableTest::latin1IsMeasuredAtOnce()
{
    QList<char32_t> asked;
    const AdvanceTable table([&](char32_t codePoint) {
        asked += codePoint;
        return int(codePoint) * 2;
    });
    QCOMPARE(asked.size(), 254);
    QVERIFY(!asked.contains(U'\t') && !asked.contains(U'\n'));
    QCOMPARE(table.latin1()['\t'], 0);
    QCOMPARE(table.latin1()['\n'], 0);
    QCOMPARE(table.latin1()['a'], 'a' * 2);
    QCOMPARE(table.latin1()[255], 510);
    QCOMPARE(table.advance(u'\u00ff'), 510);
    QCOMPARE(asked.size(), 254);
}

void AdvanceTableTest::eachCharacterIsMeasuredOnce()
{
    QList<char32_t> asked;
    const AdvanceTable table([&](char32_t codePoint) {
        asked += codePoint;
        return 7;
    });
    asked.clear();
    for (int round = 0; round < 3; ++round) {
        for (const char32_t codePoint : { U'\u3042', U'\u3043', U'\U0001f600', char32_t(0xdc80) })
            QCOMPARE(table.advanceOf(codePoint), 7);
        QCOMPARE(table.advance(u'\u3042'), 7);
    }
    QCOMPARE(asked, (QList<char32_t>{ U'\u3042', U'\u3043', U'\U0001f600', char32_t(0xdc80) }));
}

void AdvanceTableTest::widthsAsMeasured_data()
{
    QTest::addColumn<char32_t>("codePoint");
    QTest::addColumn<int>("width");
    QTest::newRow("flat") << U'\u0301' << 0;
    QTest::newRow("the widest there may be") << U'\uffff' << 65534;
    QTest::newRow("last code point") << U'\U0010ffff' << 12;
}

void AdvanceTableTest::widthsAsMeasured()
{
    QFETCH(const char32_t, codePoint);
    QFETCH(const int, width);
    const AdvanceTable table([=](char32_t asked) { return asked == codePoint ? width : 1; });
    QCOMPARE(table.advanceOf(codePoint), width);
    QCOMPARE(table.advanceOf(codePoint), width);
}

REGISTER_TEST(runCoreTest<AdvanceTableTest>)
#include "advancetable_test.moc"
