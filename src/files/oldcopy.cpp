#include "files/oldcopy.h"

#include "files/ownfile.h"
#include "files/stagedfile.h"
#include "files/statefolder.h"
#include "files/untoldcopy.h"

#include <algorithm>
#include <climits>
#include <optional>

#include <fcntl.h>

namespace {

constexpr QByteArrayView copyPrefix = ".marlopad-copy-";
constexpr QByteArrayView earlierPrefix = ".marlopad-"; ///< of versions that wrote no second file
constexpr QByteArrayView ofEnding = ".of";
constexpr QByteArrayView keptPrefix = "kept-";

QByteArray ofName(const QByteArray &copy)
{
    return copy + ofEnding.toByteArray();
}

/// The digits were fewer where they began with zeros.
bool isEarlierCopy(QByteArrayView name)
{
    const QByteArrayView digits = name.sliced(qMin(name.size(), earlierPrefix.size()));
    return name.startsWith(earlierPrefix) && !digits.isEmpty()
        && std::all_of(digits.begin(), digits.end(),
            [](char digit) { return (digit >= '0' && digit <= '9') || (digit >= 'a' && digit <= 'z'); });
}

bool isOfName(QByteArrayView name)
{
    return name.endsWith(ofEnding) && ownFilePrefix(name.chopped(ofEnding.size())) == copyPrefix;
}

bool isMissing(const FileCalls &calls, const QByteArray &name)
{
    struct stat info;
    return calls.stat(name.constData(), &info) != 0 && errno == ENOENT;
}

/// What is written of the name of a copy's file, empty for none; nothing where that cannot be read just now.
std::optional<QByteArray> writtenName(const FileCalls &calls, const QByteArray &copy)
{
    const int fd = retried([&] {
        return calls.open(ofName(copy).constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0);
    });
    if (fd == -1)
        return errno == ENOENT ? std::optional(QByteArray()) : std::nullopt;
    QByteArray written;
    const bool isRead = readAll(calls, fd, PATH_MAX, &written);
    calls.close(fd);
    return isRead ? std::optional(written) : std::nullopt;
}

qint64 millisecondsOf(const timespec &time)
{
    return qint64{ time.tv_sec } * 1000 + time.tv_nsec / 1000000;
}

} // namespace

OldCopy::OldCopy(const FileCalls &calls)
    : m_calls(calls)
{
}

void OldCopy::remove()
{
    if (!m_name.isEmpty())
        removeLostCopy(m_name, m_calls);
    forget();
}

bool OldCopy::make(const QByteArray &file, const CopyWatch &watch)
{
    const int from =
        retried([&] { return m_calls.open(file.constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW, 0); });
    m_isFileMissed = from == -1;
    if (m_isFileMissed)
        return false;
    if (makePrivateFolder(m_calls, stateFolder()))
        m_fd = createOwnFile(m_calls, stateFolder() + copyPrefix.toByteArray(), &m_name);
    const bool isMade = m_fd != -1 && copyContent(m_calls, from, m_fd, &m_size, watch)
        && retried([&] { return m_calls.fsync(m_fd); }) == 0 && nameFile(file)
        && syncFolder(m_calls, stateFolder()) && watch(0); // the disk may have taken long
    m_calls.close(from);
    if (!isMade)
        remove();
    m_file = file;
    return isMade;
}

bool OldCopy::nameFile(const QByteArray &file)
{
    constexpr mode_t privateFile = 0600;
    const int fd = retried([&] {
        return m_calls.open(ofName(m_name).constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, privateFile);
    });
    if (fd == -1)
        return false;
    const bool isNamed =
        writeAt(m_calls, fd, file + nameEnd, 0) && retried([&] { return m_calls.fsync(fd); }) == 0;
    m_calls.close(fd);
    return isNamed;
}

QByteArray OldCopy::leave()
{
    QByteArray name = m_name;
    forget();
    return name;
}

QByteArray OldCopy::keep()
{
    const QByteArrayView digits = QByteArrayView(m_name).last(ownFileDigits);
    const QByteArray fileName = shortName(m_file.sliced(m_file.lastIndexOf('/') + 1)).toByteArray();
    QByteArray kept = stateFolder() + keptPrefix.toByteArray() + digits.toByteArray() + '-' + fileName;
    noteUntold(kept, m_calls); // before there is a moment at which nobody looks for it
    if (m_calls.rename(m_name.constData(), kept.constData()) != 0) {
        noteTold(kept, m_calls);
        return leave();
    }
    // Without its second file a copy would count as not finished if it had its old name yet.
    syncFolder(m_calls, stateFolder());
    m_calls.unlink(ofName(m_name).constData());
    forget();
    return kept;
}

void OldCopy::forget()
{
    if (m_fd != -1)
        m_calls.close(m_fd);
    m_fd = -1;
    m_name.clear();
}

bool isBeingKept(const QByteArray &kept, const FileCalls &calls)
{
    const QByteArray digits = kept.mid(stateFolder().size() + keptPrefix.size(), ownFileDigits);
    return !isMissing(calls, stateFolder() + copyPrefix.toByteArray() + digits);
}

QList<LostCopy> lostCopies(const FileCalls &calls)
{
    constexpr qsizetype most = 10000;
    QList<LostCopy> copies;
    removeStagedStrays(stateFolder(), calls);
    forEachName(calls, stateFolder(), most, [&](const QByteArray &name) {
        if (isOfName(name) && isMissing(calls, stateFolder() + name.chopped(ofEnding.size())))
            calls.unlink((stateFolder() + name).constData());
        const bool isCopy = ownFilePrefix(name) == copyPrefix;
        if (!isCopy && !isEarlierCopy(name))
            return;
        const QByteArray copy = stateFolder() + name;
        const int fd = openAbandoned(calls, copy, Unlockable::LostWhenOld);
        struct stat info;
        if (fd == -1)
            return;
        const auto written = isCopy ? writtenName(calls, copy) : std::nullopt;
        const QByteArray file = written && written->endsWith(nameEnd) ? written->chopped(1) : QByteArray();
        if (written && written->isEmpty())
            removeLostCopy(copy, calls);
        else if (calls.fstat(fd, &info) == 0)
            copies.append({ copy, file, info.st_size, millisecondsOf(info.st_mtim) });
        calls.close(fd);
    });
    std::sort(copies.begin(), copies.end(),
        [](const LostCopy &one, const LostCopy &other) { return one.time > other.time; });
    return copies;
}

void removeLostCopy(const QByteArray &name, const FileCalls &calls)
{
    calls.unlink(name.constData());
    calls.unlink(ofName(name).constData());
}
