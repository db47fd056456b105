#include "filedialog/ctlfilelistview.h"
#include "tests/filedialog/formtest.h"
#include "tests/filedialog/testfolder.h"

#include <QFile>
#include <QHeaderView>
#include <QScrollBar>
#include <QSignalSpy>
#include <QStyledItemDelegate>

#include <memory>

namespace {

using Item = ctlFileListViewItem;

/// A list that shows a folder in a window, with what it reports.
struct ShownList {
    explicit ShownList(const QString &path)
    {
        list.resize(210, 130);
        list.nameFilter = QStringLiteral("*");
        list.show();
        list.activateWindow();
        list.setFocus();
        list.showFolder(path);
    }

    QStringList names() const
    {
        QStringList result;
        for (int row = 0; row < list.topLevelItemCount(); ++row)
            result += list.topLevelItem(row)->text(Item::NameColumn);
        return result;
    }
    Item *item(const char *name) const
    {
        for (int row = 0; row < list.topLevelItemCount(); ++row) {
            if (list.topLevelItem(row)->text(Item::NameColumn) == QString::fromUtf8(name))
                return static_cast<Item *>(list.topLevelItem(row));
        }
        return nullptr;
    }
    QString selected() const
    {
        return list.selectedItem() ? list.selectedItem()->text(Item::NameColumn) : QString();
    }
    QPoint place(const char *name) const { return list.visualItemRect(item(name)).center(); }
    void click(QPoint at) { QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, at); }
    void click(const char *name) { click(place(name)); }
    /// The four events of a double click.
    void doubleClick(QPoint at, Qt::MouseButton button = Qt::LeftButton)
    {
        QTest::mouseClick(list.viewport(), button, {}, at);
        QTest::mouseDClick(list.viewport(), button, {}, at);
    }
    void key(Qt::Key key) { QTest::keyClick(&list, key); }

    ctlFileListView list;
    QSignalSpy selectedFiles{ &list, &ctlFileListView::fileSelected };
    QSignalSpy refreshed{ &list, &ctlFileListView::listRefreshed };
    QSignalSpy opened{ &list, &ctlFileListView::execItem };
};

QStringList strings(std::initializer_list<const char *> texts)
{
    QStringList result;
    for (const char *text : texts)
        result += QString::fromUtf8(text);
    return result;
}

} // namespace

class ListViewTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void columns_data();
    void columns();
    void showsAFolder();
    void emptyFolderIsReported();
    void unreadableFolderIsEmpty_data();
    void unreadableFolderIsEmpty();
    void filterIsForFiles();
    void harmlessEntries();

    void sortsByEveryColumn_data();
    void sortsByEveryColumn();
    void headerSorts();
    void keysSort();
    void folderHasOneName_data();
    void folderHasOneName();
    void refreshKeepsTheOrder();

    void goingUpSelectsTheFolderLeft();
    void goingUpFromTheRoot();
    void goingUpToTheRoot();
    void goingUpBeforeTheFirstFolder();
    void goingUpToAFilteredOrMissingName();
    void goingUpFromAVanishedFolder();
    void linkIsLeftToItsOwnFolder();
    void refreshScrollsToTheTop();

    void keys_data();
    void keys();
    void returnWithoutSelection();
    void firstKeySelectsTheRowOfTheFocus_data();
    void firstKeySelectsTheRowOfTheFocus();
    void returnIsTaken();
    void walksByKeysAlone();

    void tapOnAnotherRowSelects();
    void tapOnTheSelectedRowOpens();
    void tapOnTheFolderJustLeftOpens();
    void tapAfterARefreshSelects();
    void doubleClickOpensOnce_data();
    void doubleClickOpensOnce();
    void doubleClickByAnotherButton();

    void placesBelowARoot();
    void paintsUndecodableNames();
};

void ListViewTest::init()
{
    failOnWarnings();
    setScreenClass(false);
    loadFileIcons();
}

void ListViewTest::columns_data()
{
    QTest::addColumn<bool>("vga");
    QTest::addColumn<QList<int>>("widths");
    QTest::addColumn<int>("headerFont");
    QTest::newRow("small") << false << QList<int>{ 140, 50, 88 } << 6;
    QTest::newRow("VGA") << true << QList<int>{ 245, 90, 140 } << 14;
}

