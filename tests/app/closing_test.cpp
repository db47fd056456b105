#include "platform/qcop.h"
#include "tests/app/testwindow.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDBusConnection>
#include <QDialog>
#include <QFileInfo>
#include <QPointer>
#include <QProcess>
#include <QStandardPaths>

#include <csignal>
#include <cstdio>

using namespace Qt::StringLiterals;

/// Stands on the message bus where the file explorer would, and keeps what it is told.
class FileExplorer : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "QPE.Application")
public:
    FileExplorer()
    {
        QDBusConnection bus = QDBusConnection::sessionBus();
        bus.registerObject(u"/QPE/Application/corvex"_s, this, QDBusConnection::ExportAllSlots);
        bus.registerService(u"QPE.Application.corvex"_s);
    }
    ~FileExplorer() override
    {
        QDBusConnection::sessionBus().unregisterService(u"QPE.Application.corvex"_s);
        QDBusConnection::sessionBus().unregisterObject(u"/QPE/Application/corvex"_s);
    }
    QStringList told;

signals:
    void refreshed(const QString &file);

public slots:
    void refreshListItem(const QString &path, const QString &name)
    {
        told << path + u'|' + name;
        emit refreshed(told.constLast());
    }
};

/// This program as the file explorer, in a process of its own: prints what it is told.
class ExplorerProcess : public QProcess {
public:
    ExplorerProcess() { start(QCoreApplication::applicationFilePath(), { u"explorer"_s }); }
    ~ExplorerProcess() override
    {
        kill();
        waitForFinished();
    }
    Q_DISABLE_COPY_MOVE(ExplorerProcess)

    bool isListening()
    {
        waitForReadyRead();
        return readAllStandardOutput() == "listening\n";
    }
    /// All so far.
    QByteArray told() { return m_told += readAllStandardOutput(); }

private:
    QByteArray m_told;
};

/// Saving, closing and quitting: what is written, what is asked, what stays open.
class ClosingTest : public QObject {
    Q_OBJECT

private slots:
    void init();

    void saveWritesTheDocument();
    void saveOfANewDocumentAsksForAName();
    void saveAsCancelledWritesNothing();
    void saveAsTakesNameAndCodes();
    void failedSaveKeepsTheMark();
    void savingTellsTheFileExplorer();
    void failedSavingTellsNobody();
    void explorerThatHangsIsNoHarm();
    void explorerThatDiedIsNoHarm();

    void saveAllWritesModifiedOnes();
    void saveAllStopsAtTheFirstFailure();
    void saveAllStopsWhenCancelled();

    void closeAsksOnlyAboutEdits();
    void closeAnswers_data();
    void closeAnswers();
    void closeKeepsTheTabWhenSavingFails();
    void closedEditorsAreGone();
    void closingShowsTheNeighbour();

    void quitAsksFromTheLastTab();
    void quitCancelledAtTheSecondQuestion();
    void quitStopsAtAFailingSave();
    void quitWithSaveNeverAsks();
    void quitWithSaveStopsAtAFailure();
    void closingTheWindowAsks();
    void sessionEnds_data();
    void sessionEnds();
    void sessionEndsWhileADialogIsOpen();
};

namespace {

int runExplorer()
{
    const auto print = [](const QString &text) {
        std::printf("%s\n", qPrintable(text));
        std::fflush(stdout);
    };
    FileExplorer explorer;
    QObject::connect(&explorer, &FileExplorer::refreshed, print);
    print(u"listening"_s);
    return QApplication::exec();
}

QString settingsFile()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + u"/marlopad.conf"_s;
}

/// Opens files a.txt, b.txt … with one changed character each; the document of the window's start is closed.
bool openModified(TestWindow &window, const TestFiles &files, const QStringList &names)
{
    if (!window.open())
        return false;
    window.slotCmdFileCloseTab();
    for (const QString &name : names) {
        window.setDocument(files.write(name, "old"));
        QTest::keyClicks(window.currentEditor(), u"x"_s);
    }
    return window.tabBar()->count() == names.size();
}

/// Makes saving a document fail: a folder stands where its file should be written.
void breakSaving(ctlEditer *editor)
{
    QFile::remove(editor->path() + editor->name());
    QDir().mkpath(editor->path() + editor->name());
}

} // namespace

void ClosingTest::init()
{
    resetSettings();
}

