#include "tests/app/testwindow.h"
#include "tests/testprogram.h"

using namespace Qt::StringLiterals;

/// Opening files: from outside, and by the command with its dialog.
class OpeningTest : public QObject {
    Q_OBJECT

private slots:
    void init();

    void openAddsATab();
    void openShownFileOnlySwitches();
    void openModifiedFileAsks_data();
    void openModifiedFileAsks();
    void failedReloadLeavesTheDocument_data();
    void failedReloadLeavesTheDocument();
    void unreadableFileKeepsItsTab();
    void fileInTheRootFolder();
    void folderWithASlashHasItsName();
    void differentSpellingsAreOneFile();
    void linksAndOtherCaseAreOtherFiles();
    void firstOfTwoTabsOfOneFile();
    void reopeningReadsWithTheCodeAsked();

    void openCommandStartsAtTheDocument();
    void openCommandUsesAFreshDocument();
    void openCommandKeepsAnEditedNewDocument();
    void openCommandNeverOpensAFileTwice();
    void openCommandReadsWithTheCodeChosen();
    void cancelledOpenDoesNothing();
    void openCommandWithoutDocuments();
    void resultGoesToTheDocumentThatAsked();
};

void OpeningTest::init()
{
    resetSettings();
}

void OpeningTest::openAddsATab()
{
    const TestFiles files;
    const QString name = files.write(u"a.txt"_s, "\x82\xA0\ntwo\n");
    TestWindow window;
    QVERIFY(window.open());
    window.openDocument(name, 0);
    QCOMPARE(window.tabTexts(), QStringList({ u"(new document)"_s, u"a.txt"_s }));
    QCOMPARE(window.currentEditor()->path(), files.folder());
    QCOMPARE(window.currentEditor()->name(), u"a.txt"_s);
    QCOMPARE(window.currentEditor()->text(), u"あ\ntwo\n"_s);
    QCOMPARE(window.windowTitle(), u"Marlo!Pad QT  [Shift-JIS][LF]"_s);
    QCOMPARE(QApplication::focusWidget(), window.currentEditor());
    QCOMPARE(window.editStates(), u"----"_s);
}

void OpeningTest::openShownFileOnlySwitches()
{
    const TestFiles files;
    const QString name = files.write(u"a.txt"_s, "old");
    TestWindow window;
    QVERIFY(window.open());
    window.setDocument(name);
    window.tabBar()->setCurrentTab(window.editorAt(0));
    files.write(u"a.txt"_s, "new");
    MessageBoxes boxes;
    window.setDocument(name);
    QCOMPARE(window.tabBar()->count(), 2);
    QCOMPARE(window.currentEditor(), window.editorAt(1));
    QCOMPARE(window.currentEditor()->text(), u"old"_s);
    QCOMPARE(boxes.count(), 0);
}

void OpeningTest::openModifiedFileAsks_data()
{
    QTest::addColumn<QString>("answer");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("tab");
    QTest::newRow("Yes reloads") << u"Yes"_s << u"new"_s << u"a.txt"_s;
    QTest::newRow("No keeps the edits") << u"No"_s << u"xold"_s << u"* a.txt"_s;
}

void OpeningTest::openModifiedFileAsks()
{
    QFETCH(QString, answer);
    const TestFiles files;
    const QString name = files.write(u"a.txt"_s, "old");
    TestWindow window;
    QVERIFY(window.open());
    window.setDocument(name);
    QTest::keyClicks(window.currentEditor(), u"x"_s);
    window.tabBar()->setCurrentTab(window.editorAt(0));
    files.write(u"a.txt"_s, "new");
    MessageBoxes boxes({ answer });
    window.setDocument(name);
    QCOMPARE(boxes.count(), 1);
    const MessageBoxes::Box &box = boxes.shown().at(0);
    QCOMPARE(box.title, u"Existing File"_s);
    QCOMPARE(box.text, u"File named '%1' already opens.\nCancel edit and reload?"_s.arg(name));
    QCOMPARE(box.drawnButtons(), u"[Yes] No"_s);
    QCOMPARE(window.currentEditor(), window.editorAt(1));
    QTEST(window.currentEditor()->text(), "text");
    QTEST(window.tabTexts().at(1), "tab");
}

void OpeningTest::failedReloadLeavesTheDocument_data()
{
    using Reload = void (*)(TestWindow &, const QString &);
    QTest::addColumn<Reload>("reload");
    const auto row = [](const char *name, Reload reload) { QTest::newRow(name) << reload; };
    row("Reload", [](TestWindow &window, const QString &) { window.slotCmdFileReload(); });
    row("opened again", [](TestWindow &window, const QString &name) { window.setDocument(name); });
}

