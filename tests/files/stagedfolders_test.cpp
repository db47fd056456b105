#include "files/stagedfolders.h"

#include "files/ownfile.h"
#include "files/stagedfile.h"
#include "tests/files/savedfile.h"
#include "tests/testprogram.h"

#include <ctime>
#include <utility>

#include <sys/statvfs.h>

using namespace Qt::StringLiterals;

/// Where saves have written, as a later start knows it.
class StagedFoldersTest : public QObject, SavedFile {
    Q_OBJECT

private slots:
    void init() { prepareFolder(); }

    void saveThatWasStoppedIsClearedAway();
    void folderIsNotedOnce();
    void noteThatIsTornIsWrittenAnew();
    void whatIsInUseIsLookedForAgain();
    void folderThatCannotBeReadIsLookedForAgain();
    void folderThatIsAwayIsLookedForAgain_data();
    void folderThatIsAwayIsLookedForAgain();
    void folderThatStaysAwayIsForgotten();
    void saveThatBeginsMeanwhileIsNoted();
    void saveGoesOnWithoutANote();
    void allOfALargeFolderIsLookedThrough();

private:
    QByteArray notesFolder() const { return stateFolder() + "saves/"; }
    QStringList notes() const
    {
        return QDir(QFile::decodeName(notesFolder())).entryList(QDir::Files | QDir::Hidden);
    }
    QByteArray stray() const { return m_folder + ".file.txt.marlopad-0123456789abc"; }
};

/// As it is where its program was killed: the file is there and nobody has locked it.
void StagedFoldersTest::saveThatWasStoppedIsClearedAway()
{
    SafeFile file(m_folder + "file.txt");
    QVERIFY(file.open());
    writeFile(stray(), "half of it");
    file.giveUp();
    QCOMPARE(listing().size(), 1);
    removeNotedStrays();
    QCOMPARE(listing(), QStringList());
    QCOMPARE(notes(), QStringList());
}

void StagedFoldersTest::folderIsNotedOnce()
{
    int syncs = 0;
    FileCalls calls = FileCalls::system();
    calls.fsync = [&syncs](int) {
        ++syncs;
        return 0;
    };
    noteStagedFolder(m_folder, calls);
    QVERIFY(syncs > 0);
    syncs = 0;
    noteStagedFolder(m_folder, calls);
    QCOMPARE(syncs, 0);
    QCOMPARE(notes().size(), 1);
    noteStagedFolder(m_folder + "other/", calls);
    QCOMPARE(notes().size(), 2);
}

/// After a power cut.
void StagedFoldersTest::noteThatIsTornIsWrittenAnew()
{
    noteStagedFolder(m_folder);
    const QByteArray note = notesFolder() + QFile::encodeName(notes().value(0));
    const QByteArray whole = contentOf(note);
    writeFile(note, whole.first(whole.size() / 2));
    noteStagedFolder(m_folder);
    QCOMPARE(contentOf(note), whole);
    writeFile(note, whole.first(whole.size() / 2));
    removeNotedStrays();
    QCOMPARE(notes(), QStringList());
}

void StagedFoldersTest::whatIsInUseIsLookedForAgain()
{
    noteStagedFolder(m_folder);
    QByteArray name;
    const int fd = createOwnFile(FileCalls::system(), stagedPrefix(m_folder, "file.txt"), &name);
    QVERIFY(fd != -1);
    removeNotedStrays();
    QCOMPARE(listing().size(), 1);
    QCOMPARE(notes().size(), 1);
    ::close(fd); // its program was killed
    removeNotedStrays();
    QCOMPARE(listing().size(), 0);
    QCOMPARE(notes().size(), 0);
}

void StagedFoldersTest::folderThatCannotBeReadIsLookedForAgain()
{
    noteStagedFolder(m_folder);
    writeFile(stray(), "half of it");
    FileCalls calls = FileCalls::system();
    calls.opendir = [this](const char *name) -> DIR * {
        if (name != m_folder)
            return ::opendir(name);
        errno = EIO;
        return nullptr;
    };
    removeNotedStrays(calls);
    QCOMPARE(notes().size(), 1);
    removeNotedStrays();
    QCOMPARE(notes().size(), 0);
    QCOMPARE(listing().size(), 0);
}

void StagedFoldersTest::folderThatIsAwayIsLookedForAgain_data()
{
    QTest::addColumn<QStringList>("instead");
    QTest::addColumn<bool>("isElsewhere");
    QTest::newRow("nothing") << QStringList() << false;
    QTest::newRow("an empty mount point") << QStringList{ u"."_s } << true;
    QTest::newRow("an empty folder of the same disk") << QStringList{ u"."_s } << false;
    QTest::newRow("a mount point that is not empty") << QStringList{ u"."_s, u"other.txt"_s } << true;
}

