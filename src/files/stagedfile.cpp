#include "files/stagedfile.h"

#include "files/ownfile.h"
#include "files/statefolder.h"

#include <set>

namespace {

constexpr QByteArrayView infix = ".marlopad-";

/// ".NAME.marlopad-DIGITS"
bool isStaged(QByteArrayView name)
{
    const QByteArrayView prefix = ownFilePrefix(name);
    return prefix.startsWith('.') && prefix.endsWith(infix) && prefix.size() > infix.size() + 1;
}

/// False: it is in use, or cannot be removed.
bool removeAbandoned(const FileCalls &calls, const QByteArray &name)
{
    const int fd = openAbandoned(calls, name);
    if (fd == -1)
        return false;
    const bool isRemoved = calls.unlink(name.constData()) == 0;
    calls.close(fd);
    return isRemoved;
}

} // namespace

QByteArray stagedPrefix(QByteArrayView folder, QByteArrayView fileName)
{
    return folder.toByteArray() + '.' + shortName(fileName).toByteArray() + infix.toByteArray();
}

bool removeStagedStrays(const QByteArray &folder, const FileCalls &calls, qsizetype most)
{
    bool isEmpty = true;
    bool isClean = true;
    bool isChanged = false;
    const bool isRead = forEachName(calls, folder, most, [&](const QByteArray &name) {
        isEmpty = isEmpty && (name == "." || name == "..");
        if (!isStaged(name))
            return;
        const bool isRemoved = removeAbandoned(calls, folder + name);
        isChanged = isChanged || isRemoved;
        isClean = isClean && isRemoved;
    });
    return isRead && !isEmpty && isClean && (!isChanged || syncFolder(calls, folder));
}

void removeStagedStraysOnce(const QByteArray &folder, const FileCalls &calls)
{
    static std::set<QByteArray> visited;
    if (visited.insert(folder).second)
        removeStagedStrays(folder, calls);
}
