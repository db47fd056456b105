#include "platform/keypause.h"
#include "tests/filedialog/boxanswer.h"
#include "tests/filedialog/showndialog.h"
#include "tests/filedialog/shownlist.h"
#include "tests/filedialog/testfolder.h"
#include "tests/jobs/scarcememory.h"
#include "tests/jobs/steppedrunner.h"
#include "tests/seeds.h"
#include "tests/testprogram.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QHeaderView>
#include <QRandomGenerator>
#include <QScrollBar>
#include <QSet>

#include <algorithm>
#include <functional>
#include <limits>

#include <fcntl.h>
#include <unistd.h>

namespace {

using namespace std::chrono_literals;

constexpr int manyFiles = 600; // a step reads 256
constexpr int typingGoesOn = std::numeric_limits<int>::max(); // as the interval of the toolkit
constexpr int typingIsOver = 0; // when the event loop comes round

QByteArray numbered(int number)
{
    return "file" + QByteArray::number(1000 + number);
}

/// In whichever order the system tells of them, of ten in a row some come before others.
void fillWithFiles(const TestFolder &folder, const char *ending = "")
{
    constexpr int stride = 7;
    for (int number = 0; number < manyFiles; ++number)
        folder.file((numbered(number * stride % manyFiles) + ending).constData());
}

QStringList allNames()
{
    QStringList names;
    for (int number = 0; number < manyFiles; ++number)
        names << QString::fromLatin1(numbered(number));
    return names;
}

/// A list that shows only what the steps of its runner have read.
struct FillingList : ShownList {
    explicit FillingList(const QString &path, SteppedRunner &steps)
        : ShownList(path, userSurroundings(), { &steps, 0ms })
    {
    }

    /// Each once, and none that never was in the folder.
    bool isPartOf(const QStringList &all) const
    {
        const QStringList shown = names();
        const QSet<QString> different(shown.begin(), shown.end());
        return different.size() == shown.size() && QSet<QString>(all.begin(), all.end()).contains(different);
    }
    bool isSorted() const { return std::ranges::is_sorted(names()); }
    int rows() const { return list.rows().rowCount(); }
};

/// Letters that lead to another file when all of them are there.
struct TypedLetters {
    /// `shown`: those that have come so far.
    explicit TypedLetters(const QStringList &shown, const char *ending = "")
    {
        for (int number = 0; number < manyFiles; number += 10) {
            letters = QString::fromLatin1(numbered(number)).chopped(1);
            inAll = letters + u'0' + QString::fromLatin1(ending);
            const auto found =
                std::ranges::find_if(shown, [this](const QString &name) { return name.startsWith(letters); });
            soFar = found == shown.end() ? inAll : *found;
            if (soFar != inAll)
                return;
        }
        qFatal("The files come in their order");
    }

    QString letters;
    QString soFar;
    QString inAll;
};

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
    void cleanup();
    void fillsStepByStep();
    void keepsWhatWasSelectedMeanwhile();
    void keepsTheRowsInView();
    void keepsTheSelectedRowInView();
    void keysGoOn();
    void typedNameLeadsWhereItDoesInTheWholeList_data();
    void typedNameLeadsWhereItDoesInTheWholeList();
    void typedNameWaitsForWhatIsNotThere_data();
    void typedNameWaitsForWhatIsNotThere();
    void typedNameWaitsForTheOrder();
    void typedNameIsLeftByItsUser_data();
    void typedNameIsLeftByItsUser();
    void returnBehindATypedNameOpensNothing();
    void returnOpensTheRowThatWasSeen();
    void returnOpensNoRowThatWasNotSeen();
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

private:
    const int m_usualInterval = QApplication::keyboardInputInterval();
};

void ListViewFillingTest::init()
{
    resetLists();
}

