#include "files/copycontent.h"
#include "files/stagedfolders.h"
#include "files/untoldcopy.h"
#include "tests/files/savedfile.h"
#include "tests/seeds.h"
#include "tests/testprogram.h"

#include <QRandomGenerator>
#include <QSet>

#include <csignal>

#include <sys/resource.h>

/// What a save leaves behind when its steps fail: the old content or the new one, whole.
class SafeFileFailuresTest : public QObject, SavedFile {
    Q_OBJECT

private slots:
    void init() { prepareFolder(); }

    void everyFailingStep_data();
    void everyFailingStep();
    void interruptedCallsAreRepeated_data();
    void interruptedCallsAreRepeated();
    void shortWritesAndReadsAreContinued();
    void writeOfNothingIsAnError();
    void brokenOverwritingPutsTheOldContentBack();
    void contentThatEndsEarlyIsNotTheNewOne();
    void oldContentThatCannotBePutBackIsKept();
    void keepsTheOldContentWhenAsked();
    void writesNothingWhenTheOldContentCannotBeKept();
    void stateFolderIsToBlameForItselfAlone_data();
    void stateFolderIsToBlameForItselfAlone();
    void keptContentGoesAwayWhenNothingIsWritten();
    void copyingThatIsNotWanted_data();
    void copyingThatIsNotWanted();
    void randomFailures_data();
    void randomFailures();
    void fullDisk_data();
    void fullDisk();
    void failingSyncIsTold_data() { fullDisk_data(); }
    void failingSyncIsTold();
};

void SafeFileFailuresTest::everyFailingStep_data()
{
    QTest::addColumn<int>("way");
    QTest::addColumn<QSet<QByteArray>>("fatal");
    const QSet<QByteArray> always{ "readlink", "stat", "open", "pwrite" };
    QTest::newRow("new file") << int(Way::NewFile)
                              << always + QSet<QByteArray>{ "fchmod", "fsync", "rename" };
    QTest::newRow("replaced") << int(Way::Replace) << always + QSet<QByteArray>{ "fstat", "fsync", "rename" };
    QTest::newRow("through a link") << int(Way::ThroughLink)
                                    << always + QSet<QByteArray>{ "fstat", "fsync", "rename" };
    const QSet<QByteArray> overwriting{ "fstat", "pread", "mkdir", "ftruncate", "fsync" };
    QTest::newRow("hard link") << int(Way::HardLink) << always + overwriting;
    QTest::newRow("closed folder") << int(Way::ClosedFolder) << always + overwriting;
}

/// Lets the first call fail, then the second, and so on until a save needs no more calls.
void SafeFileFailuresTest::everyFailingStep()
{
    QFETCH(int, way);
    QFETCH(QSet<QByteArray>, fatal);
    QSet<QByteArray> fatalCalls;
    bool reached = true;
    for (int step = 1; reached; ++step) {
        init();
        const QByteArray name = prepare(Way(way));
        const QStringList before = listing();
        int count = 0;
        QByteArray failed;
        const FileCalls calls = withFaults(callsFor(Way(way)), [&](const QByteArray &call) {
            if (++count != step)
                return 0;
            failed = call;
            return EIO;
        });
        SafeFile file(name, calls);
        const bool saved = save(file, m_new);
        reached = count >= step;
        const QByteArray told = failed + " at step " + QByteArray::number(step);
        QCOMPARE(file.keptCopy(), QByteArray());
        QVERIFY2(saved || reached, told.constData());
        const bool isNew = Way(way) == Way::NewFile;
        QVERIFY2(saved ? contentOf(name) == m_new : isNew || contentOf(name) == m_old, told.constData());
        if (!saved)
            fatalCalls.insert(failed);
        if (failed != "unlink") {
            const QStringList wanted = saved && isNew ? QStringList(QStringLiteral("file.txt")) : before;
            QVERIFY2(listing() == wanted, told.constData());
            QVERIFY2(keptFiles().isEmpty(), told.constData());
        }
    }
    QCOMPARE(fatalCalls, fatal);
}

void SafeFileFailuresTest::interruptedCallsAreRepeated_data()
{
    QTest::addColumn<QByteArray>("interrupted");
    for (const char *call : { "open", "pread", "pwrite", "fsync", "ftruncate", "fchmod", "flistxattr" })
        QTest::newRow(call) << QByteArray(call);
}