void ListViewTest::columns()
{
    QFETCH(bool, vga);
    QFETCH(QList<int>, widths);
    QFETCH(int, headerFont);
    setScreenClass(vga);
    ctlFileListView list;
    list.resize(800, 200);
    list.show();
    const QStringList titles = strings({ "Name", "Size", "Date Modified" });
    QCOMPARE(list.columnCount(), 3);
    for (int column = 0; column < 3; ++column) {
        QCOMPARE(list.headerItem()->text(column), titles.at(column));
        QCOMPARE(list.columnWidth(column), widths.at(column));
    }
    QCOMPARE(list.header()->font().pointSize(), headerFont);
    QCOMPARE(list.headerItem()->textAlignment(1), int(Qt::AlignRight | Qt::AlignVCenter));
    QCOMPARE(list.headerItem()->textAlignment(2), int(Qt::AlignCenter));
    QVERIFY(list.header()->isSortIndicatorShown());
    QVERIFY(list.allColumnsShowFocus());
    QVERIFY(list.currentPath.isEmpty());
    QVERIFY(list.nameFilter.isEmpty());
    QCOMPARE(list.pathList, u':' + qEnvironmentVariable("PATH") + u':');
}

void ListViewTest::showsAFolder()
{
    const TestFolder folder;
    folder.file("b.txt", 1);
    folder.file(".hidden");
    folder.folder("Sub");
    folder.folder("another");
    const ShownList shown(folder.path());
    QCOMPARE(shown.names(), strings({ "another", "Sub", ".hidden", "b.txt" }));
    QCOMPARE(shown.item("Sub")->text(1), QStringLiteral("Folder"));
    QCOMPARE(shown.item("b.txt")->text(1), QStringLiteral("1 KB"));
    QCOMPARE(shown.list.currentPath, folder.path());
    QCOMPARE(shown.refreshed.size(), 1);
    QCOMPARE(shown.refreshed.at(0).at(0).toString(), folder.path());
    QCOMPARE(shown.selected(), QString());
    QVERIFY(shown.list.updatesEnabled());
}

void ListViewTest::emptyFolderIsReported()
{
    const TestFolder folder;
    const ShownList shown(folder.path());
    QCOMPARE(shown.names(), QStringList());
    QCOMPARE(shown.refreshed.size(), 1);
    QCOMPARE(shown.refreshed.at(0).at(0).toString(), folder.path());
    QCOMPARE(shown.list.selectedItem(), nullptr);
    QVERIFY(shown.selectedFiles.isEmpty());
}

void ListViewTest::unreadableFolderIsEmpty_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("missing") << QByteArray("missing/");
    QTest::newRow("a file") << QByteArray("file/");
    QTest::newRow("no permission") << QByteArray("locked/");
    QTest::newRow("link loop") << QByteArray("loop/");
}

void ListViewTest::unreadableFolderIsEmpty()
{
    QFETCH(QByteArray, name);
    const TestFolder folder;
    folder.file("file");
    folder.folder("locked");
    folder.file("locked/inside");
    folder.link("loop", "loop");
    folder.mode("locked", 0);
    folder.mode("", 0755);
    const OrdinaryUser user;
    const QString path = folder.path(name.constData());
    const ShownList shown(path);
    QCOMPARE(shown.names(), QStringList());
    QCOMPARE(shown.list.currentPath, path);
    QCOMPARE(shown.refreshed.size(), 1);
}

void ListViewTest::filterIsForFiles()
{
    const TestFolder folder;
    folder.folder("sub");
    folder.file("a.txt");
    folder.file("B.TXT");
    folder.file(".c.ini");
    folder.file("d.conf");
    ShownList shown(folder.path());
    shown.list.nameFilter = QStringLiteral("*.txt;*.ini;*.log");
    QCOMPARE(shown.names().size(), 5);
    shown.list.showFolder(folder.path());
    QCOMPARE(shown.names(), strings({ "sub", ".c.ini", "a.txt" }));
}

