#include "app/qpeapplicationesc.h"
#include "platform/requesthold.h"
#include "tests/app/testwindow.h"
#include "tests/app/unsavedtexts.h"
#include "tests/jobs/steppedrunner.h"
#include "tests/testprogram.h"

#include <QDialog>
#include <QTimer>

#include <memory>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

/// The session manager's order to end: the application tells it, then closes the windows.
bool isClosedByItsSession(TestWindow &window)
{
    emit static_cast<QPEApplication *>(qApp)->sessionEnded();
    return window.close();
}

} // namespace

/// What the window asks, writes and keeps when the user's session ends.
class SessionEndTest : public QObject {
    Q_OBJECT

private slots:
    void init();

    void asksAndSaves_data();
    void asksAndSaves();
    void textThatCannotBeKeptKeepsTheSession();
    void asksFromTheLastTab();
    void failedSaveKeepsTheSession();
    void waitsForNoDialog();
    void waitsForNoSaveDuringAReplaceAll_data();
    void waitsForNoSaveDuringAReplaceAll();
    void showsWhatOthersHaveWritten();
    void unwantedEditsAreGivenUp();
    void wantedEditsAreAskedAbout_data();
    void wantedEditsAreAskedAbout();
};

void SessionEndTest::init()
{
    resetSettings();
}

void SessionEndTest::asksAndSaves_data()
{
    QTest::addColumn<bool>("isModified");
    QTest::addColumn<bool>("mayAsk");
    QTest::addColumn<QStringList>("answers");
    QTest::addColumn<bool>("ends");
    QTest::addColumn<QByteArray>("content");
    const QByteArray oldText("old"), newText("xold");
    QTest::newRow("nothing to ask") << false << true << QStringList() << true << oldText;
    QTest::newRow("nothing to ask, no asking") << false << false << QStringList() << true << oldText;
    QTest::newRow("Yes saves") << true << true << QStringList{ u"Yes"_s } << true << newText;
    QTest::newRow("No ends") << true << true << QStringList{ u"No"_s } << true << oldText;
    QTest::newRow("Cancel stays") << true << true << QStringList{ u"Cancel"_s } << false << oldText;
    QTest::newRow("Escape stays") << true << true << QStringList{ u"Escape"_s } << false << oldText;
    QTest::newRow("no asking keeps the text") << true << false << QStringList() << true << oldText;
}

/// The session may go on all the same: everything stays open.
void SessionEndTest::asksAndSaves()
{
    QFETCH(bool, isModified);
    QFETCH(bool, mayAsk);
    QFETCH(QStringList, answers);
    const TestFiles files;
    TestWindow window;
    QVERIFY(openModified(window, files, { u"a.txt"_s }));
    if (!isModified)
        window.currentEditor()->undo();
    QFile::remove(settingsFile());
    MessageBoxes boxes(answers);
    QTEST(window.endSession(mayAsk), "ends");
    QCOMPARE(boxes.titles(), QStringList(answers.size(), u"Confirm File Save"_s));
    QTEST(files.read(u"a.txt"_s), "content");
    QTEST(QFile::exists(settingsFile()), "ends");
    QVERIFY(window.isVisible());
    QCOMPARE(window.tabBar()->count(), 1);
    if (isModified && !mayAsk)
        QCOMPARE(UnsavedTexts::now(), QStringList{ u"xold"_s });
}

/// It would be lost.
void SessionEndTest::textThatCannotBeKeptKeepsTheSession()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(openModified(window, files, { u"a.txt"_s }));
    QFile inTheWay(UnsavedTexts::folder().chopped(1));
    QVERIFY(QDir().mkpath(QFileInfo(inTheWay).path()) && inTheWay.open(QIODevice::WriteOnly));
    QVERIFY(!window.endSession(false));
    QVERIFY(inTheWay.remove());
}

void SessionEndTest::asksFromTheLastTab()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(openModified(window, files, { u"a.txt"_s, u"b.txt"_s, u"c.txt"_s }));
    window.editorAt(1)->undo();
    MessageBoxes boxes({ u"No"_s, u"Yes"_s });
    QVERIFY(window.endSession(true));
    QCOMPARE(boxes.count(), 2);
    QVERIFY(boxes.shown().at(0).text.startsWith(u"\"c.txt\""_s));
    QVERIFY(boxes.shown().at(1).text.startsWith(u"\"a.txt\""_s));
    QCOMPARE(window.tabTexts(), QStringList({ u"a.txt"_s, u"b.txt"_s, u"* c.txt"_s }));
}

void SessionEndTest::failedSaveKeepsTheSession()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(openModified(window, files, { u"a.txt"_s }));
    breakSaving(window.currentEditor());
    MessageBoxes boxes({ u"Yes"_s });
    QVERIFY(!window.endSession(true));
    QCOMPARE(boxes.titles(), QStringList({ u"Confirm File Save"_s, u"File Write Error"_s }));
}

void SessionEndTest::waitsForNoDialog()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(openModified(window, files, { u"a.txt"_s }));
    QDialog dialog(&window);
    dialog.setModal(true);
    dialog.show();
    QVERIFY(!window.endSession(true));
    window.currentEditor()->undo();
    QVERIFY(window.endSession(true));
    QVERIFY(dialog.isVisible());
}

