#include "files/stagedfolders.h"

#include "files/ownfile.h"
#include "files/stagedfile.h"
#include "tests/files/savedfile.h"
#include "tests/testprogram.h"

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
    void folderThatIsGoneIsForgotten();
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

void StagedFoldersTest::folderThatIsGoneIsForgotten()
{
    noteStagedFolder(m_folder + "gone/");
    removeNotedStrays();
    QCOMPARE(notes().size(), 0);
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
