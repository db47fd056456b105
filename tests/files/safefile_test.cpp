#include "files/fileattributes.h"
#include "files/stagedfolders.h"
#include "tests/files/attributetable.h"
#include "tests/files/savedfile.h"
#include "tests/testprogram.h"

#include <sys/xattr.h>

namespace {

/// Takes the set-id bits away at each write, as the system does when anybody but root writes.
FileCalls asOrdinaryUser(FileCalls calls)
{
    const auto takeBits = [](int fd) {
        struct stat info = {};
        ::fstat(fd, &info);
        ::fchmod(fd, info.st_mode & 01777);
    };
    calls.pwrite = [inner = calls.pwrite, takeBits](int fd, const void *from, size_t size, off_t offset) {
        takeBits(fd);
        return inner(fd, from, size, offset);
    };
    calls.ftruncate = [inner = calls.ftruncate, takeBits](int fd, off_t size) {
        takeBits(fd);
        return inner(fd, size);
    };
    return calls;
}

} // namespace

/// What a save leaves behind where all goes well, and what is refused.
class SafeFileTest : public QObject, SavedFile {
    Q_OBJECT

private slots:
    void init() { prepareFolder(); }

    void newFileHasTheContent();
    void newFileFollowsTheFileMask();
    void contentIsOnTheDiskBeforeItHasTheName();
    void newFileFollowsItsFoldersAccessList();
    void replacedFileIsAnotherFileWithTheSameRights_data();
    void replacedFileIsAnotherFileWithTheSameRights();
    void replacedFileKeepsItsExtendedAttributes();
    void inheritedAttributesAreNotAdded();
    void realAttributesStay();
    void temporaryFileIsPrivateUntilItHasItsName();
    void linksStay_data();
    void linksStay();
    void linkInACircleIsRefused();
    void hardLinksStay();
    void versionIsThatOfTheFile_data();
    void versionIsThatOfTheFile();
    void ownerThatCannotBeGivenIsKeptInPlace();
    void setIdBitsStay_data();
    void setIdBitsStay();
    void setIdBitsStayWithTheOldContent();
    void setIdBitsOfAnothersFile();
    void oldContentIsOnTheDiskBeforeItIsOverwritten_data();
    void oldContentIsOnTheDiskBeforeItIsOverwritten();
    void closedFolderIsWrittenInPlace();
    void newFileInAClosedFolderIsRefused();
    void renameThatIsRefusedIsWrittenInPlace();
    void fileThatMayNotBeWrittenIsRefused();
    void whatIsNoFileIsRefused_data();
    void whatIsNoFileIsRefused();
    void missingFolderIsRefused();
    void abandonedSaveLeavesNothing();
    void longAndShortContentsInPlace_data();
    void longAndShortContentsInPlace();
    void anyBytesInTheName();
};

void SafeFileTest::newFileHasTheContent()
{
    const QByteArray name = prepare(Way::NewFile);
    QVERIFY(save(name, m_new));
    QCOMPARE(contentOf(name), m_new);
    QCOMPARE(listing(), QStringList(QStringLiteral("file.txt")));
    QVERIFY(save(name, QByteArray()));
    QCOMPARE(contentOf(name), QByteArray());
}

void SafeFileTest::contentIsOnTheDiskBeforeItHasTheName()
{
    const QByteArray name = prepare(Way::Replace);
    noteStagedFolder(m_folder);
    QByteArrayList order;
    FileCalls calls = callsFor(Way::Replace);
    calls.pwrite = [&order, inner = calls.pwrite](int fd, const void *from, size_t size, off_t offset) {
        order << "write";
        return inner(fd, from, size, offset);
    };
    calls.fsync = [&order, inner = calls.fsync](int fd) {
        struct stat info = {};
        ::fstat(fd, &info);
        order << (S_ISDIR(info.st_mode) ? "sync folder" : "sync file");
        return inner(fd);
    };
    calls.rename = [&order, inner = calls.rename](const char *from, const char *to) {
        order << "rename";
        return inner(from, to);
    };
    QVERIFY(save(name, QByteArray("new"), calls));
    QCOMPARE(order, (QByteArrayList{ "write", "sync file", "rename", "sync folder" }));
}

