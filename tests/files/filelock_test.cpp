#include "files/filelock.h"

#include "tests/files/savedfile.h"
#include "tests/testprogram.h"

#include <csignal>

#include <sys/file.h>
#include <sys/wait.h>

using namespace std::chrono_literals;

/// A lock that is a file: who has it, and what is left of it.
class FileLockTest : public QObject, SavedFile {
    Q_OBJECT

private slots:
    void init()
    {
        prepareFolder();
        m_lockName = m_folder + "lock";
    }

    void isForOneAtATime();
    void leavesNothingBehind();
    void leftByAKilledProcessIsNoObstacle();
    void isTakenWhenTheOtherEnds();
    void fileThatGoesBeforeItIsLockedIsMadeAgain();
    void withoutLocksNothingIsWaitedFor();

private:
    QByteArray m_lockName;
};

void FileLockTest::isForOneAtATime()
{
    FileLock one(m_lockName), other(m_lockName);
    QVERIFY(one.lock(0ms));
    QVERIFY(!other.lock(0ms));
    QCOMPARE(errno, EWOULDBLOCK);
    QCOMPARE(statOf(m_lockName).st_mode & 07777, mode_t(0600));
}

void FileLockTest::leavesNothingBehind()
{
    {
        FileLock one(m_lockName), other(m_lockName);
        QVERIFY(one.lock(0ms));
        QVERIFY(!other.lock(0ms));
        QCOMPARE(listing(), QStringList(QStringLiteral("lock")));
    }
    QCOMPARE(listing(), QStringList());
}

void FileLockTest::leftByAKilledProcessIsNoObstacle()
{
    const pid_t child = ::fork();
    if (child == 0) {
        FileLock lock(m_lockName);
        ::_exit(lock.lock(0ms) ? ::kill(::getpid(), SIGKILL) : 1);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    QVERIFY(WIFSIGNALED(status));
    QCOMPARE(listing(), QStringList(QStringLiteral("lock")));
    {
        FileLock lock(m_lockName);
        QVERIFY(lock.lock(0ms));
    }
    QCOMPARE(listing(), QStringList());
}

void FileLockTest::isTakenWhenTheOtherEnds()
{
    FileCalls calls = FileCalls::system();
    auto one = std::make_unique<FileLock>(m_lockName);
    QVERIFY(one->lock(0ms));
    calls.flock = [&one](int fd, int operation) {
        const int result = ::flock(fd, operation);
        const int error = errno;
        one.reset();
        errno = error;
        return result;
    };
    FileLock other(m_lockName, calls);
    QVERIFY(other.lock(1min));
    QVERIFY(!FileLock(m_lockName).lock(0ms));
}

void FileLockTest::fileThatGoesBeforeItIsLockedIsMadeAgain()
{
    FileCalls calls = FileCalls::system();
    bool isFirst = true;
    calls.flock = [&](int fd, int operation) {
        if (std::exchange(isFirst, false))
            ::unlink(m_lockName.constData());
        return ::flock(fd, operation);
    };
    FileLock lock(m_lockName, calls);
    QVERIFY(lock.lock(1min));
    QCOMPARE(listing(), QStringList(QStringLiteral("lock")));
    QVERIFY(!FileLock(m_lockName).lock(0ms));
}

void FileLockTest::withoutLocksNothingIsWaitedFor()
{
    const FileCalls calls =
        withFaults(FileCalls::system(), [](const QByteArray &call) { return call == "flock" ? ENOLCK : 0; });
    FileLock lock(m_lockName, calls);
    QVERIFY(!lock.lock(1min));
    QCOMPARE(errno, ENOLCK);
    QCOMPARE(listing(), QStringList());
}

REGISTER_TEST(runCoreTest<FileLockTest>)
#include "filelock_test.moc"
