#pragma once

#include "files/safefile.h"
#include "files/statefolder.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <fcntl.h>
#include <unistd.h>

/// A fault table's decision: 0 lets the call through, else it fails with that error.
using Fault = std::function<int(const QByteArray &call)>;

/// What a call returns that fails.
template <typename Result> Result failure()
{
    if constexpr (std::is_pointer_v<Result>)
        return nullptr;
    else
        return -1;
}

template <typename Result, typename... Args>
void guard(std::function<Result(Args...)> &call, const char *name, const Fault &fault)
{
    call = [inner = call, name, fault](Args... args) -> Result {
        if (const int error = fault(name)) {
            errno = error;
            return failure<Result>();
        }
        return inner(args...);
    };
}

inline FileCalls withFaults(FileCalls calls, const Fault &fault)
{
    guard(calls.open, "open", fault);
    guard(calls.close, "close", fault);
    guard(calls.pread, "pread", fault);
    guard(calls.pwrite, "pwrite", fault);
    guard(calls.fsync, "fsync", fault);
    guard(calls.ftruncate, "ftruncate", fault);
    guard(calls.stat, "stat", fault);
    guard(calls.fstat, "fstat", fault);
    guard(calls.readlink, "readlink", fault);
    guard(calls.fchown, "fchown", fault);
    guard(calls.fchmod, "fchmod", fault);
    guard(calls.flistxattr, "flistxattr", fault);
    guard(calls.fgetxattr, "fgetxattr", fault);
    guard(calls.fsetxattr, "fsetxattr", fault);
    guard(calls.fremovexattr, "fremovexattr", fault);
    guard(calls.rename, "rename", fault);
    guard(calls.unlink, "unlink", fault);
    guard(calls.mkdir, "mkdir", fault);
    guard(calls.flock, "flock", fault);
    guard(calls.access, "access", fault);
    guard(calls.statvfs, "statvfs", fault);
    guard(calls.opendir, "opendir", fault);
    guard(calls.readdir, "readdir", fault);
    guard(calls.closedir, "closedir", fault);
    return calls;
}

/// A folder in which nobody may make files, also for tests that run as root.
inline FileCalls withClosedFolder(FileCalls calls, const QByteArray &folder)
{
    calls.open = [inner = calls.open, folder](const char *name, int flags, mode_t mode) {
        if ((flags & O_CREAT) && QByteArray(name).startsWith(folder)) {
            errno = EACCES;
            return -1;
        }
        return inner(name, flags, mode);
    };
    return calls;
}

inline ino_t inodeOf(int fd)
{
    struct stat info;
    ::fstat(fd, &info);
    return info.st_ino;
}

inline QByteArray contentOf(const QByteArray &name)
{
    QFile file(QFile::decodeName(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(unreadable)");
}

inline void writeFile(const QByteArray &name, const QByteArray &content)
{
    QFile file(QFile::decodeName(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
}

inline struct stat statOf(const QByteArray &name)
{
    struct stat info = {};
    ::lstat(name.constData(), &info);
    return info;
}

inline bool save(SafeFile &file, const QByteArray &content)
{
    return file.open() && file.write(QByteArrayView(content).first(content.size() / 2))
        && file.write(QByteArrayView(content).sliced(content.size() / 2)) && file.commit();
}

inline bool save(
    const QByteArray &name, const QByteArray &content, const FileCalls &calls = FileCalls::system())
{
    SafeFile file(name, calls);
    return save(file, content);
}

/// A file to be saved, in a folder of its own for each test.
class SavedFile {
protected:
    enum class Way { NewFile, Replace, ThroughLink, HardLink, ClosedFolder };

    void prepareFolder()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        m_folder = QFile::encodeName(m_dir->path()) + '/';
        QDir(QFile::decodeName(stateFolder())).removeRecursively();
    }
    /// The name of the file to save, which is there already unless it is to be new.
    QByteArray prepare(Way way)
    {
        QByteArray name = m_folder + "file.txt";
        if (way == Way::NewFile)
            return name;
        writeFile(name, m_old);
        if (way == Way::ThroughLink) {
            ::symlink("file.txt", (m_folder + "link").constData());
            return m_folder + "link";
        }
        if (way == Way::HardLink)
            ::link(name.constData(), (m_folder + "other.txt").constData());
        return name;
    }
    FileCalls callsFor(Way way) const
    {
        const FileCalls &calls = FileCalls::system();
        return way == Way::ClosedFolder ? withClosedFolder(calls, m_folder) : calls;
    }
    QStringList listing() const
    {
        return QDir(m_dir->path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }
    QStringList keptFiles() const
    {
        return QDir(QFile::decodeName(stateFolder())).entryList(QDir::Files | QDir::Hidden);
    }

    std::unique_ptr<QTemporaryDir> m_dir;
    QByteArray m_folder;
    const QByteArray m_old = "the old content\n";
    const QByteArray m_new = QByteArray(600000, 'n') + "\nthe new content\n";
};
