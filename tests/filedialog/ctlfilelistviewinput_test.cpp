#include "tests/filedialog/shownlist.h"
#include "tests/filedialog/testfolder.h"
#include "tests/testprogram.h"

#include <QHeaderView>
#include <QScrollBar>

/// What keys, taps and double clicks do in a list.
class ListViewInputTest : public QObject {
    Q_OBJECT

private slots:
    void init();

    void keys_data();
    void keys();
    void returnWithoutSelection();
    void firstKeySelectsTheRowOfTheFocus_data();
    void firstKeySelectsTheRowOfTheFocus();
    void endGoesToTheLastRow_data();
    void endGoesToTheLastRow();
    void columnsByKeys();
    void pointerIsBusy();
    void returnIsTaken();
    void walksByKeysAlone();

    void tapOnAnotherRowSelects();
    void tapOnTheSelectedRowOpens();
    void tapOnTheFolderJustLeftOpens();
    void tapAfterARefreshSelects();
    void doubleClickOpensOnce_data();
    void doubleClickOpensOnce();
    void doubleClickByAnotherButton();
    void fingerScrolls();
    void tapOfAFingerSelectsAndOpens();
};

void ListViewInputTest::init()
{
    resetLists();
}

void ListViewInputTest::keys_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<QByteArray>("selected");
    QTest::addColumn<QByteArray>("folder"); // relative
    QTest::addColumn<int>("opened");
    QTest::newRow("Backspace goes up") << Qt::Key_Backspace << QByteArray("file") << QByteArray("") << 0;
    QTest::newRow("Left goes up") << Qt::Key_Left << QByteArray("sub") << QByteArray("") << 0;
    QTest::newRow("Return enters a folder")
        << Qt::Key_Return << QByteArray("sub") << QByteArray("top/sub/") << 0;
    QTest::newRow("Enter enters a folder")
        << Qt::Key_Enter << QByteArray("sub") << QByteArray("top/sub/") << 0;
    QTest::newRow("Right enters a folder")
        << Qt::Key_Right << QByteArray("sub") << QByteArray("top/sub/") << 0;
    QTest::newRow("Return opens a file") << Qt::Key_Return << QByteArray("file") << QByteArray("top/") << 1;
    QTest::newRow("Enter opens a file") << Qt::Key_Enter << QByteArray("file") << QByteArray("top/") << 1;
    QTest::newRow("Right leaves a file") << Qt::Key_Right << QByteArray("file") << QByteArray("top/") << 0;
    QTest::newRow("Space leaves a file") << Qt::Key_Space << QByteArray("file") << QByteArray("top/") << 0;
}

void ListViewInputTest::keys()
{
    QFETCH(Qt::Key, key);
    QFETCH(QByteArray, selected);
    QFETCH(QByteArray, folder);
    QFETCH(int, opened);
    const TestFolder base;
    base.folder("top");
    base.folder("top/sub");
    base.file("top/file");
    ShownList shown(base.path("top/"));
    shown.list.selectRow(shown.index(selected.constData()));
    shown.key(key);
    QCOMPARE(shown.list.currentPath, base.path(folder.constData()));
    QCOMPARE(shown.opened.size(), opened);
}

void ListViewInputTest::returnWithoutSelection()
{
    const TestFolder folder;
    folder.folder("sub");
    ShownList shown(folder.path());
    shown.key(Qt::Key_Return);
    shown.key(Qt::Key_Right);
    QCOMPARE(shown.refreshed.size(), 1);
    QVERIFY(shown.opened.isEmpty());
}

void ListViewInputTest::firstKeySelectsTheRowOfTheFocus_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("Down") << Qt::Key_Down;
    QTest::newRow("Up") << Qt::Key_Up;
    QTest::newRow("Home") << Qt::Key_Home;
}

