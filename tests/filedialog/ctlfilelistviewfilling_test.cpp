#include "tests/filedialog/boxanswer.h"
#include "tests/filedialog/fillinglist.h"
#include "tests/filedialog/showndialog.h"
#include "tests/filedialog/testfolder.h"
#include "tests/jobs/scarcememory.h"
#include "tests/jobs/steppedrunner.h"
#include "tests/testprogram.h"

#include <QDir>
#include <QHeaderView>
#include <QScrollBar>

#include <algorithm>

#include <fcntl.h>
#include <unistd.h>

namespace {

using namespace std::chrono_literals;

QStringList allNames()
{
    QStringList names;
    for (int number = 0; number < manyFiles; ++number)
        names << QString::fromLatin1(numbered(number));
    return names;
}

/// What is open of a folder gives no more.
bool breakReadingOf(const QString &folder)
{
    const QFileInfoList all =
        QDir(QStringLiteral("/proc/self/fd")).entryInfoList(QDir::AllEntries | QDir::System);
    for (const QFileInfo &open : all) {
        if (open.symLinkTarget() + u'/' != folder)
            continue;
        const int noFolder = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
        const bool isBroken = noFolder != -1 && ::dup3(noFolder, open.fileName().toInt(), O_CLOEXEC) != -1;
        ::close(noFolder);
        return isBroken;
    }
    return false;
}

/// What may happen to a folder while it is read.
enum class FolderFate { Same, Grown, Emptied, Gone, Unreadable };

} // namespace

/// A folder that is not read in one go.
class ListViewFillingTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void fillsStepByStep();
    void keepsWhatWasSelectedMeanwhile();
    void keepsTheRowsInView();
    void keepsTheSelectedRowInView();
    void keysGoOn();
    void anotherFolderEndsIt();
    void closingEndsIt();
    void dialogOverADiskThatHangs();
    void sortsWhileItFills();
    void sortsLater();
    void sortedAnewBeforeItIsSorted();
    void arrowShowsTheOrderWhereSortingFails_data();
    void arrowShowsTheOrderWhereSortingFails();
    void failedSortingIsSaid_data();
    void failedSortingIsSaid();
    void selectsTheFolderLeftWhenItComes();
    void selectsNoFolderLeftBehindItsUser();
    void pressedRowStaysWhereItIs();
    void tellsThatItReads();
    void tooLittleMemoryIsSaid_data();
    void tooLittleMemoryIsSaid();
    void folderChangesMeanwhile_data();
    void folderChangesMeanwhile();
};

void ListViewFillingTest::init()
{
    resetLists();
}

void ListViewFillingTest::fillsStepByStep()
{
    const TestFolder folder;
    fillWithFiles(folder);
    SteppedRunner steps;
    FillingList shown(folder.path(), steps);
    QCOMPARE(shown.rows(), 0);
    QCOMPARE(shown.refreshed.size(), 1);
    QCOMPARE(shown.list.currentPath, folder.path());
    QVERIFY(shown.list.isFilling());
    steps.step();
    QVERIFY(shown.rows() > 0 && shown.rows() < manyFiles);
    QVERIFY(shown.isSorted());
    QVERIFY(shown.list.updatesEnabled());
    steps.runAll();
    QCOMPARE(shown.names(), allNames());
    QVERIFY(!shown.list.isFilling());
    QCOMPARE(shown.refreshed.size(), 1);
    QCOMPARE(shown.selected(), QString());
}

void ListViewFillingTest::keepsWhatWasSelectedMeanwhile()
{
    const TestFolder folder;
    fillWithFiles(folder);
    SteppedRunner steps;
    FillingList shown(folder.path(), steps);
    steps.step();
    shown.list.selectRow(shown.index(100));
    const QString selected = shown.selected();
    QVERIFY(!selected.isEmpty());
    steps.runAll();
    QCOMPARE(shown.rows(), manyFiles);
    QCOMPARE(shown.selected(), selected);
    QCOMPARE(shown.list.rows().itemAt(shown.list.currentIndex()), shown.list.selectedItem());
    QCOMPARE(shown.selectedFiles.size(), 1);
}

