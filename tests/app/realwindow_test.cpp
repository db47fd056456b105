#include "tests/app/programwindow.h"
#include "tests/testprogram.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

/// The program itself in a window of a window manager, driven from outside by keys.
class RealWindowTest : public QObject, private ProgramWindow {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void firstDocumentComesByItself();
    void filesAreTheOnlyDocuments();
    void keysActOnce();
    void tabKeysSwitch();
    void menuOfTheTabComesByKeys_data();
    void menuOfTheTabComesByKeys();
    void desktopBeginsANewDocument();
    void fullScreenAndBack();
    void secondStartHandsItsFileOver();
    void signalOfTheWindowManagerAsks();
    void textInAnyScriptIsNoWarning();
    void requestWaitsForTheFileDialog();
    void savingOverAnotherFileLeadsBack();
    void placeIsFoundAgainByTheNextStart_data();
    void placeIsFoundAgainByTheNextStart();
};

void RealWindowTest::init()
{
    QVERIFY(reset());
}

void RealWindowTest::cleanup()
{
    QCOMPARE(end(), QByteArray());
}

void RealWindowTest::firstDocumentComesByItself()
{
    QVERIFY(start());
    QCOMPARE(title(), u"Marlo!Pad QT  [Shift-JIS][CR+LF]"_s);
    QVERIFY(states().contains(u"_NET_WM_STATE_MAXIMIZED_VERT"_s));
    press({ u"Escape"_s });
    QTRY_COMPARE(title(), u"Marlo!Pad QT"_s);
    press({ u"ctrl+q"_s });
    QTRY_VERIFY(hasEnded());
    QCOMPARE(program().exitCode(), 0);
}

// No document is closed here: closing the last one within the time of the first document brings a new one.
void RealWindowTest::filesAreTheOnlyDocuments()
{
    QVERIFY(start({ write(u"a.txt"_s, "\r\x82\xA0"), write(u"b.txt"_s, "\x82\xA0\n") }));
    QTRY_COMPARE(lineEnd(), u"LF"_s);
    for (const QString &next : { u"CR"_s, u"LF"_s, u"CR"_s, u"LF"_s }) {
        press({ u"ctrl+Tab"_s });
        QTRY_COMPARE(lineEnd(), next);
    }
}

void RealWindowTest::keysActOnce()
{
    QVERIFY(start({ write(u"a.txt"_s, "\x82\xA0\r\n") }));
    press({ u"x"_s, u"y"_s, u"ctrl+a"_s, u"ctrl+c"_s, u"ctrl+v"_s, u"ctrl+v"_s, u"ctrl+z"_s, u"ctrl+s"_s });
    QTRY_COMPARE(read(u"a.txt"_s), QByteArray("xy\x82\xA0\r\nxy\x82\xA0\r\n"));
    press({ u"ctrl+a"_s, u"ctrl+x"_s, u"ctrl+v"_s, u"ctrl+v"_s, u"Tab"_s, u"ctrl+s"_s });
    QTRY_COMPARE(read(u"a.txt"_s), QByteArray("xy\x82\xA0\r\n").repeated(4) + '\t');
    press({ u"ctrl+q"_s });
    QTRY_VERIFY(hasEnded());
}

void RealWindowTest::tabKeysSwitch()
{
    QVERIFY(start({ write(u"a.txt"_s, "\x82\xA0\r\n"), write(u"b.txt"_s, "\x82\xA0\n"),
        write(u"c.txt"_s, "\r\x82\xA0") }));
    QTRY_COMPARE(lineEnd(), u"CR"_s);
    press({ u"ctrl+Tab"_s });
    QTRY_COMPARE(lineEnd(), u"CR+LF"_s);
    press({ u"ctrl+Tab"_s });
    QTRY_COMPARE(lineEnd(), u"LF"_s);
    press({ u"ctrl+shift+Tab"_s });
    QTRY_COMPARE(lineEnd(), u"CR+LF"_s);
    press({ u"ctrl+shift+Tab"_s });
    QTRY_COMPARE(lineEnd(), u"CR"_s);
}

void RealWindowTest::menuOfTheTabComesByKeys_data()
{
    QTest::addColumn<QString>("key");
    for (const char *key : { "ctrl+F10", "ctrl+shift+F10" })
        QTest::newRow(key) << QString::fromLatin1(key);
}