void ListViewTest::harmlessEntries()
{
    const TestFolder folder;
    folder.link("nowhere", "dangling");
    folder.link("loop", "loop");
    folder.fifo("pipe");
    ShownList shown(folder.path());
    QCOMPARE(shown.names(), strings({ "dangling", "loop", "pipe" }));
    QCOMPARE(shown.item("dangling")->text(1), QStringLiteral("0 KB"));
    for (const char *name : { "dangling", "loop", "pipe" }) {
        QVERIFY(!shown.item(name)->isFolder());
        shown.list.slotExecItem(shown.item(name));
    }
    QCOMPARE(shown.opened.size(), 3);
}

void ListViewTest::sortsByEveryColumn_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<Qt::SortOrder>("order");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("name up") << 0 << Qt::AscendingOrder << strings({ "f1", "F2", "a", "B", "c", "D" });
    QTest::newRow("name down") << 0 << Qt::DescendingOrder << strings({ "D", "c", "B", "a", "F2", "f1" });
    QTest::newRow("size up, equal kilobytes by name")
        << 1 << Qt::AscendingOrder << strings({ "f1", "F2", "a", "c", "D", "B" });
    QTest::newRow("size down, equal kilobytes by name")
        << 1 << Qt::DescendingOrder << strings({ "B", "D", "a", "c", "f1", "F2" });
    QTest::newRow("date up, equal minutes by name")
        << 2 << Qt::AscendingOrder << strings({ "F2", "f1", "D", "a", "B", "c" });
    QTest::newRow("date down, equal minutes by name")
        << 2 << Qt::DescendingOrder << strings({ "c", "a", "B", "D", "f1", "F2" });
}

void ListViewTest::sortsByEveryColumn()
{
    QFETCH(int, column);
    QFETCH(Qt::SortOrder, order);
    QFETCH(QStringList, expected);
    constexpr time_t minute = 60;
    constexpr time_t start = 1'700'000'040; // a whole minute
    const TestFolder folder;
    folder.file("a", 1);
    folder.file("B", 5000);
    folder.file("c", 1000);
    folder.file("D", 1024);
    folder.folder("f1");
    folder.folder("F2");
    folder.time("a", start + minute);
    folder.time("B", start + minute + 30);
    folder.time("c", start + 2 * minute);
    folder.time("D", start);
    folder.time("f1", start + minute);
    folder.time("F2", start);
    ShownList shown(folder.path());
    shown.list.header()->setSortIndicator(column, order);
    shown.list.showFolder(folder.path());
    QCOMPARE(shown.names(), expected);
}

void ListViewTest::headerSorts()
{
    const TestFolder folder;
    folder.file("a", 3000);
    folder.file("b", 2000);
    folder.folder("f");
    ShownList shown(folder.path());
    shown.list.setCurrentItem(shown.item("b"));
    const auto clickHeader = [&shown](int column) {
        const QPoint at(shown.list.header()->sectionViewportPosition(column) + 10, 4);
        QTest::mouseClick(shown.list.header()->viewport(), Qt::LeftButton, {}, at);
    };
    clickHeader(0);
    QCOMPARE(shown.names(), strings({ "b", "a", "f" }));
    clickHeader(1);
    QCOMPARE(shown.names(), strings({ "f", "b", "a" }));
    clickHeader(1);
    QCOMPARE(shown.names(), strings({ "a", "b", "f" }));
    QCOMPARE(shown.selected(), QStringLiteral("b"));
    QCOMPARE(shown.refreshed.size(), 1);
}

void ListViewTest::keysSort()
{
    const TestFolder folder;
    folder.file("a", 3000);
    folder.file("b", 2000);
    folder.folder("f");
    ShownList shown(folder.path());
    const auto press = [&shown](Qt::Key key) { QTest::keyClick(&shown.list, key, Qt::ControlModifier); };
    press(Qt::Key_1);
    QCOMPARE(shown.names(), strings({ "b", "a", "f" }));
    press(Qt::Key_2);
    QCOMPARE(shown.names(), strings({ "f", "b", "a" }));
    press(Qt::Key_2);
    QCOMPARE(shown.names(), strings({ "a", "b", "f" }));
    press(Qt::Key_3);
    QCOMPARE(shown.list.header()->sortIndicatorSection(), 2);
    press(Qt::Key_4);
    QCOMPARE(shown.list.header()->sortIndicatorSection(), 2);
}