void ListViewFillingTest::keepsTheRowsInView()
{
    const TestFolder folder;
    fillWithFiles(folder);
    SteppedRunner steps;
    FillingList shown(folder.path(), steps);
    steps.step();
    shown.list.verticalScrollBar()->setValue(50);
    const QString top = shown.nameAt({ 5, 2 });
    steps.runAll();
    QCOMPARE(shown.nameAt({ 5, 2 }), top);
}

/// Whatever comes before it.
void ListViewFillingTest::keepsTheSelectedRowInView()
{
    const TestFolder folder;
    fillWithFiles(folder);
    SteppedRunner steps;
    FillingList shown(folder.path(), steps);
    steps.step();
    QCOMPARE(shown.list.verticalScrollBar()->value(), 0);
    shown.list.selectRow(shown.index(3));
    shown.list.horizontalScrollBar()->setValue(10);
    steps.runAll();
    QCOMPARE(shown.rows(), manyFiles);
    QVERIFY(shown.list.verticalScrollBar()->value() > 0);
    QVERIFY(shown.list.viewport()->rect().intersects(shown.rect(shown.list.currentIndex())));
    QCOMPARE(shown.list.horizontalScrollBar()->value(), 10);
}

void ListViewFillingTest::keysGoOn()
{
    const TestFolder folder;
    fillWithFiles(folder);
    SteppedRunner steps;
    FillingList shown(folder.path(), steps);
    steps.step();
    shown.key(Qt::Key_End);
    const QString last = shown.names().last();
    QCOMPARE(shown.selected(), last);
    steps.runAll();
    QCOMPARE(shown.selected(), last);
    shown.key(Qt::Key_Return);
    QCOMPARE(shown.opened.size(), 1);
}

void ListViewFillingTest::anotherFolderEndsIt()
{
    const TestFolder folder;
    const TestFolder other;
    fillWithFiles(folder);
    other.file("other");
    SteppedRunner steps;
    FillingList shown(folder.path(), steps);
    steps.step();
    shown.list.showFolder(other.path());
    QCOMPARE(shown.rows(), 0);
    steps.runAll();
    QCOMPARE(shown.names(), strings({ "other" }));
    QCOMPARE(shown.refreshed.size(), 2);
}

void ListViewFillingTest::closingEndsIt()
{
    const TestFolder folder;
    fillWithFiles(folder);
    SteppedRunner steps;
    {
        const FillingList shown(folder.path(), steps);
        steps.step();
    }
    QCOMPARE(steps.runAll(), 2); // in which it and what was shown are cleared away
}

/// No step is made before the dialog is gone.
void ListViewFillingTest::dialogOverADiskThatHangs()
{
    const TestFolder folder;
    folder.file("a.txt");
    SteppedRunner steps;
    {
        const ShownDialog shown(frmFileDialog::SaveAs, folder.path(), latin1("b.txt"), { &steps, 0ms });
        QVERIFY(shown.list->isFilling());
        QTest::keyClicks(shown.name(), latin1("typed"));
        shown.tool("Up")->click();
        QTest::keyClick(shown.list, Qt::Key_Escape);
        QVERIFY(!shown.dialog.isVisible());
        QVERIFY(shown.name()->text().contains(latin1("typed")));
    }
    steps.runAll();
    QVERIFY(steps.isIdle());
}

void ListViewFillingTest::sortsWhileItFills()
{
    const TestFolder folder;
    fillWithFiles(folder);
    SteppedRunner steps;
    FillingList shown(folder.path(), steps);
    steps.step();
    shown.list.header()->setSortIndicator(0, Qt::DescendingOrder);
    steps.step();
    QVERIFY(shown.rows() < manyFiles);
    QCOMPARE(shown.names().first(), std::ranges::max(shown.names()));
    steps.runAll();
    QStringList expected = allNames();
    std::ranges::reverse(expected);
    QCOMPARE(shown.names(), expected);
}

