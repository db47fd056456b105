#include "tests/app/programwindow.h"
#include "tests/testprogram.h"

using namespace Qt::StringLiterals;

namespace {

const QString fullScreen = u"_NET_WM_STATE_FULLSCREEN"_s;
const QString maximised = u"_NET_WM_STATE_MAXIMIZED_VERT"_s;

/// A program that tells of events, a line or more each, until their window goes.
class Watch {
public:
    Watch(const QString &program, const QStringList &arguments)
    {
        m_process.start(program, arguments);
        m_process.waitForStarted();
    }
    ~Watch()
    {
        m_process.kill();
        m_process.waitForFinished();
    }
    const QStringList &lines()
    {
        m_process.waitForReadyRead(1);
        m_output += m_process.readAll();
        return m_lines = QString::fromUtf8(m_output).split(u'\n', Qt::SkipEmptyParts);
    }
    bool hasEnded() { return m_process.waitForFinished(1) || m_process.state() == QProcess::NotRunning; }

private:
    QProcess m_process;
    QByteArray m_output;
    QStringList m_lines;
};

/// How often a window went into full screen and out of it, by what its window manager has told.
qsizetype changes(const QStringList &told)
{
    qsizetype count = 0;
    for (qsizetype i = 1; i < told.size(); ++i)
        count += told.at(i).contains(fullScreen) != told.at(i - 1).contains(fullScreen);
    return count;
}

} // namespace

/// Full screen under a window manager, which is late: everybody shares one core.
class FullScreenTest : public QObject, private ProgramWindow {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void commandIsOneChange();
    void escapeRightAfterTheCommand();
    void heldEscapeClosesNothingMore_data();
    void heldEscapeClosesNothingMore();
    void windowManagerEnds();
    void windowManagerBegins();
    void normalSize_data();
    void normalSize();

private:
    bool open();
    bool isOn() const { return states().contains(fullScreen); }
    void command() { press({ u"alt+v"_s, u"f"_s }); }
    void ask(const QStringList &change);
    bool hasDoneAll(const QString &typed);
    bool quit();
    QStringList told();

    std::unique_ptr<Watch> m_states;
};

void FullScreenTest::init()
{
    QVERIFY(reset());
}

void FullScreenTest::cleanup()
{
    xdotool({ u"keyup"_s, u"Escape"_s });
    m_states.reset();
    QCOMPARE(end(), QByteArray());
}

/// With a document of three, each known by its line end; the one with LF is shown.
bool FullScreenTest::open()
{
    const bool isOpen = start({ write(u"cr.txt"_s, "\r\x82\xA0"), write(u"crlf.txt"_s, "\x82\xA0\r\n"),
                            write(u"lf.txt"_s, "\x82\xA0\n") })
        && waitUntil([this] { return lineEnd() == u"LF"_s && states().contains(maximised); });
    m_states =
        std::make_unique<Watch>(u"xprop"_s, QStringList{ u"-spy"_s, u"-id"_s, window(), u"_NET_WM_STATE"_s });
    return isOpen && waitUntil([this] { return m_states->lines().size() == 1; });
}

void FullScreenTest::ask(const QStringList &change)
{
    QCOMPARE(QProcess::execute(
                 u"wmctrl"_s, QStringList{ u"-i"_s, u"-r"_s, window(), u"-b"_s } << change.join(u',')),
        0);
}

/// Whether the window has done what it was asked for until now, and shows the document that it did.
bool FullScreenTest::hasDoneAll(const QString &typed)
{
    press({ typed, u"ctrl+s"_s });
    return waitUntil([this, &typed] { return read(u"lf.txt"_s).contains(typed.toLatin1()); });
}

bool FullScreenTest::quit()
{
    press({ u"ctrl+q"_s });
    return waitUntil([this] { return hasEnded() && m_states->hasEnded(); });
}

/// The states of the window, one after the other, as far as they are known.
QStringList FullScreenTest::told()
{
    QStringList lines = m_states->lines();
    // The last one is that of a window that has gone.
    while (!lines.isEmpty() && !lines.constLast().contains(u"_NET_WM_STATE_"_s))
        lines.removeLast();
    return lines;
}

void FullScreenTest::commandIsOneChange()
{
    QVERIFY(open());
    for (int i = 0; i < 4; ++i) {
        command();
        QTRY_VERIFY(isOn());
        command();
        QTRY_VERIFY(!isOn());
    }
    QVERIFY(hasDoneAll(u"x"_s));
    QVERIFY(states().contains(maximised));
    QVERIFY(quit());
    QCOMPARE(changes(told()), 8);
}

