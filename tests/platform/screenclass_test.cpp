#include "platform/screenclass.h"
#include "tests/screenclass.h"
#include "tests/testprogram.h"

#include <QTest>

class ScreenClassTest : public QObject {
    Q_OBJECT
private slots:
    void cleanup() { setVga(false); }
    void classByDisplayName_data();
    void classByDisplayName();
    void measuresFollowTheClass();
};

void ScreenClassTest::classByDisplayName_data()
{
    QTest::addColumn<QByteArray>("display");
    QTest::addColumn<bool>("expected");
    QTest::newRow("empty") << QByteArray("") << false;
    QTest::newRow("lower case only") << QByteArray("vga:0") << false;
    QTest::newRow("upper case only") << QByteArray("VGA:0") << false;
    QTest::newRow("at the start") << QByteArray("Vga:0") << true;
    QTest::newRow("in the middle") << QByteArray("Transformed:Rot90:SharpVga:0") << true;
}

void ScreenClassTest::classByDisplayName()
{
    QFETCH(QByteArray, display);
    QFETCH(bool, expected);
    qputenv("QWS_DISPLAY", display);
    QCOMPARE(isVga(), expected);
    qunsetenv("QWS_DISPLAY");
    QVERIFY(!isVga());
}

void ScreenClassTest::measuresFollowTheClass()
{
    QCOMPARE(forScreen(17, 28), 17);
    setVga(true);
    QCOMPARE(forScreen(17, 28), 28);
}

REGISTER_TEST(runPlainTest<ScreenClassTest>)
#include "screenclass_test.moc"
