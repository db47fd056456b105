#pragma once

#include "files/filecalls.h"

#include <QByteArray>
#include <QByteArrayView>

#include <optional>

/// What became of a file, compared with what it was.
enum class FileChange {
    None,
    Grown, ///< something was put behind what there was, and nothing else
    Changed,
    Replaced, ///< another file has its name
    Deleted,
};

/// Which file has a name, and what the system tells of it by one call.
struct FileStamp {
    explicit FileStamp(const struct stat &info = {});
    bool operator==(const FileStamp &other) const = default;

    bool isSameFile(const FileStamp &other) const { return device == other.device && inode == other.inode; }
    /// Whether it may have been written since without a sign of it: a clock's step goes by before times
    /// differ, which on some disks is two seconds.
    bool isYoung() const;

    dev_t device = 0;
    ino_t inode = 0; ///< 0: no file
    qint64 size = 0;
    qint64 modified = 0; ///< in nanoseconds since 1970; likewise the next
    qint64 changed = 0;
};

/// Hashes bytes that come in pieces; the pieces do not matter. Means nothing to another process. Cost: memory
/// speed.
class ContentHash {
public:
    void add(QByteArrayView bytes);
    size_t value() const;

private:
    size_t m_value = 0;
    QByteArray m_rest;
};

/// What a file was when it was read or written, so that it can be told later whether it still is.
///
/// Times alone do not say that: `touch` and attributes change them, and a write within a step of the clock
/// does not. So a version also knows the hash of its content, or of the last part of a large file: whose
/// times have changed, or were too young to change, is read and compared, up to a bound that takes a few
/// milliseconds. A large file whose times have changed counts as changed, because to read a gigabyte at every
/// return to the window would be worse than a word too much.
class FileVersion {
public:
    static constexpr qint64 mostCompared = qint64{ 16 } << 20; ///< bytes

    /// Of no file.
    FileVersion() = default;
    /// Of a file of which `known` is the end, or all.
    FileVersion(const FileStamp &stamp, QByteArrayView known);
    /// Of a file whose whole content has this hash, if it was not too large for one.
    FileVersion(const FileStamp &stamp, std::optional<size_t> hash);

    const FileStamp &stamp() const { return m_stamp; }
    /// Compares it with what has the name now. A file that turns out to be the same is known by its new times
    /// then. Where the disk does not answer nothing has changed, as far as is known.
    FileChange changeOf(const QByteArray &name, const FileCalls &calls);

private:
    bool isStartOf(const QByteArray &name, const FileStamp &now, const FileCalls &calls) const;

    FileStamp m_stamp;
    bool m_isYoung = false; ///< when it was read or written
    qint64 m_hashedFrom = 0;
    std::optional<size_t> m_hash; ///< of the bytes from there to the size
};
