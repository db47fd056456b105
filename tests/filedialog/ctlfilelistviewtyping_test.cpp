#include "platform/keypause.h"
#include "tests/filedialog/fillinglist.h"
#include "tests/filedialog/showndialog.h"
#include "tests/seeds.h"
#include "tests/testprogram.h"

#include <QDeadlineTimer>
#include <QHeaderView>
#include <QRandomGenerator>

#include <algorithm>
#include <functional>
#include <limits>
#include <optional>

namespace {

using namespace std::chrono_literals;

constexpr int typingGoesOn = std::numeric_limits<int>::max(); // as the interval of the toolkit
constexpr int typingIsOver = 0; // when the event loop comes round

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

} // namespace

/// A name that is typed while a folder is still being read.
class ListViewTypingTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
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

private:
    const int m_usualInterval = QApplication::keyboardInputInterval();
};

void ListViewTypingTest::init()
{
    resetLists();
}

void ListViewTypingTest::cleanup()
{
    QApplication::setKeyboardInputInterval(m_usualInterval);
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

void ListViewTypingTest::typedNameLeadsWhereItDoesInTheWholeList_data()
{
    addSeeds(3);
}

void ListViewTypingTest::typedNameLeadsWhereItDoesInTheWholeList()
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

void ListViewTypingTest::typedNameWaitsForWhatIsNotThere_data()
{
    QTest::addColumn<bool>("isFolderNamed");
    QTest::newRow("before the first rows") << true;
    QTest::newRow("before the first folder") << false;
}

void ListViewTypingTest::typedNameWaitsForWhatIsNotThere()
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

void ListViewTypingTest::typedNameWaitsForTheOrder()
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

void ListViewTypingTest::typedNameIsLeftByItsUser_data()
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

void ListViewTypingTest::typedNameIsLeftByItsUser()
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
void ListViewTypingTest::returnBehindATypedNameOpensNothing()
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

void ListViewTypingTest::returnOpensTheRowThatWasSeen()
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
void ListViewTypingTest::returnOpensNoRowThatWasNotSeen()
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

REGISTER_TEST(runFormTest<ListViewTypingTest>)
#include "ctlfilelistviewtyping_test.moc"
