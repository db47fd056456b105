#include "filedialog/fileentry.h"

#include "files/filename.h"

#include <QByteArray>

#include <cerrno>
#include <climits>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr unsigned permissionBits = S_IRWXU | S_IRWXG | S_IRWXO;

QString readLinkAt(int folder, const char *name)
{
    QByteArray target(PATH_MAX, Qt::Uninitialized);
    const ssize_t size = ::readlinkat(folder, name, target.data(), size_t(target.size()));
    return size > 0 ? FileName::fromBytes(target.first(size)) : QString();
}

bool isLinkAt(int folder, const dirent &entry)
{
    struct stat info;
    if (entry.d_type != DT_UNKNOWN)
        return entry.d_type == DT_LNK;
    return ::fstatat(folder, entry.d_name, &info, AT_SYMLINK_NOFOLLOW) == 0 && S_ISLNK(info.st_mode);
}

/// Adds what the system tells about the entry; false when there is no such entry any more.
bool examine(int folder, const dirent &entry, FileEntry &result)
{
    struct stat info;
    result.isLink = isLinkAt(folder, entry);
    if (::fstatat(folder, entry.d_name, &info, 0) == 0) {
        result.isFolder = S_ISDIR(info.st_mode);
        result.size = info.st_size;
        result.modified = info.st_mtime;
        result.permissions = info.st_mode & permissionBits;
    } else if (::fstatat(folder, entry.d_name, &info, AT_SYMLINK_NOFOLLOW) == 0) {
        result.modified = info.st_mtime;
    } else {
        // A folder that may be read but not searched tells its names and kinds alone.
        result.isFolder = entry.d_type == DT_DIR;
        return errno != ENOENT;
    }
    if (result.isLink && result.isFolder)
        result.linkTarget = readLinkAt(folder, entry.d_name);
    return true;
}

bool mayBeFolder(const dirent &entry)
{
    return entry.d_type == DT_DIR || entry.d_type == DT_LNK || entry.d_type == DT_UNKNOWN;
}

std::optional<FileEntry> readEntry(int folder, const dirent &entry, const NameFilter &filter)
{
    FileEntry result;
    result.name = FileName::fromBytes(QByteArrayView(entry.d_name));
    if (result.name == u"." || result.name == u"..")
        return {};
    const bool passes = filter.matches(result.name);
    if (!passes && !mayBeFolder(entry))
        return {};
    if (!examine(folder, entry, result) || (!passes && !result.isFolder))
        return {};
    return result;
}

} // namespace

std::optional<std::tm> FileEntry::localTime() const
{
    const std::time_t time = modified;
    std::tm local{};
    if (modified == unknownTime || !::localtime_r(&time, &local))
        return {};
    return local;
}

struct FolderReader::Stream {
    explicit Stream(const QString &folder)
        : open(::opendir(FileName::toBytes(folder).constData()))
    {
    }
    ~Stream()
    {
        if (open)
            ::closedir(open);
    }
    Q_DISABLE_COPY_MOVE(Stream)

    DIR *const open; ///< null: it cannot be read
};

FolderReader::FolderReader(const QString &folder, const NameFilter &filter)
    : m_folder(folder)
    , m_filter(filter)
{
}

FolderReader::~FolderReader() = default;

std::optional<FileEntry> FolderReader::next()
{
    if (!m_stream)
        m_stream = std::make_unique<Stream>(m_folder);
    if (!m_stream->open)
        return std::nullopt;
    while (const dirent *entry = ::readdir(m_stream->open)) {
        if (std::optional<FileEntry> found = readEntry(::dirfd(m_stream->open), *entry, m_filter)) {
            found->folder = m_folder;
            return found;
        }
    }
    return std::nullopt;
}

QString readLink(const QString &fileName)
{
    return readLinkAt(AT_FDCWD, FileName::toBytes(fileName).constData());
}
