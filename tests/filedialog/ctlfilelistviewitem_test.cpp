#include "filedialog/ctlfilelistviewitem.h"
#include "tests/testprogram.h"

#include <QTest>

#include <ctime>

namespace {

using Item = ctlFileListViewItem;

FileEntry fileOf(const char *name, qint64 size = 0)
{
    FileEntry entry;
    entry.folder = QStringLiteral("/x/");
    entry.name = QString::fromUtf8(name);
    entry.size = size;
    entry.modified = 0;
    entry.permissions = 0644;
    return entry;
}

FileEntry folderOf(const char *name)
{
    FileEntry entry = fileOf(name);
    entry.isFolder = true;
    return entry;
}

Item itemOf(const FileEntry &entry)
{
    return Item(entry, { QStringLiteral("/home/me"), QStringLiteral("::"), {} });
}

qint64 localSeconds(int year, int month, int day, int hour, int minute, int second)
{
    std::tm time{};
    time.tm_year = year - 1900;
    time.tm_mon = month - 1;
    time.tm_mday = day;
    time.tm_hour = hour;
    time.tm_min = minute;
    time.tm_sec = second;
    time.tm_isdst = -1;
    return std::mktime(&time);
}

} // namespace

/// Texts, keys and emblems of one row.
class ItemTest : public QObject {
    Q_OBJECT

private slots:
    void sizes_data();
    void sizes();
    void sizeKeyOfAFolder();
    void dates_data();
    void dates();
    void unknownDate();
    void nameKeys_data();
    void nameKeys();
    void alignments();
    void emblems_data();
    void emblems();
    void cardFolders_data();
    void cardFolders();
};

void ItemTest::sizes_data()
{
    QTest::addColumn<qint64>("size");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("key");
    const auto row = [](qint64 size, const char *text, const char *key) {
        QTest::addRow("%lld", size) << size << QString::fromLatin1(text) << QString::fromLatin1(key);
    };
    row(0, "0 KB", "1000000000");
    row(1, "1 KB", "1000000000");
    row(1023, "1 KB", "1000000000");
    row(1024, "1 KB", "1000000001");
    row(1025, "2 KB", "1000000001");
    row(1022976, "999 KB", "1000000999");
    row(1022977, "1,000 KB", "1000000999");
    row(1048576, "1,024 KB", "1000001024");
    row(1263616, "1,234 KB", "1000001234");
    row(1073741824, "1,048,576 KB", "1001048576");
    row(5000000000, "4,882,813 KB", "1004882812");
}

void ItemTest::sizes()
{
    QFETCH(qint64, size);
    QFETCH(QString, text);
    QFETCH(QString, key);
    const Item item = itemOf(fileOf("a", size));
    QCOMPARE(item.text(Item::SizeColumn), text);
    QCOMPARE(item.key(Item::SizeColumn, true), key);
    QCOMPARE(item.key(Item::SizeColumn, false), key);
}

void ItemTest::sizeKeyOfAFolder()
{
    FileEntry entry = folderOf("f");
    entry.size = 4096;
    const Item item = itemOf(entry);
    QCOMPARE(item.text(Item::SizeColumn), QStringLiteral("Folder"));
    QCOMPARE(item.key(Item::SizeColumn, true), QStringLiteral("0000000004"));
}

void ItemTest::dates_data()
{
    QTest::addColumn<qint64>("modified");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("key");
    QTest::newRow("7 March 2024, 09:05:59")
        << localSeconds(2024, 3, 7, 9, 5, 59) << QStringLiteral("24/03/07 09:05")
        << QStringLiteral("202403070905");
    QTest::newRow("31 December 1999, 23:59")
        << localSeconds(1999, 12, 31, 23, 59, 0) << QStringLiteral("99/12/31 23:59")
        << QStringLiteral("199912312359");
    QTest::newRow("1 January 2000, 00:00")
        << localSeconds(2000, 1, 1, 0, 0, 0) << QStringLiteral("00/01/01 00:00")
        << QStringLiteral("200001010000");
}

void ItemTest::dates()
{
    QFETCH(qint64, modified);
    QFETCH(QString, text);
    QFETCH(QString, key);
    FileEntry file = fileOf("a");
    file.modified = modified;
    QCOMPARE(itemOf(file).text(Item::DateColumn), text);
    QCOMPARE(itemOf(file).key(Item::DateColumn, true), u'1' + key);
    FileEntry folder = folderOf("a");
    folder.modified = modified;
    QCOMPARE(itemOf(folder).text(Item::DateColumn), text);
    QCOMPARE(itemOf(folder).key(Item::DateColumn, false), u'0' + key);
}

