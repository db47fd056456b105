#include "tests/app/testwindow.h"

#include <QAction>
#include <QClipboard>
#include <QDateTime>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QStackedWidget>

using namespace Qt::StringLiterals;

/// Documents in the window: opening, reloading, switching, what tabs, caption and commands show, edit
/// commands.
class DocumentsTest : public QObject {
    Q_OBJECT

private slots:
    void init();

    void newDocuments();
    void openAddsATab();
    void openShownFileOnlySwitches();
    void openModifiedFileAsks_data();
    void openModifiedFileAsks();
    void unreadableFileKeepsItsTab();
    void fileInTheRootFolder();
    void folderWithASlashHasItsName();
    void differentSpellingsAreOneFile();
    void namesAreShownAsTheyAre_data();
    void namesAreShownAsTheyAre();

    void openCommandStartsAtTheDocument();
    void openCommandUsesAFreshDocument();
    void openCommandKeepsAnEditedNewDocument();
    void openCommandNeverOpensAFileTwice();
    void openCommandReadsWithTheCodeChosen();
    void cancelledOpenDoesNothing();
    void openCommandWithoutDocuments();

    void reloadAsksAlways();
    void reloadKeepsTheCode_data();
    void reloadKeepsTheCode();
    void reloadRefused();
    void resultGoesToTheDocumentThatAsked();
    void manyDocumentsInALongRun();
    void reloadOfANewDocumentDoesNothing();

    void switchingByIds();
    void switchingNeedsTwoTabs();
    void switchingSkipsGapsAndWraps();

    void editStatesFollowTheDocument();
    void undoingAllRemovesTheMark();
    void editCommands();
    void editCommandsWithoutDocument();
    void dateAndTime();
    void dateAndTimeText();

    void keysActOnce();
    void keysWithTheTabBarFocused();
    void typographicCharactersAreTyped();
    void tabKeysStayInTheEditor();

    void appliedSettingsKeepTheMark();
    void optionsNotAcceptedChangeNothing();
};

void DocumentsTest::init()
{
    resetSettings();
    QApplication::clipboard()->clear();
}

void DocumentsTest::newDocuments()
{
    TestWindow window;
    QVERIFY(window.open());
    ctlEditer *first = window.currentEditor();
    window.item(MenuId::File, 1)->trigger();
    QCOMPARE(window.tabTexts(), QStringList({ u"(new document)"_s, u"(new document)"_s }));
    QVERIFY(window.currentEditor() != first);
    QCOMPARE(window.tabBar()->currentIndex(), 1);
    QCOMPARE(QApplication::focusWidget(), window.currentEditor());
    QCOMPARE(window.currentEditor()->parentWidget(), window.findChild<QStackedWidget *>());
}

void DocumentsTest::openAddsATab()
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

void DocumentsTest::openShownFileOnlySwitches()
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

void DocumentsTest::openModifiedFileAsks_data()
{
    QTest::addColumn<QString>("answer");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("tab");
    QTest::newRow("Yes reloads") << u"Yes"_s << u"new"_s << u"a.txt"_s;
    QTest::newRow("No keeps the edits") << u"No"_s << u"xold"_s << u"* a.txt"_s;
}

void DocumentsTest::openModifiedFileAsks()
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
    QCOMPARE(box.buttons, QStringList({ u"Yes"_s, u"No"_s }));
    QCOMPARE(box.defaultButton, u"Yes"_s);
    QCOMPARE(box.escapeButton, QString());
    QCOMPARE(window.currentEditor(), window.editorAt(1));
    QTEST(window.currentEditor()->text(), "text");
    QTEST(window.tabTexts().at(1), "tab");
}

void DocumentsTest::unreadableFileKeepsItsTab()
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

void DocumentsTest::fileInTheRootFolder()
{
    TestWindow window;
    QVERIFY(window.open());
    MessageBoxes boxes;
    window.setDocument(u"/no such file"_s);
    QCOMPARE(window.currentEditor()->path(), u"/"_s);
    QCOMPARE(window.currentEditor()->name(), u"no such file"_s);
}

