#include "files/oldcopy.h"

#include "files/ownfile.h"
#include "files/stagedfile.h"
#include "files/statefolder.h"
#include "tests/files/savedfile.h"
#include "tests/testprogram.h"

#include <ctime>

#include <sys/file.h>

namespace {

FileCalls callsWithoutLocks()
{
    FileCalls calls = FileCalls::system();
    calls.flock = [](int, int) {
        errno = ENOLCK;
        return -1;
    };
    return calls;
}

} // namespace

/// What a program that was stopped in the middle of a save leaves behind, and what a later one makes of it.
class LeftoverTest : public QObject, SavedFile {
    Q_OBJECT

private slots:
    void init() { prepareFolder(); }

    void copyIsNamedByItsFile();
    void copyInUseIsLeftAlone();
    void unfinishedCopyGoes();
    void nameWithoutACopyGoes();
    void nameThatIsCutOffIsNone();
    void copyOfAnEarlierVersionIsFound();
    void strays_data();
    void strays();
    void strayInUseIsLeftAlone();
    void filesOfOthersAreLeftAlone();
    void foldersAreLookedThroughOnce();
    void lookIsBounded();
    void newFileThatIsTakenForAStrayIsMadeAgain();
    void withoutLocksNothingIsTaken();
    void withoutLocksAnOldCopyIsFound();
    void longNamesAreCutBetweenCharacters();

private:
    QByteArray copyName() const { return stateFolder() + ".marlopad-copy-0123456789abc"; }
};

void LeftoverTest::copyIsNamedByItsFile()
{
    const QByteArray name = prepare(Way::HardLink);
    OldCopy copy(FileCalls::system());
    QVERIFY(copy.make(name));
    const QByteArray left = copy.leave();
    const QList<LostCopy> copies = lostCopies();
    QCOMPARE(copies.size(), 1);
    QCOMPARE(copies[0].name, left);
    QCOMPARE(copies[0].file, name);
    QCOMPARE(copies[0].size, m_old.size());
    QVERIFY(copies[0].time > 0);
    removeLostCopy(left);
    QCOMPARE(keptFiles(), QStringList());
}

void LeftoverTest::copyInUseIsLeftAlone()
{
    OldCopy copy(FileCalls::system());
    QVERIFY(copy.make(prepare(Way::HardLink)));
    QVERIFY(lostCopies().isEmpty());
    QCOMPARE(keptFiles().size(), 2);
    QCOMPARE(copy.size(), m_old.size());
}

void LeftoverTest::unfinishedCopyGoes()
{
    QVERIFY(makePrivateFolder(FileCalls::system(), stateFolder()));
    writeFile(copyName(), "half of it");
    QVERIFY(lostCopies().isEmpty());
    QCOMPARE(keptFiles(), QStringList());
}

void LeftoverTest::nameWithoutACopyGoes()
{
    QVERIFY(makePrivateFolder(FileCalls::system(), stateFolder()));
    writeFile(copyName() + ".of", "/home/somebody/file.txt");
    writeFile(stateFolder() + "other.of", "of something else");
    QVERIFY(lostCopies().isEmpty());
    QCOMPARE(keptFiles(), QStringList(QStringLiteral("other.of")));
}

/// It would be another file's.
void LeftoverTest::nameThatIsCutOffIsNone()
{
    QVERIFY(makePrivateFolder(FileCalls::system(), stateFolder()));
    writeFile(copyName(), m_old);
    writeFile(copyName() + ".of", "/home/somebody/fi");
    QCOMPARE(lostCopies().size(), 1);
    QCOMPARE(lostCopies()[0].file, QByteArray());
}

void LeftoverTest::copyOfAnEarlierVersionIsFound()
{
    QVERIFY(makePrivateFolder(FileCalls::system(), stateFolder()));
    const QByteArray name = stateFolder() + ".marlopad-1y2p0ij32e8e";
    writeFile(name, m_old);
    const QList<LostCopy> copies = lostCopies();
    QCOMPARE(copies.size(), 1);
    QCOMPARE(copies[0].name, name);
    QCOMPARE(copies[0].file, QByteArray());
    QCOMPARE(contentOf(name), m_old);
}

void LeftoverTest::strays_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<bool>("goes");
    QTest::newRow("of a save") << QByteArray(".file.txt.marlopad-0123456789abc") << true;
    QTest::newRow("of a save of any bytes") << QByteArray(".\x83\x65\xff.marlopad-zzzzzzzzzzzzz") << true;
    QTest::newRow("not hidden") << QByteArray("file.txt.marlopad-0123456789abc") << false;
    QTest::newRow("digits missing") << QByteArray(".file.txt.marlopad-0123456789ab") << false;
    QTest::newRow("no digits") << QByteArray(".file.txt.marlopad-0123456789ABC") << false;
    QTest::newRow("no file's name") << QByteArray(".marlopad-0123456789abc") << false;
    QTest::newRow("a copy of old content") << QByteArray(".marlopad-copy-0123456789abc") << false;
    QTest::newRow("another program's") << QByteArray(".file.txt.other-0123456789abc") << false;
}