void SafeFileTest::newFileFollowsTheFileMask()
{
    const mode_t before = ::umask(027);
    const QByteArray name = prepare(Way::NewFile);
    QVERIFY(save(name, m_new));
    QCOMPARE(::umask(before), mode_t(027));
    QCOMPARE(statOf(name).st_mode & 07777, mode_t(0640));
}

void SafeFileTest::newFileFollowsItsFoldersAccessList()
{
    // user::rw- group::r-- group:1234:rwx mask::rwx other::---
    const QByteArray list = QByteArray::fromHex("02000000"
                                                "01000600ffffffff"
                                                "04000400ffffffff"
                                                "08000700d2040000"
                                                "10000700ffffffff"
                                                "20000000ffffffff");
    AttributeTable attributes;
    attributes.files[statOf(m_folder).st_ino]["system.posix_acl_default"] = list;
    const QByteArray name = prepare(Way::NewFile);
    QVERIFY(save(name, m_new, attributes.over(FileCalls::system())));
    QCOMPARE(statOf(name).st_mode & 07777, mode_t(0660));
}

void SafeFileTest::replacedFileIsAnotherFileWithTheSameRights_data()
{
    QTest::addColumn<int>("mode");
    QTest::newRow("private 0600") << 0600;
    QTest::newRow("group may write 0664") << 0664;
    QTest::newRow("script 0755") << 0755;
    QTest::newRow("set-group-id 02755") << 02755;
    QTest::newRow("only the owner may write 0200") << 0200;
}

void SafeFileTest::replacedFileIsAnotherFileWithTheSameRights()
{
    QFETCH(int, mode);
    const QByteArray name = prepare(Way::Replace);
    QCOMPARE(::chmod(name.constData(), mode_t(mode)), 0);
    const struct stat before = statOf(name);
    QVERIFY(save(name, m_new));
    const struct stat after = statOf(name);
    QCOMPARE(after.st_mode, before.st_mode);
    QCOMPARE(after.st_uid, before.st_uid);
    QCOMPARE(after.st_gid, before.st_gid);
    QVERIFY(after.st_ino != before.st_ino);
    QCOMPARE(after.st_size, off_t(m_new.size()));
    QCOMPARE(listing().size(), 1);
}

void SafeFileTest::replacedFileKeepsItsExtendedAttributes()
{
    const QByteArray name = prepare(Way::Replace);
    AttributeTable attributes;
    const std::map<QByteArray, QByteArray> wanted{ { "user.note", "hello" }, { "user.empty", "" },
        { "user.binary", QByteArray("\0\xff\n", 3) }, { "system.posix_acl_access", QByteArray(300, 'a') } };
    attributes.files[statOf(name).st_ino] = wanted;
    QVERIFY(save(name, m_new, attributes.over(FileCalls::system())));
    QVERIFY(attributes.files[statOf(name).st_ino] == wanted);
    QCOMPARE(contentOf(name), m_new);
}

void SafeFileTest::inheritedAttributesAreNotAdded()
{
    const QByteArray name = prepare(Way::Replace);
    AttributeTable attributes;
    attributes.files[statOf(name).st_ino] = { { "user.note", "hello" } };
    FileCalls calls = attributes.over(FileCalls::system());
    calls.open = [&, inner = calls.open](const char *file, int flags, mode_t mode) {
        const int fd = inner(file, flags, mode);
        if (flags & O_CREAT)
            attributes.files[inodeOf(fd)]["system.posix_acl_access"] = "from the folder";
        return fd;
    };
    QVERIFY(save(name, m_new, calls));
    const std::map<QByteArray, QByteArray> wanted{ { "user.note", "hello" } };
    QVERIFY(attributes.files[statOf(name).st_ino] == wanted);
}

