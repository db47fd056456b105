#pragma once

#include "filedialog/namefilter.h"

#include <QString>

#include <ctime>
#include <limits>
#include <memory>
#include <optional>

/// What a list shows about one entry of a folder, as it was when the folder was read.
///
/// Of a symbolic link this is what the link leads to. A link that leads nowhere is a file of size 0 without
/// any permission, with the link's own time.
struct FileEntry {
    static constexpr qint64 unknownTime = std::numeric_limits<qint64>::min();

    QString folder; ///< ends in "/"
    QString name;
    QString linkTarget; ///< as stored in the link, "../n" too; read for links to folders only
    qint64 size = 0; ///< bytes; of a folder the size of its own directory entry
    qint64 modified = unknownTime; ///< seconds since 1970; unknownTime where the system would not tell
    unsigned permissions = 0; ///< S_IRUSR … S_IXOTH
    bool isFolder = false;
    bool isLink = false;

    QString filePath() const { return folder + name; }
    /// When it was modified; nothing where that is not known.
    std::optional<std::tm> localTime() const;
};

/// Reads a folder, entry by entry: all its folders and those of its other entries (files, hidden ones, links,
/// FIFOs, devices) whose names pass the filter; not "." and "..". In no order. Nothing is opened but the
/// folder. Cost: one call to the system per entry shown, two more per link. Errors: a folder that cannot be
/// read is empty; an entry that goes away meanwhile is left out.
class FolderReader {
public:
    /// `folder` ends in "/". It is opened by the first next().
    FolderReader(const QString &folder, const NameFilter &filter);
    ~FolderReader();
    Q_DISABLE_COPY_MOVE(FolderReader)

    /// Nothing when there is no other one.
    std::optional<FileEntry> next();

private:
    struct Stream;

    const QString m_folder;
    const NameFilter m_filter;
    std::unique_ptr<Stream> m_stream; ///< from the first next() on
};

/// The target as it is stored in the link; empty for what is no link.
QString readLink(const QString &fileName);