void ClosingTest::saveWritesTheDocument()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(window.open());
    window.setDocument(files.write(u"a.txt"_s, "one\r\n"));
    QTest::keyClicks(window.currentEditor(), u"x"_s);
    QCOMPARE(window.tabTexts().at(1), u"* a.txt"_s);
    MessageBoxes boxes;
    window.item(MenuId::File, 5)->trigger();
    QCOMPARE(files.read(u"a.txt"_s), QByteArray("xone\r\n"));
    QCOMPARE(window.tabTexts().at(1), u"a.txt"_s);
    QVERIFY(!window.currentEditor()->edited());
    QCOMPARE(window.editStates(), u"----"_s);
    QCOMPARE(boxes.count(), 0);
}

void ClosingTest::saveOfANewDocumentAsksForAName()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(window.open());
    QTest::keyClicks(window.currentEditor(), u"x"_s);
    window.slotCmdFileSave();
    QCOMPARE(window.requests.size(), 1);
    QCOMPARE(window.requests.at(0).mode, frmFileDialog::SaveAs);
    QCOMPARE(window.requests.at(0).folder, QDir::homePath() + u"/Documents/"_s);
    QCOMPARE(window.requests.at(0).name, u".txt"_s);
    QCOMPARE(window.tabTexts(), QStringList{ u"* (new document)"_s });
    window.choices << FileChoice{ files.folder(), u"n.txt"_s, CharCodeUtf8, ReturnCodeLf };
    window.slotCmdFileSave();
    QCOMPARE(files.read(u"n.txt"_s), QByteArray("x"));
    QCOMPARE(window.tabTexts(), QStringList{ u"n.txt"_s });
    QCOMPARE(window.windowTitle(), u"Marlo!Pad QT  [UTF8][LF]"_s);
}

void ClosingTest::saveAsCancelledWritesNothing()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(openModified(window, files, { u"a.txt"_s }));
    QVERIFY(!window.slotCmdFileSaveAs(window.currentEditor()));
    QCOMPARE(window.requests.at(0).folder, files.folder());
    QCOMPARE(window.requests.at(0).name, u"a.txt"_s);
    QCOMPARE(files.read(u"a.txt"_s), QByteArray("old"));
    QCOMPARE(window.tabTexts(), QStringList{ u"* a.txt"_s });
    window.currentEditor()->setEdited(false);
}

void ClosingTest::saveAsTakesNameAndCodes()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(window.open());
    window.setDocument(files.write(u"a.txt"_s, "\x82\xA0\r\n"));
    window.choices << FileChoice{ files.folder(), u"b.txt"_s, CharCodeEuc, ReturnCodeCr };
    window.item(MenuId::File, 6)->trigger();
    QCOMPARE(files.read(u"b.txt"_s), QByteArray("\xA4\xA2\r"));
    QCOMPARE(files.read(u"a.txt"_s), QByteArray("\x82\xA0\r\n"));
    QCOMPARE(window.currentEditor()->name(), u"b.txt"_s);
    QCOMPARE(window.tabTexts().at(1), u"b.txt"_s);
    QCOMPARE(window.windowTitle(), u"Marlo!Pad QT  [EUC][CR]"_s);
}

void ClosingTest::failedSaveKeepsTheMark()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(openModified(window, files, { u"a.txt"_s }));
    breakSaving(window.currentEditor());
    MessageBoxes boxes;
    QVERIFY(!window.slotCmdFileSave(window.currentEditor()));
    QCOMPARE(boxes.count(), 1);
    QCOMPARE(window.tabTexts(), QStringList{ u"* a.txt"_s });
    QVERIFY(window.currentEditor()->edited());
    window.currentEditor()->setEdited(false);
}

void ClosingTest::savingTellsTheFileExplorer()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(openModified(window, files, { u"a.txt"_s }));
    QVERIFY(window.slotCmdFileSave(window.currentEditor()));
    FileExplorer explorer;
    QVERIFY(window.slotCmdFileSave(window.currentEditor()));
    QTRY_COMPARE(explorer.told, QStringList{ files.folder() + u"|a.txt"_s });
}

