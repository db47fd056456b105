#include "filedialog/favourites.h"
#include "tests/filedialog/formtest.h"
#include "tests/filedialog/testfolder.h"
#include "tests/testprogram.h"

#include <QAction>
#include <QDir>
#include <QFile>
#include <QMenu>
#include <QStandardPaths>

class FavouritesTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void readsTwentySlots();
    void leavesTheSettingsAlone();
    void missingSettingsGiveNothing();
    void icons_data();
    void icons();
    void linkIcons_data();
    void linkIcons();
    void fillsTheMenu();
    void showsTextsAsTheyAre();

private:
    static QString settingsFile();
    static void writeSettings(const QByteArray &contents);
    static Surroundings surroundings() { return { QStringLiteral("/home/me"), QStringLiteral("::"), {} }; }
};

QString FavouritesTest::settingsFile()
{
    return QStandardPaths::writableLocation(QStandardPaths::ConfigLocation) + QStringLiteral("/corvex.conf");
}

void FavouritesTest::writeSettings(const QByteArray &contents)
{
    QFile file(settingsFile());
    QVERIFY(file.open(QFile::WriteOnly));
    QCOMPARE(file.write(contents), contents.size());
}

void FavouritesTest::init()
{
    failOnWarnings();
    QFile::remove(settingsFile());
}

void FavouritesTest::readsTwentySlots()
{
    QByteArray contents("[other]\nItem0 = /wrong\n[favorites]\n");
    for (int n = 0; n < 22; ++n)
        contents += "Item" + QByteArray::number(n) + " = /p" + QByteArray::number(n) + "\n";
    contents += "Name0 = first\nName19 = last, & \"best\"\nName20 = beyond\nItem05 = /padded\n";
    writeSettings(contents);
    FavoriteTexts paths;
    FavoriteTexts names;
    readFavorites(paths, names);
    for (int n = 0; n < favoriteCount; ++n)
        QCOMPARE(paths.at(size_t(n)), QStringLiteral("/p%1").arg(n));
    QCOMPARE(names.front(), QStringLiteral("first"));
    QCOMPARE(names.at(1), QString());
    QCOMPARE(names.back(), QStringLiteral("last, & \"best\""));

    QMenu menu;
    fillFavoritesMenu(&menu, paths, names, surroundings());
    QCOMPARE(menu.actions().size(), 20);
}

void FavouritesTest::leavesTheSettingsAlone()
{
    const QByteArray contents("broken line\r\n[favorites]\nItem0=/a\n\n# comment");
    writeSettings(contents);
    FavoriteTexts paths;
    FavoriteTexts names;
    readFavorites(paths, names);
    QCOMPARE(paths.front(), QStringLiteral("/a"));
    QFile file(settingsFile());
    QVERIFY(file.open(QFile::ReadOnly));
    QCOMPARE(file.readAll(), contents);
}

void FavouritesTest::missingSettingsGiveNothing()
{
    FavoriteTexts paths;
    FavoriteTexts names;
    paths.front() = QStringLiteral("/old");
    readFavorites(paths, names);
    for (const QString &path : paths)
        QCOMPARE(path, QString());
    QMenu menu;
    fillFavoritesMenu(&menu, paths, names, surroundings());
    QVERIFY(menu.actions().isEmpty());
    QVERIFY(!QFile::exists(settingsFile()));
}

void FavouritesTest::icons_data()
{
    QTest::addColumn<QString>("icon");
    const auto row = [](const char *path, const char *icon) {
        QTest::newRow(path) << QStringLiteral("corvex/menu/") + QString::fromLatin1(icon);
    };
    row("/", "root");
    row("/home/", "user");
    row("/home/me", "home");
    row("/home/me/Documents", "folderdoc");
    row("/mnt/card/Documents", "folderdoc");
    row("/mnt/cf/Documents", "folderdoc");
    row("/home/QtPalmtop", "qtopia");
    row("/home/QtPalmtop/apps", "qtstart");
    row("/usr/mnt.rom/card/", "folder_sd");
    row("/usr/mnt.rom/cf/", "folder_cf");
    row("/home", "folder");
    row("/home/me/", "folder");
    row("/home/me/Documents/", "folder");
    row("/home/QtPalmtop/", "folder");
    row("/home/QtPalmtop/apps/", "folder");
    row("/usr/mnt.rom/card", "folder");
    row("/usr/mnt.rom/cf", "folder");
    row("/mnt/card-missing", "folder");
}

void FavouritesTest::icons()
{
    QFETCH(QString, icon);
    QCOMPARE(favoriteIconName(QString::fromLatin1(QTest::currentDataTag()), surroundings()), icon);
}

void FavouritesTest::linkIcons_data()
{
    QTest::addColumn<QString>("icon");
    const auto row = [](const char *target, const char *icon) {
        QTest::newRow(target) << QStringLiteral("corvex/menu/") + QString::fromLatin1(icon);
    };
    row("/home/QtPalmtop", "qtopia");
    row("/usr/mnt.rom/card", "folder_sd");
    row("/mnt/card", "folder_sd");
    row("/var/mnt/card", "folder_sd");
    row("/usr/mnt.rom/cf", "folder_cf");
    row("/mnt/cf", "folder_cf");
    row("/var/mnt/cf", "folder_cf");
    row("/usr/mnt.rom/card/", "folder");
    row("../mnt/card", "folder");
}

void FavouritesTest::linkIcons()
{
    QFETCH(QString, icon);
    const TestFolder folder;
    folder.link(QTest::currentDataTag(), "link");
    QCOMPARE(favoriteIconName(folder.path("link"), surroundings()), icon);
}

void FavouritesTest::fillsTheMenu()
{
    FavoriteTexts paths;
    FavoriteTexts names;
    paths.at(0) = QStringLiteral("/");
    paths.at(3) = QStringLiteral("$sep$");
    names.at(3) = QStringLiteral("not shown");
    names.at(4) = QStringLiteral("no path");
    paths.at(5) = QStringLiteral("/home/me");
    names.at(5) = QStringLiteral("Home");
    QMenu menu;
    fillFavoritesMenu(&menu, paths, names, surroundings());
    const QList<QAction *> actions = menu.actions();
    QCOMPARE(actions.size(), 3);
    QCOMPARE(actions.at(0)->text(), QStringLiteral("/"));
    QCOMPARE(actions.at(0)->data().toInt(), 0);
    QVERIFY(actions.at(1)->isSeparator());
    QCOMPARE(actions.at(2)->text(), QStringLiteral("Home"));
    QCOMPARE(actions.at(2)->data().toInt(), 5);
    QVERIFY(!actions.at(2)->icon().isNull());
}

void FavouritesTest::showsTextsAsTheyAre()
{
    FavoriteTexts paths;
    FavoriteTexts names;
    paths.at(0) = QStringLiteral("/a&b");
    paths.at(1) = QStringLiteral("/c");
    names.at(1) = QStringLiteral("tab\there");
    QMenu menu;
    fillFavoritesMenu(&menu, paths, names, surroundings());
    QCOMPARE(menu.actions().at(0)->text(), QStringLiteral("/a&&b"));
    QVERIFY(!menu.actions().at(1)->text().contains(u'\t'));
}

REGISTER_TEST(runFormTest<FavouritesTest>)
#include "favourites_test.moc"