/// A card that is out at a start, and back at a later one.
void StagedFoldersTest::folderThatIsAwayIsLookedForAgain()
{
    QFETCH(QStringList, instead);
    QFETCH(bool, isElsewhere);
    const QDir root(m_dir->path());
    const QByteArray card = m_folder + "card/";
    const QByteArray stray = card + ".file.txt.marlopad-0123456789abc";
    QVERIFY(root.mkdir(u"card"_s));
    writeFile(card + "file.txt", m_old);
    writeFile(stray, "half of it");
    noteStagedFolder(card);
    QVERIFY(QDir().rename(root.filePath(u"card"_s), root.filePath(u"out"_s)));
    for (const QString &name : instead) {
        if (name == u"."_s)
            QVERIFY(root.mkdir(u"card"_s));
        else
            writeFile(card + name.toUtf8(), "");
    }
    FileCalls calls = FileCalls::system();
    calls.statvfs = [isElsewhere](const char *name, struct statvfs *info) {
        const int result = ::statvfs(name, info);
        info->f_fsid += isElsewhere ? 1 : 0;
        return result;
    };
    for (int starts = 0; starts < 2; ++starts)
        removeNotedStrays(calls);
    QCOMPARE(notes().size(), 1);
    QDir(root.filePath(u"card"_s)).removeRecursively();
    QVERIFY(QDir().rename(root.filePath(u"out"_s), root.filePath(u"card"_s)));
    QVERIFY(QFile::exists(QFile::decodeName(stray)));
    removeNotedStrays();
    QVERIFY(!QFile::exists(QFile::decodeName(stray)));
    QCOMPARE(notes(), QStringList());
}

void StagedFoldersTest::folderThatStaysAwayIsForgotten()
{
    constexpr time_t day = 24 * 60 * 60;
    noteStagedFolder(m_folder + "gone/");
    for (const int days : { 29, 31 }) {
        const timespec written{ time(nullptr) - days * day, 0 };
        const timespec times[2] = { written, written };
        const QByteArray note = notesFolder() + QFile::encodeName(notes().value(0));
        QCOMPARE(::utimensat(AT_FDCWD, note.constData(), times, 0), 0);
        removeNotedStrays();
        QCOMPARE(notes().size(), days < 30 ? 1 : 0);
    }
}

/// In a folder of which everything was read by then.
void StagedFoldersTest::saveThatBeginsMeanwhileIsNoted()
{
    writeFile(m_folder + "file.txt", m_old);
    noteStagedFolder(m_folder);
    FileCalls calls = FileCalls::system();
    bool isBeingRead = false;
    bool isBegun = false;
    calls.opendir = [&](const char *name) {
        DIR *const folder = ::opendir(name);
        isBeingRead = folder && name == m_folder;
        return folder;
    };
    calls.closedir = [&](DIR *folder) {
        if (std::exchange(isBeingRead, false)) {
            noteStagedFolder(m_folder);
            writeFile(stray(), "half of it");
            isBegun = true;
        }
        return ::closedir(folder);
    };
    removeNotedStrays(calls);
    QVERIFY(isBegun);
    QCOMPARE(listing().size(), 2);
    removeNotedStrays();
    QCOMPARE(listing(), QStringList{ u"file.txt"_s });
    QCOMPARE(notes(), QStringList());
}

void StagedFoldersTest::saveGoesOnWithoutANote()
{
    FileCalls calls = FileCalls::system();
    calls.mkdir = [](const char *, mode_t) {
        errno = EROFS;
        return -1;
    };
    QVERIFY(save(m_folder + "file.txt", m_new, calls));
    QCOMPARE(contentOf(m_folder + "file.txt"), m_new);
    QCOMPARE(notes().size(), 0);
}

void StagedFoldersTest::allOfALargeFolderIsLookedThrough()
{
    noteStagedFolder(m_folder);
    constexpr int names = 10100; // no order is promised
    for (int number = 0; number < names; ++number)
        writeFile(m_folder + QByteArray::number(number), "");
    for (int number = 0; number < 100; ++number)
        writeFile(m_folder + ".file.txt.marlopad-" + QByteArray::number(number).rightJustified(13, '0'), "");
    removeNotedStrays();
    QCOMPARE(listing().size(), names);
}

REGISTER_TEST(runCoreTest<StagedFoldersTest>)
#include "stagedfolders_test.moc"