void ClosingTest::failedSavingTellsNobody()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(openModified(window, files, { u"a.txt"_s, u"b.txt"_s }));
    FileExplorer explorer;
    breakSaving(window.editorAt(0));
    MessageBoxes boxes;
    QVERIFY(!window.slotCmdFileSave(window.editorAt(0)));
    QVERIFY(window.slotCmdFileSave(window.editorAt(1)));
    QTRY_COMPARE(explorer.told, QStringList{ files.folder() + u"|b.txt"_s });
    window.editorAt(0)->setEdited(false);
}

/// It has its name on the bus but takes no message from it.
void ClosingTest::explorerThatHangsIsNoHarm()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(openModified(window, files, { u"a.txt"_s }));
    ExplorerProcess explorer;
    QVERIFY(explorer.isListening());
    QCOMPARE(::kill(pid_t(explorer.processId()), SIGSTOP), 0);
    for (int i = 0; i < 50; ++i)
        QVERIFY(window.slotCmdFileSave(window.currentEditor()));
    QCOMPARE(::kill(pid_t(explorer.processId()), SIGCONT), 0);
    QTRY_COMPARE(explorer.told(), (files.folder() + u"|a.txt\n"_s).toUtf8().repeated(50));
}

void ClosingTest::explorerThatDiedIsNoHarm()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(openModified(window, files, { u"a.txt"_s }));
    ExplorerProcess explorer;
    QVERIFY(explorer.isListening());
    QVERIFY(window.slotCmdFileSave(window.currentEditor()));
    explorer.kill();
    QVERIFY(window.slotCmdFileSave(window.currentEditor()));
    QVERIFY(explorer.waitForFinished());
    QTRY_VERIFY(!QCopChannel::isRegistered(u"QPE/Application/corvex"_s));
    QVERIFY(window.slotCmdFileSave(window.currentEditor()));
}

void ClosingTest::saveAllWritesModifiedOnes()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(openModified(window, files, { u"a.txt"_s, u"b.txt"_s, u"c.txt"_s }));
    window.tabBar()->setCurrentTab(window.editorAt(1));
    QVERIFY(window.slotCmdFileSave(window.editorAt(1)));
    files.write(u"b.txt"_s, "changed by others");
    window.item(MenuId::File, 8)->trigger();
    QCOMPARE(files.read(u"a.txt"_s), QByteArray("xold"));
    QCOMPARE(files.read(u"b.txt"_s), QByteArray("changed by others"));
    QCOMPARE(files.read(u"c.txt"_s), QByteArray("xold"));
    QCOMPARE(window.tabTexts(), QStringList({ u"a.txt"_s, u"b.txt"_s, u"c.txt"_s }));
    QCOMPARE(window.currentEditor(), window.editorAt(1));
}

void ClosingTest::saveAllStopsAtTheFirstFailure()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(openModified(window, files, { u"a.txt"_s, u"b.txt"_s, u"c.txt"_s }));
    breakSaving(window.editorAt(1));
    MessageBoxes boxes;
    window.slotCmdFileSaveAll();
    QCOMPARE(boxes.count(), 1);
    QCOMPARE(files.read(u"a.txt"_s), QByteArray("xold"));
    QCOMPARE(files.read(u"c.txt"_s), QByteArray("old"));
    QCOMPARE(window.tabTexts(), QStringList({ u"a.txt"_s, u"* b.txt"_s, u"* c.txt"_s }));
    for (ctlEditer *editor : window.tabBar()->editors())
        editor->setEdited(false);
}

void ClosingTest::saveAllStopsWhenCancelled()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(window.open());
    QTest::keyClicks(window.currentEditor(), u"x"_s);
    window.setDocument(files.write(u"a.txt"_s, "old"));
    QTest::keyClicks(window.currentEditor(), u"x"_s);
    window.slotCmdFileSaveAll();
    QCOMPARE(window.requests.size(), 1);
    QCOMPARE(files.read(u"a.txt"_s), QByteArray("old"));
    for (ctlEditer *editor : window.tabBar()->editors())
        editor->setEdited(false);
}

void ClosingTest::closeAsksOnlyAboutEdits()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(window.open());
    window.setDocument(files.write(u"a.txt"_s, "old"));
    MessageBoxes boxes;
    window.item(MenuId::File, 7)->trigger();
    window.item(MenuId::File, 7)->trigger();
    window.item(MenuId::File, 7)->trigger();
    QCOMPARE(boxes.count(), 0);
    QCOMPARE(window.tabBar()->count(), 0);
    QVERIFY(window.isVisible());
}