void ListViewTest::folderHasOneName_data()
{
    QTest::addColumn<QString>("spelling");
    QTest::newRow("as it is") << QStringLiteral("%1sub/");
    QTest::newRow("doubled slash at the end") << QStringLiteral("%1sub//");
    QTest::newRow("doubled slash at the start") << QStringLiteral("/%1sub/");
    QTest::newRow("dot") << QStringLiteral("%1./sub/");
    QTest::newRow("dots") << QStringLiteral("%1sub/../sub/");
    QTest::newRow("no slash at the end") << QStringLiteral("%1sub");
}

void ListViewTest::folderHasOneName()
{
    QFETCH(QString, spelling);
    const TestFolder folder;
    folder.folder("sub");
    folder.file("sub/x");
    ShownList shown(spelling.arg(folder.path()));
    QCOMPARE(shown.list.currentPath, folder.path("sub/"));
    QCOMPARE(shown.names(), strings({ "x" }));
    shown.list.goUpFolder();
    QCOMPARE(shown.selected(), QStringLiteral("sub"));
}

void ListViewTest::refreshKeepsTheOrder()
{
    const TestFolder folder;
    folder.file("a");
    folder.file("b");
    ShownList shown(folder.path());
    shown.list.header()->setSortIndicator(0, Qt::DescendingOrder);
    QCOMPARE(shown.names(), strings({ "b", "a" }));
    folder.file("c");
    shown.list.showFolder(folder.path());
    QCOMPARE(shown.names(), strings({ "c", "b", "a" }));
}

void ListViewTest::goingUpSelectsTheFolderLeft()
{
    const TestFolder folder;
    for (int n = 0; n < 40; ++n)
        folder.folder(("sub" + QByteArray::number(100 + n)).constData());
    ShownList shown(folder.path("sub130/"));
    shown.list.goUpFolder();
    QCOMPARE(shown.list.currentPath, folder.path());
    QCOMPARE(shown.selected(), QStringLiteral("sub130"));
    QCOMPARE(shown.list.currentItem(), shown.item("sub130"));
    const QRect row = shown.list.visualItemRect(shown.item("sub130"));
    QVERIFY(shown.list.viewport()->rect().contains(row.center()));
    QVERIFY(shown.selectedFiles.isEmpty());
}

void ListViewTest::goingUpFromTheRoot()
{
    ShownList shown(QStringLiteral("/"));
    shown.list.goUpFolder();
    QCOMPARE(shown.refreshed.size(), 1);
    QCOMPARE(shown.list.currentPath, QStringLiteral("/"));
}

void ListViewTest::goingUpToTheRoot()
{
    ShownList shown(QStringLiteral("/usr/"));
    shown.list.goUpFolder();
    QCOMPARE(shown.list.currentPath, QStringLiteral("/"));
    QCOMPARE(shown.selected(), QStringLiteral("usr"));
}

void ListViewTest::goingUpBeforeTheFirstFolder()
{
    ctlFileListView list;
    const QSignalSpy refreshed(&list, &ctlFileListView::listRefreshed);
    list.goUpFolder();
    QVERIFY(refreshed.isEmpty());
    QVERIFY(list.currentPath.isEmpty());
}

void ListViewTest::goingUpToAFilteredOrMissingName()
{
    const TestFolder folder;
    folder.folder("sub");
    folder.folder("other");
    ShownList shown(folder.path("sub/"));
    folder.remove("sub");
    shown.list.goUpFolder();
    QCOMPARE(shown.names(), strings({ "other" }));
    QCOMPARE(shown.selected(), QString());
}

void ListViewTest::goingUpFromAVanishedFolder()
{
    const TestFolder folder;
    folder.folder("a");
    folder.folder("a/b");
    folder.file("a/b/file");
    ShownList shown(folder.path("a/b/"));
    folder.remove("a/b/file");
    folder.remove("a/b");
    folder.remove("a");
    shown.key(Qt::Key_Down);
    shown.key(Qt::Key_Return);
    QCOMPARE(shown.opened.size(), 1);
    shown.list.showFolder(shown.list.currentPath);
    QCOMPARE(shown.names(), QStringList());
    shown.key(Qt::Key_Backspace);
    QCOMPARE(shown.list.currentPath, folder.path("a/"));
    shown.key(Qt::Key_Backspace);
    QCOMPARE(shown.list.currentPath, folder.path());
}