void SafeFileTest::realAttributesStay()
{
    const QByteArray name = prepare(Way::Replace);
    const bool supported = ::setxattr(name.constData(), "user.note", "hello", 5, 0) == 0;
    QVERIFY(supported || errno == ENOTSUP);
    QVERIFY(save(name, m_new));
    char value[16];
    const ssize_t size = ::getxattr(name.constData(), "user.note", value, sizeof value);
    QCOMPARE(size, ssize_t(supported ? 5 : -1));
    QCOMPARE(contentOf(name), m_new);
}

void SafeFileTest::temporaryFileIsPrivateUntilItHasItsName()
{
    const QByteArray name = prepare(Way::Replace);
    QCOMPARE(::chmod(name.constData(), 0666), 0);
    QSet<QByteArray> names;
    for (int i = 0; i < 2; ++i) {
        SafeFile file(name);
        QVERIFY(file.open() && file.write(m_new));
        const QStringList now = listing();
        QCOMPARE(now.size(), 2);
        const QByteArray temporary = m_folder + now.first().toLocal8Bit();
        QCOMPARE(statOf(temporary).st_mode & 07777, mode_t(0600));
        QCOMPARE(contentOf(name), m_old);
        names.insert(temporary);
    }
    QCOMPARE(names.size(), 2);
}

void SafeFileTest::linksStay_data()
{
    QTest::addColumn<QByteArrayList>("links");
    QTest::addColumn<bool>("dangling");
    for (const bool dangling : { false, true }) {
        const QByteArray kind = dangling ? "dangling " : "";
        QTest::newRow((kind + "relative").constData()) << QByteArrayList{ "file.txt" } << dangling;
        QTest::newRow((kind + "absolute").constData()) << QByteArrayList{ "/file.txt" } << dangling;
        QTest::newRow((kind + "from a sub-folder").constData())
            << QByteArrayList{ "../file.txt" } << dangling;
        QTest::newRow((kind + "chain of three").constData())
            << QByteArrayList{ "file.txt", "../link0", "/sub/link1" } << dangling;
    }
}

void SafeFileTest::linksStay()
{
    QFETCH(QByteArrayList, links);
    QFETCH(bool, dangling);
    ::mkdir((m_folder + "sub").constData(), 0755);
    const QByteArray name = m_folder + "file.txt";
    if (!dangling)
        writeFile(name, m_old);
    QByteArray link;
    for (int i = 0; i < links.size(); ++i) {
        const QByteArray to = links[i].startsWith('/') ? m_folder.chopped(1) + links[i] : links[i];
        link = m_folder + (to.startsWith("..") ? "sub/link" : "link") + QByteArray::number(i);
        QCOMPARE(::symlink(to.constData(), link.constData()), 0);
    }
    QVERIFY(save(link, m_new));
    QVERIFY(S_ISLNK(statOf(link).st_mode));
    QVERIFY(S_ISREG(statOf(name).st_mode));
    QCOMPARE(contentOf(name), m_new);
    QCOMPARE(contentOf(link), m_new);
}

void SafeFileTest::linkInACircleIsRefused()
{
    const QByteArray name = m_folder + "circle";
    QCOMPARE(::symlink("circle", name.constData()), 0);
    QVERIFY(!save(name, m_new));
    QCOMPARE(listing().size(), 1);
}

void SafeFileTest::hardLinksStay()
{
    const QByteArray name = prepare(Way::HardLink);
    const struct stat before = statOf(name);
    QVERIFY(save(name, m_new));
    QCOMPARE(statOf(name).st_ino, before.st_ino);
    QCOMPARE(statOf(name).st_nlink, nlink_t(2));
    QCOMPARE(contentOf(m_folder + "other.txt"), m_new);
    QCOMPARE(listing().size(), 2);
    QCOMPARE(keptFiles(), QStringList());
}

void SafeFileTest::versionIsThatOfTheFile_data()
{
    QTest::addColumn<Way>("way");
    QTest::newRow("new") << Way::NewFile;
    QTest::newRow("replaced") << Way::Replace;
    QTest::newRow("in place") << Way::HardLink;
    QTest::newRow("in place, written in the state folder first") << Way::ClosedFolder;
}

