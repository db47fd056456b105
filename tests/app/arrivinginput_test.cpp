#include "app/documentarea.h"
#include "editor/noticequeue.h"
#include "files/endorder.h"
#include "search/frmsearchdialog.h"
#include "tests/app/stayingapplication.h"
#include "tests/app/stripinwindow.h"
#include "tests/app/unsavedtexts.h"
#include "tests/files/pipe.h"
#include "tests/jobs/steppedrunner.h"

#include <QClipboard>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 fewestOfInput = 100'000; ///< of what is read in several steps, when all has come

/// How a document may go.
enum class Ending { ClosedTab, Quit, Logout };

enum class Then { Goes, Stays };

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
    void isShownAsItComes();
    void isSearchedAndCopiedMeanwhile();
    void whatHasComeIsAskedAbout_data() { addWays(); }
    void whatHasComeIsAskedAbout();
    void whatHasComeIsSavedIfWanted_data() { addWays(); }
    void whatHasComeIsSavedIfWanted();
    void whatComesWhileItsNameIsChosenIsSavedToo_data();
    void whatComesWhileItsNameIsChosenIsSavedToo();
    void moreComesWhereItIsNotToGo_data();
    void moreComesWhereItIsNotToGo();
    void cancelledLogoutKeepsWhatHasCome();
    void nothingIsNotAskedAbout_data() { addWays(); }
    void nothingIsNotAskedAbout();
    void signalKeepsWhatHasCome();
    void signalKeepsNothingOfNothing();
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
    void putAndShow(const QByteArray &bytes, const QString &text)
    {
        constexpr int mostSteps = 10;
        m_pipe->put(bytes);
        for (int i = 0; i < mostSteps && input().text() != text; ++i)
            m_inputs->step();
        QCOMPARE(input().text(), text);
        QVERIFY(input().document().isHeld());
    }
    static void addWays();
    bool go(Ending way, Then then = Then::Goes);
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
    UnsavedTexts::removeAll();
    m_pipe = std::make_unique<Pipe>();
    m_steps = new SteppedRunner;
    m_inputs = new SteppedRunner;
    m_window = std::make_unique<TestWindow>(WindowJobs{ .runner = std::unique_ptr<JobRunner>(m_steps),
        .fewest = fewestOfInput,
        .inputRunner = std::unique_ptr<JobRunner>(m_inputs) });
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

/// Also what has no end yet.
void ArrivingInputTest::isShownAsItComes()
{
    open();
    putAndShow("one\n", u"one\n"_s);
    putAndShow("tw", u"one\ntw"_s);
    putAndShow("o\n\xe3\x81\x82\n", u"one\ntwo\nあ\n"_s);
    QCOMPARE(input().numLines(), 4);
    input().setCursorPlace({ input().store().end() });
    putAndShow("four", u"one\ntwo\nあ\nfour"_s);
    QCOMPARE(input().cursorOffset(), Offset(10));
    m_pipe->close();
    makeAllSteps();
    QCOMPARE(input().text(), u"one\ntwo\nあ\nfour"_s);
    QCOMPARE(input().cursorOffset(), Offset(10));
}

