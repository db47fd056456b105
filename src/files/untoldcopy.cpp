#include "files/untoldcopy.h"

#include "files/oldcopy.h"
#include "files/ownfile.h"
#include "files/statefolder.h"

#include <fcntl.h>

namespace {

constexpr QByteArrayView untoldEnding = ".untold";

QByteArray noteOf(const QByteArray &copy)
{
    return copy + untoldEnding.toByteArray();
}

} // namespace

bool noteUntold(const QByteArray &copy, const FileCalls &calls)
{
    constexpr mode_t privateFile = 0600;
    const int fd = retried(
        [&] { return calls.open(noteOf(copy).constData(), O_WRONLY | O_CREAT | O_CLOEXEC, privateFile); });
    return fd != -1 && calls.close(fd) == 0 && syncFolder(calls, folderOf(copy));
}

void noteTold(const QByteArray &copy, const FileCalls &calls)
{
    calls.unlink(noteOf(copy).constData());
}

QList<QByteArray> untoldCopies(const FileCalls &calls)
{
    constexpr qsizetype most = 10000;
    QList<QByteArray> copies;
    forEachName(calls, stateFolder(), most, [&](const QByteArray &name) {
        if (!name.endsWith(untoldEnding))
            return;
        const QByteArray copy = stateFolder() + name.chopped(untoldEnding.size());
        struct stat info;
        if (calls.stat(copy.constData(), &info) == 0)
            copies << copy;
        else if (errno == ENOENT && !isBeingKept(copy, calls))
            noteTold(copy, calls);
    });
    return copies;
}
