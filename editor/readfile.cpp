#include "editor/textfile.h"

#include "platform/filename.h"
#include "platform/messagebox.h"

#include <QCoreApplication>
#include <QScopeGuard>

#include <algorithm>
#include <cerrno>
#include <optional>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr const char *missingText = QT_TRANSLATE_NOOP("ctlEditer", "This file is not exists!");
constexpr const char *notOpenedText = QT_TRANSLATE_NOOP("ctlEditer", "This file was not opened!");
constexpr const char *folderText = QT_TRANSLATE_NOOP("ctlEditer", "This is a folder, not a file!");
constexpr const char *deviceText = QT_TRANSLATE_NOOP("ctlEditer", "This is a device or a pipe, not a file!");
constexpr const char *tooLargeText =
    QT_TRANSLATE_NOOP("ctlEditer", "There is not enough memory for this file!");
constexpr const char *brokenOffText =
    QT_TRANSLATE_NOOP("ctlEditer", "This file could not be read to its end!");

/// What to tell the user; null when all is well.
using Failure = const char *;

qint64 physicalMemory()
{
    return qint64{ sysconf(_SC_PHYS_PAGES) } * sysconf(_SC_PAGESIZE);
}

/// Whether a file may be opened and read: opening a pipe or a device could block or do something.
Failure refusal(const struct stat &status)
{
    if (S_ISDIR(status.st_mode))
        return folderText;
    if (!S_ISREG(status.st_mode))
        return deviceText;
    return status.st_size > physicalMemory() ? tooLargeText : nullptr;
}

/// An array whose bytes are not set; null bytes are neither needed nor cheap in a file of a gibibyte.
QByteArray uninitialized(qsizetype size)
{
    constexpr size_t hugePage = size_t{ 1 } << 21;
    QByteArray bytes(size, Qt::Uninitialized);
    const auto begin = reinterpret_cast<size_t>(bytes.data());
    const size_t alignedBegin = (begin + hugePage - 1) & ~(hugePage - 1);
    const size_t alignedEnd = (begin + static_cast<size_t>(size)) & ~(hugePage - 1);
    if (alignedEnd
        > alignedBegin) // only a hint: the first touch of many small pages costs more than the reading
        madvise(bytes.data() + (alignedBegin - begin), alignedEnd - alignedBegin, MADV_HUGEPAGE);
    return bytes;
}

/// Up to `size` bytes; 0 at the end of the file, -1 on an error.
qint64 readSome(int file, char *to, qint64 size)
{
    constexpr qint64 blockSize = qint64{ 1 } << 20;
    for (;;) {
        const ssize_t count = ::read(file, to, static_cast<size_t>(std::min(size, blockSize)));
        if (count >= 0 || errno != EINTR)
            return count;
    }
}

/// Reads to the end, also of a file that has become shorter or longer than `expected` meanwhile.
Failure readToEnd(int file, qint64 expected, QByteArray &bytes)
{
    constexpr qsizetype room = 65536;
    bytes = uninitialized(expected + 1);
    qint64 reached = 0;
    for (;;) {
        if (reached == bytes.size())
            bytes.resize(bytes.size() + std::max(room, bytes.size() / 8));
        const qint64 count = readSome(file, bytes.data() + reached, bytes.size() - reached);
        if (count < 0)
            return brokenOffText;
        if (count == 0)
            break;
        reached += count;
    }
    bytes.truncate(reached);
    return nullptr;
}

Failure readFile(const QByteArray &name, QByteArray &bytes)
{
    struct stat status = {};
    if (stat(name.constData(), &status) != 0)
        return errno == EACCES ? notOpenedText : missingText;
    if (const Failure failure = refusal(status))
        return failure;
    if (status.st_size == 0) {
        bytes.clear();
        return nullptr;
    }
    const int file = open(name.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (file < 0)
        return notOpenedText;
    const auto closer = qScopeGuard([file] { close(file); });
    if (fstat(file, &status) != 0)
        return notOpenedText;
    if (const Failure failure = refusal(status)) // another file may have taken the name meanwhile
        return failure;
    return readToEnd(file, status.st_size, bytes);
}

} // namespace

bool readWholeFile(QWidget *parent, const QString &fileName, QByteArray &bytes)
{
    QByteArray read;
    if (const Failure failure = readFile(FileName::toBytes(fileName), read)) {
        MessageBox::critical(parent, QCoreApplication::translate("ctlEditer", "File Load Error!"),
            QCoreApplication::translate("ctlEditer", failure));
        return false;
    }
    bytes = std::move(read);
    return true;
}