/// As after Tab: the first row has the focus and is not selected. It may be the only one.
void ListViewInputTest::firstKeySelectsTheRowOfTheFocus()
{
    QFETCH(Qt::Key, key);
    const TestFolder folder;
    folder.folder("sub");
    ShownList shown(folder.path());
    shown.list.selectionModel()->setCurrentIndex(
        shown.list.model()->index(0, 0), QItemSelectionModel::NoUpdate);
    QCOMPARE(shown.selected(), QString());
    shown.key(key);
    QCOMPARE(shown.selected(), QStringLiteral("sub"));
    shown.key(Qt::Key_Return);
    QCOMPARE(shown.list.currentPath, folder.path("sub/"));
}

void ListViewInputTest::endGoesToTheLastRow_data()
{
    QTest::addColumn<QByteArray>("current");
    QTest::newRow("from no row") << QByteArray();
    QTest::newRow("from the first row") << QByteArray("file10");
    QTest::newRow("from the last row") << QByteArray("file49");
}

void ListViewInputTest::endGoesToTheLastRow()
{
    QFETCH(QByteArray, current);
    const TestFolder folder;
    for (int i = 10; i < 50; ++i)
        folder.file(QByteArray("file" + QByteArray::number(i)).constData());
    ShownList shown(folder.path());
    if (!current.isEmpty())
        shown.list.selectRow(shown.index(current.constData()));
    shown.key(Qt::Key_End);
    QCOMPARE(shown.selected(), QStringLiteral("file49"));
    QVERIFY(shown.list.viewport()->rect().contains(shown.place("file49")));
    ShownList empty(folder.path("missing/"));
    empty.key(Qt::Key_End);
    QCOMPARE(empty.selected(), QString());
}

/// The last column is wider than what is left beside the first.
void ListViewInputTest::columnsByKeys()
{
    const TestFolder folder;
    folder.folder("sub");
    ShownList shown(folder.path());
    const QScrollBar *bar = shown.list.horizontalScrollBar();
    QVERIFY(bar->maximum() > 0);
    const auto press = [&shown](Qt::Key key) { QTest::keyClick(&shown.list, key, Qt::ControlModifier); };
    for (int column = 1; column < ctlFileListViewItem::ColumnCount; ++column)
        press(Qt::Key_Right);
    QCOMPARE(bar->value(), bar->maximum());
    press(Qt::Key_Right);
    QCOMPARE(bar->value(), bar->maximum());
    for (int column = 1; column < ctlFileListViewItem::ColumnCount; ++column)
        press(Qt::Key_Left);
    QCOMPARE(bar->value(), 0);
    QCOMPARE(shown.list.currentPath, folder.path());

    shown.list.resize(60, 130);
    press(Qt::Key_Right);
    QCOMPARE(bar->value(), shown.list.header()->sectionPosition(ctlFileListViewItem::SizeColumn));
    press(Qt::Key_Right);
    QCOMPARE(bar->value(), shown.list.header()->sectionPosition(ctlFileListViewItem::DateColumn));
    press(Qt::Key_Left);
    QCOMPARE(bar->value(), shown.list.header()->sectionPosition(ctlFileListViewItem::SizeColumn));
}

/// While rows are read, and while they are sorted.
void ListViewInputTest::pointerIsBusy()
{
    const TestFolder folder;
    folder.file("a");
    folder.file("b");
    ShownList shown(folder.path());
    QVERIFY(!QGuiApplication::overrideCursor());
    int busy = 0;
    const auto look = [&busy] {
        const QCursor *pointer = QGuiApplication::overrideCursor();
        busy += pointer && pointer->shape() == Qt::WaitCursor ? 1 : 0;
    };
    connect(shown.list.model(), &QAbstractItemModel::rowsInserted, this, look);
    connect(shown.list.model(), &QAbstractItemModel::layoutChanged, this, look);
    shown.list.showFolder(folder.path());
    QCOMPARE(busy, 1);
    QTest::keyClick(&shown.list, Qt::Key_2, Qt::ControlModifier);
    QCOMPARE(busy, 2);
    QVERIFY(!QGuiApplication::overrideCursor());
}

