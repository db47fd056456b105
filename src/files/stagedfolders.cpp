#include "files/stagedfolders.h"

#include "files/contenthash.h"
#include "files/copycontent.h"
#include "files/ownfile.h"
#include "files/stagedfile.h"
#include "files/statefolder.h"

#include <climits>
#include <limits>
#include <optional>

#include <fcntl.h>

namespace {

QByteArray notesFolder()
{
    return stateFolder() + "saves/";
}

QByteArray noteOfFolder(const QByteArray &folder)
{
    constexpr int hexadecimal = 16;
    ContentHash hash;
    hash.add(folder);
    return notesFolder() + QByteArray::number(hash.value(), hexadecimal);
}

/// What a note says; empty where there is none, nothing where it cannot be read just now.
std::optional<QByteArray> readNote(const QByteArray &note, const FileCalls &calls)
{
    const int fd = retried(
        [&] { return calls.open(note.constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0); });
    if (fd == -1)
        return errno == ENOENT ? std::optional(QByteArray()) : std::nullopt;
    QByteArray said;
    const bool isRead = readAll(calls, fd, PATH_MAX + 1, &said);
    calls.close(fd);
    return isRead ? std::optional(said) : std::nullopt;
}

/// Whether the folder of a note needs no look at another start.
bool isDone(const QByteArray &note, const FileCalls &calls)
{
    const auto said = readNote(note, calls);
    if (!said)
        return false;
    constexpr qsizetype allOfIt = std::numeric_limits<qsizetype>::max();
    return !said->endsWith(nameEnd) || removeStagedStrays(said->chopped(1), calls, allOfIt);
}

} // namespace

void noteStagedFolder(const QByteArray &folder, const FileCalls &calls)
{
    constexpr mode_t privateFile = 0600;
    const QByteArray note = noteOfFolder(folder);
    const QByteArray said = folder + nameEnd;
    if (readNote(note, calls) == said || !makePrivateFolder(calls, notesFolder()))
        return;
    const int fd = retried(
        [&] { return calls.open(note.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, privateFile); });
    if (fd == -1)
        return;
    if (writeAt(calls, fd, said, 0))
        retried([&] { return calls.fsync(fd); });
    calls.close(fd);
    syncFolder(calls, notesFolder());
}

void removeNotedStrays(const FileCalls &calls)
{
    constexpr qsizetype most = 10000;
    forEachName(calls, notesFolder(), most, [&](const QByteArray &name) {
        const QByteArray note = notesFolder() + name;
        if (!name.startsWith('.') && isDone(note, calls))
            calls.unlink(note.constData());
    });
}
