#pragma once

#include "files/contenthash.h"
#include "files/filecalls.h"

#include <QByteArray>

#include <optional>

/// What became of a file, compared with what it was.
enum class FileChange {
    None,
    Grown, ///< something was put behind what there was, and nothing else
    Changed,
    Replaced, ///< another file has its name
    Deleted,
    /// Its times are others, and it is too large to be compared in passing: see ContentReading.
    Unsure,
};

/// Which file has a name, and what the system tells of it by one call.
struct FileStamp {
    explicit FileStamp(const struct stat &info = {});
    bool operator==(const FileStamp &other) const = default;

    bool isSameFile(const FileStamp &other) const { return device == other.device && inode == other.inode; }
    /// Whether it may have been written once more up to `now`, in nanoseconds since 1970, without a sign of
    /// it: times differ when a step of the clock that the system stamps files by has gone by, of 10 ms at
    /// most; or two seconds on disks that keep whole seconds.
    bool isYoungAt(qint64 now) const;

    dev_t device = 0;
    ino_t inode = 0; ///< 0: no file
    qint64 size = 0;
    qint64 modified = 0; ///< in nanoseconds since 1970; likewise the next
    qint64 changed = 0;
};

/// Which file has the name now; of no file where there is none, or the disk does not answer. One call.
FileStamp stampOf(const QByteArray &name, const FileCalls &calls);

/// What a file had in it when it was read through, see ContentReading.
struct SeenContent {
    FileStamp stamp;
    quint64 hash = 0; ///< see ContentHash
};

/// What a file was when it was read or written, so that it can be told later whether it still is.
///
/// Times alone do not say that: `touch` and attributes change them, and a write within a step of the clock
/// does not. So a version also knows the hash of its content. Of a file whose times have changed, or were too
/// young to change, as much is read and compared as takes a few milliseconds: all of it, or the end of a
/// large one. That tells whether a large one has only grown, and mostly that it is another; but not that it
/// is still the same, which only somebody can find out who has the time to read it through.
class FileVersion {
public:
    static constexpr qint64 mostCompared = 2 * ContentHash::segment; ///< bytes that are read in passing

    /// Of no file.
    FileVersion() = default;
    /// Of a file that had this in it, whatever has been added by the time of the stamp.
    FileVersion(const FileStamp &stamp, const ContentHash &content);

    const FileStamp &stamp() const { return m_stamp; }
    const ContentHash &content() const { return m_content; }
    /// Compares it with what has the name now. A file that turns out to be the same is known by its new times
    /// then. `unanswered`: where the disk does not tell. Cost: see the class.
    FileChange changeOf(
        const QByteArray &name, const FileCalls &calls, FileChange unanswered = FileChange::None);
    /// Somebody has read through a file of this size: while it is as it was then, changeOf() needs not.
    void noteSeen(const SeenContent &seen);

private:
    std::optional<bool> isStartOf(const QByteArray &name, const FileStamp &now, const FileCalls &calls);
    std::optional<bool> isSeenIn(const FileStamp &now);

    FileStamp m_stamp;
    bool m_isYoung = false; ///< when it was read or written
    ContentHash m_content;
    std::optional<SeenContent> m_seen; ///< of a file with other times
};