/// The remembered place is for a text that was just read.
void OpeningTest::failedReloadLeavesTheDocument()
{
    using Reload = void (*)(TestWindow &, const QString &);
    QFETCH(Reload, reload);
    const TestFiles files;
    const QString name = files.write(u"a.txt"_s, QByteArray("line\n").repeated(500));
    TestWindow window;
    QVERIFY(window.open());
    window.setDocument(name);
    window.currentEditor()->setCursorPosition(20, 2);
    window.slotCmdFileCloseTab();
    window.setDocument(name);
    ctlEditer *const editor = window.currentEditor();
    QCOMPARE(editor->cursorPosition().row, RowIndex(20));
    QTest::keyClicks(editor, u"x"_s);
    editor->setCursorPosition(300, 1);
    editor->setTopRow(RowIndex(298));
    const QString text = editor->text();
    const RowCol cursor = editor->cursorPosition();
    const RowIndex topRow = editor->topRow();

    QVERIFY(QFile::remove(name));
    MessageBoxes boxes({ u"Yes"_s });
    reload(window, name);
    QCOMPARE(boxes.titles().value(1), u"File Load Error!"_s);
    QCOMPARE(editor->cursorPosition(), cursor);
    QCOMPARE(editor->topRow(), topRow);
    QCOMPARE(editor->text(), text);
    QCOMPARE(window.tabTexts().last(), u"* a.txt"_s);
}

void OpeningTest::unreadableFileKeepsItsTab()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(window.open());
    MessageBoxes boxes;
    window.setDocument(files.folder() + u"missing.txt"_s);
    QCOMPARE(boxes.count(), 1);
    QCOMPARE(window.tabTexts(), QStringList({ u"(new document)"_s, u"missing.txt"_s }));
    QCOMPARE(window.currentEditor()->text(), QString());
}

void OpeningTest::fileInTheRootFolder()
{
    TestWindow window;
    QVERIFY(window.open());
    MessageBoxes boxes;
    window.setDocument(u"/no such file"_s);
    QCOMPARE(window.currentEditor()->path(), u"/"_s);
    QCOMPARE(window.currentEditor()->name(), u"no such file"_s);
}

void OpeningTest::folderWithASlashHasItsName()
{
    const TestFiles files;
    QVERIFY(QDir(files.folder()).mkdir(u"sub"_s));
    TestWindow window;
    QVERIFY(window.open());
    MessageBoxes boxes;
    window.setDocument(files.folder() + u"sub/"_s);
    QCOMPARE(boxes.texts(), QStringList{ u"File Load Error!|This is a folder, not a file!"_s });
    QCOMPARE(window.tabTexts().last(), u"sub"_s);
    QCOMPARE(window.currentEditor()->path(), files.folder());
    QCOMPARE(window.currentEditor()->name(), u"sub"_s);
}

void OpeningTest::differentSpellingsAreOneFile()
{
    const TestFiles files;
    const QString name = files.write(u"a.txt"_s, "text");
    TestWindow window;
    QVERIFY(window.open());
    window.setDocument(name);
    window.setDocument(files.folder() + u"./a.txt"_s);
    window.setDocument(files.folder() + u"/a.txt"_s);
    QCOMPARE(window.tabBar()->count(), 2);
}

void OpeningTest::linksAndOtherCaseAreOtherFiles()
{
    const TestFiles files;
    const QString name = files.write(u"a.txt"_s, "text");
    QVERIFY(QFile::link(name, files.folder() + u"link.txt"_s));
    TestWindow window;
    QVERIFY(window.open());
    window.setDocument(name);
    window.setDocument(files.folder() + u"link.txt"_s);
    window.setDocument(files.write(u"A.txt"_s, "other"));
    QCOMPARE(window.tabTexts(), QStringList({ u"(new document)"_s, u"a.txt"_s, u"link.txt"_s, u"A.txt"_s }));
}

/// A document was saved under the name of another one.
void OpeningTest::firstOfTwoTabsOfOneFile()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(openModified(window, files, { u"a.txt"_s, u"b.txt"_s }));
    window.editorAt(0)->undo();
    window.choices << FileChoice{ files.folder(), u"a.txt"_s };
    QVERIFY(window.slotCmdFileSaveAs(window.editorAt(1)));
    QCOMPARE(window.tabTexts(), QStringList({ u"a.txt"_s, u"a.txt"_s }));
    window.setDocument(files.folder() + u"a.txt"_s);
    QCOMPARE(window.currentEditor(), window.editorAt(0));
    QCOMPARE(window.tabBar()->count(), 2);
}

void OpeningTest::reopeningReadsWithTheCodeAsked()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(openModified(window, files, { u"a.txt"_s }));
    files.write(u"a.txt"_s, "\xA4\xA2");
    MessageBoxes boxes({ u"Yes"_s });
    window.openDocument(files.folder() + u"a.txt"_s, int(CharCode::Euc));
    QCOMPARE(window.currentEditor()->text(), u"あ"_s);
    QCOMPARE(window.currentEditor()->charCode(), int(CharCode::Euc));
    QCOMPARE(window.windowTitle(), u"Marlo!Pad QT  [EUC][CR+LF]"_s);
}