void DocumentsTest::folderWithASlashHasItsName()
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

void DocumentsTest::differentSpellingsAreOneFile()
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

void DocumentsTest::namesAreShownAsTheyAre_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("ampersand") << u"a&b&&c.txt"_s;
    QTest::newRow("mark-up") << u"<b>x.txt"_s;
    QTest::newRow("percent") << u"%1 %2.txt"_s;
    QTest::newRow("Japanese") << u"日本語.txt"_s;
}

void DocumentsTest::namesAreShownAsTheyAre()
{
    QFETCH(QString, name);
    const TestFiles files;
    TestWindow window;
    QVERIFY(window.open());
    window.setDocument(files.write(name, "text"));
    QString tab = window.tabTexts().at(1);
    QCOMPARE(tab.replace(u"&&"_s, u"&"_s), name);
    QTest::keyClicks(window.currentEditor(), u"x"_s);
    MessageBoxes boxes({ u"Cancel"_s, u"No"_s });
    window.slotCmdFileCloseTab();
    QCOMPARE(
        boxes.shown().at(0).text, u"\""_s + name + u"\" is edited.\n Would you want to save this file?"_s);
    QCOMPARE(boxes.shown().at(0).format, Qt::PlainText);
    window.slotCmdFileCloseTab();
    QString entry = window.recentMenu()->actions().at(0)->text();
    QCOMPARE(entry.replace(u"&&"_s, u"&"_s), files.folder() + name);
}

void DocumentsTest::openCommandStartsAtTheDocument()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(window.open());
    window.item(MenuId::File, 2)->trigger();
    QCOMPARE(window.requests.at(0).mode, frmFileDialog::Open);
    QCOMPARE(window.requests.at(0).folder, QDir::homePath() + u"/Documents/"_s);
    QCOMPARE(window.requests.at(0).name, u".txt"_s);
    window.setDocument(files.write(u"a.txt"_s, "text"));
    window.item(MenuId::File, 2)->trigger();
    QCOMPARE(window.requests.at(1).folder, files.folder());
    QCOMPARE(window.requests.at(1).name, u"a.txt"_s);
}

void DocumentsTest::openCommandUsesAFreshDocument()
{
    const TestFiles files;
    files.write(u"a.txt"_s, "one\r\n");
    TestWindow window;
    QVERIFY(window.open());
    ctlEditer *editor = window.currentEditor();
    window.choices << FileChoice{ files.folder(), u"a.txt"_s, 0, 0 };
    window.slotCmdFileOpen();
    QCOMPARE(window.tabTexts(), QStringList{ u"a.txt"_s });
    QCOMPARE(window.currentEditor(), editor);
    QCOMPARE(editor->text(), u"one\n"_s);
}

void DocumentsTest::openCommandKeepsAnEditedNewDocument()
{
    const TestFiles files;
    files.write(u"a.txt"_s, "one");
    TestWindow window;
    QVERIFY(window.open());
    QTest::keyClicks(window.currentEditor(), u"x"_s);
    window.choices << FileChoice{ files.folder(), u"a.txt"_s, 0, 0 };
    window.slotCmdFileOpen();
    QCOMPARE(window.tabTexts(), QStringList({ u"* (new document)"_s, u"a.txt"_s }));
    QCOMPARE(window.editorAt(0)->text(), u"x"_s);
}

void DocumentsTest::openCommandNeverOpensAFileTwice()
{
    const TestFiles files;
    const QString name = files.write(u"a.txt"_s, "one");
    TestWindow window;
    QVERIFY(window.open());
    window.setDocument(name);
    window.tabBar()->setCurrentTab(window.editorAt(0));
    window.choices << FileChoice{ files.folder(), u"a.txt"_s, 0, 0 };
    window.slotCmdFileOpen();
    QCOMPARE(window.tabTexts(), QStringList({ u"(new document)"_s, u"a.txt"_s }));
    QCOMPARE(window.currentEditor(), window.editorAt(1));
}

