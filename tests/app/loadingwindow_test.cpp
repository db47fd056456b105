#include "app/qpeapplicationesc.h"
#include "platform/keypause.h"
#include "search/frmjumpto.h"
#include "tests/app/stripinwindow.h"
#include "tests/jobs/steppedrunner.h"
#include "tests/testprogram.h"

#include <QClipboard>
#include <QLineEdit>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace {

QByteArray largeLog()
{
    return QByteArray("a line of a large log\n").repeated(60000);
}

} // namespace

/// The main window while it loads a large file: its keys, its strip, and its end.
class LoadingWindowTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void refusedKeySaysSo();
    void keysMoveInWhatHasCome();
    void endIsGoneToWhenItHasCome();
    void endIsLeftByWhoHasMoved();
    void selectionToTheEndStaysAsItIs();
    void lineThatHasNotComeIsGoneToWhenItHas();
    void lineThatHasNotComeIsLeftWhereItsUserHasMoved();
    void newestJumpToWhatHasNotComeCounts();
    void requestedPlaceIsGoneToWhenItHasCome();
    void requestedPlaceIsLeftWhereItsUserHasMoved();
    void newestRequestedPlaceCounts();
    void commandsThatChangeAreRefused();
    void stripTellsHowFarItIs();
    void otherTabIsTypedInto();
    void escapeInTheStripStops();
    void keysBehindAStopGoNowhere_data();
    void keysBehindAStopGoNowhere();
    void keysForANoticeThatHasGoneGoNowhere();
    void stopInTheStripStops();
    void escapeInTheTextClosesTheTab();
    void secondRequestShowsIt();
    void requestForAnotherFileIsServed();
    void quittingStopsIt();
    void logoutStopsIt();
    void endAtOnceRemembersTheFile();
    void fontMayChangeMeanwhile();
    void undoIsOfTheDocumentThatIsShown();

private:
    bool step(int steps);
    void jumpTo(int line);
    void request(int line)
    {
        m_window->openRequested({ m_log, FileRequest::From::Shell, LineColumn{ line, 1 } });
    }
    /// Makes all steps; the number of the line in which the cursor is then.
    int lineWhenWhole();
    ctlEditer &editor() { return *m_window->currentEditor(); }
    void press(int key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key(key), modifiers);
    }

    std::unique_ptr<TestFiles> m_files;
    SteppedRunner *m_runner = nullptr;
    std::unique_ptr<TestWindow> m_window;
    QString m_log;
};

/// With a document that is typed into, and a log of which the first part has come.
void LoadingWindowTest::init()
{
    resetSettings();
    m_files = std::make_unique<TestFiles>();
    auto runner = std::make_unique<SteppedRunner>();
    m_runner = runner.get();
    m_window = std::make_unique<TestWindow>(WindowJobs{ std::move(runner), qint64{ 1 } << 20 });
    QVERIFY(m_window->open());
    QTest::keyClicks(&editor(), u"typed"_s);
    m_log = m_files->write(u"log"_s, largeLog());
    m_window->setDocument(m_log);
    QVERIFY(step(1));
    QVERIFY(editor().document().isHeld());
    QVERIFY(editor().document().store().length() > 0);
    QTRY_VERIFY(takesKeys());
}

void LoadingWindowTest::cleanup()
{
    m_window.reset();
}

bool LoadingWindowTest::step(int steps)
{
    while (steps > 0 && m_runner->step())
        --steps;
    return steps == 0;
}

void LoadingWindowTest::refusedKeySaysSo()
{
    const StripInWindow strip(*m_window);
    const QString shown = editor().text();
    press(Qt::Key_X);
    QVERIFY(strip.text().startsWith(u"Not while it is loading"_s));
    QCOMPARE(editor().text(), shown);
    m_runner->runAll();
    QTRY_VERIFY(!editor().document().isHeld());
    QVERIFY(!strip.isShown());
    press(Qt::Key_X);
    QVERIFY(editor().text().startsWith(u'x'));
    QCOMPARE(m_window->tabTexts(), QStringList({ u"* (new document)"_s, u"* log"_s }));
}

void LoadingWindowTest::keysMoveInWhatHasCome()
{
    const StripInWindow strip(*m_window);
    press(Qt::Key_PageDown);
    const Offset place = editor().cursorOffset();
    QVERIFY(place > Offset());
    m_runner->runAll();
    QTRY_VERIFY(!editor().document().isHeld());
    QCOMPARE(editor().cursorOffset(), place);
    QCOMPARE(editor().numLines(), 60001);
}