void OpeningTest::openCommandStartsAtTheDocument()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(window.open());
    window.item(FileCommand::Open)->trigger();
    QCOMPARE(window.requests.at(0).mode, frmFileDialog::Open);
    QCOMPARE(window.requests.at(0).folder, QDir::homePath() + u"/Documents/"_s);
    QCOMPARE(window.requests.at(0).name, u".txt"_s);
    window.setDocument(files.write(u"a.txt"_s, "text"));
    window.item(FileCommand::Open)->trigger();
    QCOMPARE(window.requests.at(1).folder, files.folder());
    QCOMPARE(window.requests.at(1).name, u"a.txt"_s);
}

void OpeningTest::openCommandUsesAFreshDocument()
{
    const TestFiles files;
    files.write(u"a.txt"_s, "one\r\n");
    TestWindow window;
    QVERIFY(window.open());
    ctlEditer *editor = window.currentEditor();
    window.choices << FileChoice{ files.folder(), u"a.txt"_s };
    window.slotCmdFileOpen();
    QCOMPARE(window.tabTexts(), QStringList{ u"a.txt"_s });
    QCOMPARE(window.currentEditor(), editor);
    QCOMPARE(editor->text(), u"one\n"_s);
}

void OpeningTest::openCommandKeepsAnEditedNewDocument()
{
    const TestFiles files;
    files.write(u"a.txt"_s, "one");
    TestWindow window;
    QVERIFY(window.open());
    QTest::keyClicks(window.currentEditor(), u"x"_s);
    window.choices << FileChoice{ files.folder(), u"a.txt"_s };
    window.slotCmdFileOpen();
    QCOMPARE(window.tabTexts(), QStringList({ u"* (new document)"_s, u"a.txt"_s }));
    QCOMPARE(window.editorAt(0)->text(), u"x"_s);
}

void OpeningTest::openCommandNeverOpensAFileTwice()
{
    const TestFiles files;
    const QString name = files.write(u"a.txt"_s, "one");
    TestWindow window;
    QVERIFY(window.open());
    window.setDocument(name);
    window.tabBar()->setCurrentTab(window.editorAt(0));
    window.choices << FileChoice{ files.folder(), u"a.txt"_s };
    window.slotCmdFileOpen();
    QCOMPARE(window.tabTexts(), QStringList({ u"(new document)"_s, u"a.txt"_s }));
    QCOMPARE(window.currentEditor(), window.editorAt(1));
}

void OpeningTest::openCommandReadsWithTheCodeChosen()
{
    const TestFiles files;
    files.write(u"a.txt"_s, "\xE3\x81\x82\n");
    TestWindow window;
    QVERIFY(window.open());
    window.choices << FileChoice{ files.folder(), u"a.txt"_s, CharCode::Utf8 };
    window.slotCmdFileOpen();
    QCOMPARE(window.currentEditor()->text(), u"あ\n"_s);
    QCOMPARE(window.windowTitle(), u"Marlo!Pad QT  [UTF8][LF]"_s);
}

void OpeningTest::cancelledOpenDoesNothing()
{
    TestWindow window;
    QVERIFY(window.open());
    window.slotCmdFileOpen();
    QCOMPARE(window.requests.size(), 1);
    QCOMPARE(window.tabTexts(), QStringList{ u"(new document)"_s });
}

void OpeningTest::openCommandWithoutDocuments()
{
    const TestFiles files;
    files.write(u"a.txt"_s, "one");
    TestWindow window;
    QVERIFY(window.open());
    window.slotCmdFileCloseTab();
    window.choices << FileChoice{ files.folder(), u"a.txt"_s };
    window.slotCmdFileOpen();
    QCOMPARE(window.tabTexts(), QStringList{ u"a.txt"_s });
    QCOMPARE(QApplication::focusWidget(), window.currentEditor());
}

/// Another tab becomes current while the dialog is open.
void OpeningTest::resultGoesToTheDocumentThatAsked()
{
    const TestFiles files;
    const QString name = files.write(u"a.txt"_s, "text");
    TestWindow window;
    QVERIFY(window.open());
    window.slotCmdFileNew();
    ctlEditer *first = window.editorAt(0);
    ctlEditer *asking = window.currentEditor();
    window.choices << FileChoice{ files.folder(), u"a.txt"_s };
    window.whileChoosing = [&] { window.tabBar()->setCurrentTab(first); };
    window.slotCmdFileOpen();
    QCOMPARE(asking->text(), u"text"_s);
    QCOMPARE(first->path(), QString());
    QTest::keyClicks(asking, u"x"_s);
    window.tabBar()->setCurrentTab(asking);
    window.choices << FileChoice{ files.folder(), u"b.txt"_s };
    window.slotCmdFileSaveAs();
    QCOMPARE(files.read(u"b.txt"_s), QByteArray("xtext"));
    QCOMPARE(asking->name(), u"b.txt"_s);
}

REGISTER_TEST(runWindowTest<OpeningTest>)
#include "opening_test.moc"
