#include "platform/safefile.h"

#include "platform/fileattributes.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <map>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace {

/// A fault table's decision: 0 lets the call through, else it fails with that error.
using Fault = std::function<int(const QByteArray &call)>;

template <typename Result, typename... Args>
void guard(std::function<Result(Args...)> &call, const char *name, const Fault &fault)
{
    call = [inner = call, name, fault](Args... args) -> Result {
        if (const int error = fault(name)) {
            errno = error;
            return -1;
        }
        return inner(args...);
    };
}

FileCalls withFaults(FileCalls calls, const Fault &fault)
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
    return calls;
}

/// A folder in which nobody may make files, also for tests that run as root.
FileCalls withClosedFolder(FileCalls calls, const QByteArray &folder)
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

/// Extended attributes kept in memory, by file: the same on every file system.
struct AttributeTable {
    std::map<ino_t, std::map<QByteArray, QByteArray>> files;

    static ino_t fileOf(int fd)
    {
        struct stat info;
        ::fstat(fd, &info);
        return info.st_ino;
    }
    static ssize_t give(const QByteArray &value, void *to, size_t size)
    {
        if (size > 0)
            memcpy(to, value.constData(), size_t(value.size()));
        return value.size();
    }
    FileCalls over(FileCalls calls)
    {
        calls.flistxattr = [this](int fd, char *to, size_t size) {
            QByteArray list;
            for (const auto &[name, value] : files[fileOf(fd)])
                list += name + '\0';
            return give(list, to, size);
        };
        calls.fgetxattr = [this](int fd, const char *name, void *to, size_t size) -> ssize_t {
            const auto &attributes = files[fileOf(fd)];
            if (!attributes.contains(name)) {
                errno = ENODATA;
                return -1;
            }
            return give(attributes.at(name), to, size);
        };
        calls.fsetxattr = [this](int fd, const char *name, const void *value, size_t size, int) {
            files[fileOf(fd)][name] = QByteArray(static_cast<const char *>(value), qsizetype(size));
            return 0;
        };
        calls.fremovexattr = [this](int fd, const char *name) {
            files[fileOf(fd)].erase(name);
            return 0;
        };
        return calls;
    }
};