void ListViewFillingTest::sortsLater()
{
    const TestFolder folder;
    fillWithFiles(folder);
    SteppedRunner steps;
    FillingList shown(folder.path(), steps);
    steps.runAll();
    shown.list.selectRow(shown.index(3));
    const QString selected = shown.selected();
    shown.list.header()->setSortIndicator(0, Qt::DescendingOrder);
    shown.list.header()->setSortIndicator(1, Qt::DescendingOrder);
    shown.list.header()->setSortIndicator(0, Qt::DescendingOrder);
    QCOMPARE(shown.names(), allNames());
    steps.runAll();
    QStringList expected = allNames();
    std::ranges::reverse(expected);
    QCOMPARE(shown.names(), expected);
    QCOMPARE(shown.selected(), selected);
    QCOMPARE(shown.selectedFiles.size(), 1);
}

/// When all rows are read and the last ones are not yet told of.
void ListViewFillingTest::sortedAnewBeforeItIsSorted()
{
    const TestFolder folder;
    folder.file("a");
    folder.file("b");
    SteppedRunner steps;
    FillingList shown(folder.path(), steps);
    QTest::mousePress(shown.list.viewport(), Qt::LeftButton, {}, { 5, 5 });
    steps.runAll();
    QCOMPARE(shown.rows(), 0);
    shown.list.header()->setSortIndicator(0, Qt::DescendingOrder);
    QTest::mouseRelease(shown.list.viewport(), Qt::LeftButton, {}, { 5, 5 });
    steps.runAll();
    QCOMPARE(shown.names(), strings({ "b", "a" }));
}

void ListViewFillingTest::selectsTheFolderLeftWhenItComes()
{
    const TestFolder folder;
    fillWithFiles(folder);
    folder.folder("sub");
    SteppedRunner steps;
    FillingList shown(folder.path("sub/"), steps);
    steps.runAll();
    shown.list.goUpFolder();
    QCOMPARE(shown.selected(), QString());
    steps.runAll();
    QCOMPARE(shown.rows(), manyFiles + 1);
    QCOMPARE(shown.selected(), QStringLiteral("sub"));
    QVERIFY(shown.selectedFiles.isEmpty());
}

void ListViewFillingTest::selectsNoFolderLeftBehindItsUser()
{
    const TestFolder folder;
    folder.folder("sub");
    folder.file("a");
    SteppedRunner steps;
    FillingList shown(folder.path("sub/"), steps);
    steps.runAll();
    fillWithFiles(folder);
    shown.list.goUpFolder();
    steps.step();
    const ctlFileListViewItem *const other = shown.itemAt(shown.rows() - 1);
    shown.list.selectRow(shown.index(shown.rows() - 1));
    steps.runAll();
    QCOMPARE(shown.list.selectedItem(), other);
}

void ListViewFillingTest::pressedRowStaysWhereItIs()
{
    const TestFolder folder;
    fillWithFiles(folder);
    SteppedRunner steps;
    FillingList shown(folder.path(), steps);
    steps.step();
    const int rows = shown.rows();
    const QString name = shown.itemAt(2)->text(0);
    const QPoint place = shown.rect(shown.index(2)).center();
    shown.click(place);
    QTest::mousePress(shown.list.viewport(), Qt::LeftButton, {}, place);
    steps.runAll();
    QCOMPARE(shown.rows(), rows);
    QTest::mouseRelease(shown.list.viewport(), Qt::LeftButton, {}, place);
    QCOMPARE(shown.opened.size(), 1);
    QCOMPARE(shown.selected(), name);
    QCOMPARE(shown.names(), allNames());
}

void ListViewFillingTest::arrowShowsTheOrderWhereSortingFails_data()
{
    QTest::addColumn<std::chrono::milliseconds>("patience");
    QTest::addColumn<int>("question"); // for which there is too little
    QTest::newRow("at once") << 10000ms << 1;
    QTest::newRow("later") << 0ms << 1;
    QTest::newRow("in the middle, at once") << 10000ms << 3;
    QTest::newRow("in the middle, later") << 0ms << 3;
}

