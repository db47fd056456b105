#include "app/diskwatch.h"

#include "tests/app/testwindow.h"
#include "tests/testprogram.h"

#include <QSignalSpy>

using namespace Qt::StringLiterals;

/// What the system tells of one file.
class DiskWatchTest : public QObject {
    Q_OBJECT

private slots:
    void happenings_data();
    void happenings();
    void manyWritesAreToldAsOne();
    void onlyTheLastFileIsWatched();
    void aFileThatIsNotThereIsAwaited();
    void foldersAreToldByTheirNames();
    void addedFolderIsOneMore();
    void folderThatIsMadeAgainIsWatchedAgain();
};

void DiskWatchTest::happenings_data()
{
    QTest::addColumn<std::function<void(const TestFiles &)>>("happen");
    using Happen = std::function<void(const TestFiles &)>;
    QTest::newRow("written") << Happen([](const TestFiles &files) { files.write(u"a"_s, "more"); });
    QTest::newRow("deleted") << Happen(
        [](const TestFiles &files) { QFile::remove(files.folder() + u"a"_s); });
    QTest::newRow("replaced") << Happen([](const TestFiles &files) {
        const QString other = files.write(u"b"_s, "other");
        QVERIFY(::rename(qPrintable(other), qPrintable(files.folder() + u"a"_s)) == 0);
    });
}

void DiskWatchTest::happenings()
{
    QFETCH(std::function<void(const TestFiles &)>, happen);
    const TestFiles files;
    DiskWatch watch;
    watch.setFile(files.write(u"a"_s, "old"));
    QSignalSpy told(&watch, &DiskWatch::happened);
    happen(files);
    QTRY_VERIFY(!told.isEmpty());
}

/// Until it is told, more may come.
void DiskWatchTest::manyWritesAreToldAsOne()
{
    const TestFiles files;
    DiskWatch watch;
    watch.setFile(files.write(u"a"_s, "old"));
    QSignalSpy told(&watch, &DiskWatch::happened);
    for (int i = 0; i < 50; ++i) {
        files.write(u"a"_s, QByteArray::number(i));
        QCoreApplication::processEvents();
    }
    QTRY_VERIFY(!told.isEmpty());
    QVERIFY(told.size() < 50);
}

void DiskWatchTest::onlyTheLastFileIsWatched()
{
    const TestFiles files;
    const TestFiles others;
    DiskWatch watch;
    watch.setFile(files.write(u"a"_s, "old"));
    watch.setFile(others.write(u"a"_s, "old"));
    QSignalSpy told(&watch, &DiskWatch::happened);
    files.write(u"a"_s, "new");
    others.write(u"a"_s, "new");
    QTRY_COMPARE(told.size(), 1);
    watch.setFile({});
    others.write(u"a"_s, "newer");
    const TestFiles last;
    DiskWatch after;
    QSignalSpy toldAfter(&after, &DiskWatch::happened);
    after.setFile(last.write(u"a"_s, "old"));
    last.write(u"a"_s, "new");
    QTRY_COMPARE(toldAfter.size(), 1); // by then the other one would have been told, too
    QCOMPARE(told.size(), 1);
}

void DiskWatchTest::aFileThatIsNotThereIsAwaited()
{
    const TestFiles files;
    DiskWatch watch;
    watch.setFile(files.folder() + u"later"_s);
    QSignalSpy told(&watch, &DiskWatch::happened);
    files.write(u"later"_s, "here");
    QTRY_VERIFY(!told.isEmpty());
    DiskWatch nowhere;
    nowhere.setFile(files.folder() + u"no/folder/a"_s);
    nowhere.setFile(files.folder() + u"later"_s);
    QSignalSpy toldThen(&nowhere, &DiskWatch::happened);
    files.write(u"later"_s, "again");
    QTRY_VERIFY(!toldThen.isEmpty());
}

void DiskWatchTest::foldersAreToldByTheirNames()
{
    const TestFiles files;
    const TestFiles others;
    const QString folder = QFileInfo(files.write(u"a"_s, "old")).path();
    const QString other = QFileInfo(others.write(u"a"_s, "old")).path();
    DiskWatch watch;
    watch.setFolders({ folder, other });
    watch.setFile(files.folder() + u"a"_s);
    QSignalSpy told(&watch, &DiskWatch::happened);
    QSignalSpy toldIn(&watch, &DiskWatch::happenedIn);
    QVERIFY(QFile::remove(others.folder() + u"a"_s));
    QTRY_COMPARE(toldIn.size(), 1);
    QCOMPARE(toldIn.takeFirst().first().value<QSet<QString>>(), QSet<QString>{ other });
    QVERIFY(told.isEmpty());
    watch.setFile({}); // its folder is one of those all the same
    QVERIFY(QFile::remove(files.folder() + u"a"_s));
    QTRY_COMPARE(toldIn.size(), 1);
    QCOMPARE(toldIn.takeFirst().first().value<QSet<QString>>(), QSet<QString>{ folder });
    QVERIFY(told.isEmpty());
}

void DiskWatchTest::addedFolderIsOneMore()
{
    const TestFiles files;
    const TestFiles others;
    const QString folder = QFileInfo(files.write(u"a"_s, "old")).path();
    const QString other = QFileInfo(others.write(u"a"_s, "old")).path();
    DiskWatch watch;
    watch.setFolders({ folder });
    watch.addFolder(other);
    QSignalSpy toldIn(&watch, &DiskWatch::happenedIn);
    for (const TestFiles *changed : { &files, &others }) {
        QVERIFY(QFile::remove(changed->folder() + u"a"_s));
        QTRY_COMPARE(toldIn.size(), 1);
        QCOMPARE(toldIn.takeFirst().first().value<QSet<QString>>(),
            QSet<QString>{ changed == &files ? folder : other });
    }
}

void DiskWatchTest::folderThatIsMadeAgainIsWatchedAgain()
{
    const TestFiles files;
    const QString folder = files.folder() + u"sub"_s;
    QVERIFY(QDir().mkdir(folder));
    DiskWatch watch;
    watch.setFolders({ folder });
    QSignalSpy toldIn(&watch, &DiskWatch::happenedIn);
    QVERIFY(QDir().rmdir(folder));
    QTRY_COMPARE(toldIn.size(), 1);
    QVERIFY(QDir().mkdir(folder));
    watch.setFolders({ folder });
    files.write(u"sub/a"_s, "new");
    QTRY_COMPARE(toldIn.size(), 2);
}

REGISTER_TEST(runWindowTest<DiskWatchTest>)
#include "diskwatch_test.moc"
