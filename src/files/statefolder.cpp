#include "files/statefolder.h"

#include <QScopeGuard>

#include <fcntl.h>

namespace {

constexpr mode_t privateFolder = 0700;

bool isImpossible(int error)
{
    return error == EACCES || error == EPERM || error == EROFS || error == EBUSY || error == EXDEV;
}

} // namespace

QByteArray stateFolder()
{
    const QByteArray state = qgetenv("XDG_STATE_HOME");
    return (state.startsWith('/') ? state : qgetenv("HOME") + "/.local/state") + "/marlopad/";
}

QByteArray folderOf(const QByteArray &name)
{
    const qsizetype end = name.lastIndexOf('/') + 1;
    return end > 0 ? name.first(end) : QByteArray("./");
}

bool makePrivateFolder(const FileCalls &calls, const QByteArray &folder)
{
    for (qsizetype end = folder.indexOf('/', 1); end != -1; end = folder.indexOf('/', end + 1)) {
        const QByteArray made = folder.first(end);
        if (calls.mkdir(made.constData(), privateFolder) == 0) {
            if (!syncFolder(calls, folderOf(made)))
                return false;
        } else if (errno != EEXIST) {
            return false;
        }
    }
    return true;
}

bool syncFolder(const FileCalls &calls, const QByteArray &folder)
{
    const int fd =
        retried([&] { return calls.open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC, 0); });
    if (fd == -1)
        return isImpossible(errno);
    const bool synced =
        retried([&] { return calls.fsync(fd); }) == 0 || isImpossible(errno) || errno == EINVAL;
    const int error = errno;
    calls.close(fd);
    errno = error;
    return synced;
}