void ListViewInputTest::returnIsTaken()
{
    const TestFolder folder;
    ShownList shown(folder.path());
    for (const Qt::Key key :
        { Qt::Key_Return, Qt::Key_Enter, Qt::Key_Right, Qt::Key_Left, Qt::Key_Backspace }) {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        QApplication::sendEvent(&shown.list, &event);
        QVERIFY(event.isAccepted());
    }
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QApplication::sendEvent(&shown.list, &escape);
    QVERIFY(!escape.isAccepted());
}

void ListViewInputTest::walksByKeysAlone()
{
    const TestFolder folder;
    folder.folder("a");
    folder.folder("b");
    folder.folder("b/c");
    folder.file("b/c/file");
    ShownList shown(folder.path("a/"));
    shown.key(Qt::Key_Backspace);
    QCOMPARE(shown.selected(), QStringLiteral("a"));
    shown.key(Qt::Key_Down);
    shown.key(Qt::Key_Return);
    shown.key(Qt::Key_Down);
    QCOMPARE(shown.selected(), QStringLiteral("c"));
    shown.key(Qt::Key_Right);
    shown.key(Qt::Key_Down);
    QCOMPARE(shown.selectedFiles.size(), 1);
    QCOMPARE(shown.selectedFiles.at(0).at(0).toString(), QStringLiteral("file"));
    shown.key(Qt::Key_Return);
    QCOMPARE(shown.opened.size(), 1);
    while (shown.list.currentPath != u"/")
        shown.key(Qt::Key_Left);
    QVERIFY(shown.selected() == folder.path().section(u'/', 1, 1));
}

void ListViewInputTest::tapOnAnotherRowSelects()
{
    const TestFolder folder;
    folder.folder("sub");
    folder.file("file");
    ShownList shown(folder.path());
    shown.click("file");
    QCOMPARE(shown.selectedFiles.size(), 1);
    QCOMPARE(shown.selectedFiles.at(0).at(0).toString(), QStringLiteral("file"));
    shown.click("sub");
    QCOMPARE(shown.selected(), QStringLiteral("sub"));
    QCOMPARE(shown.selectedFiles.size(), 1);
    QVERIFY(shown.opened.isEmpty());
    QCOMPARE(shown.refreshed.size(), 1);
}

void ListViewInputTest::tapOnTheSelectedRowOpens()
{
    const TestFolder folder;
    folder.folder("sub");
    folder.file("file");
    ShownList shown(folder.path());
    shown.click("file");
    shown.click("file");
    QCOMPARE(shown.opened.size(), 1);
    QCOMPARE(shown.opened.at(0).at(0).value<const ctlFileListViewItem *>(), shown.item("file"));
    shown.click("sub");
    shown.click("sub");
    QCOMPARE(shown.list.currentPath, folder.path("sub/"));
}

void ListViewInputTest::tapOnTheFolderJustLeftOpens()
{
    const TestFolder folder;
    folder.folder("sub");
    ShownList shown(folder.path("sub/"));
    shown.list.goUpFolder();
    shown.click("sub");
    QCOMPARE(shown.list.currentPath, folder.path("sub/"));
}

void ListViewInputTest::tapAfterARefreshSelects()
{
    const TestFolder folder;
    folder.file("file");
    ShownList shown(folder.path());
    shown.click("file");
    for (int round = 0; round < 20; ++round) {
        shown.list.showFolder(folder.path());
        shown.click("file");
        QCOMPARE(shown.selected(), QStringLiteral("file"));
    }
    QVERIFY(shown.opened.isEmpty());
}

void ListViewInputTest::doubleClickOpensOnce_data()
{
    QTest::addColumn<bool>("isFolder");
    QTest::addColumn<bool>("isSelected");
    for (const bool isSelected : { false, true }) {
        const char *before = isSelected ? "selected" : "unselected";
        QTest::addRow("file, %s", before) << false << isSelected;
        QTest::addRow("folder, %s", before) << true << isSelected;
    }
}

