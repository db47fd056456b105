#include "filedialog/locations.h"

#include <QDir>

#include <algorithm>
#include <array>

namespace {

struct FolderRule {
    PlaceTest test;
    FileIcon icon;
};

constexpr std::array folderRules{
    FolderRule{ { PlaceTest::Path, QLatin1StringView("/") }, FileIcon::Root },
    FolderRule{ { PlaceTest::Path, QLatin1StringView("/bin/") }, FileIcon::Programs },
    FolderRule{ { PlaceTest::Path, QLatin1StringView("/home/") }, FileIcon::User },
    FolderRule{ { PlaceTest::Home, QLatin1StringView("/") }, FileIcon::Home },
    FolderRule{ { PlaceTest::Home, QLatin1StringView("/Documents/") }, FileIcon::Documents },
    FolderRule{ { PlaceTest::Path, QLatin1StringView("/home/QtPalmtop/") }, FileIcon::Platform },
    FolderRule{ { PlaceTest::LinkTarget, QLatin1StringView("/home/QtPalmtop") }, FileIcon::Platform },
    FolderRule{ { PlaceTest::Path, QLatin1StringView("/home/QtPalmtop/apps/") }, FileIcon::PlatformApps },
    FolderRule{ { PlaceTest::Path, QLatin1StringView("/mnt/") }, FileIcon::Mounts },
    FolderRule{ { PlaceTest::Path, QLatin1StringView("/var/mnt/") }, FileIcon::Mounts },
    FolderRule{ { PlaceTest::Path, QLatin1StringView("/usr/mnt.rom/") }, FileIcon::Mounts },
    FolderRule{ { PlaceTest::Path, QLatin1StringView("/usr/mnt.rom/card/") }, FileIcon::SdCard },
    FolderRule{ { PlaceTest::LinkTarget, QLatin1StringView("/usr/mnt.rom/card") }, FileIcon::SdCard },
    FolderRule{ { PlaceTest::LinkTarget, QLatin1StringView("/mnt/card") }, FileIcon::SdCard },
    FolderRule{ { PlaceTest::LinkTarget, QLatin1StringView("/var/mnt/card") }, FileIcon::SdCard },
    FolderRule{ { PlaceTest::Path, QLatin1StringView("/usr/mnt.rom/cf/") }, FileIcon::CfCard },
    FolderRule{ { PlaceTest::LinkTarget, QLatin1StringView("/usr/mnt.rom/cf") }, FileIcon::CfCard },
    FolderRule{ { PlaceTest::LinkTarget, QLatin1StringView("/mnt/cf") }, FileIcon::CfCard },
    FolderRule{ { PlaceTest::LinkTarget, QLatin1StringView("/var/mnt/cf") }, FileIcon::CfCard },
    FolderRule{ { PlaceTest::Path, QLatin1StringView("/mnt/card/Documents/") }, FileIcon::Documents },
    FolderRule{ { PlaceTest::Path, QLatin1StringView("/mnt/cf/Documents/") }, FileIcon::Documents },
    FolderRule{ { PlaceTest::Path, QLatin1StringView("/opt/") }, FileIcon::Optional },
    FolderRule{ { PlaceTest::SearchPath }, FileIcon::Programs },
};

/// whole == base + rest
bool isJoined(const QString &whole, const QString &base, QLatin1StringView rest)
{
    return whole.size() == base.size() + rest.size() && whole.endsWith(rest) && whole.startsWith(base);
}

bool isInSearchPath(const QString &path, const QString &pathList)
{
    const QStringView folder = path.endsWith(u'/') ? QStringView(path).chopped(1) : QStringView(path);
    return pathList.contains(u':' + folder.toString() + u':');
}

} // namespace

Surroundings userSurroundings()
{
    return { QDir::homePath(), u':' + qEnvironmentVariable("PATH") + u':', {} };
}

bool PlaceTest::holds(const QString &path, const QString &linkTarget, const Surroundings &surroundings) const
{
    switch (kind) {
    case Path:
        return isJoined(path, surroundings.root, text);
    case Home:
        return isJoined(path, surroundings.home, text);
    case LinkTarget:
        return isJoined(linkTarget, surroundings.root, text);
    case SearchPath:
        return isInSearchPath(path, surroundings.pathList);
    }
    return false;
}

FileIcon folderIcon(const QString &path, const QString &linkTarget, const Surroundings &surroundings)
{
    const auto found = std::find_if(folderRules.begin(), folderRules.end(),
        [&](const FolderRule &rule) { return rule.test.holds(path, linkTarget, surroundings); });
    return found == folderRules.end() ? FileIcon::Folder : found->icon;
}