void SafeFileFailuresTest::interruptedCallsAreRepeated()
{
    QFETCH(QByteArray, interrupted);
    for (const Way way : { Way::NewFile, Way::Replace, Way::HardLink, Way::ClosedFolder }) {
        init();
        const QByteArray name = prepare(way);
        bool interrupt = false;
        const FileCalls calls = withFaults(callsFor(way), [&](const QByteArray &call) {
            if (call != interrupted)
                return 0;
            interrupt = !interrupt;
            return interrupt ? EINTR : 0;
        });
        QVERIFY(save(name, m_new, calls));
        QCOMPARE(contentOf(name), m_new);
    }
}

void SafeFileFailuresTest::shortWritesAndReadsAreContinued()
{
    FileCalls calls = FileCalls::system();
    calls.pwrite = [](int fd, const void *from, size_t size, off_t offset) {
        return ::pwrite(fd, from, qMin<size_t>(size, 1 + size / 3), offset);
    };
    calls.pread = [](int fd, void *to, size_t size, off_t offset) {
        return ::pread(fd, to, qMin<size_t>(size, 7919), offset);
    };
    for (const Way way : { Way::NewFile, Way::Replace, Way::HardLink }) {
        init();
        const QByteArray name = prepare(way);
        QVERIFY(save(name, m_new, calls));
        QVERIFY(contentOf(name) == m_new);
    }
}

void SafeFileFailuresTest::writeOfNothingIsAnError()
{
    FileCalls calls = FileCalls::system();
    calls.pwrite = [](int, const void *, size_t, off_t) { return ssize_t(0); };
    const QByteArray name = prepare(Way::Replace);
    QVERIFY(!save(name, m_new, calls));
    QCOMPARE(contentOf(name), m_old);
}

void SafeFileFailuresTest::brokenOverwritingPutsTheOldContentBack()
{
    const QByteArray name = prepare(Way::HardLink);
    const ino_t inode = statOf(name).st_ino;
    bool full = true;
    FileCalls calls = FileCalls::system();
    calls.pwrite = [&](int fd, const void *from, size_t size, off_t offset) -> ssize_t {
        if (full && inodeOf(fd) == inode && offset > 0) {
            full = false;
            errno = ENOSPC;
            return -1;
        }
        return ::pwrite(fd, from, size, offset);
    };
    SafeFile file(name, calls);
    QVERIFY(!save(file, m_new));
    QVERIFY(!full);
    QCOMPARE(contentOf(name), m_old);
    QCOMPARE(file.keptCopy(), QByteArray());
    QCOMPARE(keptFiles(), QStringList());
    QCOMPARE(listing().size(), 2);
}

/// As some disks answer for what they have lost.
void SafeFileFailuresTest::contentThatEndsEarlyIsNotTheNewOne()
{
    const QByteArray name = prepare(Way::HardLink);
    bool endsEarly = true;
    FileCalls calls = FileCalls::system();
    calls.pread = [&](int fd, void *to, size_t size, off_t offset) -> ssize_t {
        return offset >= copiedBlock && std::exchange(endsEarly, false) ? 0 : ::pread(fd, to, size, offset);
    };
    SafeFile file(name, calls);
    QVERIFY(!save(file, m_new));
    QVERIFY(!endsEarly);
    QCOMPARE(contentOf(name), m_old);
    QCOMPARE(file.keptCopy(), QByteArray());
    QCOMPARE(keptFiles(), QStringList());
}

void SafeFileFailuresTest::oldContentThatCannotBePutBackIsKept()
{
    const QByteArray name = prepare(Way::HardLink);
    const ino_t inode = statOf(name).st_ino;
    bool broken = false;
    FileCalls calls = FileCalls::system();
    calls.pwrite = [&](int fd, const void *from, size_t size, off_t offset) -> ssize_t {
        broken = broken || (inodeOf(fd) == inode && offset > 0);
        if (broken) {
            errno = EIO;
            return -1;
        }
        return ::pwrite(fd, from, size, offset);
    };
    SafeFile file(name, calls);
    QVERIFY(!save(file, m_new));
    QVERIFY(broken);
    QVERIFY(file.keptCopy().startsWith(stateFolder()));
    QCOMPARE(contentOf(file.keptCopy()), m_old);
    QCOMPARE(statOf(file.keptCopy()).st_mode & 07777, mode_t(0600));
    QCOMPARE(contentOf(file.keptCopy() + ".of"), name + '\0');
    QCOMPARE(keptFiles().size(), 2);
    QCOMPARE(listing().size(), 2);
}

