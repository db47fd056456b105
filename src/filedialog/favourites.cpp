#include "filedialog/favourites.h"

#include "filedialog/fileentry.h"
#include "platform/menu.h"
#include "platform/resource.h"
#include "settings/config.h"

#include <QAction>

#include <algorithm>

namespace {

constexpr QLatin1StringView separator("$sep$");
constexpr QLatin1StringView otherFolder("corvex/menu/folder");

struct FavoriteRule {
    PlaceTest test;
    QLatin1StringView icon;
};

constexpr std::array favoriteRules{
    FavoriteRule{ { PlaceTest::Path, QLatin1StringView("/") }, QLatin1StringView("corvex/menu/root") },
    FavoriteRule{ { PlaceTest::Path, QLatin1StringView("/home/") }, QLatin1StringView("corvex/menu/user") },
    FavoriteRule{ { PlaceTest::Home, QLatin1StringView("") }, QLatin1StringView("corvex/menu/home") },
    FavoriteRule{
        { PlaceTest::Home, QLatin1StringView("/Documents") }, QLatin1StringView("corvex/menu/folderdoc") },
    FavoriteRule{ { PlaceTest::Path, QLatin1StringView("/mnt/card/Documents") },
        QLatin1StringView("corvex/menu/folderdoc") },
    FavoriteRule{ { PlaceTest::Path, QLatin1StringView("/mnt/cf/Documents") },
        QLatin1StringView("corvex/menu/folderdoc") },
    FavoriteRule{
        { PlaceTest::Path, QLatin1StringView("/home/QtPalmtop") }, QLatin1StringView("corvex/menu/qtopia") },
    FavoriteRule{ { PlaceTest::LinkTarget, QLatin1StringView("/home/QtPalmtop") },
        QLatin1StringView("corvex/menu/qtopia") },
    FavoriteRule{ { PlaceTest::Path, QLatin1StringView("/home/QtPalmtop/apps") },
        QLatin1StringView("corvex/menu/qtstart") },
    FavoriteRule{ { PlaceTest::Path, QLatin1StringView("/usr/mnt.rom/card/") },
        QLatin1StringView("corvex/menu/folder_sd") },
    FavoriteRule{ { PlaceTest::LinkTarget, QLatin1StringView("/usr/mnt.rom/card") },
        QLatin1StringView("corvex/menu/folder_sd") },
    FavoriteRule{ { PlaceTest::LinkTarget, QLatin1StringView("/mnt/card") },
        QLatin1StringView("corvex/menu/folder_sd") },
    FavoriteRule{ { PlaceTest::LinkTarget, QLatin1StringView("/var/mnt/card") },
        QLatin1StringView("corvex/menu/folder_sd") },
    FavoriteRule{ { PlaceTest::Path, QLatin1StringView("/usr/mnt.rom/cf/") },
        QLatin1StringView("corvex/menu/folder_cf") },
    FavoriteRule{ { PlaceTest::LinkTarget, QLatin1StringView("/usr/mnt.rom/cf") },
        QLatin1StringView("corvex/menu/folder_cf") },
    FavoriteRule{
        { PlaceTest::LinkTarget, QLatin1StringView("/mnt/cf") }, QLatin1StringView("corvex/menu/folder_cf") },
    FavoriteRule{ { PlaceTest::LinkTarget, QLatin1StringView("/var/mnt/cf") },
        QLatin1StringView("corvex/menu/folder_cf") },
};

} // namespace

void readFavorites(FavoriteTexts &paths, FavoriteTexts &names)
{
    Config config(QStringLiteral("corvex"), Config::User);
    config.setGroup(QStringLiteral("favorites"));
    const auto pathKey = [](int n) { return QStringLiteral("Item%1").arg(n); };
    const auto nameKey = [](int n) { return QStringLiteral("Name%1").arg(n); };
    QStringList keys;
    for (int n = 0; n < favoriteCount; ++n)
        keys << pathKey(n) << nameKey(n);
    const QHash<QString, QString> values = config.readEntries(keys);
    for (int n = 0; n < favoriteCount; ++n) {
        paths.at(size_t(n)) = values.value(pathKey(n));
        names.at(size_t(n)) = values.value(nameKey(n));
    }
}

void fillFavoritesMenu(
    QMenu *menu, const FavoriteTexts &paths, const FavoriteTexts &names, const Surroundings &surroundings)
{
    for (int n = 0; n < favoriteCount; ++n) {
        const QString &path = paths.at(size_t(n));
        const QString &name = names.at(size_t(n));
        if (path == separator) {
            menu->addSeparator();
        } else if (!path.isEmpty()) {
            QAction *action = menu->addAction(Menu::textFor(name.isEmpty() ? path : name));
            action->setIcon(Resource::loadIcon(favoriteIconName(path, surroundings)));
            action->setData(n);
        }
    }
}

QString favoriteIconName(const QString &path, const Surroundings &surroundings)
{
    const QString linkTarget = readLink(path);
    const auto found = std::find_if(favoriteRules.begin(), favoriteRules.end(),
        [&](const FavoriteRule &rule) { return rule.test.holds(path, linkTarget, surroundings); });
    return found == favoriteRules.end() ? otherFolder : found->icon;
}
