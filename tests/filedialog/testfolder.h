#pragma once

#include "files/filename.h"

#include <QByteArray>
#include <QString>
#include <QTest>

#include <cstdlib>
#include <string>

#include <fcntl.h>
#include <ftw.h>
#include <sys/stat.h>
#include <unistd.h>

/// A folder that goes away with the object. Names are bytes, relative to it.
class TestFolder {
public:
    TestFolder()
    {
        std::string name = "/tmp/marlopad_test-" + std::string(6, 'X');
        QVERIFY(::mkdtemp(name.data()));
        m_path = QByteArray::fromStdString(name) + '/';
    }
    ~TestFolder()
    {
        const auto removeEntry = [](const char *name, const struct stat *, int, FTW *) {
            return ::remove(name);
        };
        ::nftw(m_path.constData(), removeEntry, 16, FTW_DEPTH | FTW_PHYS);
    }
    Q_DISABLE_COPY_MOVE(TestFolder)

    /// With "/" at the end.
    QString path() const { return QString::fromLatin1(m_path); }
    QString path(const char *name) const { return FileName::fromBytes(full(name)); }

    void file(const char *name, qint64 size = 0, mode_t mode = 0644) const
    {
        const int file = ::open(full(name).constData(), O_CREAT | O_WRONLY | O_TRUNC | O_CLOEXEC, 0600);
        QVERIFY2(file >= 0, name);
        QCOMPARE(::ftruncate(file, size), 0);
        QCOMPARE(::fchmod(file, mode), 0);
        ::close(file);
    }
    void folder(const char *name) const { QCOMPARE(::mkdir(full(name).constData(), 0755), 0); }
    void fifo(const char *name) const { QCOMPARE(::mkfifo(full(name).constData(), 0644), 0); }
    void link(const QByteArray &target, const char *name) const
    {
        QCOMPARE(::symlink(target.constData(), full(name).constData()), 0);
    }
    void mode(const char *name, mode_t mode) const { QCOMPARE(::chmod(full(name).constData(), mode), 0); }
    void time(const char *name, time_t modified) const
    {
        const timespec times[] = { { modified, 0 }, { modified, 0 } };
        QCOMPARE(::utimensat(AT_FDCWD, full(name).constData(), times, 0), 0);
    }
    void remove(const char *name) const { QCOMPARE(::remove(full(name).constData()), 0); }

private:
    QByteArray full(const char *name) const { return m_path + name; }

    QByteArray m_path;
};

/// An ordinary user while it lives: the superuser may read every folder.
class OrdinaryUser {
public:
    OrdinaryUser()
    {
        if (m_isRoot)
            QCOMPARE(::seteuid(65534), 0);
    }
    ~OrdinaryUser()
    {
        if (m_isRoot)
            (void)!::seteuid(0);
    }
    Q_DISABLE_COPY_MOVE(OrdinaryUser)

private:
    bool m_isRoot = ::geteuid() == 0;
};