void ArrivingInputTest::isSearchedAndCopiedMeanwhile()
{
    open();
    putAndShow("one\ntwo\n", u"one\ntwo\n"_s);
    input().select({ Offset(4) }, { Offset(7) });
    m_window->slotCmdEditCopy();
    QCOMPARE(QGuiApplication::clipboard()->text(), u"two"_s);
    input().setCursorPlace({});
    m_window->slotCmdViewSearch();
    auto *const panel = m_window->findChild<frmSearchDialog *>();
    panel->findText = u"two"_s;
    panel->hide();
    m_window->slotEtcSearchNext();
    QCOMPARE(input().markedText(), u"two"_s);
    QVERIFY(input().document().isHeld());
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

void ArrivingInputTest::addWays()
{
    QTest::addColumn<Ending>("way");
    QTest::newRow("closed tab") << Ending::ClosedTab;
    QTest::newRow("quit") << Ending::Quit;
    QTest::newRow("logout") << Ending::Logout;
}

/// The steps that the window waits for are made meanwhile.
bool ArrivingInputTest::go(Ending way, Then then)
{
    QTimer stepping;
    stepping.callOnTimeout(this, [this] { m_inputs->step() || m_steps->step(); });
    stepping.start(0);
    switch (way) {
    case Ending::ClosedTab:
        m_window->slotCmdFileCloseTab();
        while (then == Then::Goes && !m_inputs->isIdle())
            QCoreApplication::processEvents();
        settle();
        return m_window->tabBar()->count() == 1;
    case Ending::Quit:
        return m_window->close();
    case Ending::Logout:
        return m_window->endSession(true);
    }
    Q_UNREACHABLE();
}

void ArrivingInputTest::whatHasComeIsAskedAbout()
{
    QFETCH(Ending, way);
    open();
    put("one\n");
    const MessageBoxes boxes({ u"No"_s });
    QVERIFY(go(way));
    m_inputs->runAll();
    QCOMPARE(boxes.titles(), QStringList{ u"Confirm File Save"_s });
    QTRY_VERIFY(!m_pipe->isReadByAnybody());
}

void ArrivingInputTest::whatHasComeIsSavedIfWanted()
{
    QFETCH(Ending, way);
    open();
    put("one\n");
    const TestFiles files;
    m_window->choices << FileChoice{ files.folder(), u"b.txt"_s };
    const MessageBoxes boxes({ u"Yes"_s });
    QVERIFY(go(way));
    QCOMPARE(files.read(u"b.txt"_s), "one\n");
}

void ArrivingInputTest::whatComesWhileItsNameIsChosenIsSavedToo_data()
{
    QTest::addColumn<bool>("ends");
    QTest::newRow("more comes") << false;
    QTest::newRow("it ends") << true;
}

void ArrivingInputTest::whatComesWhileItsNameIsChosenIsSavedToo()
{
    QFETCH(bool, ends);
    open();
    putAndShow("one\n", u"one\n"_s);
    const TestFiles files;
    m_window->choices << FileChoice{ files.folder(), u"b.txt"_s };
    m_window->whileChoosing = [this, ends] {
        putAndShow("two\n", u"one\ntwo\n"_s);
        if (!ends)
            return;
        m_pipe->close();
        makeAllSteps();
        QVERIFY(!input().document().isHeld());
    };
    const MessageBoxes boxes({ u"Yes"_s });
    QVERIFY(go(Ending::ClosedTab));
    QCOMPARE(m_window->requests.size(), 1);
    QCOMPARE(files.read(u"b.txt"_s), "one\ntwo\n");
}

void ArrivingInputTest::moreComesWhereItIsNotToGo_data()
{
    QTest::addColumn<Ending>("way");
    QTest::addColumn<QString>("answer");
    QTest::newRow("closed tab") << Ending::ClosedTab << u"Cancel"_s;
    QTest::newRow("quit") << Ending::Quit << u"Cancel"_s;
    QTest::newRow("closed tab, without a name") << Ending::ClosedTab << u"Yes"_s;
    QTest::newRow("quit, without a name") << Ending::Quit << u"Yes"_s;
}

/// As if nobody had asked, whether that is said at the question or where the name is asked for.
void ArrivingInputTest::moreComesWhereItIsNotToGo()
{
    QFETCH(Ending, way);
    QFETCH(QString, answer);
    open();
    putAndShow("one\n", u"one\n"_s);
    const MessageBoxes boxes({ answer });
    QVERIFY(!go(way, Then::Stays));
    QCOMPARE(boxes.titles(), QStringList{ u"Confirm File Save"_s });
    QCOMPARE(m_window->requests.size(), answer == u"Yes" ? 1 : 0);
    putAndShow("two\n", u"one\ntwo\n"_s);
    QVERIFY(m_pipe->isReadByAnybody());
    m_pipe->close();
    makeAllSteps();
    QCOMPARE(input().text(), u"one\ntwo\n"_s);
    QVERIFY(input().edited() && !input().document().isHeld());
}

/// A session that ends waits for nobody. It is a document like any other then, of which no more comes.
void ArrivingInputTest::cancelledLogoutKeepsWhatHasCome()
{
    open();
    put("one\n");
    const MessageBoxes boxes({ u"Cancel"_s });
    QVERIFY(!go(Ending::Logout));
    QCOMPARE(boxes.count(), 1);
    QCOMPARE(input().text(), u"one\n"_s);
    QVERIFY(input().edited() && !input().document().isHeld());
    QVERIFY(!StripInWindow(*m_window).isShown());
    QTRY_VERIFY(!m_pipe->isReadByAnybody());
}

void ArrivingInputTest::nothingIsNotAskedAbout()
{
    QFETCH(Ending, way);
    open();
    const MessageBoxes boxes;
    QVERIFY(go(way));
    QCOMPARE(boxes.count(), 0);
    QTRY_VERIFY(!m_pipe->isReadByAnybody());
}

/// Part of a line too.
void ArrivingInputTest::signalKeepsWhatHasCome()
{
    open();
    putAndShow("one\ntw", u"one\ntw"_s);
    EndOrder::give();
    theApplication().endAtOnce();
    m_window.reset();
    QVERIFY(!m_pipe->isReadByAnybody());
    QCOMPARE(UnsavedTexts::leftBehind(), QStringList{ u"one\ntw"_s });
}

void ArrivingInputTest::signalKeepsNothingOfNothing()
{
    open();
    EndOrder::give();
    theApplication().endAtOnce();
    m_window.reset();
    QCOMPARE(UnsavedTexts::leftBehind(), QStringList());
}

/// A folder is read in the place of the pipe.
void ArrivingInputTest::readErrorKeepsWhatHasCome()
{
    const SharedFd broken = m_pipe->takeInput();
    theApplication().request({ {}, FileRequest::From::Shell, {}, {}, false, broken });
    QTRY_COMPARE(m_window->tabBar()->count(), 2);
    put("one\n");
    breakInput(*broken);
    const MessageBoxes boxes;
    makeAllSteps();
    QCOMPARE(boxes.titles(), QStringList{ u"File Load Error!"_s });
    QCOMPARE(input().text(), u"one\n"_s);
    QVERIFY(input().edited());
}

REGISTER_TEST(runStayingTest<ArrivingInputTest>)
#include "arrivinginput_test.moc"
