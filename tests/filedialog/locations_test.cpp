#include "filedialog/locations.h"
#include "tests/testprogram.h"

#include <QTest>

/// Which picture each place has.
class LocationsTest : public QObject {
    Q_OBJECT

private slots:
    void folderIcons_data();
    void folderIcons();
    void namesEveryPicture();
    void fileIcons_data();
    void fileIcons();
    void surroundingsOfTheEnvironment();
};

void LocationsTest::folderIcons_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("target");
    QTest::addColumn<FileIcon>("icon");
    const auto path = [](const char *row, FileIcon icon) {
        QTest::newRow(row) << QString::fromLatin1(row) << QString() << icon;
    };
    const auto link = [](const char *target, FileIcon icon) {
        QTest::addRow("/x/ -> %s", target) << QStringLiteral("/x/") << QString::fromLatin1(target) << icon;
    };
    path("/", FileIcon::Root);
    path("/bin/", FileIcon::Programs);
    path("/home/", FileIcon::User);
    path("/home/me/", FileIcon::Home);
    path("/home/me/Documents/", FileIcon::Documents);
    path("/home/QtPalmtop/", FileIcon::Platform);
    path("/home/QtPalmtop/apps/", FileIcon::PlatformApps);
    path("/mnt/", FileIcon::Mounts);
    path("/var/mnt/", FileIcon::Mounts);
    path("/usr/mnt.rom/", FileIcon::Mounts);
    path("/usr/mnt.rom/card/", FileIcon::SdCard);
    path("/usr/mnt.rom/cf/", FileIcon::CfCard);
    path("/mnt/card/Documents/", FileIcon::Documents);
    path("/mnt/cf/Documents/", FileIcon::Documents);
    path("/opt/", FileIcon::Optional);
    path("/usr/bin/", FileIcon::Programs);
    path("/opt/tools/", FileIcon::Programs);
    link("/home/QtPalmtop", FileIcon::Platform);
    link("/usr/mnt.rom/card", FileIcon::SdCard);
    link("/mnt/card", FileIcon::SdCard);
    link("/var/mnt/card", FileIcon::SdCard);
    link("/usr/mnt.rom/cf", FileIcon::CfCard);
    link("/mnt/cf", FileIcon::CfCard);
    link("/var/mnt/cf", FileIcon::CfCard);

    path("/mnt/card/", FileIcon::Folder);
    path("/usr/", FileIcon::Folder);
    path("/Home/", FileIcon::Folder);
    path("/home/you/Documents/", FileIcon::Folder);
    path("/usr/bin/sub/", FileIcon::Folder);
    path("/usr/bi/", FileIcon::Folder);
    link("/mnt/card/", FileIcon::Folder);
    link("../mnt/card", FileIcon::Folder);
    QTest::newRow("home that is a link")
        << QStringLiteral("/home/me/") << QStringLiteral("/mnt/card") << FileIcon::Home;
    QTest::newRow("program folder that is a link to a card")
        << QStringLiteral("/usr/bin/") << QStringLiteral("/mnt/cf") << FileIcon::CfCard;
}

void LocationsTest::folderIcons()
{
    QFETCH(QString, path);
    QFETCH(QString, target);
    QFETCH(FileIcon, icon);
    const QString home = QStringLiteral("/home/me");
    QCOMPARE(folderIcon(path, target, { home, QStringLiteral(":/usr/bin:/opt/tools:"), {} }), icon);

    // The same places below a root of their own.
    const QString root = QStringLiteral("/tmp/r");
    const auto moved = [&root](
                           const QString &place) { return place.startsWith(u'/') ? root + place : place; };
    const Surroundings below{ moved(home), QStringLiteral(":/tmp/r/usr/bin:/tmp/r/opt/tools:"), root };
    QCOMPARE(folderIcon(moved(path), moved(target), below), icon);
}

