#include "tests/app/programwindow.h"
#include "tests/app/unsavedtexts.h"
#include "tests/testprogram.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace {

/// An X server of its own, without a window manager; programs and keys go there while it lives.
class OtherDisplay {
public:
    bool open()
    {
        m_server.start(u"Xvfb"_s,
            { u"-displayfd"_s, u"1"_s, u"-screen"_s, u"0"_s, u"640x480x24"_s, u"-noreset"_s, u"-nolisten"_s,
                u"tcp"_s });
        m_server.waitForReadyRead();
        const QByteArray number = m_server.readLine().trimmed();
        qputenv("DISPLAY", ':' + number);
        return !number.isEmpty();
    }
    ~OtherDisplay()
    {
        qputenv("DISPLAY", m_before);
        m_server.kill();
        m_server.waitForFinished();
    }

private:
    const QByteArray m_before = qgetenv("DISPLAY");
    QProcess m_server;
};

/// The program where it has no message bus by which it could know of another one.
class LonelyProgram {
public:
    ~LonelyProgram() { kill(); }
    void start(const QStringList &files = {})
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, u"unix:path=/nowhere"_s);
        m_program.setProcessEnvironment(environment);
        m_program.start(QStringLiteral(MARLOPAD_PROGRAM), files);
    }
    void kill()
    {
        m_program.kill();
        m_program.waitForFinished();
    }

private:
    QProcess m_program;
};

/// Title of the window that has the keys, also where no window manager tells.
QString titleInFront()
{
    return ProgramWindow::xdotool({ u"getwindowfocus"_s, u"getwindowname"_s });
}

/// Presses keys until a journal has a text that they lead to.
bool typeUntilKept(const QStringList &keys, const QString &pattern)
{
    const QRegularExpression wanted(QRegularExpression::anchoredPattern(pattern));
    return waitUntil([&] {
        ProgramWindow::press(keys);
        return !UnsavedTexts::now().filter(wanted).isEmpty();
    });
}

} // namespace

/// The program itself after it was killed, driven by keys.
class RecoveryWindowTest : public QObject, private ProgramWindow {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void killedProgramsTextsComeBack();
    void laterIsLater();
    void changedFileIsKept();
    void runningProgramsAreLeftAlone_data();
    void runningProgramsAreLeftAlone();

private:
    bool killProgram()
    {
        program().kill();
        return program().waitForFinished();
    }
    bool turnTo(const QString &title) const;
    static bool openList();
    static bool acceptList() { return leave(u"getwindowfocus"_s, u"Return"_s); }
    bool restoreAll();
};

void RecoveryWindowTest::init()
{
    QVERIFY(reset());
}

void RecoveryWindowTest::cleanup()
{
    QCOMPARE(end(), QByteArray());
}

/// To the tab of the document with that title. On a busy machine the document of the start is there too.
bool RecoveryWindowTest::turnTo(const QString &title) const
{
    return waitUntil([&] {
        const QString now = this->title();
        if (now == title)
            return true;
        press({ u"ctrl+Tab"_s });
        return QTest::qWaitFor([&] { return this->title() != now; }, 1000) && this->title() == title;
    });
}

/// From the strip, when it has come.
bool RecoveryWindowTest::openList()
{
    constexpr int aMoment = 1000;
    return waitUntil([] {
        press({ u"F6"_s, u"Return"_s });
        return QTest::qWaitFor([] { return titleInFront() == u"Texts That Were Not Saved"; }, aMoment);
    });
}

bool RecoveryWindowTest::restoreAll()
{
    return openList() && acceptList() && waitUntil([this] { return isActive(); }) && takesKeys();
}

/// Text, codes, line ends, cursor; Undo leads back to the file.
void RecoveryWindowTest::killedProgramsTextsComeBack()
{
    const QByteArray sjis = "\x93\xFA\x96\x7B\x8C\xEA\n", euc = "\r\xC6\xFC\xCB\xDC\xB8\xEC, \xA4\xA2";
    const QString japanese = u"日本語"_s;
    QVERIFY(start({ write(u"a.txt"_s, sjis), write(u"b.txt"_s, euc) }));
    QTRY_COMPARE(title(), u"Marlo!Pad QT  [EUC][CR]"_s);
    press({ u"x"_s });
    QVERIFY(turnTo(u"Marlo!Pad QT  [Shift-JIS][LF]"_s));
    press({ u"Right"_s, u"y"_s });
    QTRY_COMPARE(UnsavedTexts::now(), (QStringList{ u"x\n日本語, あ"_s, u"日y本語\n"_s }));
    QVERIFY(killProgram());
    QCOMPARE(read(u"a.txt"_s), sjis);

    QVERIFY(start());
    QVERIFY(restoreAll());
    // The newest is shown first, with its cursor.
    QCOMPARE(title(), u"Marlo!Pad QT  [Shift-JIS][LF]"_s);
    press({ u"z"_s, u"ctrl+s"_s });
    QTRY_COMPARE(read(u"a.txt"_s), QByteArray("\x93\xFAyz\x96\x7B\x8C\xEA\n"));
    QVERIFY(turnTo(u"Marlo!Pad QT  [EUC][CR]"_s));
    press({ u"z"_s });
    QTRY_COMPARE(UnsavedTexts::now(), (QStringList{ u"xz\n日本語, あ"_s }));
    press({ u"ctrl+z"_s, u"ctrl+z"_s });
    QTRY_COMPARE(UnsavedTexts::now(), QStringList());
    press({ u"ctrl+q"_s });
    QTRY_VERIFY(hasEnded());
    QCOMPARE(read(u"b.txt"_s), euc);
    QCOMPARE(UnsavedTexts::leftBehind(), QStringList());
}

