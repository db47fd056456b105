#include "files/stagedfile.h"

#include "files/ownfile.h"

#include <set>

namespace {

constexpr QByteArrayView infix = ".marlopad-";

/// ".NAME.marlopad-DIGITS"
bool isStaged(QByteArrayView name)
{
    const QByteArrayView prefix = ownFilePrefix(name);
    return prefix.startsWith('.') && prefix.endsWith(infix) && prefix.size() > infix.size() + 1;
}

} // namespace

QByteArray stagedPrefix(QByteArrayView folder, QByteArrayView fileName)
{
    return folder.toByteArray() + '.' + shortName(fileName).toByteArray() + infix.toByteArray();
}

void removeStagedStrays(const QByteArray &folder, const FileCalls &calls)
{
    constexpr qsizetype most = 10000;
    forEachName(calls, folder, most, [&](const QByteArray &name) {
        const int fd = isStaged(name) ? openAbandoned(calls, folder + name) : -1;
        if (fd == -1)
            return;
        calls.unlink((folder + name).constData());
        calls.close(fd);
    });
}

void removeStagedStraysOnce(const QByteArray &folder, const FileCalls &calls)
{
    static std::set<QByteArray> visited;
    if (visited.insert(folder).second)
        removeStagedStrays(folder, calls);
}
