#include "app/documentarea.h"
#include "editor/noticequeue.h"
#include "files/endorder.h"
#include "tests/app/stayingapplication.h"
#include "tests/app/stripinwindow.h"
#include "tests/jobs/steppedrunner.h"

#include <array>
#include <utility>

#include <fcntl.h>
#include <poll.h>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 fewestOfInput = 100'000; ///< of what is read in several steps, when all has come

/// What another program writes.
class Pipe {
public:
    Pipe()
    {
        std::array<int, 2> ends{};
        if (::pipe2(ends.data(), O_CLOEXEC) != 0)
            qFatal("no pipe");
        m_input = std::make_shared<OpenFd>(ends[0]);
        m_end = ends[1];
    }
    ~Pipe() { close(); }
    Q_DISABLE_COPY_MOVE(Pipe)

    /// For the program, once.
    SharedFd takeInput() { return std::exchange(m_input, {}); }
    void put(const QByteArray &bytes) const
    {
        QCOMPARE(::write(m_end, bytes.constData(), size_t(bytes.size())), bytes.size());
    }
    void close()
    {
        if (m_end != -1)
            ::close(std::exchange(m_end, -1));
    }
    bool isReadByAnybody() const
    {
        pollfd end{ m_end, POLLOUT, 0 };
        return ::poll(&end, 1, 0) >= 0 && !(end.revents & POLLERR);
    }

private:
    SharedFd m_input;
    int m_end = -1;
};

} // namespace

/// Text that comes from a pipe of which nobody knows when it ends.
class ArrivingInputTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void isThereAtItsEnd_data();
    void isThereAtItsEnd();
    void stoppedKeepsWhatHasCome_data();
    void stoppedKeepsWhatHasCome();
    void nothingIsANewDocument_data();
    void nothingIsANewDocument();
    void keysAreRefusedWithAWord();
    void otherDocumentsStayInView();
    void placeIsGoneTo();
    void closedTabReadsNoMore();
    void quitReadsNoMore();
    void signalReadsNoMore();
    void readErrorKeepsWhatHasCome();

private:
    /// Of an "a" and another character, long enough to be read in one go or not.
    static QByteArray text(bool isLong)
    {
        return "a\xe3\x81\x82\n" + QByteArray("line\n").repeated(isLong ? 30'000 : 1);
    }
    void open(std::optional<LineColumn> place = {})
    {
        theApplication().request({ {}, FileRequest::From::Shell, place, {}, false, m_pipe->takeInput() });
        QTRY_COMPARE(m_window->tabBar()->count(), 2);
        QVERIFY(input().document().isHeld());
    }
    /// In small portions, as a pipe takes them.
    void put(const QByteArray &bytes)
    {
        constexpr qsizetype portion = 10'000;
        for (qsizetype at = 0; at < bytes.size(); at += portion) {
            m_pipe->put(bytes.mid(at, portion));
            m_inputs->step();
        }
    }
    void makeAllSteps()
    {
        m_inputs->runAll();
        settle();
        m_steps->runAll();
        settle();
    }
    ctlEditer &input() const { return *m_window->editorAt(1); }

    std::unique_ptr<Pipe> m_pipe;
    SteppedRunner *m_steps = nullptr;
    SteppedRunner *m_inputs = nullptr;
    std::unique_ptr<TestWindow> m_window;
};

void ArrivingInputTest::init()
{
    resetSettings();
    m_pipe = std::make_unique<Pipe>();
    m_steps = new SteppedRunner;
    m_inputs = new SteppedRunner;
    m_window = std::make_unique<TestWindow>(WindowJobs{
        std::unique_ptr<JobRunner>(m_steps), fewestOfInput, std::unique_ptr<JobRunner>(m_inputs) });
    theApplication().showMainWidget(m_window.get());
    QVERIFY(m_window->open());
}

void ArrivingInputTest::cleanup()
{
    EndOrder::withdraw();
    m_window.reset();
    m_pipe.reset();
}

void ArrivingInputTest::isThereAtItsEnd_data()
{
    QTest::addColumn<bool>("isLong");
    QTest::newRow("short") << false;
    QTest::newRow("long") << true;
}

void ArrivingInputTest::isThereAtItsEnd()
{
    QFETCH(bool, isLong);
    open();
    put(text(isLong));
    const StripInWindow strip(*m_window);
    QTRY_VERIFY(strip.button(u"Stop"_s));
    m_pipe->close();
    makeAllSteps();
    QVERIFY(input().text() == QString::fromUtf8(text(isLong)));
    QVERIFY(input().edited() && !input().document().isHeld());
    QVERIFY(input().path().isEmpty());
    QCOMPARE(input().charCodeName(), u"UTF8"_s);
    QVERIFY(!strip.isShown());
}

