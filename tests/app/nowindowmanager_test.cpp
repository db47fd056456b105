#include "tests/app/programwindow.h"
#include "tests/testprogram.h"

using namespace Qt::StringLiterals;

/// The program on an X server where nobody manages windows.
class NoWindowManagerTest : public QObject, private ProgramWindow {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void windowIsActive();
    void windowIsActiveAfterADialog_data();
    void windowIsActiveAfterADialog();
    void fullScreenCoversTheScreen();

private:
    bool open(const QStringList &files = {});
    QString place() const
    {
        return xdotool({ u"getwindowgeometry"_s, u"--shell"_s, window() })
            .section(u'\n', 1, 4)
            .replace(u'\n', u' ');
    }
};

void NoWindowManagerTest::init()
{
    QVERIFY(reset());
}

void NoWindowManagerTest::cleanup()
{
    QCOMPARE(end(), QByteArray());
}

bool NoWindowManagerTest::open(const QStringList &files)
{
    program().start(QStringLiteral(MARLOPAD_PROGRAM), files);
    return program().waitForStarted() && waitUntil([this] { return title().startsWith(u"Marlo!Pad QT  ["); })
        && takesKeys();
}

void NoWindowManagerTest::windowIsActive()
{
    QVERIFY(open());
    QCOMPARE(title(), u"Marlo!Pad QT  [Shift-JIS][CR+LF]"_s);
    // 640 x 480 at 96 dots per inch, or what the screen has.
    const QString screen = xdotool({ u"getdisplaygeometry"_s });
    const int width = qMin(853, screen.section(u' ', 0, 0).toInt());
    const int height = qMin(640, screen.section(u' ', 1, 1).toInt());
    QVERIFY2(place().contains(u"WIDTH=%1 HEIGHT=%2"_s.arg(width).arg(height)), qPrintable(place()));
    press({ u"Escape"_s });
    QTRY_COMPARE(title(), u"Marlo!Pad QT"_s);
    press({ u"ctrl+q"_s });
    QTRY_VERIFY(hasEnded());
}

void NoWindowManagerTest::windowIsActiveAfterADialog_data()
{
    QTest::addColumn<QStringList>("keys");
    QTest::addColumn<QString>("title");
    QTest::newRow("panel") << QStringList{ u"ctrl+n"_s } << u"Search"_s;
    QTest::newRow("dialog") << QStringList{ u"ctrl+o"_s } << u"Open"_s;
    QTest::newRow("message box") << QStringList{ u"alt+f"_s, u"p"_s } << u"Document properties"_s;
}

void NoWindowManagerTest::windowIsActiveAfterADialog()
{
    QFETCH(QStringList, keys);
    QFETCH(QString, title);
    const auto focusTitle = [] { return xdotool({ u"getwindowfocus"_s, u"getwindowname"_s }); };
    QVERIFY(open());
    const QString mainTitle = this->title();
    QTRY_COMPARE(focusTitle(), mainTitle);
    for (int i = 0; i < 2; ++i) {
        press(keys);
        QTRY_COMPARE(focusTitle(), title);
        letBoxBeRead();
        press({ u"Escape"_s });
        QTRY_COMPARE(focusTitle(), mainTitle);
    }
}

void NoWindowManagerTest::fullScreenCoversTheScreen()
{
    QVERIFY(open({ write(u"a.txt"_s, "\x82\xA0\n") }));
    const QString screen = xdotool({ u"getdisplaygeometry"_s }).replace(u' ', u" HEIGHT="_s);
    const QString before = place();
    for (int i = 0; i < 2; ++i) {
        press({ u"alt+v"_s, u"f"_s });
        QTRY_COMPARE(place(), u"X=0 Y=0 WIDTH="_s + screen);
        press({ u"Escape"_s });
        QTRY_COMPARE(place(), before);
    }
    press({ u"x"_s, u"ctrl+s"_s });
    QTRY_COMPARE(read(u"a.txt"_s), QByteArray("x\x82\xA0\n"));
}

REGISTER_TEST(runCoreTest<NoWindowManagerTest>)
#include "nowindowmanager_test.moc"