void DocumentsTest::openCommandReadsWithTheCodeChosen()
{
    const TestFiles files;
    files.write(u"a.txt"_s, "\xE3\x81\x82\n");
    TestWindow window;
    QVERIFY(window.open());
    window.choices << FileChoice{ files.folder(), u"a.txt"_s, CharCodeUtf8, 0 };
    window.slotCmdFileOpen();
    QCOMPARE(window.currentEditor()->text(), u"あ\n"_s);
    QCOMPARE(window.windowTitle(), u"Marlo!Pad QT  [UTF8][LF]"_s);
}

void DocumentsTest::cancelledOpenDoesNothing()
{
    TestWindow window;
    QVERIFY(window.open());
    window.slotCmdFileOpen();
    QCOMPARE(window.requests.size(), 1);
    QCOMPARE(window.tabTexts(), QStringList{ u"(new document)"_s });
}

void DocumentsTest::openCommandWithoutDocuments()
{
    const TestFiles files;
    files.write(u"a.txt"_s, "one");
    TestWindow window;
    QVERIFY(window.open());
    window.slotCmdFileCloseTab();
    window.choices << FileChoice{ files.folder(), u"a.txt"_s, 0, 0 };
    window.slotCmdFileOpen();
    QCOMPARE(window.tabTexts(), QStringList{ u"a.txt"_s });
    QCOMPARE(QApplication::focusWidget(), window.currentEditor());
}

void DocumentsTest::reloadAsksAlways()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(window.open());
    window.setDocument(files.write(u"a.txt"_s, "\x82\xA0\n"));
    files.write(u"a.txt"_s, "\x82\xA2\r\n");
    for (const bool isModified : { false, true }) {
        if (isModified)
            QTest::keyClicks(window.currentEditor(), u"x"_s);
        MessageBoxes boxes({ u"Yes"_s });
        window.item(MenuId::File, 3)->trigger();
        QCOMPARE(boxes.count(), 1);
        const MessageBoxes::Box &box = boxes.shown().at(0);
        QCOMPARE(box.title, u"Confirm Reload"_s);
        QCOMPARE(box.text, u"Cancel edit and reload\n'a.txt'?"_s);
        QCOMPARE(box.buttons, QStringList({ u"Yes"_s, u"No"_s }));
        QCOMPARE(box.defaultButton, u"Yes"_s);
        QCOMPARE(box.escapeButton, QString());
        QCOMPARE(window.currentEditor()->text(), u"い\n"_s);
        QCOMPARE(window.tabTexts().at(1), u"a.txt"_s);
        QCOMPARE(window.editStates(), u"----"_s);
        QCOMPARE(window.windowTitle(), u"Marlo!Pad QT  [Shift-JIS][CR+LF]"_s);
    }
}

void DocumentsTest::reloadKeepsTheCode_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<int>("code");
    QTest::newRow("Shift-JIS stays") << QByteArray("\x82\xA0") << int(CharCodeShiftJis);
    QTest::newRow("ASCII detects again") << QByteArray("abc") << int(CharCodeUtf8);
    QTest::newRow("Binary detects again") << QByteArray("a\0b", 3) << int(CharCodeUtf8);
}

void DocumentsTest::reloadKeepsTheCode()
{
    QFETCH(QByteArray, before);
    const TestFiles files;
    TestWindow window;
    QVERIFY(window.open());
    window.setDocument(files.write(u"a.txt"_s, before));
    files.write(u"a.txt"_s, "日本語\n");
    MessageBoxes boxes({ u"Yes"_s });
    window.slotCmdFileReload();
    QTEST(window.currentEditor()->charCode(), "code");
}