void ListViewFillingTest::arrowShowsTheOrderWhereSortingFails()
{
    QFETCH(std::chrono::milliseconds, patience);
    QFETCH(int, question);
    const TestFolder folder;
    fillWithFiles(folder);
    SteppedRunner steps;
    ShownList shown(folder.path(), userSurroundings(), { &steps, patience });
    steps.runAll();
    const QHeaderView &header = *shown.list.header();
    const auto sortBy = [&](int column, Qt::SortOrder order) {
        shown.list.header()->setSortIndicator(column, order);
        steps.runAll();
        QVERIFY(!shown.list.isSorting());
        QVERIFY(!shown.list.viewport()->testAttribute(Qt::WA_SetCursor));
    };
    {
        const ScarceMemory scarce(question);
        sortBy(1, Qt::DescendingOrder);
        QVERIFY(scarce.wasMet());
    }
    QCOMPARE(shown.names(), allNames());
    QCOMPARE(header.sortIndicatorSection(), 0);
    QCOMPARE(header.sortIndicatorOrder(), Qt::AscendingOrder);
    sortBy(0, Qt::DescendingOrder);
    QStringList expected = allNames();
    std::ranges::reverse(expected);
    QCOMPARE(shown.names(), expected);
    QCOMPARE(header.sortIndicatorOrder(), Qt::DescendingOrder);
}

void ListViewFillingTest::failedSortingIsSaid_data()
{
    arrowShowsTheOrderWhereSortingFails_data();
}

/// Once, when the list shows again what it had, and can be used.
void ListViewFillingTest::failedSortingIsSaid()
{
    QFETCH(std::chrono::milliseconds, patience);
    QFETCH(int, question);
    const TestFolder folder;
    fillWithFiles(folder, ".txt");
    SteppedRunner steps;
    const ShownDialog shown(frmFileDialog::Open, folder.path(), latin1(".txt"), { &steps, patience });
    QVERIFY(shown.waitForItsOwnStart());
    steps.runAll();
    const QStringList before = shown.names();
    QCOMPARE(before.size(), manyFiles);
    shown.select(before.at(5));
    BoxAnswer answer(latin1("OK"));
    {
        const ScarceMemory scarce(question);
        QTest::keyClick(shown.list, Qt::Key_2, Qt::ControlModifier);
        steps.runAll();
        QVERIFY(scarce.wasMet());
    }
    QCOMPARE(answer.count, 0);
    QCOMPARE(shown.list->header()->sortIndicatorSection(), 0);
    QTRY_COMPARE(answer.count, 1);
    QCOMPARE(answer.title, latin1("Error"));
    QCOMPARE(answer.text,
        latin1(
            "There is not enough memory to sort this folder.\nIts files stay in the order that they had."));
    QTRY_VERIFY(!QApplication::activeModalWidget() || QApplication::activeModalWidget() == &shown.dialog);
    QCOMPARE(shown.names(), before);
    QCOMPARE(shown.name()->text(), before.at(5));
    QTest::keyClick(shown.list, Qt::Key_1, Qt::ControlModifier);
    steps.runAll();
    QCOMPARE(shown.names().first(), before.last());
    QCOMPARE(answer.count, 1);
}

void ListViewFillingTest::tellsThatItReads()
{
    const TestFolder folder;
    SteppedRunner steps;
    FillingList shown(folder.path(), steps);
    const QImage reading = shown.list.viewport()->grab().toImage();
    QCOMPARE(shown.list.viewport()->cursor().shape(), Qt::BusyCursor);
    steps.runAll();
    QVERIFY(shown.list.viewport()->grab().toImage() != reading);
    QVERIFY(!shown.list.viewport()->testAttribute(Qt::WA_SetCursor));
}

void ListViewFillingTest::tooLittleMemoryIsSaid_data()
{
    QTest::addColumn<std::chrono::milliseconds>("patience");
    QTest::addColumn<int>("step"); // for which there is too little
    QTest::newRow("at once") << 10000ms << 1;
    QTest::newRow("before the first rows") << 0ms << 1;
    QTest::newRow("behind the first rows") << 0ms << 2;
}

