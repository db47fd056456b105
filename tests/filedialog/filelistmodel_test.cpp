#include "filedialog/filelistmodel.h"

#include "tests/filedialog/formtest.h"
#include "tests/testprogram.h"

#include <QAbstractItemModelTester>
#include <QTest>

namespace {

std::shared_ptr<const ctlFileListViewItem> rowNamed(const char *name)
{
    FileEntry entry;
    entry.name = QString::fromUtf8(name);
    return std::make_shared<const ctlFileListViewItem>(entry, Surroundings());
}

} // namespace

/// The rows as a view asks for them.
class FileListModelTest : public QObject {
    Q_OBJECT

private slots:
    void rows();
    void rowsKeepWhatIsKnownOfThem();
    void rowsThatGoAreForgotten();
    void clearing();
    void typedName_data();
    void typedName();
};

void FileListModelTest::rows()
{
    FileListModel model;
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    model.setRows({ rowNamed("b"), rowNamed("a"), rowNamed("b") });
    QCOMPARE(model.rowCount(), 3);
    QCOMPARE(model.indexOf(QStringLiteral("b")), model.index(0, 0));
    QCOMPARE(model.indexOf(QStringLiteral("a")), model.index(1, 0));
    QVERIFY(!model.indexOf(QStringLiteral("c")).isValid());
    QCOMPARE(model.itemAt(model.index(1, 2))->fileInfo().name, QStringLiteral("a"));
    QCOMPARE(model.itemAt({}), nullptr);
    QCOMPARE(model.index(1, 0).data().toString(), QStringLiteral("a"));
    QCOMPARE(model.rowCount(model.index(1, 0)), 0);
}

void FileListModelTest::rowsKeepWhatIsKnownOfThem()
{
    FileListModel model;
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    const auto a = rowNamed("a");
    const auto b = rowNamed("b");
    model.setRows({ a, b });
    const QPersistentModelIndex ofA = model.index(0, 0);
    const QPersistentModelIndex ofB = model.index(1, 2);
    model.setRows({ rowNamed("c"), b, rowNamed("d"), a });
    QCOMPARE(ofA, model.index(3, 0));
    QCOMPARE(ofB, model.index(1, 2));
}

void FileListModelTest::rowsThatGoAreForgotten()
{
    FileListModel model;
    const auto a = rowNamed("a");
    model.setRows({ a, rowNamed("b") });
    const QPersistentModelIndex ofA = model.index(0, 0);
    const QPersistentModelIndex ofB = model.index(1, 0);
    model.setRows({ a });
    QCOMPARE(ofA, model.index(0, 0));
    QVERIFY(!ofB.isValid());
}

void FileListModelTest::clearing()
{
    FileListModel model;
    model.setRows({ rowNamed("a") });
    const QPersistentModelIndex ofA = model.index(0, 0);
    model.clear();
    QCOMPARE(model.rowCount(), 0);
    QVERIFY(!ofA.isValid());
}

void FileListModelTest::typedName_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<int>("start");
    QTest::addColumn<int>("found");
    QTest::newRow("at the start") << QStringLiteral("b") << 1 << 1;
    QTest::newRow("behind it") << QStringLiteral("b") << 2 << 3;
    QTest::newRow("before it") << QStringLiteral("a") << 1 << 0;
    QTest::newRow("in another case") << QStringLiteral("CA") << 0 << 2;
    QTest::newRow("in the middle") << QStringLiteral("at") << 0 << -1;
    QTest::newRow("none") << QStringLiteral("x") << 3 << -1;
}

/// As the toolkit's own search through the rows, which is slow.
void FileListModelTest::typedName()
{
    QFETCH(QString, typed);
    QFETCH(int, start);
    QFETCH(int, found);
    FileListModel model;
    model.setRows({ rowNamed("apple"), rowNamed("Bat"), rowNamed("cat"), rowNamed("boat") });
    constexpr auto flags = Qt::MatchStartsWith | Qt::MatchWrap;
    const QModelIndex from = model.index(start, 0);
    const QModelIndexList expected = found < 0 ? QModelIndexList() : QModelIndexList{ model.index(found, 0) };
    QCOMPARE(model.match(from, Qt::DisplayRole, typed, 1, flags), expected);
    QCOMPARE(model.QAbstractItemModel::match(from, Qt::DisplayRole, typed, 1, flags), expected);
}

REGISTER_TEST(runFormTest<FileListModelTest>)
#include "filelistmodel_test.moc"