void FullScreenTest::escapeRightAfterTheCommand()
{
    QVERIFY(open());
    for (int i = 0; i < 8; ++i) {
        command();
        QTRY_VERIFY(isOn());
        press({ u"Escape"_s });
        QVERIFY(hasDoneAll(QString(QChar(u'a' + i))));
        QTRY_VERIFY(!isOn());
    }
    QVERIFY(quit());
    QVERIFY2(changes(told()) <= 16, qPrintable(told().join(u'\n')));
}

void FullScreenTest::heldEscapeClosesNothingMore_data()
{
    QTest::addColumn<QStringList>("keys");
    QTest::addColumn<QString>("activeWindow"); // its title
    QTest::newRow("full screen") << QStringList{ u"alt+v"_s, u"f"_s } << u"Marlo!Pad QT  [Shift-JIS][LF]"_s;
    QTest::newRow("search panel") << QStringList{ u"ctrl+n"_s } << u"Search"_s;
    QTest::newRow("file dialog") << QStringList{ u"ctrl+o"_s } << u"Open"_s;
    QTest::newRow("message box") << QStringList{ u"alt+v"_s, u"a"_s } << u"Marlo!Pad QT"_s;
}

void FullScreenTest::heldEscapeClosesNothingMore()
{
    QFETCH(QStringList, keys);
    QFETCH(QString, activeWindow);
    QVERIFY(open());
    Watch repeats(u"xev"_s, { u"-id"_s, window(), u"-event"_s, u"keyboard"_s });
    press(keys);
    QTRY_COMPARE(activeTitle(), activeWindow);
    if (keys.constLast() == u"f"_s)
        QTRY_VERIFY(isOn());
    letBoxBeRead();
    xdotool({ u"keydown"_s, u"Escape"_s });
    const auto presses = [&repeats] { return repeats.lines().filter(u"KeyPress event"_s).size(); };
    const qsizetype before = presses();
    QTRY_VERIFY(presses() > before + 25);
    QVERIFY(isActive() && !isOn());
    xdotool({ u"keyup"_s, u"Escape"_s });
    QVERIFY(hasDoneAll(u"x"_s));
    for (const QString &next : { u"CR"_s, u"CR+LF"_s, u"LF"_s }) {
        press({ u"ctrl+Tab"_s });
        QTRY_COMPARE(lineEnd(), next);
    }
    press({ u"Escape"_s });
    QTRY_VERIFY(lineEnd() != u"LF"_s);
}

void FullScreenTest::windowManagerEnds()
{
    QVERIFY(open());
    command();
    QTRY_VERIFY(isOn());
    QVERIFY(hasDoneAll(u"w"_s));
    ask({ u"remove"_s, u"fullscreen"_s });
    QTRY_VERIFY(!isOn());
    QVERIFY(hasDoneAll(u"x"_s));
    QVERIFY(!isOn());
    command();
    QTRY_VERIFY(isOn());
    press({ u"Escape"_s });
    QTRY_VERIFY(!isOn());
    QVERIFY(hasDoneAll(u"y"_s));
    QVERIFY(quit());
    QCOMPARE(changes(told()), 4);
}

void FullScreenTest::windowManagerBegins()
{
    QVERIFY(open());
    ask({ u"add"_s, u"fullscreen"_s });
    QTRY_VERIFY(isOn());
    press({ u"Escape"_s });
    QTRY_VERIFY(!isOn());
    QVERIFY(hasDoneAll(u"x"_s));
    command();
    QTRY_VERIFY(isOn());
    QVERIFY(quit());
    QCOMPARE(changes(told()), 3);
}

void FullScreenTest::normalSize_data()
{
    QTest::addColumn<int>("commands");
    QTest::newRow("never in full screen") << 0;
    QTest::newRow("after full screen") << 2;
    QTest::newRow("after full screen twice") << 4;
}

void FullScreenTest::normalSize()
{
    QFETCH(int, commands);
    QVERIFY(open());
    for (int i = 0; i < commands; ++i) {
        command();
        QTRY_COMPARE(isOn(), i % 2 == 0);
    }
    QVERIFY(hasDoneAll(u"x"_s));
    ask({ u"remove"_s, u"maximized_vert"_s, u"maximized_horz"_s });
    // 640 x 480 at 96 dots per inch.
    QTRY_COMPARE(xdotool({ u"getwindowgeometry"_s, window() }).section(u"Geometry: "_s, 1), u"853x640"_s);
}

REGISTER_TEST(runCoreTest<FullScreenTest>)
#include "fullscreen_test.moc"