QByteArray contentOf(const QByteArray &name)
{
    QFile file(QFile::decodeName(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(unreadable)");
}

void writeFile(const QByteArray &name, const QByteArray &content)
{
    QFile file(QFile::decodeName(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
}

struct stat statOf(const QByteArray &name)
{
    struct stat info = {};
    ::lstat(name.constData(), &info);
    return info;
}

bool save(SafeFile &file, const QByteArray &content)
{
    return file.open() && file.write(QByteArrayView(content).first(content.size() / 2))
        && file.write(QByteArrayView(content).sliced(content.size() / 2)) && file.commit();
}

bool save(const QByteArray &name, const QByteArray &content, const FileCalls &calls = FileCalls::system())
{
    SafeFile file(name, calls);
    return save(file, content);
}

} // namespace

class SafeFileTest : public QObject {
    Q_OBJECT

private slots:
    void init();

    void newFileHasTheContent();
    void newFileFollowsTheFileMask();
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
    void ownerThatCannotBeGivenIsKeptInPlace();
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
    void everyFailingStep_data();
    void everyFailingStep();
    void interruptedCallsAreRepeated_data();
    void interruptedCallsAreRepeated();
    void shortWritesAndReadsAreContinued();
    void writeOfNothingIsAnError();
    void brokenOverwritingPutsTheOldContentBack();
    void oldContentThatCannotBePutBackIsKept();
    void keepsTheOldContentWhenAsked();
    void writesNothingWhenTheOldContentCannotBeKept();
    void keptContentGoesAwayWhenNothingIsWritten();
    void randomFailures_data();
    void randomFailures();
    void fullDisk_data();
    void fullDisk();

private:
    enum class Way { NewFile, Replace, ThroughLink, HardLink, ClosedFolder };
    QByteArray prepare(Way way);
    FileCalls callsFor(Way way) const;
    QStringList listing() const;
    QStringList keptFiles() const;

    std::unique_ptr<QTemporaryDir> m_dir;
    QByteArray m_folder;
    const QByteArray m_old = "the old content\n";
    const QByteArray m_new = QByteArray(600000, 'n') + "\nthe new content\n";
};

void SafeFileTest::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    m_folder = QFile::encodeName(m_dir->path()) + '/';
    QDir(QFile::decodeName(SafeFile::stateFolder())).removeRecursively();
}

QByteArray SafeFileTest::prepare(Way way)
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

FileCalls SafeFileTest::callsFor(Way way) const
{
    const FileCalls &calls = FileCalls::system();
    return way == Way::ClosedFolder ? withClosedFolder(calls, m_folder) : calls;
}

QStringList SafeFileTest::listing() const
{
    return QDir(m_dir->path())
        .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
}

QStringList SafeFileTest::keptFiles() const
{
    return QDir(QFile::decodeName(SafeFile::stateFolder())).entryList(QDir::Files | QDir::Hidden);
}

void SafeFileTest::newFileHasTheContent()
{
    const QByteArray name = prepare(Way::NewFile);
    QVERIFY(save(name, m_new));
    QCOMPARE(contentOf(name), m_new);
    QCOMPARE(listing(), QStringList(QStringLiteral("file.txt")));
    QVERIFY(save(name, QByteArray()));
    QCOMPARE(contentOf(name), QByteArray());
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
            attributes.files[AttributeTable::fileOf(fd)]["system.posix_acl_access"] = "from the folder";
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

void SafeFileTest::closedFolderIsWrittenInPlace()
{
    const QByteArray name = prepare(Way::ClosedFolder);
    const ino_t inode = statOf(name).st_ino;
    QVERIFY(save(name, m_new, callsFor(Way::ClosedFolder)));
    QCOMPARE(statOf(name).st_ino, inode);
    QCOMPARE(contentOf(name), m_new);
    QCOMPARE(keptFiles(), QStringList());
    const QByteArray state = SafeFile::stateFolder().chopped(1);
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

void SafeFileTest::everyFailingStep_data()
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
void SafeFileTest::everyFailingStep()
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

void SafeFileTest::interruptedCallsAreRepeated_data()
{
    QTest::addColumn<QByteArray>("interrupted");
    for (const char *call : { "open", "pread", "pwrite", "fsync", "ftruncate", "fchmod", "flistxattr" })
        QTest::newRow(call) << QByteArray(call);
}

void SafeFileTest::interruptedCallsAreRepeated()
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

void SafeFileTest::shortWritesAndReadsAreContinued()
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

void SafeFileTest::writeOfNothingIsAnError()
{
    FileCalls calls = FileCalls::system();
    calls.pwrite = [](int, const void *, size_t, off_t) { return ssize_t(0); };
    const QByteArray name = prepare(Way::Replace);
    QVERIFY(!save(name, m_new, calls));
    QCOMPARE(contentOf(name), m_old);
}

void SafeFileTest::brokenOverwritingPutsTheOldContentBack()
{
    const QByteArray name = prepare(Way::HardLink);
    const ino_t inode = statOf(name).st_ino;
    bool full = true;
    FileCalls calls = FileCalls::system();
    calls.pwrite = [&](int fd, const void *from, size_t size, off_t offset) -> ssize_t {
        if (full && AttributeTable::fileOf(fd) == inode && offset > 0) {
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

void SafeFileTest::oldContentThatCannotBePutBackIsKept()
{
    const QByteArray name = prepare(Way::HardLink);
    const ino_t inode = statOf(name).st_ino;
    bool broken = false;
    FileCalls calls = FileCalls::system();
    calls.pwrite = [&](int fd, const void *from, size_t size, off_t offset) -> ssize_t {
        broken = broken || (AttributeTable::fileOf(fd) == inode && offset > 0);
        if (broken) {
            errno = EIO;
            return -1;
        }
        return ::pwrite(fd, from, size, offset);
    };
    SafeFile file(name, calls);
    QVERIFY(!save(file, m_new));
    QVERIFY(broken);
    QVERIFY(file.keptCopy().startsWith(SafeFile::stateFolder()));
    QCOMPARE(contentOf(file.keptCopy()), m_old);
    QCOMPARE(statOf(file.keptCopy()).st_mode & 07777, mode_t(0600));
    QCOMPARE(keptFiles().size(), 1);
    QCOMPARE(listing().size(), 2);
}

void SafeFileTest::keepsTheOldContentWhenAsked()
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
        QCOMPARE(keptFiles().size(), 1);
    }
    init();
    SafeFile newFile(prepare(Way::NewFile));
    newFile.keepOldContent();
    QVERIFY(save(newFile, m_new));
    QCOMPARE(newFile.keptCopy(), QByteArray());
    QCOMPARE(keptFiles(), QStringList());
}

void SafeFileTest::writesNothingWhenTheOldContentCannotBeKept()
{
    const QByteArray name = prepare(Way::Replace);
    const ino_t inode = statOf(name).st_ino;
    const QStringList before = listing();
    FileCalls calls = FileCalls::system();
    calls.pread = [inode](int fd, void *to, size_t size, off_t offset) -> ssize_t {
        if (AttributeTable::fileOf(fd) != inode)
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

void SafeFileTest::keptContentGoesAwayWhenNothingIsWritten()
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

void SafeFileTest::randomFailures_data()
{
    QTest::addColumn<quint32>("seed");
    const quint32 first =
        qEnvironmentVariableIntValue("SEED") ? quint32(qEnvironmentVariableIntValue("SEED")) : 1u;
    for (quint32 seed = first; seed < first + 60; ++seed)
        QTest::addRow("seed %u", seed) << seed;
}

/// However many calls fail: the old content is somewhere whole, or the new one is under the file's name.
void SafeFileTest::randomFailures()
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

void SafeFileTest::fullDisk_data()
{
    QTest::addColumn<int>("way");
    QTest::newRow("new file") << int(Way::NewFile);
    QTest::newRow("replaced") << int(Way::Replace);
    QTest::newRow("hard link") << int(Way::HardLink);
    QTest::newRow("closed folder") << int(Way::ClosedFolder);
}

/// The system's own refusal: a limit on the size of files stands for the disk's end.
void SafeFileTest::fullDisk()
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

QTEST_GUILESS_MAIN(SafeFileTest)
#include "safefile_test.moc"
