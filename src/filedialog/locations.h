#pragma once

#include "filedialog/fileicons.h"

#include <QLatin1StringView>
#include <QString>

/// What a folder is compared with to tell which kind of place it is.
struct Surroundings {
    QString home; ///< the user's home folder, no "/" at the end
    QString pathList; ///< folders of programs: ":" + $PATH + ":"
    QString root; ///< stands before every fixed place; empty where those are the machine's own
};

Surroundings userSurroundings();

/// One test of a table of places; the first one that holds decides. Whole strings, case-sensitive.
struct PlaceTest {
    enum Kind {
        Path, ///< the path is `text`
        Home, ///< the path is the home folder followed by `text`
        LinkTarget, ///< the folder is a link, stored as leading to `text`
        SearchPath, ///< the path, without "/" at its end, is one of the folders of programs
    };
    Kind kind;
    QLatin1StringView text = {};

    bool holds(const QString &path, const QString &linkTarget, const Surroundings &surroundings) const;
};

/// The picture of a folder; `path` ends in "/", `linkTarget` is empty where the folder is no link.
FileIcon folderIcon(const QString &path, const QString &linkTarget, const Surroundings &surroundings);