void ClosingTest::closeAnswers_data()
{
    QTest::addColumn<QString>("answer");
    QTest::addColumn<bool>("isClosed");
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("Yes saves and closes") << u"Yes"_s << true << QByteArray("xold");
    QTest::newRow("No closes") << u"No"_s << true << QByteArray("old");
    QTest::newRow("Cancel keeps") << u"Cancel"_s << false << QByteArray("old");
    QTest::newRow("Escape keeps") << u"Escape"_s << false << QByteArray("old");
}

void ClosingTest::closeAnswers()
{
    QFETCH(QString, answer);
    QFETCH(bool, isClosed);
    const TestFiles files;
    TestWindow window;
    QVERIFY(openModified(window, files, { u"a.txt"_s }));
    MessageBoxes boxes({ answer });
    window.slotCmdFileCloseTab();
    QCOMPARE(boxes.count(), 1);
    const MessageBoxes::Box &box = boxes.shown().at(0);
    QCOMPARE(box.title, u"Confirm File Save"_s);
    QCOMPARE(box.text, u"\"a.txt\" is edited.\n Would you want to save this file?"_s);
    QCOMPARE(box.buttons, QStringList({ u"Yes"_s, u"No"_s, u"Cancel"_s }));
    QCOMPARE(box.defaultButton, u"Yes"_s);
    QCOMPARE(box.escapeButton, u"Cancel"_s);
    QCOMPARE(box.icon, QMessageBox::Information);
    QCOMPARE(window.tabTexts(), isClosed ? QStringList() : QStringList{ u"* a.txt"_s });
    QTEST(files.read(u"a.txt"_s), "content");
    if (!isClosed)
        window.currentEditor()->setEdited(false);
}

void ClosingTest::closeKeepsTheTabWhenSavingFails()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(openModified(window, files, { u"a.txt"_s }));
    breakSaving(window.currentEditor());
    MessageBoxes boxes({ u"Yes"_s });
    window.slotCmdFileCloseTab();
    QCOMPARE(boxes.count(), 2);
    QCOMPARE(window.tabTexts(), QStringList{ u"* a.txt"_s });
    window.currentEditor()->setEdited(false);
}

void ClosingTest::closedEditorsAreGone()
{
    TestWindow window;
    QVERIFY(window.open());
    const QPointer<ctlEditer> editor = window.currentEditor();
    window.slotCmdFileCloseTab();
    QVERIFY(!window.currentEditor());
    QVERIFY(!editor || !editor->isVisible());
    QTRY_VERIFY(!editor);
}

void ClosingTest::closingShowsTheNeighbour()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(window.open());
    window.slotCmdFileCloseTab();
    for (const auto *name : { "a.txt", "b.txt", "c.txt" })
        window.setDocument(files.write(QLatin1StringView(name), "text"));
    window.tabBar()->setCurrentTab(window.editorAt(1));
    window.slotCmdFileCloseTab();
    QCOMPARE(window.currentEditor()->name(), u"c.txt"_s);
    QCOMPARE(QApplication::focusWidget(), window.currentEditor());
    window.slotCmdFileCloseTab();
    QCOMPARE(window.currentEditor()->name(), u"a.txt"_s);
    QCOMPARE(QApplication::focusWidget(), window.currentEditor());
}

void ClosingTest::quitAsksFromTheLastTab()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(openModified(window, files, { u"a.txt"_s, u"b.txt"_s }));
    window.tabBar()->setCurrentTab(window.editorAt(0));
    MessageBoxes boxes({ u"Yes"_s, u"No"_s });
    window.item(MenuId::File, 10)->trigger();
    QCOMPARE(boxes.count(), 2);
    QVERIFY(boxes.shown().at(0).text.startsWith(u"\"b.txt\""_s));
    QVERIFY(boxes.shown().at(1).text.startsWith(u"\"a.txt\""_s));
    QVERIFY(!window.isVisible());
    QCOMPARE(files.read(u"a.txt"_s), QByteArray("old"));
    QCOMPARE(files.read(u"b.txt"_s), QByteArray("xold"));
    QCOMPARE(recentFiles().entries[0].name, u"a.txt"_s);
    QCOMPARE(recentFiles().entries[1].name, u"b.txt"_s);
}