void ListViewTest::linkIsLeftToItsOwnFolder()
{
    const TestFolder folder;
    folder.folder("real");
    folder.folder("real/inner");
    folder.link("real/inner", "link");
    ShownList shown(folder.path());
    shown.list.slotExecItem(shown.item("link"));
    QCOMPARE(shown.list.currentPath, folder.path("link/"));
    shown.list.goUpFolder();
    QCOMPARE(shown.list.currentPath, folder.path());
    QCOMPARE(shown.selected(), QStringLiteral("link"));
}

void ListViewTest::refreshScrollsToTheTop()
{
    const TestFolder folder;
    for (int n = 0; n < 40; ++n)
        folder.file(("file" + QByteArray::number(100 + n)).constData());
    ShownList shown(folder.path());
    shown.list.verticalScrollBar()->setValue(20);
    shown.list.horizontalScrollBar()->setValue(30);
    QCOMPARE(shown.list.horizontalScrollBar()->value(), 30);
    shown.list.showFolder(folder.path());
    QCOMPARE(shown.list.verticalScrollBar()->value(), 0);
    QCOMPARE(shown.list.horizontalScrollBar()->value(), 0);
    QCOMPARE(shown.selected(), QString());
}

void ListViewTest::keys_data()
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

void ListViewTest::keys()
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
    shown.list.setCurrentItem(shown.item(selected.constData()));
    shown.key(key);
    QCOMPARE(shown.list.currentPath, base.path(folder.constData()));
    QCOMPARE(shown.opened.size(), opened);
}

void ListViewTest::returnWithoutSelection()
{
    const TestFolder folder;
    folder.folder("sub");
    ShownList shown(folder.path());
    shown.key(Qt::Key_Return);
    shown.key(Qt::Key_Right);
    QCOMPARE(shown.refreshed.size(), 1);
    QVERIFY(shown.opened.isEmpty());
}

void ListViewTest::firstKeySelectsTheRowOfTheFocus_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("Down") << Qt::Key_Down;
    QTest::newRow("Up") << Qt::Key_Up;
    QTest::newRow("Home") << Qt::Key_Home;
}

/// As after Tab: the first row has the focus and is not selected. It may be the only one.
void ListViewTest::firstKeySelectsTheRowOfTheFocus()
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

void ListViewTest::returnIsTaken()
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

void ListViewTest::walksByKeysAlone()
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

void ListViewTest::tapOnAnotherRowSelects()
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

void ListViewTest::tapOnTheSelectedRowOpens()
{
    const TestFolder folder;
    folder.folder("sub");
    folder.file("file");
    ShownList shown(folder.path());
    shown.click("file");
    shown.click("file");
    QCOMPARE(shown.opened.size(), 1);
    QCOMPARE(shown.opened.at(0).at(0).value<QTreeWidgetItem *>(), shown.item("file"));
    shown.click("sub");
    shown.click("sub");
    QCOMPARE(shown.list.currentPath, folder.path("sub/"));
}

void ListViewTest::tapOnTheFolderJustLeftOpens()
{
    const TestFolder folder;
    folder.folder("sub");
    ShownList shown(folder.path("sub/"));
    shown.list.goUpFolder();
    shown.click("sub");
    QCOMPARE(shown.list.currentPath, folder.path("sub/"));
}

void ListViewTest::tapAfterARefreshSelects()
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

void ListViewTest::doubleClickOpensOnce_data()
{
    QTest::addColumn<bool>("isFolder");
    QTest::addColumn<bool>("isSelected");
    for (const bool isSelected : { false, true }) {
        const char *before = isSelected ? "selected" : "unselected";
        QTest::addRow("file, %s", before) << false << isSelected;
        QTest::addRow("folder, %s", before) << true << isSelected;
    }
}

void ListViewTest::doubleClickOpensOnce()
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
        shown.list.setCurrentItem(shown.item(name));
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

void ListViewTest::doubleClickByAnotherButton()
{
    const TestFolder folder;
    folder.folder("sub");
    ShownList shown(folder.path());
    shown.doubleClick(shown.place("sub"), Qt::RightButton);
    shown.doubleClick(shown.place("sub"), Qt::MiddleButton);
    QCOMPARE(shown.refreshed.size(), 1);
}