void ItemTest::unknownDate()
{
    FileEntry entry = fileOf("a");
    entry.modified = FileEntry::unknownTime;
    QCOMPARE(itemOf(entry).text(Item::DateColumn), QString());
    QCOMPARE(itemOf(entry).key(Item::DateColumn, true), QStringLiteral("1"));
}

void ItemTest::nameKeys_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("key");
    QTest::newRow("upper case") << QStringLiteral("readMe.txt") << QStringLiteral("README.TXT");
    QTest::newRow("accents") << QStringLiteral(u"\u00E9t\u00E9") << QStringLiteral(u"\u00C9T\u00C9");
    QTest::newRow("undecodable") << QStringLiteral(u"\xDC8A.a") << QStringLiteral(u"\xDC8A.A");
}

void ItemTest::nameKeys()
{
    QFETCH(QString, name);
    QFETCH(QString, key);
    FileEntry entry = fileOf("");
    entry.name = name;
    QCOMPARE(itemOf(entry).text(Item::NameColumn), name);
    QCOMPARE(itemOf(entry).key(Item::NameColumn, true), u'1' + key);
    QCOMPARE(itemOf(entry).key(7, true), u'1' + key);
    entry.isFolder = true;
    QCOMPARE(itemOf(entry).key(Item::NameColumn, false), u'0' + key);
}

void ItemTest::alignments()
{
    QCOMPARE(Item::alignment(Item::NameColumn), Qt::AlignLeft | Qt::AlignVCenter);
    QCOMPARE(Item::alignment(Item::SizeColumn), Qt::AlignRight | Qt::AlignVCenter);
    QCOMPARE(Item::alignment(Item::DateColumn), Qt::AlignCenter);
}

void ItemTest::emblems_data()
{
    QTest::addColumn<unsigned>("permissions");
    QTest::addColumn<bool>("isFolder");
    QTest::addColumn<bool>("locked");
    QTest::addColumn<bool>("exec");
    QTest::newRow("ordinary") << 0644U << false << false << false;
    QTest::newRow("nobody may write") << 0444U << false << true << false;
    QTest::newRow("group may write") << 0464U << false << false << false;
    QTest::newRow("others may write") << 0446U << false << false << false;
    QTest::newRow("owner may run") << 0744U << false << false << true;
    QTest::newRow("group and others may run") << 0655U << false << false << true;
    QTest::newRow("group alone may run") << 0654U << false << false << false;
    QTest::newRow("others alone may run") << 0645U << false << false << false;
    QTest::newRow("locked program") << 0555U << false << true << true;
    QTest::newRow("folder") << 0755U << true << false << false;
    QTest::newRow("locked folder") << 0555U << true << false << false;
}

void ItemTest::emblems()
{
    QFETCH(unsigned, permissions);
    QFETCH(bool, isFolder);
    FileEntry entry = fileOf("a");
    entry.permissions = permissions;
    entry.isFolder = isFolder;
    QTEST(itemOf(entry).isLocked(), "locked");
    QTEST(itemOf(entry).isExec(), "exec");
    QVERIFY(!itemOf(entry).isLink());
    entry.isLink = true;
    QVERIFY(itemOf(entry).isLink());
}

void ItemTest::cardFolders_data()
{
    QTest::addColumn<bool>("exec");
    QTest::newRow("/usr/mnt.rom/cf/") << false;
    QTest::newRow("/usr/mnt.rom/card/") << false;
    QTest::newRow("/mnt/cf/") << false;
    QTest::newRow("/mnt/card/") << false;
    QTest::newRow("/home/samba/CF_Card/") << false;
    QTest::newRow("/home/samba/SD_Card/") << false;
    QTest::newRow("/mnt/card/deep/below/") << false;
    QTest::newRow("/elsewhere/mnt/card/") << false;
    QTest::newRow("/mnt/Card/") << true;
    QTest::newRow("/mnt/card2/") << true;
    QTest::newRow("/mnt/") << true;
}

void ItemTest::cardFolders()
{
    FileEntry entry = fileOf("card");
    entry.folder = QString::fromLatin1(QTest::currentDataTag());
    entry.permissions = 0555;
    QTEST(itemOf(entry).isExec(), "exec");
    QVERIFY(itemOf(entry).isLocked());
}

REGISTER_TEST(runCoreTest<ItemTest>)
#include "ctlfilelistviewitem_test.moc"