/// Another tab becomes current while the dialog is open.
void DocumentsTest::resultGoesToTheDocumentThatAsked()
{
    const TestFiles files;
    const QString name = files.write(u"a.txt"_s, "text");
    TestWindow window;
    QVERIFY(window.open());
    window.slotCmdFileNew();
    ctlEditer *first = window.editorAt(0);
    ctlEditer *asking = window.currentEditor();
    window.choices << FileChoice{ files.folder(), u"a.txt"_s, 0, 0 };
    window.whileChoosing = [&] { window.tabBar()->setCurrentTab(first); };
    window.slotCmdFileOpen();
    QCOMPARE(asking->text(), u"text"_s);
    QCOMPARE(first->path(), QString());
    QTest::keyClicks(asking, u"x"_s);
    window.tabBar()->setCurrentTab(asking);
    window.choices << FileChoice{ files.folder(), u"b.txt"_s, 0, 0 };
    window.slotCmdFileSaveAs();
    QCOMPARE(files.read(u"b.txt"_s), QByteArray("xtext"));
    QCOMPARE(asking->name(), u"b.txt"_s);
}

void DocumentsTest::manyDocumentsInALongRun()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(window.open());
    ctlEditer *first = window.currentEditor();
    for (int i = 0; i < 1001; ++i) {
        window.slotCmdFileNew();
        QVERIFY(window.tabBar()->currentTab() <= 999);
        if (i < 1000)
            window.slotCmdFileCloseTab();
    }
    window.choices << FileChoice{ files.folder(), u"a.txt"_s, 0, 0 };
    QTest::keyClicks(window.currentEditor(), u"x"_s);
    ctlEditer *last = window.currentEditor();
    window.slotEtcChangeTab(1);
    QCOMPARE(window.currentEditor(), first);
    window.slotEtcChangeTab(0);
    QCOMPARE(window.currentEditor(), last);
    window.slotCmdFileSaveAll();
    QCOMPARE(files.read(u"a.txt"_s), QByteArray("x"));
}

void DocumentsTest::reloadRefused()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(window.open());
    window.setDocument(files.write(u"a.txt"_s, "old"));
    QTest::keyClicks(window.currentEditor(), u"x"_s);
    MessageBoxes boxes({ u"No"_s });
    window.slotCmdFileReload();
    QCOMPARE(window.currentEditor()->text(), u"xold"_s);
    QCOMPARE(window.tabTexts().at(1), u"* a.txt"_s);
}

void DocumentsTest::reloadOfANewDocumentDoesNothing()
{
    TestWindow window;
    QVERIFY(window.open());
    QTest::keyClicks(window.currentEditor(), u"x"_s);
    MessageBoxes boxes;
    window.slotCmdFileReload();
    QCOMPARE(boxes.count(), 0);
    QCOMPARE(window.currentEditor()->text(), u"x"_s);
    window.currentEditor()->setEdited(false);
    window.slotCmdFileCloseTab();
    window.slotCmdFileReload();
    QCOMPARE(boxes.count(), 0);
}

void DocumentsTest::switchingByIds()
{
    TestWindow window;
    QVERIFY(window.open());
    window.slotCmdFileNew();
    window.slotCmdFileNew();
    const auto current = [&window] { return window.tabBar()->currentIndex(); };
    QCOMPARE(current(), 2);
    window.item(MenuId::View, 2)->trigger();
    QCOMPARE(current(), 0);
    window.item(MenuId::View, 2)->trigger();
    QCOMPARE(current(), 1);
    window.item(MenuId::View, 1)->trigger();
    QCOMPARE(current(), 0);
    window.item(MenuId::View, 1)->trigger();
    QCOMPARE(current(), 2);
    QCOMPARE(QApplication::focusWidget(), window.currentEditor());
    QCOMPARE(window.currentEditor(), window.editorAt(2));
}

void DocumentsTest::switchingNeedsTwoTabs()
{
    TestWindow window;
    QVERIFY(window.open());
    for (int forward : { 0, 1 }) {
        window.slotEtcChangeTab(forward);
        QCOMPARE(window.currentEditor(), window.editorAt(0));
    }
    window.slotCmdFileCloseTab();
    window.slotEtcChangeTab(1);
    QVERIFY(!window.currentEditor());
}

