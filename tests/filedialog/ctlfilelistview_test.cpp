#include "tests/filedialog/shownlist.h"
#include "tests/filedialog/testfolder.h"
#include "tests/testprogram.h"

#include <QHeaderView>
#include <QScrollBar>
#include <QStyledItemDelegate>

/// What a list shows of a folder, and of the folder above.
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

    void folderHasOneName_data();
    void folderHasOneName();

    void goingUpSelectsTheFolderLeft();
    void goingUpFromTheRoot();
    void goingUpToTheRoot();
    void goingUpBeforeTheFirstFolder();
    void goingUpToAFilteredOrMissingName();
    void goingUpFromAVanishedFolder();
    void linkIsLeftToItsOwnFolder();
    void refreshScrollsToTheTop();

    void placesBelowARoot();
    void paintsUndecodableNames();
};

void ListViewTest::init()
{
    resetLists();
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
    const FileListModel &rows = list.rows();
    QCOMPARE(rows.columnCount(), 3);
    for (int column = 0; column < 3; ++column) {
        QCOMPARE(rows.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString(), titles.at(column));
        QCOMPARE(list.columnWidth(column), widths.at(column));
    }
    QCOMPARE(list.header()->font().pointSize(), headerFont);
    const auto alignment = [&rows](int column) {
        return rows.headerData(column, Qt::Horizontal, Qt::TextAlignmentRole).value<Qt::Alignment>();
    };
    QCOMPARE(alignment(1), Qt::AlignRight | Qt::AlignVCenter);
    QCOMPARE(alignment(2), Qt::AlignCenter);
    QVERIFY(list.header()->isSortIndicatorShown());
    QVERIFY(list.allColumnsShowFocus());
    QVERIFY(list.currentPath.isEmpty());
    QVERIFY(list.nameFilter.isEmpty());
    QCOMPARE(list.surroundings.pathList, u':' + qEnvironmentVariable("PATH") + u':');
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

void ListViewTest::goingUpSelectsTheFolderLeft()
{
    const TestFolder folder;
    for (int n = 0; n < 40; ++n)
        folder.folder(("sub" + QByteArray::number(100 + n)).constData());
    ShownList shown(folder.path("sub130/"));
    shown.list.goUpFolder();
    QCOMPARE(shown.list.currentPath, folder.path());
    QCOMPARE(shown.selected(), QStringLiteral("sub130"));
    QCOMPARE(shown.list.currentIndex(), shown.index("sub130"));
    const QRect row = shown.rect(shown.index("sub130"));
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

    const QString place = QString::fromUtf8(base);
    ShownList shown(root.path(),
        { place + QStringLiteral("/home/me"), u':' + place + QStringLiteral("/usr/bin:"), place });
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
}

void ListViewTest::paintsUndecodableNames()
{
    const TestFolder folder;
    folder.file("\x83\x83");
    ShownList shown(folder.path());
    const auto *delegate = qobject_cast<QStyledItemDelegate *>(shown.list.itemDelegate());
    const QString name = shown.itemAt(0)->text(ctlFileListViewItem::NameColumn);
    QCOMPARE(delegate->displayText(name, QLocale::c()), QStringLiteral(u"\uFFFD\uFFFD"));
    shown.list.selectRow(shown.index(0));
    QCOMPARE(shown.selectedFiles.at(0).at(0).toString(), QStringLiteral(u"\xDC83\xDC83"));
}

REGISTER_TEST(runFormTest<ListViewTest>)
#include "ctlfilelistview_test.moc"