void SafeFileFailuresTest::keepsTheOldContentWhenAsked()
{
    for (const Way way : { Way::Replace, Way::ThroughLink, Way::HardLink, Way::ClosedFolder }) {
        init();
        const QByteArray name = prepare(way);
        const FileCalls calls = callsFor(way);
        SafeFile file(name, calls);
        file.keepOldContent();
        QVERIFY(save(file, m_new));
        QCOMPARE(contentOf(name), m_new);
        QCOMPARE(contentOf(file.keptCopy()), m_old);
        QCOMPARE(statOf(file.keptCopy()).st_mode & 07777, mode_t(0600));
        QVERIFY(file.keptCopy().endsWith("-file.txt"));
        QCOMPARE(keptFiles().size(), 1);
        QCOMPARE(untoldCopies(), QByteArrayList{ file.keptCopy() });
    }
    init();
    SafeFile newFile(prepare(Way::NewFile));
    newFile.keepOldContent();
    QVERIFY(save(newFile, m_new));
    QCOMPARE(newFile.keptCopy(), QByteArray());
    QCOMPARE(keptFiles(), QStringList());
}

void SafeFileFailuresTest::writesNothingWhenTheOldContentCannotBeKept()
{
    const QByteArray name = prepare(Way::Replace);
    const ino_t inode = statOf(name).st_ino;
    const QStringList before = listing();
    FileCalls calls = FileCalls::system();
    calls.pread = [inode](int fd, void *to, size_t size, off_t offset) -> ssize_t {
        if (inodeOf(fd) != inode)
            return ::pread(fd, to, size, offset);
        errno = EIO;
        return -1;
    };
    SafeFile file(name, calls);
    file.keepOldContent();
    QVERIFY(!save(file, m_new));
    QCOMPARE(file.keptCopy(), QByteArray());
    QCOMPARE(contentOf(name), m_old);
    QCOMPARE(statOf(name).st_ino, inode);
    QCOMPARE(listing(), before);
    QCOMPARE(keptFiles(), QStringList());
}

void SafeFileFailuresTest::stateFolderIsToBlameForItselfAlone_data()
{
    QTest::addColumn<bool>("isFileClosed");
    QTest::newRow("file that may be written and not read") << true;
    QTest::newRow("state folder that cannot be made") << false;
}

void SafeFileFailuresTest::stateFolderIsToBlameForItselfAlone()
{
    QFETCH(bool, isFileClosed);
    const QByteArray name = prepare(Way::HardLink);
    FileCalls calls = FileCalls::system();
    calls.open = [&](const char *path, int flags, mode_t mode) {
        if (isFileClosed && path == name && (flags & O_ACCMODE) == O_RDONLY) {
            errno = EACCES;
            return -1;
        }
        return ::open(path, flags, mode);
    };
    calls.mkdir = [&](const char *path, mode_t mode) {
        errno = EROFS;
        return isFileClosed ? ::mkdir(path, mode) : -1;
    };
    SafeFile file(name, calls);
    QVERIFY(!save(file, m_new));
    QCOMPARE(contentOf(name), m_old);
    QCOMPARE(file.isStateFolderMissed(), !isFileClosed);
}

void SafeFileFailuresTest::keptContentGoesAwayWhenNothingIsWritten()
{
    const QByteArray name = prepare(Way::Replace);
    FileCalls calls = FileCalls::system();
    calls.rename = [](const char *, const char *) {
        errno = EIO;
        return -1;
    };
    SafeFile file(name, calls);
    file.keepOldContent();
    QVERIFY(!save(file, m_new));
    QCOMPARE(contentOf(name), m_old);
    QCOMPARE(keptFiles(), QStringList());
}

void SafeFileFailuresTest::copyingThatIsNotWanted_data()
{
    QTest::addColumn<int>("way");
    QTest::addColumn<bool>("keepsOld");
    QTest::newRow("kept copy") << int(Way::Replace) << true;
    QTest::newRow("hard link") << int(Way::HardLink) << false;
    QTest::newRow("hard link, kept copy") << int(Way::HardLink) << true;
    QTest::newRow("closed folder") << int(Way::ClosedFolder) << false;
}

