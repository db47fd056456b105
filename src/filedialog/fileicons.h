#pragma once

#include <QIcon>
#include <QSize>

/// The pictures of the file list.
enum class FileIcon : quint8 {
    Folder,
    OpenFolder,
    Root,
    Home,
    User,
    Documents,
    Platform,
    PlatformApps,
    CfCard,
    SdCard,
    Optional,
    Programs,
    Mounts,
    Text,
    Picture,
    Music,
    Movie,
    Script,
    Package,
    Other,
    LinkEmblem,
    LockEmblem,
    ExecEmblem,
};
constexpr int fileIconCount = 23;

/// A picture and its size in pixels; without a picture of that name the icon is null.
struct FilePicture {
    QIcon icon;
    QSize size;
};

/// Loads the set, which is one for the process. The small screen class has icons of 14 x 14 and emblems of
/// 5 x 5 pixels; on VGA each has its own size. Before the first call all pictures are null.
void loadFileIcons();
const FilePicture &filePicture(FileIcon icon);

/// Resource name, "corvex/tree/folder1" and so on.
QString fileIconName(FileIcon icon);

/// The picture of a file by its last extension, in any case.
FileIcon fileIconByName(const QString &fileName);