void ClosingTest::quitCancelledAtTheSecondQuestion()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(openModified(window, files, { u"a.txt"_s, u"b.txt"_s }));
    MessageBoxes boxes({ u"No"_s, u"Cancel"_s });
    window.slotCmdFileQuitNoSave();
    QCOMPARE(boxes.count(), 2);
    QVERIFY(window.isVisible());
    QCOMPARE(window.tabTexts(), QStringList{ u"* a.txt"_s });
    QCOMPARE(window.currentEditor(), window.editorAt(0));
    window.currentEditor()->setEdited(false);
}

void ClosingTest::quitStopsAtAFailingSave()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(openModified(window, files, { u"a.txt"_s, u"b.txt"_s }));
    breakSaving(window.editorAt(1));
    MessageBoxes boxes({ u"Yes"_s });
    window.slotCmdFileQuitNoSave();
    QVERIFY(window.isVisible());
    QCOMPARE(window.tabTexts(), QStringList({ u"* a.txt"_s, u"* b.txt"_s }));
    for (ctlEditer *editor : window.tabBar()->editors())
        editor->setEdited(false);
}

void ClosingTest::quitWithSaveNeverAsks()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(openModified(window, files, { u"a.txt"_s, u"b.txt"_s }));
    MessageBoxes boxes;
    window.item(MenuId::File, 9)->trigger();
    QCOMPARE(boxes.count(), 0);
    QVERIFY(!window.isVisible());
    QCOMPARE(files.read(u"a.txt"_s), QByteArray("xold"));
    QCOMPARE(files.read(u"b.txt"_s), QByteArray("xold"));
}

void ClosingTest::quitWithSaveStopsAtAFailure()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(openModified(window, files, { u"a.txt"_s, u"b.txt"_s, u"c.txt"_s }));
    breakSaving(window.editorAt(1));
    MessageBoxes boxes;
    window.slotCmdFileQuitSave();
    QCOMPARE(boxes.count(), 1);
    QVERIFY(window.isVisible());
    QCOMPARE(window.tabTexts(), QStringList({ u"* a.txt"_s, u"* b.txt"_s }));
    QCOMPARE(files.read(u"c.txt"_s), QByteArray("xold"));
    for (ctlEditer *editor : window.tabBar()->editors())
        editor->setEdited(false);
}

void ClosingTest::closingTheWindowAsks()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(openModified(window, files, { u"a.txt"_s }));
    MessageBoxes boxes({ u"Cancel"_s, u"Yes"_s });
    QVERIFY(!window.close());
    QVERIFY(window.isVisible());
    QVERIFY(window.close());
    QVERIFY(!window.isVisible());
    QCOMPARE(files.read(u"a.txt"_s), QByteArray("xold"));
    QCOMPARE(boxes.count(), 2);
}

void ClosingTest::sessionEnds_data()
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
    QTest::newRow("no asking stays") << true << false << QStringList() << false << oldText;
}

void ClosingTest::sessionEnds()
{
    QFETCH(bool, isModified);
    QFETCH(bool, mayAsk);
    QFETCH(QStringList, answers);
    const TestFiles files;
    TestWindow window;
    QVERIFY(openModified(window, files, { u"a.txt"_s }));
    if (!isModified)
        window.currentEditor()->undo();
    MessageBoxes boxes(answers);
    QTEST(window.endSession(mayAsk), "ends");
    QCOMPARE(boxes.count(), answers.size());
    QTEST(!window.isVisible(), "ends");
    QTEST(files.read(u"a.txt"_s), "content");
    for (ctlEditer *editor : window.tabBar()->editors())
        editor->setEdited(false);
}

void ClosingTest::sessionEndsWhileADialogIsOpen()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(openModified(window, files, { u"a.txt"_s }));
    QDialog dialog(&window);
    dialog.setModal(true);
    dialog.show();
    QVERIFY(!window.endSession(true));
    QCOMPARE(window.tabTexts(), QStringList{ u"* a.txt"_s });
    window.currentEditor()->undo();
    QFile::remove(settingsFile());
    QVERIFY(window.endSession(true));
    QVERIFY(QFile::exists(settingsFile()));
    QVERIFY(dialog.isVisible());
    QVERIFY(window.isVisible());
}

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    if (argc > 1 && QByteArrayView(argv[1]) == "explorer")
        return runExplorer();
    ClosingTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "closing_test.moc"