/// Whenever that is said, the old content is there and nothing besides.
void SafeFileFailuresTest::copyingThatIsNotWanted()
{
    QFETCH(int, way);
    QFETCH(bool, keepsOld);
    constexpr int blocks = 3;
    const QByteArray old(blocks * copiedBlock, 'o');
    bool isSaved = false;
    int asked = 0;
    while (!isSaved) {
        init();
        const QByteArray name = prepare(Way(way));
        writeFile(name, old);
        const QStringList before = listing();
        const FileCalls calls = callsFor(Way(way));
        SafeFile file(name, calls);
        if (keepsOld)
            file.keepOldContent();
        QVERIFY(file.open() && file.write(m_new) && file.sync());
        const qint64 toCopy = file.bytesToCopy();
        qint64 copied = 0;
        int left = ++asked;
        isSaved = file.commit([&](qint64 bytes) {
            copied += bytes;
            return --left > 0;
        });
        QVERIFY(contentOf(name) == (isSaved ? m_new : old));
        QCOMPARE(listing(), before);
        QCOMPARE(keptFiles().size(), isSaved && keepsOld ? 1 : 0);
        QCOMPARE(file.keptCopy().isEmpty(), !isSaved || !keepsOld);
        if (isSaved)
            QCOMPARE(copied, toCopy);
    }
    QVERIFY(asked > blocks);
}

void SafeFileFailuresTest::randomFailures_data()
{
    addSeeds(60);
}

/// However many calls fail: the old content is somewhere whole, or the new one is under the file's name.
void SafeFileFailuresTest::randomFailures()
{
    QFETCH(quint32, seed);
    QRandomGenerator random(seed);
    for (const Way way : { Way::NewFile, Way::Replace, Way::ThroughLink, Way::HardLink, Way::ClosedFolder }) {
        init();
        const QByteArray name = prepare(way);
        const int rate = 2 + random.bounded(30);
        const FileCalls calls = withFaults(callsFor(way), [&](const QByteArray &) {
            static constexpr int errors[] = { EIO, ENOSPC, EPERM, EACCES, EINTR, EROFS };
            return random.bounded(rate) == 0 ? errors[random.bounded(int(std::size(errors)))] : 0;
        });
        SafeFile file(name, calls);
        const bool saved = save(file, m_new);
        if (saved)
            QVERIFY(contentOf(name) == m_new);
        else if (way == Way::NewFile)
            QVERIFY(!QFile::exists(QFile::decodeName(name)));
        else
            QVERIFY(contentOf(file.keptCopy().isEmpty() ? name : file.keptCopy()) == m_old);
    }
}

void SafeFileFailuresTest::fullDisk_data()
{
    QTest::addColumn<int>("way");
    QTest::newRow("new file") << int(Way::NewFile);
    QTest::newRow("replaced") << int(Way::Replace);
    QTest::newRow("hard link") << int(Way::HardLink);
    QTest::newRow("closed folder") << int(Way::ClosedFolder);
}

/// The system's own refusal: a limit on the size of files stands for the disk's end.
void SafeFileFailuresTest::fullDisk()
{
    QFETCH(int, way);
    const QByteArray name = prepare(Way(way));
    const QStringList before = listing();
    const auto handler = ::signal(SIGXFSZ, SIG_IGN);
    rlimit limit;
    QCOMPARE(::getrlimit(RLIMIT_FSIZE, &limit), 0);
    const rlimit small{ 100000, limit.rlim_max };
    QCOMPARE(::setrlimit(RLIMIT_FSIZE, &small), 0);
    const bool saved = save(name, m_new, callsFor(Way(way)));
    QCOMPARE(::setrlimit(RLIMIT_FSIZE, &limit), 0);
    ::signal(SIGXFSZ, handler);
    QVERIFY(!saved);
    QCOMPARE(listing(), before);
    QCOMPARE(keptFiles(), QStringList());
    if (Way(way) != Way::NewFile)
        QCOMPARE(contentOf(name), m_old);
}

/// What may not be on the disk is not saved, whichever file's sync fails.
void SafeFileFailuresTest::failingSyncIsTold()
{
    QFETCH(int, way);
    bool isReached = true;
    for (int step = 1; isReached; ++step) {
        init();
        const QByteArray name = prepare(Way(way));
        noteStagedFolder(m_folder);
        int count = 0;
        FileCalls calls = callsFor(Way(way));
        calls.fsync = [&count, step](int fd) {
            struct stat info = {};
            ::fstat(fd, &info);
            errno = EIO;
            return S_ISREG(info.st_mode) && ++count == step ? -1 : 0;
        };
        const bool isSaved = save(name, m_new, calls);
        isReached = count >= step;
        QCOMPARE(isSaved, !isReached);
        if (!isSaved && Way(way) != Way::NewFile)
            QVERIFY(contentOf(name) == m_old);
    }
}

REGISTER_TEST(runCoreTest<SafeFileFailuresTest>)
#include "safefilefailures_test.moc"