void ListViewInputTest::doubleClickOpensOnce()
{
    QFETCH(bool, isFolder);
    QFETCH(bool, isSelected);
    const TestFolder folder;
    folder.folder("sub");
    // What the second click would meet after the first one has entered the folder.
    folder.folder("sub/inner");
    folder.folder("sub/inner/inner");
    folder.file("file");
    ShownList shown(folder.path());
    const char *name = isFolder ? "sub" : "file";
    if (isSelected)
        shown.list.selectRow(shown.index(name));
    shown.doubleClick(shown.place(name));
    QCOMPARE(shown.opened.size(), isFolder ? 0 : 1);
    QCOMPARE(shown.refreshed.size(), isFolder ? 2 : 1);
    QCOMPARE(shown.list.currentPath, isFolder ? folder.path("sub/") : folder.path());
    QCOMPARE(shown.selected(), isFolder ? QString() : QStringLiteral("file"));
    if (isFolder) {
        shown.click("inner");
        QCOMPARE(shown.selected(), QStringLiteral("inner"));
        shown.doubleClick(shown.place("inner"));
        QCOMPARE(shown.list.currentPath, folder.path("sub/inner/"));
    }
}

void ListViewInputTest::doubleClickByAnotherButton()
{
    const TestFolder folder;
    folder.folder("sub");
    ShownList shown(folder.path());
    shown.doubleClick(shown.place("sub"), Qt::RightButton);
    shown.doubleClick(shown.place("sub"), Qt::MiddleButton);
    QCOMPARE(shown.refreshed.size(), 1);
}

static QPoint middleOf(const ShownList &shown)
{
    return shown.list.viewport()->rect().center();
}

/// Rather than selecting what it passes over.
void ListViewInputTest::fingerScrolls()
{
    const std::unique_ptr<QPointingDevice> screen(QTest::createTouchDevice());
    const TestFolder folder;
    for (int i = 10; i < 99; ++i)
        folder.file(QByteArray("file" + QByteArray::number(i)).constData());
    ShownList shown(folder.path());
    QVERIFY(QTest::qWaitForWindowExposed(&shown.list));
    QWidget *const view = shown.list.viewport();
    QTest::touchEvent(view, screen.get()).press(0, middleOf(shown), view);
    for (int y = 0; y < 100; y += 5)
        QTest::touchEvent(view, screen.get()).move(0, middleOf(shown) - QPoint(0, y), view);
    QTRY_VERIFY(shown.nameAt({}) > QStringLiteral("file11"));
    QTest::touchEvent(view, screen.get()).release(0, middleOf(shown) - QPoint(0, 100), view);
    QCOMPARE(shown.selected(), QString());
    QCOMPARE(shown.selectedFiles.size(), 0);
}

void ListViewInputTest::tapOfAFingerSelectsAndOpens()
{
    const std::unique_ptr<QPointingDevice> screen(QTest::createTouchDevice());
    const TestFolder folder;
    for (int i = 10; i < 99; ++i)
        folder.file(QByteArray("file" + QByteArray::number(i)).constData());
    ShownList shown(folder.path());
    QVERIFY(QTest::qWaitForWindowExposed(&shown.list));
    QWidget *const view = shown.list.viewport();
    const QPoint at = middleOf(shown) + QPoint(0, 30); // not where another test has tapped
    const auto tap = [&] {
        QTest::touchEvent(view, screen.get()).press(0, at, view);
        QTest::touchEvent(view, screen.get()).release(0, at, view);
    };
    const QString name = shown.nameAt(at);
    tap();
    QCOMPARE(shown.selected(), name);
    QCOMPARE(shown.selectedFiles.size(), 1);
    QCOMPARE(shown.opened.size(), 0);
    tap();
    QCOMPARE(shown.opened.size(), 1);
}

REGISTER_TEST(runFormTest<ListViewInputTest>)
#include "ctlfilelistviewinput_test.moc"