void DocumentsTest::switchingSkipsGapsAndWraps()
{
    TestWindow window;
    QVERIFY(window.open());
    for (int i = 0; i < 5; ++i)
        window.slotCmdFileNew();
    for (const int index : { 3, 1 }) {
        window.tabBar()->setCurrentTab(window.editorAt(index));
        window.slotCmdFileCloseTab();
    }
    QList<int> ids;
    for (const ctlEditer *editor : window.tabBar()->editors())
        ids << window.tabBar()->idOf(editor);
    QCOMPARE(ids.size(), 4);
    QVERIFY(ids.last() - ids.first() > 3);
    window.tabBar()->setCurrentTab(ids.first());
    for (const int id : { ids[1], ids[2], ids[3], ids[0] }) {
        window.slotEtcChangeTab(1);
        QCOMPARE(window.tabBar()->currentTab(), id);
    }
    for (const int id : { ids[3], ids[2], ids[1], ids[0] }) {
        window.slotEtcChangeTab(0);
        QCOMPARE(window.tabBar()->currentTab(), id);
    }
}

void DocumentsTest::editStatesFollowTheDocument()
{
    TestWindow window;
    QVERIFY(window.open());
    QTest::keyClicks(window.currentEditor(), u"ab"_s);
    QTest::keyClick(window.currentEditor(), Qt::Key_Left, Qt::ShiftModifier);
    QCOMPARE(window.editStates(), u"u-xc"_s);
    window.slotCmdFileNew();
    QCOMPARE(window.editStates(), u"----"_s);
    QTest::keyClicks(window.currentEditor(), u"ab"_s);
    window.slotCmdEditUndo();
    QCOMPARE(window.editStates(), u"-r--"_s);
    window.slotEtcChangeTab(0);
    QCOMPARE(window.editStates(), u"u-xc"_s);
    window.slotEtcChangeTab(1);
    QCOMPARE(window.editStates(), u"-r--"_s);
    window.slotCmdFileCloseTab();
    QCOMPARE(window.editStates(), u"u-xc"_s);
    MessageBoxes boxes({ u"No"_s });
    window.slotCmdFileCloseTab();
    QCOMPARE(window.editStates(), u"----"_s);
    QCOMPARE(window.windowTitle(), u"Marlo!Pad QT"_s);
}

void DocumentsTest::undoingAllRemovesTheMark()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(window.open());
    window.setDocument(files.write(u"a.txt"_s, "text"));
    QTest::keyClicks(window.currentEditor(), u"x"_s);
    QTest::keyClick(window.currentEditor(), Qt::Key_Return);
    QCOMPARE(window.tabTexts().at(1), u"* a.txt"_s);
    while (window.isItemEnabled(MenuId::Edit, 1))
        window.item(MenuId::Edit, 1)->trigger();
    QCOMPARE(window.currentEditor()->text(), u"text"_s);
    QCOMPARE(window.tabTexts().at(1), u"a.txt"_s);
    QVERIFY(!window.currentEditor()->edited());
    window.item(MenuId::Edit, 2)->trigger();
    QCOMPARE(window.tabTexts().at(1), u"* a.txt"_s);
    window.currentEditor()->setEdited(false);
}

void DocumentsTest::editCommands()
{
    TestWindow window;
    QVERIFY(window.open());
    ctlEditer *editor = window.currentEditor();
    QTest::keyClicks(editor, u"abc"_s);
    window.item(MenuId::Edit, 6)->trigger();
    QCOMPARE(editor->markedText(), u"abc"_s);
    window.item(MenuId::Edit, 4)->trigger();
    QVERIFY(!editor->hasMarkedText());
    QCOMPARE(window.editStates(), u"u---"_s);
    QCOMPARE(QApplication::clipboard()->text(), u"abc"_s);
    window.item(MenuId::Edit, 5)->trigger();
    QCOMPARE(editor->text(), u"abcabc"_s);
    window.item(MenuId::Edit, 6)->trigger();
    window.item(MenuId::Edit, 3)->trigger();
    QCOMPARE(editor->text(), QString());
    QCOMPARE(QApplication::clipboard()->text(), u"abcabc"_s);
    window.item(MenuId::Edit, 1)->trigger();
    QCOMPARE(editor->text(), u"abcabc"_s);
    window.item(MenuId::Edit, 2)->trigger();
    QCOMPARE(editor->text(), QString());
    editor->setEdited(false);
}