/// The places of the machine, made below a folder of the test.
void ListViewTest::placesBelowARoot()
{
    const TestFolder root;
    for (const char *name :
        { "bin", "home", "home/me", "home/me/Documents", "home/QtPalmtop", "home/QtPalmtop/apps", "mnt",
            "mnt/card", "mnt/cf", "mnt/card/Documents", "mnt/cf/Documents", "var", "var/mnt", "usr",
            "usr/bin", "usr/mnt.rom", "usr/mnt.rom/card", "usr/mnt.rom/cf", "opt", "links" })
        root.folder(name);
    const QByteArray base = root.path().chopped(1).toUtf8();
    root.link(base + "/mnt/card", "links/sd");
    root.link(base + "/usr/mnt.rom/cf", "links/cf");
    root.link(base + "/home/QtPalmtop", "links/qt");
    root.link("../mnt/card", "links/relative");
    root.file("mnt/card/run.sh", 10, 0555);

    const QByteArray home = qgetenv("HOME");
    qputenv("HOME", base + "/home/me");
    ShownList shown(root.path());
    shown.list.placesRoot = QString::fromUtf8(base);
    shown.list.pathList = u':' + QString::fromUtf8(base) + QStringLiteral("/usr/bin:");
    const auto icon = [&](const char *folder, const char *name) {
        shown.list.showFolder(root.path(folder));
        return shown.item(name)->icon();
    };
    QCOMPARE(icon("", "bin"), FileIcon::Programs);
    QCOMPARE(icon("", "home"), FileIcon::User);
    QCOMPARE(icon("", "mnt"), FileIcon::Mounts);
    QCOMPARE(icon("", "opt"), FileIcon::Optional);
    QCOMPARE(icon("", "usr"), FileIcon::Folder);
    QCOMPARE(icon("home/", "me"), FileIcon::Home);
    QCOMPARE(icon("home/", "QtPalmtop"), FileIcon::Platform);
    QCOMPARE(icon("home/QtPalmtop/", "apps"), FileIcon::PlatformApps);
    QCOMPARE(icon("home/me/", "Documents"), FileIcon::Documents);
    QCOMPARE(icon("mnt/card/", "Documents"), FileIcon::Documents);
    QCOMPARE(icon("mnt/cf/", "Documents"), FileIcon::Documents);
    QCOMPARE(icon("mnt/", "card"), FileIcon::Folder);
    QCOMPARE(icon("var/", "mnt"), FileIcon::Mounts);
    QCOMPARE(icon("usr/", "mnt.rom"), FileIcon::Mounts);
    QCOMPARE(icon("usr/", "bin"), FileIcon::Programs);
    QCOMPARE(icon("usr/mnt.rom/", "card"), FileIcon::SdCard);
    QCOMPARE(icon("usr/mnt.rom/", "cf"), FileIcon::CfCard);
    QCOMPARE(icon("links/", "sd"), FileIcon::SdCard);
    QCOMPARE(icon("links/", "cf"), FileIcon::CfCard);
    QCOMPARE(icon("links/", "qt"), FileIcon::Platform);
    QCOMPARE(icon("links/", "relative"), FileIcon::Folder);
    QVERIFY(shown.item("sd")->isLink());
    QCOMPARE(icon("mnt/card/", "run.sh"), FileIcon::Script);
    QVERIFY(shown.item("run.sh")->isLocked());
    QVERIFY(!shown.item("run.sh")->isExec());
    qputenv("HOME", home);
}

void ListViewTest::paintsUndecodableNames()
{
    const TestFolder folder;
    folder.file("\x83\x83");
    ShownList shown(folder.path());
    const auto *delegate = qobject_cast<QStyledItemDelegate *>(shown.list.itemDelegate());
    const QString name = shown.list.topLevelItem(0)->text(Item::NameColumn);
    QCOMPARE(delegate->displayText(name, QLocale::c()), QStringLiteral(u"\uFFFD\uFFFD"));
    shown.list.setCurrentItem(shown.list.topLevelItem(0));
    QCOMPARE(shown.selectedFiles.at(0).at(0).toString(), QStringLiteral(u"\xDC83\xDC83"));
}

int main(int argc, char **argv)
{
    return runFormTest<ListViewTest>(argc, argv);
}
#include "ctlfilelistview_test.moc"