void LoadingWindowTest::endIsGoneToWhenItHasCome()
{
    const StripInWindow strip(*m_window);
    press(Qt::Key_End, Qt::ControlModifier);
    QVERIFY(editor().cursorOffset() > Offset());
    QVERIFY(strip.text().startsWith(u"To be gone to when it is loaded"_s));
    QCOMPARE(lineWhenWhole(), 60001);
}

void LoadingWindowTest::endIsLeftByWhoHasMoved()
{
    press(Qt::Key_End, Qt::ControlModifier);
    press(Qt::Key_Home, Qt::ControlModifier);
    QCOMPARE(lineWhenWhole(), 1);
}

void LoadingWindowTest::selectionToTheEndStaysAsItIs()
{
    press(Qt::Key_End, Qt::ControlModifier | Qt::ShiftModifier);
    const Offset end = editor().cursorOffset();
    m_runner->runAll();
    QTRY_VERIFY(!editor().document().isHeld());
    settle();
    QCOMPARE(editor().cursorOffset(), end);
}

void LoadingWindowTest::jumpTo(int line)
{
    QTimer::singleShot(0, m_window.get(), [this, line] {
        auto *const dialog = m_window->findChild<frmJumpTo *>();
        dialog->findChild<QLineEdit *>()->setText(QString::number(line));
        dialog->accept();
    });
    m_window->slotCmdViewGyoJump();
}

int LoadingWindowTest::lineWhenWhole()
{
    m_runner->runAll();
    while (editor().document().isHeld())
        QCoreApplication::processEvents();
    settle();
    return int(editor().store().lineAt(editor().cursorOffset()).value()) + 1;
}

void LoadingWindowTest::lineThatHasNotComeIsGoneToWhenItHas()
{
    const StripInWindow strip(*m_window);
    QVERIFY(editor().numLines() < 50000);
    jumpTo(50000);
    QCOMPARE(editor().cursorOffset(), Offset());
    QVERIFY(strip.text().startsWith(u"To be gone to when it is loaded"_s));
    QCOMPARE(lineWhenWhole(), 50000);
}

void LoadingWindowTest::lineThatHasNotComeIsLeftWhereItsUserHasMoved()
{
    jumpTo(50000);
    press(Qt::Key_Down);
    QCOMPARE(lineWhenWhole(), 2);
}

void LoadingWindowTest::newestJumpToWhatHasNotComeCounts()
{
    jumpTo(50000);
    jumpTo(55000);
    QCOMPARE(lineWhenWhole(), 55000);
}

void LoadingWindowTest::requestedPlaceIsGoneToWhenItHasCome()
{
    request(50000);
    QCOMPARE(editor().cursorOffset(), Offset());
    QCOMPARE(lineWhenWhole(), 50000);
}

void LoadingWindowTest::requestedPlaceIsLeftWhereItsUserHasMoved()
{
    request(50000);
    press(Qt::Key_Down);
    QCOMPARE(lineWhenWhole(), 2);
}

void LoadingWindowTest::newestRequestedPlaceCounts()
{
    request(50000);
    request(40000);
    QCOMPARE(lineWhenWhole(), 40000);
}

void LoadingWindowTest::commandsThatChangeAreRefused()
{
    const StripInWindow strip(*m_window);
    const QString shown = editor().text();
    const MessageBoxes boxes;
    const std::pair<const char *, void (frmMain::*)()> commands[] = {
        { "Save", &frmMain::slotCmdFileSave },
        { "Save As", &frmMain::slotCmdFileSaveAs },
        { "Reload", &frmMain::slotCmdFileReload },
        { "Undo", &frmMain::slotCmdEditUndo },
        { "Redo", &frmMain::slotCmdEditRedo },
        { "Cut", &frmMain::slotCmdEditCut },
        { "Paste", &frmMain::slotCmdEditPast },
        { "Date and Time", &frmMain::slotCmdEditDateTime },
    };
    QGuiApplication::clipboard()->setText(u"clip"_s);
    m_window->slotCmdEditSelAll();
    for (const auto &[name, command] : commands) {
        (m_window.get()->*command)();
        QVERIFY2(editor().text() == shown, name);
    }
    QVERIFY(strip.text().startsWith(u"Not while it is loading"_s));
    QCOMPARE(QGuiApplication::clipboard()->text(), u"clip"_s);
    QCOMPARE(boxes.count(), 0);
    QCOMPARE(m_window->requests.size(), 0);
    QCOMPARE(m_files->read(u"log"_s), largeLog());
}

