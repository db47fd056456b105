#pragma once

#include "files/safefile.h"
#include "files/statefolder.h"
#include "tests/files/faults.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <fcntl.h>
#include <unistd.h>

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
    /// Of copies that were kept on purpose the notes for the next start are left out.
    QStringList keptFiles() const
    {
        return QDir(QFile::decodeName(stateFolder()))
            .entryList(QDir::Files | QDir::Hidden)
            .filter(QRegularExpression(QStringLiteral("(?<!\\.untold)$")));
    }

    std::unique_ptr<QTemporaryDir> m_dir;
    QByteArray m_folder;
    const QByteArray m_old = "the old content\n";
    const QByteArray m_new = QByteArray(600000, 'n') + "\nthe new content\n";
};
