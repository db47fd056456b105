#include "filedialog/fileentry.h"
#include "tests/filedialog/testfolder.h"
#include "tests/testprogram.h"

#include <QMap>
#include <QTest>

namespace {

QMap<QString, FileEntry> entriesOf(const QString &folder, const char *patterns = "*")
{
    QMap<QString, FileEntry> entries;
    FolderReader reader(folder, NameFilter(QString::fromLatin1(patterns)));
    while (const std::optional<FileEntry> entry = reader.next())
        entries.insert(entry->name, *entry);
    return entries;
}

} // namespace

class FileEntryTest : public QObject {
    Q_OBJECT

private slots:
    void listsEveryKind();
    void tellsSizeTimeAndRights();
    void filtersFilesOnly();
    void followsLinks();
    void keepsUndecodableNames();
    void isEmptyForWhatCannotBeRead();
    void tellsKindsWithoutSearchRight();
};

void FileEntryTest::listsEveryKind()
{
    const TestFolder folder;
    folder.file("file");
    folder.file(".hidden");
    folder.folder("folder");
    folder.folder(".config");
    folder.fifo("pipe");
    folder.link("nowhere", "dangling");
    folder.link("loop", "loop");
    const QStringList expected{ QStringLiteral(".config"), QStringLiteral(".hidden"),
        QStringLiteral("dangling"), QStringLiteral("file"), QStringLiteral("folder"), QStringLiteral("loop"),
        QStringLiteral("pipe") };
    const QMap<QString, FileEntry> entries = entriesOf(folder.path());
    QCOMPARE(entries.keys(), expected);
    for (const FileEntry &entry : entries) {
        QCOMPARE(entry.isFolder,
            entry.name == QStringLiteral("folder") || entry.name == QStringLiteral(".config"));
        QCOMPARE(entry.filePath(), folder.path() + entry.name);
    }
}

void FileEntryTest::tellsSizeTimeAndRights()
{
    const TestFolder folder;
    folder.file("big", 5'000'000'000, 0640);
    folder.time("big", 1'000'000'000);
    const FileEntry entry = entriesOf(folder.path()).value(QStringLiteral("big"));
    QCOMPARE(entry.size, 5'000'000'000);
    QCOMPARE(entry.modified, 1'000'000'000);
    QCOMPARE(entry.permissions, 0640U);
    QVERIFY(!entry.isLink);
}

void FileEntryTest::filtersFilesOnly()
{
    const TestFolder folder;
    folder.folder("folder");
    folder.file("a.txt");
    folder.file(".b.ini");
    folder.file("c.conf");
    folder.file("D.TXT");
    folder.fifo("e.log");
    folder.fifo("pipe");
    folder.link("folder", "link");
    folder.link("a.txt", "fileLink");
    const QStringList expected{ QStringLiteral(".b.ini"), QStringLiteral("a.txt"), QStringLiteral("e.log"),
        QStringLiteral("folder"), QStringLiteral("link") };
    QCOMPARE(entriesOf(folder.path(), "*.txt;*.ini;*.log").keys(), expected);
}

void FileEntryTest::followsLinks()
{
    const TestFolder folder;
    folder.folder("n");
    folder.folder("sub");
    folder.link("../n", "sub/up");
    folder.file("sub/file", 2000, 0755);
    folder.link("file", "sub/toFile");
    folder.link("nowhere", "sub/dangling");
    const QMap<QString, FileEntry> entries = entriesOf(folder.path("sub/"));

    const FileEntry up = entries.value(QStringLiteral("up"));
    QVERIFY(up.isLink && up.isFolder);
    QCOMPARE(up.linkTarget, QStringLiteral("../n"));

    const FileEntry toFile = entries.value(QStringLiteral("toFile"));
    QVERIFY(toFile.isLink && !toFile.isFolder);
    QCOMPARE(toFile.size, 2000);
    QCOMPARE(toFile.permissions, 0755U);
    QVERIFY(toFile.linkTarget.isEmpty());

    const FileEntry dangling = entries.value(QStringLiteral("dangling"));
    QVERIFY(dangling.isLink && !dangling.isFolder);
    QCOMPARE(dangling.size, 0);
    QCOMPARE(dangling.permissions, 0U);
    QVERIFY(dangling.modified != FileEntry::unknownTime);

    QCOMPARE(readLink(folder.path("sub/up")), QStringLiteral("../n"));
    QVERIFY(readLink(folder.path("sub/file")).isEmpty());
    QVERIFY(readLink(folder.path("sub/missing")).isEmpty());
}

void FileEntryTest::keepsUndecodableNames()
{
    const TestFolder folder;
    const char *const name = "\x83\x65\x83\x58\x83\x67.txt";
    folder.folder("\x83\x41");
    folder.file("\x83\x41/\x8A\xBF.txt");
    folder.file(name);
    const QStringList expected{ QStringLiteral(u"\xDC83\x0041"), FileName::fromBytes(QByteArrayView(name)) };
    const QMap<QString, FileEntry> entries = entriesOf(folder.path());
    QCOMPARE(entries.keys(), expected);
    QCOMPARE(entriesOf(entries.first().filePath() + u'/').firstKey(), QStringLiteral(u"\xDC8A\xDCBF.txt"));
}

void FileEntryTest::isEmptyForWhatCannotBeRead()
{
    const TestFolder folder;
    folder.file("file");
    folder.fifo("pipe");
    folder.folder("locked");
    folder.file("locked/inside");
    folder.mode("locked", 0);
    QVERIFY(entriesOf(folder.path("missing/")).isEmpty());
    QVERIFY(entriesOf(folder.path("file/")).isEmpty());
    QVERIFY(entriesOf(folder.path("pipe")).isEmpty());
    folder.mode("", 0755);
    const OrdinaryUser user;
    QVERIFY(entriesOf(folder.path("locked/")).isEmpty());
}

void FileEntryTest::tellsKindsWithoutSearchRight()
{
    const TestFolder folder;
    folder.folder("locked");
    folder.folder("locked/sub");
    folder.file("locked/file", 100);
    folder.mode("", 0755);
    folder.mode("locked", 0744);
    const OrdinaryUser user;
    const QMap<QString, FileEntry> entries = entriesOf(folder.path("locked/"));
    if (::geteuid() == 65534) {
        QCOMPARE(entries.size(), 2);
        QVERIFY(entries.value(QStringLiteral("sub")).isFolder);
        QCOMPARE(entries.value(QStringLiteral("file")).size, 0);
        QCOMPARE(entries.value(QStringLiteral("file")).modified, FileEntry::unknownTime);
    } else {
        QCOMPARE(entries.value(QStringLiteral("file")).size, 100);
    }
}

REGISTER_TEST(runCoreTest<FileEntryTest>)
#include "fileentry_test.moc"