void LoadingWindowTest::stripTellsHowFarItIs()
{
    const StripInWindow strip(*m_window);
    m_runner->runAll();
    m_window->setDocument(m_files->write(u"larger"_s, largeLog().repeated(10)));
    QTRY_VERIFY(strip.isShown());
    QCOMPARE(strip.offers(), QStringList{ u"Stop"_s });
    const auto percent = [&strip] {
        const QString text = strip.widget().findChild<QLabel *>()->text();
        return text.endsWith(u'%') ? text.section(u' ', -1).chopped(1).toInt() : 0;
    };
    int before = 0;
    for (int grown = 0; grown < 2; before = percent()) {
        QVERIFY(step(1));
        QVERIFY(percent() >= before);
        grown += percent() > before ? 1 : 0;
    }
    QVERIFY(editor().document().isHeld());
}

void LoadingWindowTest::otherTabIsTypedInto()
{
    m_window->slotCmdViewWinPrev();
    QTest::keyClicks(QApplication::focusWidget(), u" on"_s);
    QVERIFY(step(1));
    QTest::keyClicks(QApplication::focusWidget(), u" and on"_s);
    m_runner->runAll();
    QTest::keyClicks(QApplication::focusWidget(), u"."_s);
    QTRY_VERIFY(!m_window->editorAt(1)->document().isHeld());
    QTest::keyClicks(QApplication::focusWidget(), u"."_s);
    QCOMPARE(m_window->editorAt(0)->text(), u"typed on and on.."_s);
    QCOMPARE(m_window->editorAt(1)->numLines(), 60001);
    QVERIFY(!m_window->editorAt(1)->edited());
    QCOMPARE(m_window->currentEditor(), m_window->editorAt(0));
}

void LoadingWindowTest::escapeInTheStripStops()
{
    const StripInWindow strip(*m_window);
    QTRY_VERIFY(strip.isShown());
    press(Qt::Key_F6);
    QVERIFY(strip.widget().hasKeys());
    press(Qt::Key_Escape);
    QCOMPARE(m_window->tabTexts(), QStringList{ u"* (new document)"_s });
    QVERIFY(!strip.isShown());
    QTRY_VERIFY(takesKeys());
    QCOMPARE(QApplication::focusWidget(), m_window->currentEditor());
    m_runner->runAll();
    QCOMPARE(m_window->tabBar()->count(), 1);
    QCOMPARE(editor().text(), u"typed"_s);
}

/// The second one is pressed before anybody can see that the first has done it.
void LoadingWindowTest::keysBehindAStopGoNowhere_data()
{
    QTest::addColumn<int>("key");
    QTest::newRow("Escape") << int(Qt::Key_Escape);
    QTest::newRow("Return") << int(Qt::Key_Return);
}

void LoadingWindowTest::keysBehindAStopGoNowhere()
{
    QFETCH(int, key);
    const StripInWindow strip(*m_window);
    QTRY_VERIFY(strip.isShown());
    press(Qt::Key_F6);
    const QDeadlineTimer noticed(KeyPause::untilNoticed);
    const auto pressInWindow = [&] { QTest::keyClick(m_window->windowHandle(), Qt::Key(key)); };
    pressInWindow();
    QCOMPARE(m_window->tabTexts(), QStringList{ u"* (new document)"_s });
    while (!takesKeys()) {
        pressInWindow();
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 5);
    }
    QVERIFY(noticed.hasExpired());
    QCOMPARE(m_window->tabTexts(), QStringList{ u"* (new document)"_s });
    QCOMPARE(editor().text(), u"typed"_s);
}

/// Who presses F6 then saw a notice that has just gone.
void LoadingWindowTest::keysForANoticeThatHasGoneGoNowhere()
{
    const StripInWindow strip(*m_window);
    QTRY_VERIFY(strip.isShown());
    m_runner->runAll();
    QTRY_VERIFY(!strip.isShown());
    const QDeadlineTimer noticed(KeyPause::untilNoticed);
    press(Qt::Key_F6);
    QVERIFY(!takesKeys());
    QTest::keyClick(m_window->windowHandle(), Qt::Key_Escape);
    QTRY_VERIFY(takesKeys());
    QVERIFY(noticed.hasExpired());
    QCOMPARE(m_window->tabTexts(), QStringList({ u"* (new document)"_s, u"log"_s }));
}

void LoadingWindowTest::stopInTheStripStops()
{
    const StripInWindow strip(*m_window);
    QTRY_VERIFY(strip.isShown());
    QVERIFY(strip.click(u"Stop"_s));
    QCOMPARE(m_window->tabTexts(), QStringList{ u"* (new document)"_s });
    m_window->setDocument(m_log);
    m_runner->runAll();
    QTRY_VERIFY(!editor().document().isHeld());
    QCOMPARE(editor().numLines(), 60001);
}