void ArrivingInputTest::stoppedKeepsWhatHasCome_data()
{
    QTest::addColumn<QByteArray>("come");
    QTest::addColumn<QString>("kept");
    QTest::newRow("a line") << "one\n"_ba << u"one\n"_s;
    QTest::newRow("part of a line") << "on"_ba << u"on"_s;
    QTest::newRow("part of a character") << "\xe3\x81\x82\xe3"_ba << u"あ\xdce3"_s;
    QTest::newRow("long") << text(true) << QString::fromUtf8(text(true));
}

/// The pipe does not end.
void ArrivingInputTest::stoppedKeepsWhatHasCome()
{
    QFETCH(QByteArray, come);
    QFETCH(QString, kept);
    open();
    put(come);
    const StripInWindow strip(*m_window);
    QTRY_VERIFY(strip.button(u"Stop"_s));
    strip.click(u"Stop"_s);
    makeAllSteps();
    QVERIFY(m_inputs->isIdle());
    QVERIFY(input().text() == kept);
    QVERIFY(input().edited() && !input().document().isHeld());
    QTRY_VERIFY(!m_pipe->isReadByAnybody());
}

void ArrivingInputTest::nothingIsANewDocument_data()
{
    QTest::addColumn<bool>("isStopped");
    QTest::newRow("ended") << false;
    QTest::newRow("stopped") << true;
}

void ArrivingInputTest::nothingIsANewDocument()
{
    QFETCH(bool, isStopped);
    open();
    const StripInWindow strip(*m_window);
    QTRY_VERIFY(strip.button(u"Stop"_s));
    if (isStopped)
        strip.click(u"Stop"_s);
    else
        m_pipe->close();
    makeAllSteps();
    QCOMPARE(m_window->tabTexts(), QStringList(2, u"(new document)"_s));
    QVERIFY(!input().edited());
    QTRY_VERIFY(takesKeys());
    QTest::keyClick(&input(), Qt::Key_X);
    QCOMPARE(input().text(), u"x"_s);
}

void ArrivingInputTest::keysAreRefusedWithAWord()
{
    open();
    put("one\n");
    QTRY_VERIFY(takesKeys());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_X);
    QCOMPARE(StripInWindow(*m_window).text().left(8), u"Not whil"_s);
    m_window->slotCmdFileSave();
    QVERIFY(m_window->requests.isEmpty());
    m_pipe->close();
    makeAllSteps();
    QCOMPARE(input().text(), u"one\n"_s);
}

void ArrivingInputTest::otherDocumentsStayInView()
{
    open();
    put("one\n");
    const TestFiles files;
    theApplication().request(files.write(u"third.txt"_s, "third"));
    QTRY_COMPARE(m_window->currentEditor()->text(), u"third"_s);
    QTRY_VERIFY(takesKeys());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_X);
    m_pipe->close();
    makeAllSteps();
    QCOMPARE(m_window->currentEditor()->text(), u"xthird"_s);
    QCOMPARE(input().text(), u"one\n"_s);
}

void ArrivingInputTest::placeIsGoneTo()
{
    open(LineColumn{ 20'000, 3 });
    put(text(true));
    m_pipe->close();
    makeAllSteps();
    QCOMPARE(input().cursorPosition(), (RowCol{ RowIndex(19'999), 2 }));
}

void ArrivingInputTest::closedTabReadsNoMore()
{
    open();
    put("one\n");
    m_window->slotCmdFileCloseTab();
    makeAllSteps();
    QCOMPARE(m_window->tabTexts(), QStringList{ u"(new document)"_s });
    QVERIFY(!m_pipe->isReadByAnybody());
}

void ArrivingInputTest::quitReadsNoMore()
{
    open();
    put("one\n");
    QVERIFY(m_window->close());
    makeAllSteps();
    QVERIFY(!m_pipe->isReadByAnybody());
}

void ArrivingInputTest::signalReadsNoMore()
{
    open();
    put("one\n");
    EndOrder::give();
    theApplication().endAtOnce();
    m_window.reset();
    QVERIFY(!m_pipe->isReadByAnybody());
}

/// A folder is read in the place of the pipe.
void ArrivingInputTest::readErrorKeepsWhatHasCome()
{
    const SharedFd broken = m_pipe->takeInput();
    theApplication().request({ {}, FileRequest::From::Shell, {}, {}, false, broken });
    QTRY_COMPARE(m_window->tabBar()->count(), 2);
    put("one\n");
    const int folder = ::open("/", O_RDONLY | O_CLOEXEC);
    QCOMPARE(::dup3(folder, broken->number(), O_CLOEXEC), broken->number());
    ::close(folder);
    const MessageBoxes boxes;
    makeAllSteps();
    QCOMPARE(boxes.titles(), QStringList{ u"File Load Error!"_s });
    QCOMPARE(input().text(), u"one\n"_s);
    QVERIFY(input().edited());
}

REGISTER_TEST(runStayingTest<ArrivingInputTest>)
#include "arrivinginput_test.moc"