void LeftoverTest::strays()
{
    QFETCH(QByteArray, name);
    QFETCH(bool, goes);
    writeFile(m_folder + name, "half of it");
    removeStagedStrays(m_folder);
    QCOMPARE(listing().isEmpty(), goes);
}

void LeftoverTest::strayInUseIsLeftAlone()
{
    QByteArray name;
    const int fd = createOwnFile(FileCalls::system(), stagedPrefix(m_folder, "file.txt"), &name);
    QVERIFY(fd != -1);
    const QByteArray linked = m_folder + ".file.txt.marlopad-0123456789abc";
    writeFile(linked, "of two names");
    QCOMPARE(::link(linked.constData(), (m_folder + "other").constData()), 0);
    const QByteArray link = m_folder + ".file.txt.marlopad-0123456789abd";
    QCOMPARE(::symlink("other", link.constData()), 0);
    const QStringList before = listing();
    removeStagedStrays(m_folder);
    QCOMPARE(listing(), before);
    ::close(fd);
}

/// As another user's program sees them.
void LeftoverTest::filesOfOthersAreLeftAlone()
{
    FileCalls calls = FileCalls::system();
    calls.fstat = [](int file, struct stat *info) {
        const int result = ::fstat(file, info);
        info->st_uid += 1;
        return result;
    };
    writeFile(m_folder + ".file.txt.marlopad-0123456789abc", "staged");
    QVERIFY(makePrivateFolder(FileCalls::system(), stateFolder()));
    writeFile(copyName(), "not finished");
    removeStagedStrays(m_folder, calls);
    QVERIFY(lostCopies(calls).isEmpty());
    QCOMPARE(listing().size(), 1);
    QCOMPARE(keptFiles().size(), 1);
}

void LeftoverTest::foldersAreLookedThroughOnce()
{
    removeStagedStraysOnce(m_folder);
    writeFile(m_folder + ".file.txt.marlopad-0123456789abc", "half of it");
    removeStagedStraysOnce(m_folder);
    QCOMPARE(listing().size(), 1);
}

void LeftoverTest::lookIsBounded()
{
    for (int number = 0; number < 20; ++number)
        writeFile(m_folder + QByteArray::number(number), "");
    int found = 0;
    forEachName(FileCalls::system(), m_folder, 7, [&](const QByteArray &) { ++found; });
    QCOMPARE(found, 7);
    found = 0;
    forEachName(FileCalls::system(), m_folder + "missing/", 7, [&](const QByteArray &) { ++found; });
    QCOMPARE(found, 0);
}

/// Another program looks through the folder between the making of the file and its lock.
void LeftoverTest::newFileThatIsTakenForAStrayIsMadeAgain()
{
    QByteArray taken;
    FileCalls calls = FileCalls::system();
    calls.open = [&](const char *name, int flags, mode_t mode) {
        const int fd = ::open(name, flags, mode);
        if ((flags & O_CREAT) && taken.isEmpty()) {
            taken = name;
            ::unlink(name);
        }
        return fd;
    };
    QByteArray name;
    const int fd = createOwnFile(calls, m_folder + ".marlopad-", &name);
    QVERIFY(fd != -1);
    QVERIFY(name != taken);
    QCOMPARE(listing().size(), 1);
    ::close(fd);
}

void LeftoverTest::withoutLocksNothingIsTaken()
{
    const FileCalls calls = callsWithoutLocks();
    QByteArray name;
    const int fd = createOwnFile(calls, stagedPrefix(m_folder, "file.txt"), &name);
    QVERIFY(fd != -1);
    removeStagedStrays(m_folder, calls);
    QCOMPARE(listing().size(), 1);
    ::close(fd);
}

/// A save that is under way would have ended long since.
void LeftoverTest::withoutLocksAnOldCopyIsFound()
{
    const FileCalls calls = callsWithoutLocks();
    const QByteArray name = prepare(Way::HardLink);
    OldCopy copy(calls);
    QVERIFY(copy.make(name));
    QVERIFY(lostCopies(calls).isEmpty());
    const timespec anHourAgo{ ::time(nullptr) - 3600, 0 };
    const timespec times[] = { anHourAgo, anHourAgo };
    QCOMPARE(::futimens(copy.fd(), times), 0);
    QCOMPARE(lostCopies(calls).size(), 1);
    QCOMPARE(lostCopies(calls)[0].file, name);
    QCOMPARE(keptFiles().size(), 2);
}

void LeftoverTest::longNamesAreCutBetweenCharacters()
{
    const QByteArray name = QByteArray("x") + QByteArray("\xe3\x81\x82").repeated(84);
    writeFile(m_folder + name, m_old);
    QVERIFY(save(m_folder + name, m_new));
    QCOMPARE(contentOf(m_folder + name), m_new);
    QCOMPARE(shortName(name), QByteArrayView(name).first(100));
    QCOMPARE(shortName("x" + name), QByteArrayView("x" + name).first(98).toByteArray());
}

REGISTER_TEST(runCoreTest<LeftoverTest>)
#include "leftover_test.moc"
