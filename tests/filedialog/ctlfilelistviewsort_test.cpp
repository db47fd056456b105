#include "tests/filedialog/shownlist.h"
#include "tests/filedialog/testfolder.h"
#include "tests/testprogram.h"

#include <QHeaderView>

/// The order of a list, and what changes it.
class ListViewSortTest : public QObject {
    Q_OBJECT

private slots:
    void init();

    void sortsByEveryColumn_data();
    void sortsByEveryColumn();
    void headerSorts();
    void keysSort();
    void refreshKeepsTheOrder();
};

void ListViewSortTest::init()
{
    resetLists();
}

void ListViewSortTest::sortsByEveryColumn_data()
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

void ListViewSortTest::sortsByEveryColumn()
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

void ListViewSortTest::headerSorts()
{
    const TestFolder folder;
    folder.file("a", 3000);
    folder.file("b", 2000);
    folder.folder("f");
    ShownList shown(folder.path());
    shown.list.selectRow(shown.index("b"));
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

void ListViewSortTest::keysSort()
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

void ListViewSortTest::refreshKeepsTheOrder()
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

REGISTER_TEST(runFormTest<ListViewSortTest>)
#include "ctlfilelistviewsort_test.moc"