void DocumentsTest::editCommandsWithoutDocument()
{
    TestWindow window;
    QVERIFY(window.open());
    window.slotCmdFileCloseTab();
    MessageBoxes boxes;
    for (const MenuId menu : { MenuId::File, MenuId::Edit, MenuId::View }) {
        for (const Command &command : commandsOf(menu)) {
            const bool needsNone = command.slot == &frmMain::slotCmdFileNew
                || command.slot == &frmMain::slotCmdFileQuitSave
                || command.slot == &frmMain::slotCmdFileQuitNoSave
                || command.slot == &frmMain::slotCmdViewFull || command.slot == &frmMain::slotCmdViewAbout;
            if (command.slot && !needsNone)
                (window.*command.slot)();
        }
    }
    QCOMPARE(window.tabBar()->count(), 0);
    QCOMPARE(boxes.count(), 0);
    QVERIFY(window.isVisible());
}

void DocumentsTest::dateAndTime()
{
    TestWindow window;
    QVERIFY(window.open());
    ctlEditer *editor = window.currentEditor();
    const QString before = frmMain::dateTimeText(QDateTime::currentDateTime());
    window.item(MenuId::Edit, 7)->trigger();
    const QString after = frmMain::dateTimeText(QDateTime::currentDateTime());
    QVERIFY(editor->text() == before || editor->text() == after);
    QVERIFY(
        QRegularExpression(u"^\\d{4}/\\d\\d/\\d\\d \\d\\d:\\d\\d\\n$"_s).match(editor->text()).hasMatch());
    QCOMPARE(editor->cursorPosition().row, 1);
    QCOMPARE(editor->cursorPosition().column, 0);
    editor->setEdited(false);
}

void DocumentsTest::dateAndTimeText()
{
    const QDateTime time(QDate(2005, 2, 3), QTime(9, 5, 59));
    QCOMPARE(frmMain::dateTimeText(time), u"2005/02/03 09:05\n"_s);
}

