#include "recovery/journalfolder.h"

#include "files/statefolder.h"

#include <QRandomGenerator>

#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr char ending[] = ".journal";
constexpr char unfinished[] = ".unfinished-";

QByteArray randomName()
{
    return QByteArray::number(QRandomGenerator::system()->generate64(), 36);
}

/// With errno.
bool makePrivate(const FileCalls &calls, int folder)
{
    constexpr mode_t othersRights = 0077;
    constexpr mode_t ownRights = 0700;
    struct stat info = {};
    if (calls.fstat(folder, &info) != 0)
        return false;
    if (info.st_uid != geteuid()) {
        errno = EPERM;
        return false;
    }
    return (info.st_mode & othersRights) == 0
        || retried([&] { return calls.fchmod(folder, ownRights); }) == 0;
}

} // namespace

QByteArray journalFolder()
{
    return stateFolder() + "journals/";
}

QByteArray newJournalName()
{
    return randomName() + ending;
}

QByteArray newUnfinishedName()
{
    return unfinished + randomName();
}

bool isJournalName(const QByteArray &name)
{
    return name.endsWith(ending) && !name.startsWith('.');
}

bool isUnfinishedName(const QByteArray &name)
{
    return name.startsWith(unfinished);
}

bool isPrivateFolder(const FileCalls &calls, const QByteArray &folder)
{
    const int fd = retried([&] {
        return calls.open(folder.chopped(1).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NOFOLLOW, 0);
    });
    if (fd == -1)
        return false;
    const bool isPrivate = makePrivate(calls, fd);
    const int error = errno;
    calls.close(fd);
    errno = error;
    return isPrivate;
}