void LocationsTest::namesEveryPicture()
{
    const auto name = [](FileIcon icon) { return fileIconName(icon); };
    QCOMPARE(name(FileIcon::Folder), QStringLiteral("corvex/tree/folder1"));
    QCOMPARE(name(FileIcon::OpenFolder), QStringLiteral("corvex/tree/folder2"));
    QCOMPARE(name(FileIcon::Root), QStringLiteral("corvex/tree/folderroot1"));
    QCOMPARE(name(FileIcon::Home), QStringLiteral("corvex/tree/folderhome1"));
    QCOMPARE(name(FileIcon::User), QStringLiteral("corvex/tree/folderuser1"));
    QCOMPARE(name(FileIcon::Documents), QStringLiteral("corvex/tree/folderdoc1"));
    QCOMPARE(name(FileIcon::Platform), QStringLiteral("corvex/tree/folderqt1"));
    QCOMPARE(name(FileIcon::PlatformApps), QStringLiteral("corvex/tree/folderqtstart1"));
    QCOMPARE(name(FileIcon::CfCard), QStringLiteral("corvex/tree/foldercf1"));
    QCOMPARE(name(FileIcon::SdCard), QStringLiteral("corvex/tree/foldersd1"));
    QCOMPARE(name(FileIcon::Optional), QStringLiteral("corvex/tree/folderpen1"));
    QCOMPARE(name(FileIcon::Programs), QStringLiteral("corvex/tree/folderbin1"));
    QCOMPARE(name(FileIcon::Mounts), QStringLiteral("corvex/tree/foldermnt1"));
    QCOMPARE(name(FileIcon::Text), QStringLiteral("corvex/list/filetext"));
    QCOMPARE(name(FileIcon::Picture), QStringLiteral("corvex/list/filepic"));
    QCOMPARE(name(FileIcon::Music), QStringLiteral("corvex/list/filemusic"));
    QCOMPARE(name(FileIcon::Movie), QStringLiteral("corvex/list/filemovie"));
    QCOMPARE(name(FileIcon::Script), QStringLiteral("corvex/list/filescript"));
    QCOMPARE(name(FileIcon::Package), QStringLiteral("corvex/list/fileipk"));
    QCOMPARE(name(FileIcon::Other), QStringLiteral("corvex/list/fileetc"));
    QCOMPARE(name(FileIcon::LinkEmblem), QStringLiteral("corvex/tree/mark_link"));
    QCOMPARE(name(FileIcon::LockEmblem), QStringLiteral("corvex/tree/mark_lock"));
    QCOMPARE(name(FileIcon::ExecEmblem), QStringLiteral("corvex/tree/mark_exec"));
}

void LocationsTest::fileIcons_data()
{
    QTest::addColumn<FileIcon>("icon");
    const auto rows = [](FileIcon icon, std::initializer_list<const char *> names) {
        for (const char *name : names)
            QTest::newRow(name) << icon;
    };
    rows(FileIcon::Text, { "a.txt", "a.desktop", "a.conf", "a.h", "a.c", "a.cpp", "a.pro", ".txt", "A.Txt" });
    rows(FileIcon::Picture, { "a.jpg", "a.jpeg", "a.gif", "a.bmp", "a.png", "a.xpm", "PHOTO.JPG" });
    rows(FileIcon::Music, { "a.mp3", "a.wma" });
    rows(FileIcon::Movie, { "a.avi", "a.rm", "a.wmv", "a.asf" });
    rows(FileIcon::Script, { "a.sh" });
    rows(FileIcon::Package, { "a.ipk" });
    rows(FileIcon::Other, { "archive.tar.gz", "README", "a.", "a.txt ", "a.html", "txt", "a.txt.bak" });
}

void LocationsTest::fileIcons()
{
    QFETCH(FileIcon, icon);
    QCOMPARE(fileIconByName(QString::fromLatin1(QTest::currentDataTag())), icon);
}

void LocationsTest::surroundingsOfTheEnvironment()
{
    const QByteArray path = qgetenv("PATH");
    const QByteArray home = qgetenv("HOME");
    qputenv("PATH", "/a:/b");
    qputenv("HOME", "/home/me/");
    QCOMPARE(userSurroundings().pathList, QStringLiteral(":/a:/b:"));
    QCOMPARE(userSurroundings().home, QStringLiteral("/home/me"));
    QCOMPARE(userSurroundings().root, QString());
    qunsetenv("PATH");
    QCOMPARE(userSurroundings().pathList, QStringLiteral("::"));
    qputenv("PATH", path);
    qputenv("HOME", home);
}

REGISTER_TEST(runCoreTest<LocationsTest>)
#include "locations_test.moc"