void ListViewFillingTest::cleanup()
{
    QApplication::setKeyboardInputInterval(m_usualInterval);
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

/// In a folder that is shown in one go; `from`: what is selected before, empty: nothing.
static QString selectedByTyping(const QString &letters, const QString &from, const TestFolder &folder)
{
    ctlFileListView list(nullptr, userSurroundings(), inOneGo());
    list.nameFilter = latin1("*");
    list.showFolder(folder.path());
    if (!from.isEmpty())
        list.selectRow(list.rows().indexOf(from));
    QTest::keyClicks(&list, letters);
    return list.selectedItem() ? list.selectedItem()->fileInfo().name : QString();
}

static QByteArray someLetters(QRandomGenerator &random, int most)
{
    QByteArray result;
    for (int left = random.bounded(1, most + 1); left > 0; --left)
        result += "abAB"[random.bounded(4)];
    return result;
}

/// From any row, after any step.
static void typeWhileItFills(const TestFolder &folder, QRandomGenerator &random)
{
    SteppedRunner steps;
    FillingList shown(folder.path(), steps);
    QVERIFY(QTest::qWaitForWindowActive(&shown.list));
    for (int left = random.bounded(3); left > 0; --left)
        steps.step();
    if (shown.rows() > 0 && random.bounded(4) > 0)
        shown.list.selectRow(shown.index(random.bounded(shown.rows())));
    const QString from = shown.selected();
    const QString typed = QString::fromLatin1(someLetters(random, 3));
    QTest::keyClicks(&shown.list, typed);
    steps.runAll();
    QVERIFY(!shown.list.isFilling());
    const QString expected = selectedByTyping(typed, from, folder);
    QTRY_COMPARE(shown.selected(), expected);
    const QRect view = shown.list.viewport()->rect();
    QVERIFY(expected.isEmpty() || view.intersects(shown.rect(shown.list.currentIndex())));
}

void ListViewFillingTest::typedNameLeadsWhereItDoesInTheWholeList_data()
{
    addSeeds(3);
}

void ListViewFillingTest::typedNameLeadsWhereItDoesInTheWholeList()
{
    QFETCH(quint32, seed);
    QRandomGenerator random(seed);
    const TestFolder folder;
    for (int number = 0; number < manyFiles; ++number)
        folder.file(someLetters(random, 10).constData());
    QApplication::setKeyboardInputInterval(typingIsOver);
    for (int left = 20; left > 0 && !QTest::currentTestFailed(); --left)
        typeWhileItFills(folder, random);
}

void ListViewFillingTest::typedNameWaitsForWhatIsNotThere_data()
{
    QTest::addColumn<bool>("isFolderNamed");
    QTest::newRow("before the first rows") << true;
    QTest::newRow("before the first folder") << false;
}

void ListViewFillingTest::typedNameWaitsForWhatIsNotThere()
{
    QFETCH(bool, isFolderNamed);
    const TestFolder folder;
    fillWithFiles(folder);
    SteppedRunner steps;
    ctlFileListView list(nullptr, userSurroundings(), { &steps, 0ms });
    list.nameFilter = latin1("*");
    list.show();
    list.activateWindow();
    list.setFocus();
    QVERIFY(QTest::qWaitForWindowActive(&list));
    if (isFolderNamed)
        list.showFolder(folder.path());
    QApplication::setKeyboardInputInterval(typingIsOver);
    QTest::keyClicks(&list, latin1("file15"));
    if (!isFolderNamed)
        list.showFolder(folder.path());
    QCOMPARE(list.selectedItem(), nullptr);
    steps.runAll();
    QTRY_VERIFY(list.selectedItem());
    QCOMPARE(list.selectedItem()->fileInfo().name, latin1("file1500"));
}

void ListViewFillingTest::typedNameWaitsForTheOrder()
{
    const TestFolder folder;
    fillWithFiles(folder);
    SteppedRunner steps;
    FillingList shown(folder.path(), steps);
    QVERIFY(QTest::qWaitForWindowActive(&shown.list));
    steps.runAll();
    shown.list.header()->setSortIndicator(0, Qt::DescendingOrder);
    QApplication::setKeyboardInputInterval(typingIsOver);
    shown.key(Qt::Key_F);
    QCOMPARE(shown.selected(), latin1("file1000"));
    steps.runAll();
    QTRY_COMPARE(shown.selected(), latin1("file1599"));
}

void ListViewFillingTest::typedNameIsLeftByItsUser_data()
{
    QTest::addColumn<std::function<void(FillingList &)>>("act");
    const auto row = [](const char *name, const std::function<void(FillingList &)> &act) {
        QTest::newRow(name) << act;
    };
    row("to another row and back", [](FillingList &shown) {
        shown.key(Qt::Key_Down);
        shown.key(Qt::Key_Up);
    });
    row("to something else", [](FillingList &shown) { shown.list.clearFocus(); });
}

void ListViewFillingTest::typedNameIsLeftByItsUser()
{
    QFETCH(std::function<void(FillingList &)>, act);
    const TestFolder folder;
    fillWithFiles(folder);
    SteppedRunner steps;
    FillingList shown(folder.path(), steps);
    QVERIFY(QTest::qWaitForWindowActive(&shown.list));
    steps.step();
    const TypedLetters typed(shown.names());
    QApplication::setKeyboardInputInterval(typingIsOver);
    QTest::keyClicks(&shown.list, typed.letters);
    QCOMPARE(shown.selected(), typed.soFar);
    act(shown);
    steps.runAll();
    for (int turn = 0; turn < 10; ++turn)
        QCoreApplication::processEvents();
    QCOMPARE(shown.selected(), typed.soFar);
}

/// A dialog over a folder of which a part has come, and keys as the window system brings them.
struct FillingDialog {
    FillingDialog()
    {
        fillWithFiles(folder, ending);
        shown.emplace(frmFileDialog::Open, folder.path(), latin1(ending), FolderJobs{ &steps, 0ms });
        QVERIFY(QTest::qWaitForWindowActive(&shown->dialog));
        QVERIFY(shown->waitForItsOwnStart());
        while (shown->names().isEmpty())
            steps.step();
        typed.emplace(shown->names(), ending);
    }

    void press(Qt::Key key) const { QTest::keyClick(shown->dialog.windowHandle(), key); }
    void type() const
    {
        for (const QChar letter : typed->letters)
            QTest::keyClick(shown->dialog.windowHandle(), letter.toLatin1());
    }
    bool isOpen() const { return shown->dialog.isVisible(); }
    QString selected() const
    {
        const ctlFileListViewItem *item = shown->list->selectedItem();
        return item ? item->fileInfo().name : QString();
    }

    static constexpr const char *ending = ".txt";
    TestFolder folder;
    SteppedRunner steps;
    std::optional<ShownDialog> shown;
    std::optional<TypedLetters> typed;
};

/// Not before all rows are there, and not when they are.
void ListViewFillingTest::returnBehindATypedNameOpensNothing()
{
    FillingDialog filling;
    QApplication::setKeyboardInputInterval(typingGoesOn);
    filling.type();
    QCOMPARE(filling.selected(), filling.typed->soFar);
    const QDeadlineTimer noticed(KeyPause::untilNoticed);
    while (!noticed.hasExpired()) {
        filling.press(Qt::Key_Return);
        QVERIFY(filling.isOpen());
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 5);
    }
    filling.steps.runAll();
    QVERIFY(!filling.shown->list->isFilling());
    filling.press(Qt::Key_Return);
    QVERIFY(filling.isOpen());
}

