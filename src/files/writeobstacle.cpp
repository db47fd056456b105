#include "files/writeobstacle.h"

#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr quint64 reserve = quint64{ 1 } << 20; ///< bytes; for what is typed, and for the disk's own needs

/// Those the system keeps for root are not free. A file system of no blocks has no disk that could be full.
bool isFull(const FileCalls &calls, const QByteArray &name)
{
    struct statvfs disk;
    struct stat file;
    if (calls.statvfs(name.constData(), &disk) != 0 || calls.stat(name.constData(), &file) != 0)
        return false;
    const quint64 free = quint64{ disk.f_bavail } * disk.f_frsize;
    return disk.f_blocks > 0 && free < quint64(file.st_size) + reserve;
}

} // namespace

std::optional<WriteObstacle> writeObstacle(const QByteArray &name, const FileCalls &calls)
{
    if (calls.access(name.constData(), W_OK, AT_EACCESS) != 0) {
        if (errno == EROFS)
            return WriteObstacle::ReadOnlyDisk;
        if (errno == EACCES || errno == EPERM)
            return WriteObstacle::NotAllowed;
    }
    return isFull(calls, name) ? std::optional(WriteObstacle::FullDisk) : std::nullopt;
}
