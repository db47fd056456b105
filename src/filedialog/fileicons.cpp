#include "filedialog/fileicons.h"

#include "platform/picture.h"
#include "platform/resource.h"
#include "platform/screenclass.h"

#include <QLatin1StringView>

#include <algorithm>
#include <array>

namespace {

constexpr QSize smallIcon(14, 14);
constexpr QSize smallEmblem(5, 5);

constexpr std::array<QLatin1StringView, fileIconCount> names{
    QLatin1StringView("corvex/tree/folder1"),
    QLatin1StringView("corvex/tree/folder2"),
    QLatin1StringView("corvex/tree/folderroot1"),
    QLatin1StringView("corvex/tree/folderhome1"),
    QLatin1StringView("corvex/tree/folderuser1"),
    QLatin1StringView("corvex/tree/folderdoc1"),
    QLatin1StringView("corvex/tree/folderqt1"),
    QLatin1StringView("corvex/tree/folderqtstart1"),
    QLatin1StringView("corvex/tree/foldercf1"),
    QLatin1StringView("corvex/tree/foldersd1"),
    QLatin1StringView("corvex/tree/folderpen1"),
    QLatin1StringView("corvex/tree/folderbin1"),
    QLatin1StringView("corvex/tree/foldermnt1"),
    QLatin1StringView("corvex/list/filetext"),
    QLatin1StringView("corvex/list/filepic"),
    QLatin1StringView("corvex/list/filemusic"),
    QLatin1StringView("corvex/list/filemovie"),
    QLatin1StringView("corvex/list/filescript"),
    QLatin1StringView("corvex/list/fileipk"),
    QLatin1StringView("corvex/list/fileetc"),
    QLatin1StringView("corvex/tree/mark_link"),
    QLatin1StringView("corvex/tree/mark_lock"),
    QLatin1StringView("corvex/tree/mark_exec"),
};

struct Extension {
    QLatin1StringView text;
    FileIcon icon;
};

constexpr std::array extensions{
    Extension{ QLatin1StringView("txt"), FileIcon::Text },
    Extension{ QLatin1StringView("desktop"), FileIcon::Text },
    Extension{ QLatin1StringView("conf"), FileIcon::Text },
    Extension{ QLatin1StringView("h"), FileIcon::Text },
    Extension{ QLatin1StringView("c"), FileIcon::Text },
    Extension{ QLatin1StringView("cpp"), FileIcon::Text },
    Extension{ QLatin1StringView("pro"), FileIcon::Text },
    Extension{ QLatin1StringView("jpg"), FileIcon::Picture },
    Extension{ QLatin1StringView("jpeg"), FileIcon::Picture },
    Extension{ QLatin1StringView("gif"), FileIcon::Picture },
    Extension{ QLatin1StringView("bmp"), FileIcon::Picture },
    Extension{ QLatin1StringView("png"), FileIcon::Picture },
    Extension{ QLatin1StringView("xpm"), FileIcon::Picture },
    Extension{ QLatin1StringView("mp3"), FileIcon::Music },
    Extension{ QLatin1StringView("wma"), FileIcon::Music },
    Extension{ QLatin1StringView("avi"), FileIcon::Movie },
    Extension{ QLatin1StringView("rm"), FileIcon::Movie },
    Extension{ QLatin1StringView("wmv"), FileIcon::Movie },
    Extension{ QLatin1StringView("asf"), FileIcon::Movie },
    Extension{ QLatin1StringView("sh"), FileIcon::Script },
    Extension{ QLatin1StringView("ipk"), FileIcon::Package },
};

std::array<FilePicture, fileIconCount> &pictures()
{
    static std::array<FilePicture, fileIconCount> set;
    return set;
}

FilePicture loadPicture(const QString &name, QSize smallSize)
{
    const QSize ownSize = Picture::named(name).size();
    if (ownSize.isEmpty())
        return {};
    return { Resource::loadIcon(name), forScreen(smallSize, ownSize) };
}

} // namespace

void loadFileIcons()
{
    for (int i = 0; i < fileIconCount; ++i) {
        const auto icon = static_cast<FileIcon>(i);
        const QSize smallSize = icon < FileIcon::LinkEmblem ? smallIcon : smallEmblem;
        pictures().at(size_t(i)) = loadPicture(fileIconName(icon), smallSize);
    }
}

const FilePicture &filePicture(FileIcon icon)
{
    return pictures().at(size_t(icon));
}

QString fileIconName(FileIcon icon)
{
    return names.at(size_t(icon));
}

FileIcon fileIconByName(const QString &fileName)
{
    const qsizetype dot = fileName.lastIndexOf(u'.');
    if (dot < 0)
        return FileIcon::Other;
    const QString extension = fileName.sliced(dot + 1).toLower();
    const auto found = std::find_if(extensions.begin(), extensions.end(),
        [&extension](const Extension &known) { return known.text == extension; });
    return found == extensions.end() ? FileIcon::Other : found->icon;
}
