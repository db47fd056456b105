#include "files/statefolder.h"

#include <climits>

#include <fcntl.h>

QByteArray folderOf(const QByteArray &name)
{
    const qsizetype end = name.lastIndexOf('/') + 1;
    return end > 0 ? name.first(end) : QByteArray("./");
}

std::optional<QByteArray> followedLinks(QByteArray name, const FileCalls &calls)
{
    constexpr int mostLinks = 40;
    for (int links = 0; links < mostLinks; ++links) {
        QByteArray link(PATH_MAX, Qt::Uninitialized);
        const ssize_t size = calls.readlink(name.constData(), link.data(), size_t(link.size()));
        if (size < 0)
            return errno == EINVAL || errno == ENOENT ? std::optional(name) : std::nullopt;
        link.truncate(size);
        name = link.startsWith('/') ? link : folderOf(name) + link;
    }
    return std::nullopt;
}

bool syncFolder(const FileCalls &calls, const QByteArray &folder)
{
    const int fd =
        retried([&] { return calls.open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC, 0); });
    if (fd == -1)
        return isRefusal(errno);
    const bool synced = retried([&] { return calls.fsync(fd); }) == 0 || isRefusal(errno) || errno == EINVAL;
    const int error = errno;
    calls.close(fd);
    errno = error;
    return synced;
}

bool makePrivateFolder(const FileCalls &calls, const QByteArray &folder)
{
    constexpr mode_t privateFolder = 0700;
    for (qsizetype end = folder.indexOf('/', 1); end != -1; end = folder.indexOf('/', end + 1)) {
        const QByteArray made = folder.first(end);
        if (calls.mkdir(made.constData(), privateFolder) != 0 && errno != EEXIST)
            return false;
        if (!syncFolder(calls, folderOf(made)))
            return false;
    }
    return true;
}

QByteArray stateFolder()
{
    const QByteArray state = qgetenv("XDG_STATE_HOME");
    return (state.startsWith('/') ? state : qgetenv("HOME") + "/.local/state") + "/marlopad/";
}

bool isRefusal(int error)
{
    return error == EACCES || error == EPERM || error == EROFS || error == EBUSY || error == EXDEV;
}
