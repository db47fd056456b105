#include "filedialog/filelistmodel.h"

#include "tests/filedialog/formtest.h"
#include "tests/seeds.h"
#include "tests/testprogram.h"

#include <QAbstractItemModelTester>
#include <QRandomGenerator>
#include <QTest>
#include <QTreeView>

#include <limits>

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
    void typedNameAsInTheToolkit_data();
    void typedNameAsInTheToolkit();
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
    QTest::addColumn<QString>("letters");
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("found");
    const auto row = [](const char *name, const char *letters, int from, int found) {
        QTest::newRow(name) << QString::fromUtf8(letters) << from << found;
    };
    row("from the start", "b", -1, 1);
    row("behind the row", "b", 1, 3);
    row("none but the row", "c", 2, 2);
    row("before the row", "a", 1, 0);
    row("in another case", "CA", 0, 2);
    row("letters go on from what they have found", "bo", 0, 3);
    row("letters begin with the row behind", "bo", 3, 3);
    row("letters lead as far as they go", "bx", 0, 1);
    row("no first letter", "xb", 0, -1);
    row("a letter again", "bb", 0, 3);
    row("a letter again and again", "bbb", 0, 1);
    row("in the middle", "t", 0, -1);
    row("of no letters", "", 0, -1);
}

void FileListModelTest::typedName()
{
    QFETCH(QString, letters);
    QFETCH(int, from);
    QFETCH(int, found);
    FileListModel model;
    model.setRows({ rowNamed("apple"), rowNamed("Bat"), rowNamed("cat"), rowNamed("boat") });
    QCOMPARE(model.rowOfTyped(letters, model.index(from, 0)), model.index(found, 0));
    model.clear();
    QVERIFY(!model.rowOfTyped(letters, {}).isValid());
}

void FileListModelTest::typedNameAsInTheToolkit_data()
{
    addSeeds(50);
}

/// Which is slow in long lists.
void FileListModelTest::typedNameAsInTheToolkit()
{
    QFETCH(quint32, seed);
    QRandomGenerator random(seed);
    const auto letters = [&random](int most) {
        QByteArray result;
        for (int left = random.bounded(1, most + 1); left > 0; --left)
            result += "abAB"[random.bounded(4)];
        return result;
    };
    constexpr int usualLength = 4;
    FileRowList rows;
    for (int left = random.bounded(1, 20); left > 0; --left)
        rows.append(rowNamed(letters(usualLength).constData()));
    FileListModel model;
    model.setRows(rows);
    QTreeView view;
    view.setModel(&model);
    const QModelIndex from = model.index(random.bounded(model.rowCount()), 0);
    view.setCurrentIndex(from);
    const QString typed = QString::fromLatin1(letters(usualLength));
    const int usualInterval = QApplication::keyboardInputInterval();
    QApplication::setKeyboardInputInterval(std::numeric_limits<int>::max());
    for (const QChar letter : typed)
        view.keyboardSearch(letter);
    QApplication::setKeyboardInputInterval(usualInterval);
    const QModelIndex found = model.rowOfTyped(typed, from);
    QCOMPARE(found.isValid() ? found : from, view.currentIndex());
}

REGISTER_TEST(runFormTest<FileListModelTest>)
#include "filelistmodel_test.moc"