void LoadingWindowTest::escapeInTheTextClosesTheTab()
{
    const MessageBoxes boxes;
    press(Qt::Key_Escape);
    QCOMPARE(m_window->tabTexts(), QStringList{ u"* (new document)"_s });
    QCOMPARE(boxes.count(), 0);
    m_runner->runAll();
    QCOMPARE(m_window->tabBar()->count(), 1);
    QCOMPARE(recentFiles().entries.front().name, u"log"_s);
}

void LoadingWindowTest::secondRequestShowsIt()
{
    m_window->slotCmdViewWinPrev();
    m_window->setDocument(m_log);
    QCOMPARE(m_window->tabBar()->count(), 2);
    QCOMPARE(m_window->currentEditor(), m_window->editorAt(1));
    m_runner->runAll();
    QTRY_VERIFY(!editor().document().isHeld());
    QCOMPARE(editor().numLines(), 60001);
}

void LoadingWindowTest::requestForAnotherFileIsServed()
{
    m_window->setDocument(m_files->write(u"small"_s, "text\n"));
    QCOMPARE(editor().text(), u"text\n"_s);
    m_window->setDocument(m_files->write(u"second"_s, largeLog() + "end\n"));
    m_runner->runAll();
    QTRY_VERIFY(!m_window->editorAt(1)->document().isHeld() && !editor().document().isHeld());
    QCOMPARE(m_window->editorAt(1)->numLines(), 60001);
    QCOMPARE(editor().numLines(), 60002);
    QCOMPARE(m_window->tabTexts(), QStringList({ u"* (new document)"_s, u"log"_s, u"small"_s, u"second"_s }));
}

void LoadingWindowTest::quittingStopsIt()
{
    const MessageBoxes boxes({ u"No"_s });
    QVERIFY(m_window->close());
    QCOMPARE(boxes.count(), 1);
    QCOMPARE(m_window->tabBar()->count(), 0);
    m_runner->runAll();
}

void LoadingWindowTest::logoutStopsIt()
{
    const MessageBoxes boxes({ u"No"_s });
    QVERIFY(m_window->endSession(true));
    QCOMPARE(boxes.count(), 1);
    emit static_cast<QPEApplication *>(qApp)->sessionEnded();
    QVERIFY(m_window->close());
    m_runner->runAll();
}

/// As by a signal: nothing of the file is lost, and its old place stays.
void LoadingWindowTest::endAtOnceRemembersTheFile()
{
    emit static_cast<QPEApplication *>(qApp)->endingAtOnce();
    QVERIFY(std::ranges::any_of(
        recentFiles().entries, [](const RecentEntry &entry) { return entry.name == u"log"_s; }));
    QCOMPARE(m_files->read(u"log"_s), largeLog());
}

void LoadingWindowTest::fontMayChangeMeanwhile()
{
    appSettings().FontSize = 20;
    appSettings().WrapMode = 1;
    m_window->applySettings();
    QVERIFY(step(1));
    appSettings().FontSize = 6;
    m_window->applySettings();
    m_runner->runAll();
    QTRY_VERIFY(!editor().document().isHeld());
    editor().store().checkInvariants();
    QVERIFY(editor().text() == QString::fromUtf8(largeLog()));
}

/// Another one that is saved meanwhile has nothing to undo any more.
void LoadingWindowTest::undoIsOfTheDocumentThatIsShown()
{
    m_runner->runAll();
    QTRY_VERIFY(!editor().document().isHeld());
    QTRY_VERIFY(takesKeys());
    press(Qt::Key_X);
    m_window->slotCmdFileSave();
    m_window->slotCmdViewWinPrev();
    QVERIFY(m_window->isItemEnabled(EditCommand::Undo));
    m_runner->runAll();
    QTRY_VERIFY(!m_window->editorAt(1)->edited());
    QVERIFY(m_window->isItemEnabled(EditCommand::Undo));
    m_window->slotCmdViewWinNext();
    QVERIFY(!m_window->isItemEnabled(EditCommand::Undo));
}

namespace {

int runLoadingWindowTest(int argc, char **argv)
{
    QPEApplicationEsc application(argc, argv);
    LoadingWindowTest test;
    return QTest::qExec(&test, argc, argv);
}

} // namespace

REGISTER_TEST(runLoadingWindowTest)
#include "loadingwindow_test.moc"
