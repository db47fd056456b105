#include "files/oldcopy.h"

#include "files/copycontent.h"
#include "files/ownfile.h"
#include "files/stagedfile.h"
#include "files/statefolder.h"

#include <algorithm>
#include <climits>

#include <fcntl.h>

namespace {

constexpr QByteArrayView copyPrefix = ".marlopad-copy-";
constexpr QByteArrayView earlierPrefix = ".marlopad-"; ///< of versions that wrote no second file
constexpr QByteArrayView ofEnding = ".of";

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

/// Nothing where no whole name is.
QByteArray fileOfCopy(const FileCalls &calls, const QByteArray &copy)
{
    const int fd = retried([&] {
        return calls.open(ofName(copy).constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0);
    });
    if (fd == -1)
        return {};
    QByteArray file(PATH_MAX, Qt::Uninitialized);
    const ssize_t size = retried([&] { return calls.pread(fd, file.data(), size_t(file.size()), 0); });
    calls.close(fd);
    file.truncate(qMax<ssize_t>(size, 0));
    return file;
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

bool OldCopy::make(const QByteArray &file)
{
    const int from =
        retried([&] { return m_calls.open(file.constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW, 0); });
    if (from == -1)
        return false;
    if (makePrivateFolder(m_calls, stateFolder()))
        m_fd = createOwnFile(m_calls, stateFolder() + copyPrefix.toByteArray(), &m_name);
    const bool isMade = m_fd != -1 && copyContent(m_calls, from, m_fd, &m_size)
        && retried([&] { return m_calls.fsync(m_fd); }) == 0 && nameFile(file)
        && syncFolder(m_calls, stateFolder());
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
    const bool isNamed = writeAt(m_calls, fd, file, 0) && retried([&] { return m_calls.fsync(fd); }) == 0;
    m_calls.close(fd);
    return isNamed;
}

QByteArray OldCopy::leave()
{
    const QByteArray name = m_name;
    forget();
    return name;
}

QByteArray OldCopy::keep()
{
    const QByteArrayView digits = QByteArrayView(m_name).last(ownFileDigits);
    const QByteArray fileName = shortName(m_file.sliced(m_file.lastIndexOf('/') + 1)).toByteArray();
    const QByteArray kept = stateFolder() + "kept-" + digits.toByteArray() + '-' + fileName;
    if (m_calls.rename(m_name.constData(), kept.constData()) != 0)
        return leave();
    m_calls.unlink(ofName(m_name).constData());
    syncFolder(m_calls, stateFolder());
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
        const QByteArray file = isCopy ? fileOfCopy(calls, copy) : QByteArray();
        if (isCopy && file.isEmpty())
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
