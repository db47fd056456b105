#include "rows/lcfont.h"
#include "tests/testprogram.h"

#include <QFontDatabase>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QTest>

using namespace Qt::StringLiterals;

class LcFontTest : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { registerLcFont(); }

    void family_isInstalledAndFixed()
    {
        const QFont font(u"lcfont"_s, 18);
        QVERIFY(QFontDatabase::hasFamily(QFontInfo(font).family()));
        const QFontMetricsF metrics(font);
        const qreal half = metrics.horizontalAdvance(u"x"_s);
        for (const QString &text : { u"W"_s, u"i"_s, u"0"_s, u"."_s, u"\\"_s, u"ｱ"_s })
            QVERIFY2(qAbs(metrics.horizontalAdvance(text) - half) < 0.05, qPrintable(text));
        for (const QString &text : { u"あ"_s, u"漢"_s, u"　"_s, u"Ａ"_s })
            QVERIFY2(qAbs(metrics.horizontalAdvance(text) - 2 * half) < 0.05, qPrintable(text));
    }

    void registering_isDoneOnce()
    {
        const QStringList candidates = QFont::substitutes(u"lcfont"_s);
        registerLcFont();
        QCOMPARE(QFont::substitutes(u"lcfont"_s), candidates);
        QCOMPARE(candidates.last(), u"monospace"_s);
    }

    void size_data()
    {
        QTest::addColumn<int>("asked");
        QTest::addColumn<int>("given");
        QTest::newRow("negative") << -5 << 8;
        QTest::newRow("zero") << 0 << 8;
        QTest::newRow("small row numbers") << 3 << 8;
        QTest::newRow("small row numbers, VGA") << 5 << 9;
        QTest::newRow("large row numbers") << 6 << 10;
        QTest::newRow("9") << 9 << 10;
        QTest::newRow("10") << 10 << 10;
        QTest::newRow("11") << 11 << 11;
        QTest::newRow("large row numbers, VGA") << 16 << 16;
        QTest::newRow("editor") << 18 << 18;
        QTest::newRow("huge") << 1000 << 1000;
    }

    void size()
    {
        QFETCH(int, asked);
        QFETCH(int, given);
        QCOMPARE(lcFont(asked).pointSize(), given);
        QCOMPARE(lcFont(asked).family(), u"lcfont"_s);
    }

    void rowNumbers_fitTheirMargins_data()
    {
        QTest::addColumn<int>("size");
        QTest::addColumn<int>("margin");
        QTest::newRow("small") << 3 << 25;
        QTest::newRow("small, VGA") << 5 << 25;
        QTest::newRow("large") << 6 << 36;
        QTest::newRow("large, VGA") << 16 << 36;
    }

    // One pixel before them, the rule three pixels before the text.
    void rowNumbers_fitTheirMargins()
    {
        QFETCH(int, size);
        QFETCH(int, margin);
        QFont font = lcFont(size);
        font.setPixelSize(font.pointSize());
        QVERIFY(1 + QFontMetricsF(font).horizontalAdvance(u"2345"_s) <= margin - 3);
    }
};

REGISTER_TEST(runWindowTest<LcFontTest>)
#include "lcfont_test.moc"
