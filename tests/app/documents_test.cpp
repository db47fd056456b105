#include "tests/app/testwindow.h"
#include "tests/testprogram.h"

#include <QAction>
#include <QStackedWidget>

using namespace Qt::StringLiterals;

/// Documents in the window: new ones, reloading, switching, what tabs, caption and commands show.
class DocumentsTest : public QObject {
    Q_OBJECT

private slots:
    void init();

    void newDocuments();
    void manyDocumentsInALongRun();

    void reloadAsksAlways();
    void reloadKeepsTheCode_data();
    void reloadKeepsTheCode();
    void reloadRefused();
    void reloadOfANewDocumentDoesNothing();

    void switchingByIds();
    void switchingNeedsTwoTabs();
    void switchingSkipsGapsAndWraps();
    void switchingBeyondAThousandTabs();
    void saveAllReachesEveryTab();

    void editStatesFollowTheDocument();
    void otherEditorsChangeTheStatesToo();
    void undoingAllLeavesItUnedited();
};

void DocumentsTest::init()
{
    resetSettings();
}

void DocumentsTest::newDocuments()
{
    TestWindow window;
    QVERIFY(window.open());
    ctlEditer *first = window.currentEditor();
    window.item(FileCommand::New)->trigger();
    QCOMPARE(window.tabTexts(), QStringList({ u"(new document)"_s, u"(new document)"_s }));
    QVERIFY(window.currentEditor() != first);
    QCOMPARE(window.tabBar()->currentIndex(), 1);
    QCOMPARE(QApplication::focusWidget(), window.currentEditor());
    QCOMPARE(window.currentEditor()->parentWidget(), window.findChild<QStackedWidget *>());
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
    window.choices << FileChoice{ files.folder(), u"a.txt"_s };
    QTest::keyClicks(window.currentEditor(), u"x"_s);
    ctlEditer *last = window.currentEditor();
    window.slotEtcChangeTab(1);
    QCOMPARE(window.currentEditor(), first);
    window.slotEtcChangeTab(0);
    QCOMPARE(window.currentEditor(), last);
    window.slotCmdFileSaveAll();
    QCOMPARE(files.read(u"a.txt"_s), QByteArray("x"));
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
        window.item(FileCommand::Reload)->trigger();
        QCOMPARE(boxes.count(), 1);
        const MessageBoxes::Box &box = boxes.shown().at(0);
        QCOMPARE(box.title, u"Confirm Reload"_s);
        QCOMPARE(box.text, u"Cancel edit and reload\n'a.txt'?"_s);
        QCOMPARE(box.drawnButtons(), u"[Yes] No"_s);
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
    QTest::newRow("Shift-JIS stays") << QByteArray("\x82\xA0") << int(CharCode::ShiftJis);
    QTest::newRow("ASCII detects again") << QByteArray("abc") << int(CharCode::Utf8);
    QTest::newRow("Binary detects again") << QByteArray("a\0b", 3) << int(CharCode::Utf8);
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
    window.item(ViewCommand::NextWindow)->trigger();
    QCOMPARE(current(), 0);
    window.item(ViewCommand::NextWindow)->trigger();
    QCOMPARE(current(), 1);
    window.item(ViewCommand::PrevWindow)->trigger();
    QCOMPARE(current(), 0);
    window.item(ViewCommand::PrevWindow)->trigger();
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

/// Ids go on behind 999 when so many are in use at once: going forward comes there behind 999, and going back
/// from the first tab begins at 1000.
void DocumentsTest::switchingBeyondAThousandTabs()
{
    TestWindow window;
    QVERIFY(window.open());
    for (int count = 1; count < 1003; ++count)
        window.slotCmdFileNew();
    const auto switched = [&window](int from, int forward) {
        window.tabBar()->setCurrentTab(from);
        window.slotEtcChangeTab(forward);
        return window.tabBar()->currentTab();
    };
    QCOMPARE(window.tabBar()->ids().last(), 1002);
    QCOMPARE(switched(998, 1), 999);
    QCOMPARE(switched(999, 1), 1000);
    QCOMPARE(switched(1000, 1), 1001);
    QCOMPARE(switched(1002, 1), 0);
    QCOMPARE(switched(0, 0), 1000);
    QCOMPARE(switched(1002, 0), 1001);
    QCOMPARE(switched(1001, 0), 1000);
    QCOMPARE(switched(1000, 0), 999);
    for (int id = 0; id <= 1000; ++id) {
        window.tabBar()->setCurrentTab(id);
        window.slotCmdFileCloseTab();
    }
    QCOMPARE(switched(1001, 0), 1002);
    QCOMPARE(switched(1002, 1), 1001);
}

void DocumentsTest::saveAllReachesEveryTab()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(window.open());
    for (int count = 1; count < 1002; ++count)
        window.slotCmdFileNew();
    QCOMPARE(window.tabBar()->currentTab(), 1001);
    QTest::keyClicks(window.currentEditor(), u"last"_s);
    window.choices << FileChoice{ files.folder(), u"last.txt"_s };
    window.tabBar()->setCurrentTab(0);
    window.slotCmdFileSaveAll();
    QCOMPARE(files.read(u"last.txt"_s), QByteArray("last"));
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

/// The commands take the state of whichever document has told it last, until the tab is changed.
void DocumentsTest::otherEditorsChangeTheStatesToo()
{
    TestWindow window;
    QVERIFY(window.open());
    window.slotCmdFileNew();
    window.editorAt(0)->insert(u"text"_s);
    QCOMPARE(window.editStates(), u"u---"_s);
    QCOMPARE(window.tabTexts(), QStringList({ u"* (new document)"_s, u"(new document)"_s }));
    window.editorAt(0)->selectAll();
    QCOMPARE(window.editStates(), u"u-xc"_s);
    window.slotEtcChangeTab(1);
    window.slotEtcChangeTab(1);
    QCOMPARE(window.currentEditor(), window.editorAt(1));
    QCOMPARE(window.editStates(), u"----"_s);
}

void DocumentsTest::undoingAllLeavesItUnedited()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(window.open());
    window.setDocument(files.write(u"a.txt"_s, "text"));
    QTest::keyClicks(window.currentEditor(), u"x"_s);
    QTest::keyClick(window.currentEditor(), Qt::Key_Return);
    QCOMPARE(window.tabTexts().at(1), u"* a.txt"_s);
    while (window.isItemEnabled(EditCommand::Undo))
        window.item(EditCommand::Undo)->trigger();
    QCOMPARE(window.currentEditor()->text(), u"text"_s);
    QCOMPARE(window.tabTexts().at(1), u"a.txt"_s);
    QVERIFY(!window.currentEditor()->edited());
    window.item(EditCommand::Redo)->trigger();
    QCOMPARE(window.tabTexts().at(1), u"* a.txt"_s);
}

REGISTER_TEST(runWindowTest<DocumentsTest>)
#include "documents_test.moc"
