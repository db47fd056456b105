#include "filedialog/fileorder.h"

#include "tests/jobs/scarcememory.h"
#include "tests/testprogram.h"

#include <new>

using Item = ctlFileListViewItem;

namespace {

FileRowList rowsNamed(const QStringList &names)
{
    FileRowList rows;
    for (const QString &name : names) {
        FileEntry entry;
        entry.name = name.section(u':', 0, 0);
        entry.size = name.section(u':', 1).toLongLong() * 1024;
        entry.isFolder = name.endsWith(u'/');
        rows.append(std::make_shared<const Item>(entry, Surroundings()));
    }
    return rows;
}

QString namesOf(const FileRowList &rows)
{
    QStringList names;
    for (const auto &row : rows)
        names << row->fileInfo().name;
    return names.join(u' ');
}

} // namespace

/// In which order the rows of a folder stand.
class FileOrderTest : public QObject {
    Q_OBJECT

private slots:
    void orders_data();
    void orders();
    void ordersWhatComesLater_data();
    void ordersWhatComesLater();
    void staysAsItWasWithoutMemory_data();
    void staysAsItWasWithoutMemory();
};

void FileOrderTest::orders_data()
{
    QTest::addColumn<QString>("entries");
    QTest::addColumn<int>("column");
    QTest::addColumn<bool>("ascending");
    QTest::addColumn<QString>("sorted");
    QTest::addColumn<QString>("resorted");
    const auto row = [](const char *name, int column, bool ascending, const char *entries, const char *sorted,
                         const char *resorted) {
        QTest::newRow(name) << QString::fromLatin1(entries) << column << ascending
                            << QString::fromLatin1(sorted) << QString::fromLatin1(resorted);
    };
    row("nothing", Item::NameColumn, true, "", "", "");
    row("names", Item::NameColumn, true, "c:1 b:1 z/ A:1", "z/ A b c", "z/ A b c");
    row("names down", Item::NameColumn, false, "c:1 b:1 z/ A:1", "c b A z/", "c b A z/");
    row("names that differ by case", Item::NameColumn, true, "b:1 a:1 B:1", "a B b", "a b B");
    row("names that differ by case, down", Item::NameColumn, false, "b:1 a:1 B:1", "B b a", "b B a");
    row("sizes, large before small", Item::SizeColumn, true, "a:9 b:2 c:10", "b a c", "b a c");
    row("equal sizes", Item::SizeColumn, true, "c:1 b:1 d:0 a:1", "d a b c", "d c b a");
    row("equal sizes, down", Item::SizeColumn, false, "c:1 b:1 d:0 a:1", "a b c d", "c b a d");
}

void FileOrderTest::orders()
{
    QFETCH(QString, entries);
    QFETCH(int, column);
    QFETCH(bool, ascending);
    FileRowList rows = rowsNamed(entries.split(u' ', Qt::SkipEmptyParts));
    const FileOrder order{ column, ascending ? Qt::AscendingOrder : Qt::DescendingOrder };
    SortedRows sorted;
    for (const auto &row : std::as_const(rows))
        sorted.add(row);
    QTEST(namesOf(sorted.inOrder(order)), "sorted");
    resortRows(rows, order);
    QTEST(namesOf(rows), "resorted");
}

void FileOrderTest::ordersWhatComesLater_data()
{
    orders_data();
}

/// However the rows come, and in whatever orders they stood before.
void FileOrderTest::ordersWhatComesLater()
{
    QFETCH(QString, entries);
    QFETCH(int, column);
    QFETCH(bool, ascending);
    const FileOrder order{ column, ascending ? Qt::AscendingOrder : Qt::DescendingOrder };
    const FileRowList rows = rowsNamed(entries.split(u' ', Qt::SkipEmptyParts));
    SortedRows sorted;
    SortedRows reordered;
    for (const auto &row : rows) {
        sorted.add(row);
        sorted.inOrder(order);
        reordered.add(row);
        reordered.inOrder({ Item::DateColumn, Qt::DescendingOrder });
        reordered.inOrder({});
    }
    QTEST(namesOf(sorted.inOrder(order)), "sorted");
    QTEST(namesOf(reordered.inOrder(order)), "sorted");
}

void FileOrderTest::staysAsItWasWithoutMemory_data()
{
    QTest::addColumn<int>("question");
    QTest::newRow("from the start") << 1;
    QTest::newRow("in the middle") << 2;
    QTest::newRow("near the end") << 4;
}

void FileOrderTest::staysAsItWasWithoutMemory()
{
    QFETCH(int, question);
    constexpr int count = 1000;
    QStringList names;
    for (int number = 0; number < count; ++number)
        names << QString::number(number) + u':';
    FileRowList rows = rowsNamed(names);
    const QString before = namesOf(rows);
    constexpr FileOrder down{ Item::NameColumn, Qt::DescendingOrder };
    {
        const ScarceMemory scarce(question);
        QVERIFY_THROWS_EXCEPTION(std::bad_alloc, resortRows(rows, down));
        QVERIFY(scarce.wasMet());
    }
    for (const auto &row : std::as_const(rows))
        QVERIFY(row);
    QCOMPARE(namesOf(rows), before);
    resortRows(rows, down);
    QVERIFY(namesOf(rows).startsWith(QStringLiteral("999 998 ")));
}

REGISTER_TEST(runPlainTest<FileOrderTest>)
#include "fileorder_test.moc"
