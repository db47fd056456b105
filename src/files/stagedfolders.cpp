#include "files/stagedfolders.h"

#include "files/contenthash.h"
#include "files/copycontent.h"
#include "files/ownfile.h"
#include "files/stagedfile.h"
#include "files/statefolder.h"

#include <QList>

#include <climits>
#include <ctime>
#include <limits>
#include <optional>

#include <fcntl.h>

namespace {

QByteArray notesFolder()
{
    return stateFolder() + "saves/";
}

constexpr char aside[] = "-aside"; ///< ends the name of a note whose folder is being looked through

QByteArray noteOfFolder(const QByteArray &folder)
{
    constexpr int hexadecimal = 16;
    ContentHash hash;
    hash.add(folder);
    return notesFolder() + QByteArray::number(hash.value(), hexadecimal);
}

/// Of the file system that a name leads to; 0 where it is not known.
quint64 fileSystemOf(const QByteArray &name, const FileCalls &calls)
{
    struct statvfs info;
    return calls.statvfs(name.constData(), &info) == 0 ? info.f_fsid : 0;
}

/// What is written into a note: the folder's file system, by which an empty mount point is told from what was
/// mounted there, and its name.
QByteArray noteText(const QByteArray &folder, quint64 fileSystem)
{
    return QByteArray::number(fileSystem) + ' ' + folder + nameEnd;
}

struct Note {
    QByteArray text; ///< empty where there is none
    time_t time = 0; ///< of its writing

    /// Empty for a note that is torn.
    QByteArray folder() const
    {
        const QByteArray folder = text.sliced(text.indexOf(' ') + 1);
        return folder.startsWith('/') && folder.endsWith(nameEnd) ? folder.chopped(1) : QByteArray();
    }
    quint64 fileSystem() const { return text.first(qMax<qsizetype>(0, text.indexOf(' '))).toULongLong(); }
};

/// Nothing where it cannot be read just now.
std::optional<Note> readNote(const QByteArray &name, const FileCalls &calls)
{
    constexpr qint64 most = PATH_MAX + 32;
    const int fd = retried(
        [&] { return calls.open(name.constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0); });
    if (fd == -1)
        return errno == ENOENT ? std::optional(Note()) : std::nullopt;
    Note note;
    struct stat info;
    const bool isRead = readAll(calls, fd, most, &note.text) && calls.fstat(fd, &info) == 0;
    calls.close(fd);
    if (!isRead)
        return std::nullopt;
    note.time = info.st_mtim.tv_sec;
    return note;
}

/// What has not come back by then is not waited for.
bool isOld(const Note &note)
{
    constexpr time_t longEnough = 30 * 24 * 60 * 60;
    return time(nullptr) - note.time > longEnough;
}

/// Where one is not known, they are taken for one.
bool isOneFileSystem(quint64 one, quint64 other)
{
    return one == other || one == 0 || other == 0;
}

/// Whether the folder of a note needs no look at another start. One that is not there, or is empty, may be on
/// a card that is out.
bool isDone(const QByteArray &name, const FileCalls &calls)
{
    constexpr qsizetype allOfIt = std::numeric_limits<qsizetype>::max();
    const auto note = readNote(name, calls);
    if (!note)
        return false;
    const QByteArray folder = note->folder();
    if (folder.isEmpty())
        return true;
    const bool isClean = removeStagedStrays(folder, calls, allOfIt);
    return isOld(*note) || (isClean && isOneFileSystem(note->fileSystem(), fileSystemOf(folder, calls)));
}

/// Looks through the folder of a note. The note is put aside before, because a save that begins meanwhile has
/// to write one of its own: what it stages may not be seen any more.
void lookThrough(const QByteArray &note, const FileCalls &calls)
{
    const bool isAside = note.endsWith(aside);
    const QByteArray name = isAside ? note : note + aside;
    if ((isAside || calls.rename(note.constData(), name.constData()) == 0) && isDone(name, calls))
        calls.unlink(name.constData());
}

} // namespace

void noteStagedFolder(const QByteArray &folder, const FileCalls &calls)
{
    constexpr mode_t privateFile = 0600;
    const QByteArray name = noteOfFolder(folder);
    const QByteArray text = noteText(folder, fileSystemOf(folder, calls));
    const auto noted = readNote(name, calls);
    if ((noted && noted->text == text) || !makePrivateFolder(calls, notesFolder()))
        return;
    const int fd = retried(
        [&] { return calls.open(name.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, privateFile); });
    if (fd == -1)
        return;
    if (writeAt(calls, fd, text, 0))
        retried([&] { return calls.fsync(fd); });
    calls.close(fd);
    syncFolder(calls, notesFolder());
}

void removeNotedStrays(const FileCalls &calls)
{
    constexpr qsizetype most = 10000;
    QList<QByteArray> notes;
    forEachName(calls, notesFolder(), most, [&](const QByteArray &name) {
        if (!name.startsWith('.'))
            notes << notesFolder() + name;
    });
    for (const QByteArray &note : notes)
        lookThrough(note, calls);
}