void SafeFileTest::versionIsThatOfTheFile()
{
    QFETCH(Way, way);
    const QByteArray name = prepare(way);
    const FileCalls calls = callsFor(way);
    SafeFile file(name, calls);
    QVERIFY(save(file, m_new));
    QVERIFY(file.version().stamp().isSameFile(FileStamp(statOf(name))));
}

void SafeFileTest::ownerThatCannotBeGivenIsKeptInPlace()
{
    const QByteArray name = prepare(Way::Replace);
    const ino_t inode = statOf(name).st_ino;
    int asked = 0;
    FileCalls calls = FileCalls::system();
    calls.fstat = [&](int fd, struct stat *info) {
        const int result = ::fstat(fd, info);
        info->st_gid += info->st_ino == inode ? 1 : 0;
        return result;
    };
    calls.fchown = [&](int, uid_t, gid_t) {
        ++asked;
        errno = EPERM;
        return -1;
    };
    QVERIFY(save(name, m_new, calls));
    QCOMPARE(asked, 1);
    QCOMPARE(statOf(name).st_ino, inode);
    QCOMPARE(contentOf(name), m_new);
    QCOMPARE(listing().size(), 1);
    QCOMPARE(keptFiles(), QStringList());
}

void SafeFileTest::setIdBitsStay_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<Way>("way");
    for (const Way way : { Way::HardLink, Way::ClosedFolder }) {
        const char *const name = way == Way::HardLink ? "hard link" : "closed folder";
        QTest::addRow("set-user-id, %s", name) << 04755 << way;
        QTest::addRow("set-group-id, %s", name) << 02755 << way;
        QTest::addRow("both and sticky, %s", name) << 07711 << way;
        QTest::addRow("none, %s", name) << 0755 << way;
    }
}

void SafeFileTest::setIdBitsStay()
{
    QFETCH(int, mode);
    QFETCH(Way, way);
    const QByteArray name = prepare(way);
    QCOMPARE(::chmod(name.constData(), mode_t(mode)), 0);
    mode_t rightsOnTheDisk = 0;
    FileCalls calls = asOrdinaryUser(callsFor(way));
    calls.fsync = [&, inode = statOf(name).st_ino](int fd) {
        if (inodeOf(fd) == inode)
            rightsOnTheDisk = statOf(name).st_mode & 07777;
        return ::fsync(fd);
    };
    QVERIFY(save(name, m_new, calls));
    QCOMPARE(contentOf(name), m_new);
    QCOMPARE(statOf(name).st_mode & 07777, mode_t(mode));
    QCOMPARE(rightsOnTheDisk, mode_t(mode));
}

void SafeFileTest::setIdBitsStayWithTheOldContent()
{
    const QByteArray name = prepare(Way::HardLink);
    QCOMPARE(::chmod(name.constData(), 06755), 0);
    FileCalls calls = asOrdinaryUser(FileCalls::system());
    bool full = true;
    calls.pwrite = [&, inner = calls.pwrite, inode = statOf(name).st_ino](
                       int fd, const void *from, size_t size, off_t offset) -> ssize_t {
        if (full && inodeOf(fd) == inode && offset > 0) {
            full = false;
            errno = ENOSPC;
            return -1;
        }
        return inner(fd, from, size, offset);
    };
    QVERIFY(!save(name, m_new, calls));
    QCOMPARE(contentOf(name), m_old);
    QCOMPARE(statOf(name).st_mode & 07777, mode_t(06755));
}

/// One may write it, but not set its rights.
void SafeFileTest::setIdBitsOfAnothersFile()
{
    const QByteArray name = prepare(Way::HardLink);
    QCOMPARE(::chmod(name.constData(), 04775), 0);
    FileCalls calls = asOrdinaryUser(FileCalls::system());
    calls.fchmod = [](int, mode_t) {
        errno = EPERM;
        return -1;
    };
    QVERIFY(save(name, m_new, calls));
    QCOMPARE(contentOf(name), m_new);
    QCOMPARE(statOf(name).st_mode & 07777, mode_t(0775));
}