void SessionEndTest::waitsForNoSaveDuringAReplaceAll_data()
{
    QTest::addColumn<bool>("mayAsk");
    QTest::newRow("that may ask stays") << true;
    QTest::newRow("no asking keeps the text") << false;
}

/// The run could not go on before the save has ended, nor the other way round.
void SessionEndTest::waitsForNoSaveDuringAReplaceAll()
{
    QFETCH(bool, mayAsk);
    const TestFiles files;
    auto runner = std::make_unique<SteppedRunner>();
    SteppedRunner &steps = *runner;
    TestWindow window({ std::move(runner), 1 });
    QVERIFY(window.open());
    window.setDocument(files.write(u"a.txt"_s, "old"));
    steps.runAll();
    window.currentEditor()->insert(u"x"_s);
    window.slotCmdFileSave();
    std::optional<RequestHold> replacing(std::in_place);
    steps.runAll();
    QTimer endOfTheRun; // if the event loop comes round
    endOfTheRun.callOnTimeout([&replacing] { replacing.reset(); });
    endOfTheRun.start(0);
    QCOMPARE(window.endSession(mayAsk), !mayAsk);
    QVERIFY(replacing);
    QCOMPARE(QDir(UnsavedTexts::folder()).entryList(QDir::Files).size(), mayAsk ? 0 : 1);
    QCOMPARE(UnsavedTexts::now(), QStringList()); // a next start finds all of it in the file
    replacing.reset();
    settle();
    QCOMPARE(files.read(u"a.txt"_s), QByteArray("xold"));
    QVERIFY(!window.currentEditor()->edited());
}

/// The session may go on, and the record then has other programs' settings.
void SessionEndTest::showsWhatOthersHaveWritten()
{
    TestWindow window;
    QVERIFY(window.open());
    QCOMPARE(window.recentMenu()->actions().first()->text(), u"(no item)"_s);
    const int tabWidth = QMultiLineEdit::defaultTabStop();
    QFile file(settingsFile());
    QVERIFY(file.open(QIODevice::ReadWrite));
    QByteArray content = file.readAll();
    content.replace("TabLen = 4\n", "TabLen = 7\n").replace("Path0 = \n", "Path0 = /f/\n");
    content.replace("Name0 = \n", "Name0 = theirs.txt\n");
    QVERIFY(file.seek(0) && file.write(content) == content.size());
    file.close();
    QVERIFY(window.endSession(true));
    QCOMPARE(tabWidth, 4);
    QCOMPARE(QMultiLineEdit::defaultTabStop(), 7);
    QCOMPARE(window.recentMenu()->actions().first()->text(), u"/f/theirs.txt"_s);
}

void SessionEndTest::unwantedEditsAreGivenUp()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(openModified(window, files, { u"a.txt"_s, u"b.txt"_s }));
    MessageBoxes boxes({ u"No"_s, u"Yes"_s });
    QVERIFY(window.endSession(true));
    QVERIFY(isClosedByItsSession(window));
    QCOMPARE(boxes.count(), 2);
    QCOMPARE(files.read(u"a.txt"_s), QByteArray("xold"));
    QCOMPARE(files.read(u"b.txt"_s), QByteArray("old"));
    QCOMPARE(recentFiles().entries[0].name, u"a.txt"_s);
    QCOMPARE(recentFiles().entries[1].name, u"b.txt"_s);
}

void SessionEndTest::wantedEditsAreAskedAbout_data()
{
    QTest::addColumn<std::function<bool(TestWindow &)>>("end");
    const auto row = [](const char *name, const std::function<bool(TestWindow &)> &end) {
        QTest::newRow(name) << end;
    };
    row("edited after the answer", [](TestWindow &window) {
        QTest::keyClicks(window.currentEditor(), u"y"_s);
        return isClosedByItsSession(window);
    });
    row("window closed by its user", [](TestWindow &window) { return window.close(); });
    row("a later end that could not ask",
        [](TestWindow &window) { return window.endSession(false) && isClosedByItsSession(window); });
}

void SessionEndTest::wantedEditsAreAskedAbout()
{
    QFETCH(std::function<bool(TestWindow &)>, end);
    const TestFiles files;
    TestWindow window;
    QVERIFY(openModified(window, files, { u"a.txt"_s }));
    {
        const MessageBoxes refusing({ u"No"_s });
        QVERIFY(window.endSession(true));
    }
    const MessageBoxes boxes({ u"Yes"_s });
    QVERIFY(end(window));
    QCOMPARE(boxes.titles().last(), u"Confirm File Save"_s);
    QVERIFY(files.read(u"a.txt"_s).contains('x'));
}

namespace {

int runSessionEndTest(int argc, char **argv)
{
    QPEApplicationEsc application(argc, argv);
    SessionEndTest test;
    return QTest::qExec(&test, argc, argv);
}

} // namespace

REGISTER_TEST(runSessionEndTest)

#include "sessionend_test.moc"