/// An empty list, or a part of it, would say that there are no other files.
void ListViewFillingTest::tooLittleMemoryIsSaid()
{
    QFETCH(std::chrono::milliseconds, patience);
    QFETCH(int, step);
    const TestFolder folder;
    for (int number = 0; number < manyFiles; ++number)
        folder.file((numbered(number) + ".txt").constData());
    SteppedRunner steps;
    std::optional<ScarceMemory> scarce;
    scarce.emplace(step);
    const ShownDialog shown(frmFileDialog::Open, folder.path(), latin1(".txt"), { &steps, patience });
    for (int count = 0; count < step; ++count)
        steps.step();
    QVERIFY(scarce->wasMet());
    scarce.reset();
    steps.runAll();
    QVERIFY(!shown.list->isFilling());
    QVERIFY(!shown.list->viewport()->testAttribute(Qt::WA_SetCursor));
    QCOMPARE(shown.names(), QStringList());
    QCOMPARE(shown.list->accessibleDescription(),
        latin1("There is not enough memory to read this folder. Choose Refresh to try again."));
    const QImage told = shown.list->viewport()->grab().toImage();
    shown.list->emptyText = latin1("Nothing");
    QCOMPARE(shown.list->viewport()->grab().toImage(), told);
    shown.tool("Refresh")->click();
    steps.runAll();
    QCOMPARE(shown.names().size(), manyFiles);
    QCOMPARE(shown.list->accessibleDescription(), shown.list->emptyText);
}

void ListViewFillingTest::folderChangesMeanwhile_data()
{
    QTest::addColumn<FolderFate>("fate");
    QTest::addColumn<int>("steps");
    const std::pair<const char *, FolderFate> fates[] = { { "stays", FolderFate::Same },
        { "grows", FolderFate::Grown }, { "is emptied", FolderFate::Emptied }, { "goes", FolderFate::Gone },
        { "cannot be read on", FolderFate::Unreadable } };
    for (const auto &[name, fate] : fates) {
        for (int steps = fate == FolderFate::Unreadable ? 1 : 0; steps < 3; ++steps)
            QTest::addRow("%s after %d steps", name, steps) << fate << steps;
    }
}

/// Whatever was read is shown, each row once, and the list can be used.
void ListViewFillingTest::folderChangesMeanwhile()
{
    QFETCH(FolderFate, fate);
    QFETCH(int, steps);
    const TestFolder folder;
    fillWithFiles(folder);
    QStringList all = allNames();
    if (fate == FolderFate::Unreadable) { // more than the system gives at a time
        for (int number = manyFiles; number < 4 * manyFiles; ++number) {
            folder.file(numbered(number).constData());
            all << QString::fromLatin1(numbered(number));
        }
    }
    SteppedRunner runner;
    FillingList shown(folder.path(), runner);
    for (int step = 0; step < steps; ++step)
        runner.step();
    if (fate == FolderFate::Grown)
        folder.file("another");
    else if (fate == FolderFate::Unreadable)
        QVERIFY(breakReadingOf(folder.path()));
    else if (fate == FolderFate::Gone)
        QVERIFY(QDir(folder.path()).removeRecursively());
    for (int number = 0; fate == FolderFate::Emptied && number < manyFiles; ++number)
        QFile::remove(folder.path() + QString::fromLatin1(numbered(number)));
    runner.runAll();
    QVERIFY(!shown.list.isFilling());
    QVERIFY(shown.isSorted());
    QVERIFY(shown.isPartOf(all + strings({ "another" })));
    if (fate == FolderFate::Same)
        QCOMPARE(shown.rows(), int(manyFiles));
    if (fate == FolderFate::Grown)
        QVERIFY(shown.rows() >= manyFiles);
    if (fate == FolderFate::Unreadable)
        QVERIFY(shown.rows() > 0 && shown.rows() < all.size());
    const TestFolder other;
    other.file("other");
    shown.list.showFolder(other.path());
    runner.runAll();
    QCOMPARE(shown.names(), strings({ "other" }));
}

REGISTER_TEST(runFormTest<ListViewFillingTest>)
#include "ctlfilelistviewfilling_test.moc"