void SafeFileTest::oldContentIsOnTheDiskBeforeItIsOverwritten_data()
{
    QTest::addColumn<Way>("way");
    QTest::addColumn<bool>("keeps");
    QTest::newRow("hard link") << Way::HardLink << false;
    QTest::newRow("closed folder") << Way::ClosedFolder << false;
    QTest::newRow("replaced, the old content is kept") << Way::Replace << true;
}

/// The copy, its name in the state folder, and that of each folder which was made for it.
void SafeFileTest::oldContentIsOnTheDiskBeforeItIsOverwritten()
{
    QFETCH(Way, way);
    QFETCH(bool, keeps);
    const QByteArray state = stateFolder();
    const QTemporaryDir beside;
    const QByteArray there = QFile::encodeName(beside.path()) + '/';
    const QByteArray base = there + "made/";
    qputenv("XDG_STATE_HOME", base + "on/the way");
    const QByteArray name = prepare(way);
    QByteArrayList order;
    FileCalls calls = callsFor(way);
    calls.fsync = [&](int fd) {
        struct stat info = {};
        ::fstat(fd, &info);
        const QByteArray synced =
            QFile::symLinkTarget(QStringLiteral("/proc/self/fd/%1").arg(fd)).toLocal8Bit();
        order << (synced == "/"         ? synced
                : S_ISDIR(info.st_mode) ? synced + '/'
                                        : "file in " + synced.left(synced.lastIndexOf('/') + 1));
        return ::fsync(fd);
    };
    calls.pwrite = [&, inode = statOf(name).st_ino](int fd, const void *from, size_t size, off_t offset) {
        if (inodeOf(fd) == inode)
            order << "target";
        return ::pwrite(fd, from, size, offset);
    };
    calls.rename = [&](const char *from, const char *to) {
        order << "target";
        return ::rename(from, to);
    };
    SafeFile file(name, calls);
    if (keeps)
        file.keepOldContent();
    QVERIFY(save(file, m_new));
    qputenv("XDG_STATE_HOME", state.chopped(QByteArrayView("/marlopad/").size()));
    QVERIFY(order.contains("target"));
    order.erase(order.begin() + order.indexOf("target"), order.end());
    const QByteArray folder = base + "on/the way/marlopad/";
    // Those above too, which another run may have made and not come to put on the disk.
    QByteArrayList parents;
    for (qsizetype end = folder.indexOf('/'); end + 1 < folder.size(); end = folder.indexOf('/', end + 1))
        parents << folder.first(end + 1);
    QCOMPARE(parents.sliced(parents.size() - 4),
        QByteArrayList({ there, base, base + "on/", base + "on/the way/" }));
    const QByteArray notes = folder + "saves/";
    QByteArrayList wanted = parents + QByteArrayList{ folder, "file in " + notes, notes };
    wanted += parents;
    if (way == Way::ClosedFolder) // also for the new content
        wanted += parents;
    wanted += { "file in " + folder, "file in " + folder, folder }; // the copy, and the name it is of
    if (keeps)
        wanted << "file in " + m_folder;
    QCOMPARE(order, wanted);
}

void SafeFileTest::closedFolderIsWrittenInPlace()
{
    const QByteArray name = prepare(Way::ClosedFolder);
    const ino_t inode = statOf(name).st_ino;
    QVERIFY(save(name, m_new, callsFor(Way::ClosedFolder)));
    QCOMPARE(statOf(name).st_ino, inode);
    QCOMPARE(contentOf(name), m_new);
    QCOMPARE(keptFiles(), QStringList());
    const QByteArray state = stateFolder().chopped(1);
    QCOMPARE(statOf(state).st_mode & 07777, mode_t(0700));
}