/// Its first item closes the tab; in the text the same keys would make a new line.
void RealWindowTest::menuOfTheTabComesByKeys()
{
    QFETCH(QString, key);
    QVERIFY(start({ write(u"a.txt"_s, "\r\x82\xA0"), write(u"b.txt"_s, "\x82\xA0\n") }));
    QTRY_COMPARE(lineEnd(), u"LF"_s);
    press({ key, u"Down"_s, u"Return"_s });
    QTRY_COMPARE(lineEnd(), u"CR"_s);
    press({ u"x"_s, u"ctrl+s"_s });
    QTRY_COMPARE(read(u"a.txt"_s), QByteArray("x\r\x82\xA0"));
    QCOMPARE(read(u"b.txt"_s), QByteArray("\x82\xA0\n"));
}

void RealWindowTest::desktopBeginsANewDocument()
{
    QVERIFY(start({ write(u"a.txt"_s, "\x82\xA0\n") }));
    QTRY_COMPARE(lineEnd(), u"LF"_s);
    const QString name = u"example.marlopad.marlopad"_s;
    QDBusMessage call = QDBusMessage::createMethodCall(name, u'/' + QString(name).replace(u'.', u'/'),
        u"org.freedesktop.Application"_s, u"ActivateAction"_s);
    call.setArguments({ u"new-document"_s, QVariantList(), QVariantMap() });
    QCOMPARE(QDBusConnection::sessionBus().call(call).type(), QDBusMessage::ReplyMessage);
    QTRY_COMPARE(title(), u"Marlo!Pad QT  [Shift-JIS][CR+LF]"_s);
    QVERIFY(takesKeys());
    press({ u"x"_s, u"ctrl+s"_s });
    QTRY_COMPARE(activeTitle(), u"Save as"_s); // it is of no file
    press({ u"Escape"_s });
    QTRY_VERIFY(isActive());
    press({ u"ctrl+Tab"_s });
    QTRY_COMPARE(lineEnd(), u"LF"_s);
}

void RealWindowTest::fullScreenAndBack()
{
    QVERIFY(start({ write(u"a.txt"_s, "\x82\xA0\n") }));
    const QString screen = xdotool({ u"getdisplaygeometry"_s });
    const auto size = [this] {
        const QStringList lines = xdotool({ u"getwindowgeometry"_s, u"--shell"_s, window() }).split(u'\n');
        return lines.filter(u"WIDTH="_s).value(0).section(u'=', 1) + u' '
            + lines.filter(u"HEIGHT="_s).value(0).section(u'=', 1);
    };
    press({ u"alt+v"_s, u"f"_s });
    QTRY_VERIFY(states().contains(u"_NET_WM_STATE_FULLSCREEN"_s));
    QTRY_COMPARE(size(), screen);
    press({ u"Escape"_s });
    QTRY_VERIFY(!states().contains(u"_NET_WM_STATE_FULLSCREEN"_s));
    QTRY_VERIFY(states().contains(u"_NET_WM_STATE_MAXIMIZED_VERT"_s));
    QCOMPARE(title(), u"Marlo!Pad QT  [Shift-JIS][LF]"_s);
}

void RealWindowTest::secondStartHandsItsFileOver()
{
    QVERIFY(start({ write(u"a.txt"_s, "\x82\xA0\r\n") }));
    write(u"b.txt"_s, "\r\x82\xA0");
    QProcess second;
    second.setWorkingDirectory(folder());
    second.start(QStringLiteral(MARLOPAD_PROGRAM), { u"b.txt"_s });
    QVERIFY(second.waitForFinished());
    QCOMPARE(second.exitCode(), 0);
    QTRY_COMPARE(title(), u"Marlo!Pad QT  [Shift-JIS][CR]"_s);
}

void RealWindowTest::signalOfTheWindowManagerAsks()
{
    QVERIFY(start({ write(u"a.txt"_s, "\x82\xA0\n") }));
    press({ u"x"_s, u"alt+F4"_s });
    QVERIFY(answer(u"Confirm File Save"_s, u"Escape"_s));
    QTRY_VERIFY(isActive());
    press({ u"alt+F4"_s });
    QVERIFY(answer(u"Confirm File Save"_s, u"Return"_s));
    QTRY_VERIFY(hasEnded());
    QCOMPARE(read(u"a.txt"_s), QByteArray("x\x82\xA0\n"));
}

