#include "tests/app/programwindow.h"
#include "tests/testprogram.h"

using namespace Qt::StringLiterals;

/// The program's keys on keyboards of other countries, each named by the key codes of a real one.
class KeyboardsTest : public QObject, private ProgramWindow {
    Q_OBJECT

private slots:
    void init() { QVERIFY(reset()); }
    void cleanup();

    void digitKeysNeedNoShift_data();
    void digitKeysNeedNoShift();
    void otherSignsDoNothing_data();
    void otherSignsDoNothing();

private:
    static void useLayout(const QString &layout, const QString &variant)
    {
        outputOf(u"setxkbmap"_s, { u"-layout"_s, layout, u"-variant"_s, variant });
    }
    /// "x" is searched for and found, and the search panel closed.
    bool searchForX();
};

void KeyboardsTest::cleanup()
{
    QCOMPARE(end(), QByteArray());
    useLayout(u"us"_s, {});
}

bool KeyboardsTest::searchForX()
{
    press({ u"ctrl+n"_s });
    if (!waitUntil([] { return activeTitle() == u"Search"; }))
        return false;
    press({ u"x"_s, u"Return"_s, u"Escape"_s });
    return waitUntil([this] { return isActive(); });
}

void KeyboardsTest::digitKeysNeedNoShift_data()
{
    QTest::addColumn<QString>("layout");
    QTest::addColumn<QString>("variant");
    QTest::addColumn<QStringList>("keys"); // of 1, 2 and 5
    QTest::newRow("American") << u"us"_s << QString() << QStringList{ u"10"_s, u"11"_s, u"14"_s };
    QTest::newRow("French") << u"fr"_s << QString() << QStringList{ u"10"_s, u"11"_s, u"14"_s };
    QTest::newRow("Czech") << u"cz"_s << QString() << QStringList{ u"10"_s, u"11"_s, u"14"_s };
    QTest::newRow("digits in another order")
        << u"us"_s << u"dvp"_s << QStringList{ u"14"_s, u"17"_s, u"12"_s };
}

void KeyboardsTest::digitKeysNeedNoShift()
{
    QFETCH(QString, layout);
    QFETCH(QString, variant);
    QFETCH(QStringList, keys);
    QVERIFY(start({ write(u"a.txt"_s, "x1 x2 x3 x4\n") }));
    QVERIFY(searchForX());
    useLayout(layout, variant);
    // What is found is typed over, in letters that stand in the same place everywhere.
    press({ u"ctrl+"_s + keys[1], u"n"_s, u"ctrl+"_s + keys[0], u"b"_s, u"ctrl+End"_s });
    press({ u"ctrl+"_s + keys[2], u"l"_s, u"ctrl+s"_s });
    QTRY_COMPARE(read(u"a.txt"_s), QByteArray("lb1 n2 x3 x4\n"));
}

void KeyboardsTest::otherSignsDoNothing_data()
{
    QTest::addColumn<QString>("layout");
    QTest::addColumn<QString>("variant");
    QTest::addColumn<QString>("key");
    QTest::newRow("letter in the digit's place, no digit behind Shift") << u"lt"_s << QString() << u"11"_s;
    QTest::newRow("digit's place where digits stand in another order") << u"us"_s << u"dvp"_s << u"11"_s;
    QTest::newRow("3 of a French keyboard") << u"fr"_s << QString() << u"12"_s;
    QTest::newRow("minus of an American keyboard") << u"us"_s << QString() << u"20"_s;
}

void KeyboardsTest::otherSignsDoNothing()
{
    QFETCH(QString, layout);
    QFETCH(QString, variant);
    QFETCH(QString, key);
    QVERIFY(start({ write(u"a.txt"_s, "x1 x2 x3 x4\n") }));
    QVERIFY(searchForX());
    useLayout(layout, variant);
    press({ u"ctrl+"_s + key, u"n"_s, u"ctrl+s"_s });
    QTRY_COMPARE(read(u"a.txt"_s), QByteArray("n1 x2 x3 x4\n"));
}

REGISTER_TEST(runCoreTest<KeyboardsTest>)
#include "keyboards_test.moc"