void SafeFileTest::newFileInAClosedFolderIsRefused()
{
    QVERIFY(!save(prepare(Way::NewFile), m_new, callsFor(Way::ClosedFolder)));
    QCOMPARE(listing(), QStringList());
    QCOMPARE(keptFiles(), QStringList());
}

void SafeFileTest::renameThatIsRefusedIsWrittenInPlace()
{
    const QByteArray name = prepare(Way::Replace);
    const FileCalls calls =
        withFaults(FileCalls::system(), [](const QByteArray &call) { return call == "rename" ? EBUSY : 0; });
    QVERIFY(save(name, m_new, calls));
    QCOMPARE(contentOf(name), m_new);
    QCOMPARE(listing().size(), 1);
}

void SafeFileTest::fileThatMayNotBeWrittenIsRefused()
{
    const QByteArray name = prepare(Way::Replace);
    FileCalls calls = FileCalls::system();
    calls.open = [&](const char *file, int flags, mode_t mode) {
        if (name == file && (flags & O_ACCMODE) != O_RDONLY) {
            errno = EACCES;
            return -1;
        }
        return ::open(file, flags, mode);
    };
    QVERIFY(!save(name, m_new, calls));
    QCOMPARE(contentOf(name), m_old);
    QCOMPARE(listing().size(), 1);
}

void SafeFileTest::whatIsNoFileIsRefused_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("folder") << QByteArray("folder");
    QTest::newRow("folder with a slash") << QByteArray("folder/");
    QTest::newRow("name that ends in a slash") << QByteArray("nothing/");
    QTest::newRow("FIFO that nobody reads") << QByteArray("fifo");
    QTest::newRow("link to a FIFO") << QByteArray("link");
    QTest::newRow("device") << QByteArray("/dev/full");
    QTest::newRow("empty name") << QByteArray();
}

void SafeFileTest::whatIsNoFileIsRefused()
{
    QFETCH(QByteArray, name);
    QCOMPARE(::mkdir((m_folder + "folder").constData(), 0755), 0);
    QCOMPARE(::mkfifo((m_folder + "fifo").constData(), 0644), 0);
    QCOMPARE(::symlink("fifo", (m_folder + "link").constData()), 0);
    const QStringList before = listing();
    QVERIFY(!save(name.startsWith('/') || name.isEmpty() ? name : m_folder + name, m_new));
    QCOMPARE(listing(), before);
    QVERIFY(S_ISDIR(statOf(m_folder + "folder").st_mode));
    QVERIFY(S_ISFIFO(statOf(m_folder + "fifo").st_mode));
}

void SafeFileTest::missingFolderIsRefused()
{
    QVERIFY(!save(m_folder + "no/file.txt", m_new));
    QCOMPARE(listing(), QStringList());
}

void SafeFileTest::abandonedSaveLeavesNothing()
{
    const QByteArray name = prepare(Way::Replace);
    {
        SafeFile file(name);
        QVERIFY(file.open() && file.write(m_new));
    }
    QCOMPARE(contentOf(name), m_old);
    QCOMPARE(listing().size(), 1);
}

void SafeFileTest::longAndShortContentsInPlace_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    const QByteArray large(1 << 20, 'x');
    QTest::newRow("shorter") << large << QByteArray("short");
    QTest::newRow("longer") << QByteArray("short") << large;
    QTest::newRow("emptied") << large << QByteArray();
    QTest::newRow("was empty") << QByteArray() << large;
}

void SafeFileTest::longAndShortContentsInPlace()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    const QByteArray name = prepare(Way::HardLink);
    writeFile(name, before);
    QVERIFY(save(name, after));
    QVERIFY(contentOf(m_folder + "other.txt") == after);
}

void SafeFileTest::anyBytesInTheName()
{
    const QByteArray name = m_folder + "\x83\x65\x83\x58\x83\x67 \xff\n.txt";
    QVERIFY(save(name, m_new));
    QCOMPARE(statOf(name).st_size, off_t(m_new.size()));
}

REGISTER_TEST(runCoreTest<SafeFileTest>)
#include "safefile_test.moc"