void ListViewFillingTest::returnOpensTheRowThatWasSeen()
{
    FillingDialog filling;
    QApplication::setKeyboardInputInterval(typingGoesOn);
    const QString all = filling.typed->letters;
    filling.typed->letters = all.chopped(1);
    filling.type();
    QApplication::setKeyboardInputInterval(typingIsOver);
    filling.typed->letters = all.last(1);
    filling.type();
    QCOMPARE(filling.selected(), filling.typed->soFar);
    QTRY_VERIFY((filling.press(Qt::Key_Return), !filling.isOpen()));
    QVERIFY(filling.shown->isAccepted());
    QCOMPARE(filling.shown->dialog.fileName, filling.typed->soFar);
}

/// The row that is selected by itself when all have come.
void ListViewFillingTest::returnOpensNoRowThatWasNotSeen()
{
    FillingDialog filling;
    QApplication::setKeyboardInputInterval(typingIsOver);
    QTest::keyClicks(filling.shown->list, filling.typed->letters);
    QCOMPARE(filling.selected(), filling.typed->soFar);
    const QDeadlineTimer noticed(KeyPause::untilNoticed);
    filling.steps.runAll();
    QTRY_COMPARE(filling.selected(), filling.typed->inAll);
    QCOMPARE(filling.shown->name()->text(), filling.typed->inAll);
    while (!noticed.hasExpired()) {
        filling.press(Qt::Key_Return);
        QVERIFY(filling.isOpen() || noticed.hasExpired());
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 5);
    }
    QTRY_VERIFY((filling.press(Qt::Key_Return), !filling.isOpen()));
    QCOMPARE(filling.shown->dialog.fileName, filling.typed->inAll);
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
