#include "files/ownfile.h"

#include "files/filelock.h"

#include <QRandomGenerator>

#include <algorithm>
#include <cerrno>
#include <ctime>

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace {

constexpr mode_t privateFile = 0600;
constexpr int digitsBase = 36; ///< 64 bits need 13 digits

QByteArray randomDigits()
{
    const quint64 random = QRandomGenerator::system()->generate64();
    return QByteArray::number(random, digitsBase).rightJustified(ownFileDigits, '0');
}

bool isDigit(char character)
{
    return (character >= '0' && character <= '9') || (character >= 'a' && character <= 'z');
}

/// False when somebody came between the making of the file and its lock, and takes it for a lost one. Without
/// locks nobody does.
bool lockNewFile(const FileCalls &calls, int fd)
{
    return lockNamed(calls, fd) || errno != EWOULDBLOCK;
}

/// No save takes as long.
bool isOld(const struct stat &info)
{
    constexpr time_t longEnough = 600;
    return time(nullptr) - info.st_mtim.tv_sec > longEnough;
}

} // namespace

int createOwnFile(const FileCalls &calls, const QByteArray &prefix, QByteArray *name)
{
    constexpr int mostAttempts = 16;
    for (int attempt = 0; attempt < mostAttempts; ++attempt) {
        const QByteArray candidate = prefix + randomDigits();
        const int fd = retried([&] {
            return calls.open(candidate.constData(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, privateFile);
        });
        if (fd == -1 && errno != EEXIST)
            return -1;
        if (fd != -1 && lockNewFile(calls, fd)) {
            *name = candidate;
            return fd;
        }
        if (fd != -1) {
            calls.close(fd);
            calls.unlink(candidate.constData());
        }
    }
    return -1;
}

QByteArrayView ownFilePrefix(QByteArrayView name)
{
    const QByteArrayView digits = name.last(qMin(ownFileDigits, name.size()));
    const bool endsInDigits =
        digits.size() == ownFileDigits && std::all_of(digits.begin(), digits.end(), isDigit);
    return endsInDigits ? name.chopped(ownFileDigits) : QByteArrayView();
}

bool hasNoLocks(int error)
{
    return error == ENOLCK || error == EOPNOTSUPP || error == ENOSYS;
}

int openAbandoned(const FileCalls &calls, const QByteArray &name, Unlockable unlockable)
{
    const int fd = retried([&] {
        return calls.open(name.constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY, 0);
    });
    if (fd == -1)
        return -1;
    struct stat info;
    const bool isOurs = calls.fstat(fd, &info) == 0 && S_ISREG(info.st_mode) && info.st_nlink == 1
        && info.st_uid == ::geteuid();
    const bool isLocked = isOurs && retried([&] { return calls.flock(fd, LOCK_EX | LOCK_NB); }) == 0;
    if (isLocked || (isOurs && unlockable == Unlockable::LostWhenOld && hasNoLocks(errno) && isOld(info)))
        return fd;
    calls.close(fd);
    return -1;
}

QByteArrayView shortName(QByteArrayView fileName)
{
    constexpr qsizetype longest = 100;
    const auto continues = [](char byte) { return (uchar(byte) & 0xC0) == 0x80; };
    qsizetype size = qMin(longest, fileName.size());
    while (size > 0 && size < fileName.size() && continues(fileName[size]))
        --size;
    return fileName.first(size);
}

bool forEachName(const FileCalls &calls, const QByteArray &folder, qsizetype most,
    const std::function<void(const QByteArray &name)> &found)
{
    DIR *const open = calls.opendir(folder.constData());
    if (!open)
        return false;
    const auto next = [&] {
        errno = 0;
        return most-- > 0 ? calls.readdir(open) : nullptr;
    };
    while (const dirent *const entry = next())
        found(QByteArray(entry->d_name));
    const int error = errno;
    calls.closedir(open);
    errno = error;
    return error == 0;
}