/// A text that was never saved, offered by each start until it is restored; and what is restored is kept.
void RecoveryWindowTest::laterIsLater()
{
    QVERIFY(start());
    press({ u"n"_s, u"e"_s, u"w"_s });
    QTRY_COMPARE(UnsavedTexts::now(), QStringList{ u"new"_s });
    QVERIFY(killProgram());

    QVERIFY(start());
    QVERIFY(openList());
    press({ u"Escape"_s });
    QTRY_VERIFY(isActive());
    press({ u"ctrl+q"_s });
    QTRY_VERIFY(hasEnded());
    QCOMPARE(UnsavedTexts::leftBehind(), QStringList{ u"new"_s });

    QVERIFY(start());
    QVERIFY(restoreAll());
    press({ u"e"_s, u"r"_s });
    QTRY_COMPARE(UnsavedTexts::now(), QStringList{ u"newer"_s });
    QVERIFY(killProgram());
    QCOMPARE(UnsavedTexts::leftBehind(), QStringList{ u"newer"_s });
}

/// What another program has written since stays; the text that comes back is of no file then.
void RecoveryWindowTest::changedFileIsKept()
{
    QVERIFY(start({ write(u"a.txt"_s, "old\n") }));
    press({ u"x"_s });
    QTRY_COMPARE(UnsavedTexts::now(), QStringList{ u"xold\n"_s });
    QVERIFY(killProgram());
    write(u"a.txt"_s, "another\n");

    QVERIFY(start());
    QVERIFY(restoreAll());
    press({ u"y"_s });
    QTRY_COMPARE(UnsavedTexts::now(), QStringList{ u"xyold\n"_s });
    press({ u"ctrl+s"_s });
    QTRY_COMPARE(activeTitle(), u"Save as"_s);
    QCOMPARE(read(u"a.txt"_s), QByteArray("another\n"));
}

void RecoveryWindowTest::runningProgramsAreLeftAlone_data()
{
    QTest::addColumn<bool>("isElsewhere");
    QTest::newRow("on one display") << false;
    QTest::newRow("on two displays") << true;
}

/// A journal is its program's as long as that lives; the next start of another one offers it then.
void RecoveryWindowTest::runningProgramsAreLeftAlone()
{
    QFETCH(bool, isElsewhere);
    QVERIFY(start({ write(u"a.txt"_s, "a\n") }));
    press({ u"x"_s });
    QTRY_COMPARE(UnsavedTexts::now(), QStringList{ u"xa\n"_s });

    OtherDisplay display;
    if (isElsewhere)
        QVERIFY(display.open());
    LonelyProgram other;
    other.start({ write(u"b.txt"_s, "\rb") });
    QTRY_VERIFY(titleInFront().endsWith(u"[CR]"_s));
    // F6 would go to the strip, if there was anything to say.
    QVERIFY(typeUntilKept({ u"F6"_s, u"y"_s }, u"y+\nb"_s));
    QCOMPARE(UnsavedTexts::now().size(), 2);
    QCOMPARE(UnsavedTexts::leftBehind(), QStringList());
    other.kill();
    const QStringList left = UnsavedTexts::leftBehind();
    QCOMPARE(left.size(), 1);
    QVERIFY(left[0].endsWith(u"y\nb"_s));

    LonelyProgram third;
    third.start();
    QTRY_VERIFY(titleInFront().endsWith(u"[CR+LF]"_s));
    QVERIFY(openList());
    QCOMPARE(UnsavedTexts::leftBehind(), left);
    QVERIFY(acceptList());
    QTRY_VERIFY(titleInFront().endsWith(u"[CR]"_s));
    QTRY_COMPARE(UnsavedTexts::leftBehind(), QStringList());
    QStringList both{ left[0], u"xa\n"_s };
    both.sort();
    QTRY_COMPARE(UnsavedTexts::now(), both);
}

REGISTER_TEST(runCoreTest<RecoveryWindowTest>)
#include "recoverywindow_test.moc"