void DocumentsTest::keysActOnce()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(window.open());
    for (const auto *name : { "a.txt", "b.txt", "c.txt", "d.txt" })
        window.setDocument(files.write(QLatin1StringView(name), "one two\n"));
    const auto press = [&window](int key, Qt::KeyboardModifiers modifiers = Qt::ControlModifier) {
        QTest::keyClick(window.windowHandle(), Qt::Key(key), modifiers);
    };
    const auto index = [&window] { return window.tabBar()->currentIndex(); };
    QCOMPARE(index(), 4);
    press(Qt::Key_Tab);
    QCOMPARE(index(), 0);
    press(Qt::Key_Tab);
    QCOMPARE(index(), 1);
    press(Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(index(), 0);
    press(Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(index(), 4);

    ctlEditer *editor = window.currentEditor();
    press(Qt::Key_A);
    QCOMPARE(editor->markedText(), u"one two\n"_s);
    press(Qt::Key_C);
    QVERIFY(!editor->hasMarkedText());
    press(Qt::Key_V);
    QCOMPARE(editor->text(), u"one two\none two\n"_s);
    press(Qt::Key_V);
    QCOMPARE(editor->text(), u"one two\n"_s.repeated(3));
    press(Qt::Key_Z);
    QCOMPARE(editor->text(), u"one two\n"_s.repeated(2));
    press(Qt::Key_A);
    press(Qt::Key_X);
    QCOMPARE(editor->text(), QString());
    press(Qt::Key_Z);
    QCOMPARE(editor->text(), u"one two\n"_s.repeated(2));
    QCOMPARE(window.tabTexts().at(4), u"* d.txt"_s);
    press(Qt::Key_S);
    QCOMPARE(files.read(u"d.txt"_s), QByteArray("one two\none two\n"));
    QCOMPARE(window.tabTexts().at(4), u"d.txt"_s);
    press(Qt::Key_O);
    QCOMPARE(window.requests.size(), 1);
    press(Qt::Key_Escape, Qt::NoModifier);
    QCOMPARE(window.tabBar()->count(), 4);
    press(Qt::Key_Q);
    QVERIFY(!window.isVisible());
    QCOMPARE(window.tabBar()->count(), 0);
}

void DocumentsTest::keysWithTheTabBarFocused()
{
    TestWindow window;
    QVERIFY(window.open());
    QTest::keyClicks(window.currentEditor(), u"ab"_s);
    window.slotCmdFileNew();
    window.slotCmdFileNew();
    window.tabBar()->setFocusPolicy(Qt::StrongFocus);
    window.tabBar()->setFocus();
    QCOMPARE(QApplication::focusWidget(), window.tabBar());
    QTest::keyClick(window.windowHandle(), Qt::Key_Tab, Qt::ControlModifier);
    QCOMPARE(window.tabBar()->currentIndex(), 0);
    QTest::keyClick(window.windowHandle(), Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(window.currentEditor()->text(), QString());
}

void DocumentsTest::typographicCharactersAreTyped()
{
    TestWindow window;
    QVERIFY(window.open());
    QString typed;
    for (const int code : { 0x2019, 0x201A, 0x200F, 0x2010, 0x201B, 0x2015, 0x2018, 0x2014, 0x2017 }) {
        QKeyEvent press(QEvent::KeyPress, code, Qt::NoModifier, QString(QChar(code)));
        QApplication::sendEvent(window.currentEditor(), &press);
        typed += QChar(code);
    }
    QCOMPARE(window.currentEditor()->text(), typed);
    QVERIFY(window.isVisible());
    QCOMPARE(window.requests.size(), 0);

    QKeyEvent deviceOpen(QEvent::KeyPress, 0x2015, Qt::NoModifier);
    QApplication::sendEvent(window.currentEditor(), &deviceOpen);
    QCOMPARE(window.requests.size(), 1);
    QCOMPARE(window.currentEditor()->text(), typed);
    window.currentEditor()->setEdited(false);
}

void DocumentsTest::tabKeysStayInTheEditor()
{
    TestWindow window;
    QVERIFY(window.open());
    window.slotCmdFileNew();
    ctlEditer *editor = window.currentEditor();
    QTest::keyClick(window.windowHandle(), Qt::Key_Tab);
    QCOMPARE(editor->text(), u"\t"_s);
    QTest::keyClick(window.windowHandle(), Qt::Key_Backtab, Qt::ShiftModifier);
    QCOMPARE(QApplication::focusWidget(), editor);
    QCOMPARE(window.tabBar()->currentIndex(), 1);
    editor->setEdited(false);
}

void DocumentsTest::appliedSettingsKeepTheMark()
{
    TestWindow window;
    QVERIFY(window.open());
    QTest::keyClicks(window.currentEditor(), u"x"_s);
    window.slotCmdFileNew();
    window.options = [] {
        appSettings().TabLen = 9;
        appSettings().FontSize = 24;
        appSettings().BackColor = 1;
        recentFiles().RecentViewCnt = 0;
        return true;
    };
    window.item(MenuId::Edit, 8)->trigger();
    QCOMPARE(window.tabTexts(), QStringList({ u"* (new document)"_s, u"(new document)"_s }));
    QVERIFY(window.editorAt(0)->edited());
    QVERIFY(!window.editorAt(1)->edited());
    QCOMPARE(QMultiLineEdit::defaultTabStop(), 9);
    for (const ctlEditer *editor : window.tabBar()->editors()) {
        QCOMPARE(editor->font().pointSize(), 24);
        QCOMPARE(editor->backColor(), QColor(Qt::black));
    }
    QVERIFY(!window.isItemEnabled(MenuId::File, 11));
    window.editorAt(0)->setEdited(false);
}

void DocumentsTest::optionsNotAcceptedChangeNothing()
{
    TestWindow window;
    QVERIFY(window.open());
    window.options = [] {
        appSettings().TabLen = 9;
        return false;
    };
    window.slotCmdEditOption();
    QCOMPARE(QMultiLineEdit::defaultTabStop(), 4);
}

QTEST_MAIN(DocumentsTest)
#include "documents_test.moc"