// cleanup() sees what was said.
void RealWindowTest::textInAnyScriptIsNoWarning()
{
    QVERIFY(start({ write(u"a.txt"_s, "हिन्दी தமிழ் ខ្មែរ བོད་ عربي\n") }));
    press({ u"ctrl+End"_s, u"x"_s, u"ctrl+s"_s });
    QTRY_VERIFY(read(u"a.txt"_s).endsWith('x'));
}

void RealWindowTest::requestWaitsForTheFileDialog()
{
    QVERIFY(start({ write(u"a.txt"_s, "\x82\xA0\r\n") }));
    press({ u"x"_s, u"ctrl+o"_s });
    QTRY_COMPARE(activeTitle(), u"Open"_s);
    QProcess second;
    second.start(QStringLiteral(MARLOPAD_PROGRAM), { write(u"c.txt"_s, "\r\x82\xA0") });
    QVERIFY(second.waitForFinished());
    QCOMPARE(second.exitCode(), 0);
    QCOMPARE(activeTitle(), u"Open"_s);
    press({ u"Escape"_s });
    QTRY_COMPARE(title(), u"Marlo!Pad QT  [Shift-JIS][CR]"_s);
    QVERIFY(takesKeys());
    press({ u"ctrl+shift+Tab"_s, u"ctrl+s"_s });
    QTRY_COMPARE(read(u"a.txt"_s), QByteArray("x\x82\xA0\r\n"));
}

void RealWindowTest::savingOverAnotherFileLeadsBack()
{
    QVERIFY(start({ write(u"a.txt"_s, "\x82\xA0\n") }));
    press({ u"x"_s, u"alt+f"_s, u"a"_s });
    QTRY_COMPARE(activeTitle(), u"Save as"_s);
    press({ u"Tab"_s, u"Return"_s });
    QVERIFY(answer(u"Replace confirm"_s, u"Return"_s));
    QTRY_COMPARE(read(u"a.txt"_s), QByteArray("x\x82\xA0\n"));
    QTRY_VERIFY(isActive());
    press({ u"y"_s, u"ctrl+s"_s });
    QTRY_COMPARE(read(u"a.txt"_s), QByteArray("xy\x82\xA0\n"));
}

void RealWindowTest::placeIsFoundAgainByTheNextStart_data()
{
    QTest::addColumn<int>("wrapMode");
    QTest::newRow("not wrapped") << 0;
    QTest::newRow("wrapped at the width of the window") << 1;
    QTest::newRow("wrapped at a column") << 2;
}

/// The settings of one run after the other are the same when nothing but opening and closing was done.
void RealWindowTest::placeIsFoundAgainByTheNextStart()
{
    QFETCH(int, wrapMode);
    const auto position = [] {
        QFile file(settingsFile());
        QStringList lines = file.open(QIODevice::ReadOnly)
            ? QString::fromUtf8(file.readAll()).split(u'\n').filter(QRegularExpression(u"^(Cur|Scr)[XY]0"_s))
            : QStringList();
        lines.sort();
        return lines;
    };
    QVERIFY(writeSettings("WrapMode = " + QByteArray::number(wrapMode) + '\n'));
    const QString name = write(u"a.txt"_s, (QByteArray("many words ").repeated(60) + '\n').repeated(200));
    QStringList before;
    for (int run = 0; run < 3; ++run) {
        QVERIFY(start({ name }));
        QTRY_COMPARE(title(), u"Marlo!Pad QT  [UTF8][LF]"_s);
        if (run == 0)
            press({ u"ctrl+End"_s, u"Prior"_s, u"Right"_s });
        press({ u"ctrl+q"_s });
        QTRY_VERIFY(hasEnded());
        if (run == 0)
            before = position();
        QCOMPARE(position(), before);
        QCOMPARE(before.size(), 4);
        QVERIFY(!before.contains(u"ScrY0 = 0"_s));
    }
}

REGISTER_TEST(runCoreTest<RealWindowTest>)
#include "realwindow_test.moc"
