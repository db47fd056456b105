#include "files/fileversion.h"

#include "files/readfile.h"
#include "files/writeobstacle.h"
#include "tests/files/readthrough.h"
#include "tests/files/savedfile.h"
#include "tests/testprogram.h"

#include <fcntl.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

/// What has become of a file since it was read or written.
class FileVersionTest : public QObject, SavedFile {
    Q_OBJECT

private slots:
    void init();

    void changes_data();
    void changes();
    void changesWhereTheSizeIsToldTooLarge_data();
    void changesWhereTheSizeIsToldTooLarge();
    void sameBytesAreNoChange_data();
    void sameBytesAreNoChange();
    void unchangedFileCostsOneCall();
    void youngStamps_data();
    void youngStamps();
    void youngFileIsCompared();
    void largeFileIsKnownByItsEnd();
    void largeFileIsReadThroughByAnother_data();
    void largeFileIsReadThroughByAnother();
    void noFileHasNoChange();
    void unansweredIsNoChange_data();
    void unansweredIsNoChange();
    void changeOfAFileThatCannotBeRead();
    void writtenFileIsKnown();
    void obstacles_data();
    void obstacles();
    void everyFailingCallOfObstacles();

private:
    using Act = std::function<void()>;

    FileVersion read() const
    {
        QByteArray bytes;
        FileStamp stamp;
        readFileFrom(QFile::decodeName(m_name), 0, bytes, stamp);
        ContentHash content;
        content.add(bytes);
        return { stamp, content };
    }
    /// As if it had been written long ago.
    void age(const QByteArray &name) const
    {
        const timespec times[2] = { { 1000, 0 }, { 1000, 0 } };
        QCOMPARE(::utimensat(AT_FDCWD, name.constData(), times, 0), 0);
    }
    void append(const QByteArray &bytes) const
    {
        QFile file(QFile::decodeName(m_name));
        QVERIFY(file.open(QIODevice::Append));
        QCOMPARE(file.write(bytes), bytes.size());
    }
    void renameOver(const QByteArray &content) const
    {
        writeFile(m_folder + "other", content);
        QCOMPARE(::rename((m_folder + "other").constData(), m_name.constData()), 0);
    }

    QByteArray m_name;
};

void FileVersionTest::init()
{
    prepareFolder();
    m_name = prepare(Way::Replace);
}

void FileVersionTest::changes_data()
{
    QTest::addColumn<Act>("act");
    QTest::addColumn<FileChange>("change");
    QTest::newRow("nothing") << Act([] {}) << FileChange::None;
    QTest::newRow("written in place")
        << Act([this] { writeFile(m_name, "the NEW content\n"); }) << FileChange::Changed;
    QTest::newRow("written longer") << Act([this] { writeFile(m_name, "the NEW content and more\n"); })
                                    << FileChange::Changed;
    QTest::newRow("truncated") << Act([this] { QCOMPARE(::truncate(m_name.constData(), 4), 0); })
                               << FileChange::Changed;
    QTest::newRow("emptied") << Act([this] { QCOMPARE(::truncate(m_name.constData(), 0), 0); })
                             << FileChange::Changed;
    QTest::newRow("added to") << Act([this] { append("more\n"); }) << FileChange::Grown;
    QTest::newRow("another file over it") << Act([this] { renameOver("other"); }) << FileChange::Replaced;
    QTest::newRow("another file that begins so")
        << Act([this] { renameOver(m_old + "more\n"); }) << FileChange::Replaced;
    QTest::newRow("deleted") << Act([this] { QCOMPARE(::unlink(m_name.constData()), 0); })
                             << FileChange::Deleted;
    QTest::newRow("deleted and made again") << Act([this] {
        QCOMPARE(::unlink(m_name.constData()), 0);
        writeFile(m_folder + "in its place", "x");
        writeFile(m_name, "again");
    }) << FileChange::Replaced;
    QTest::newRow("a folder in its place") << Act([this] {
        QCOMPARE(::unlink(m_name.constData()), 0);
        QCOMPARE(::mkdir(m_name.constData(), 0700), 0);
    }) << FileChange::Replaced;
    QTest::newRow("link to another file") << Act([this] {
        QCOMPARE(::rename(m_name.constData(), (m_folder + "moved").constData()), 0);
        writeFile(m_folder + "other", "other");
        QCOMPARE(::symlink("other", m_name.constData()), 0);
    }) << FileChange::Replaced;
}

void FileVersionTest::changes()
{
    QFETCH(Act, act);
    QFETCH(FileChange, change);
    for (const bool isOld : { true, false }) {
        init();
        if (isOld)
            age(m_name);
        FileVersion version = read();
        act();
        QCOMPARE(version.changeOf(m_name, FileCalls::system()), change);
        QCOMPARE(version.changeOf(m_name, FileCalls::system()), change);
    }
}

void FileVersionTest::changesWhereTheSizeIsToldTooLarge_data()
{
    QTest::addColumn<Act>("act");
    QTest::addColumn<FileChange>("change");
    QTest::newRow("nothing") << Act([] {}) << FileChange::None;
    QTest::newRow("written in place")
        << Act([this] { writeFile(m_name, "the NEW content\n"); }) << FileChange::Changed;
    QTest::newRow("written longer") << Act([this] { writeFile(m_name, "the NEW content and more\n"); })
                                    << FileChange::Changed;
    QTest::newRow("added to") << Act([this] { append("more\n"); }) << FileChange::Grown;
    QTest::newRow("written shorter") << Act([this] { writeFile(m_name, "the\n"); }) << FileChange::Changed;
    QTest::newRow("another file over it") << Act([this] { renameOver("other"); }) << FileChange::Replaced;
}

/// As a whole page, which the system tells of its own settings' files.
void FileVersionTest::changesWhereTheSizeIsToldTooLarge()
{
    QFETCH(Act, act);
    QFETCH(FileChange, change);
    FileCalls calls = FileCalls::system();
    calls.stat = [](const char *name, struct stat *info) {
        const int result = ::stat(name, info);
        info->st_size = 4096;
        return result;
    };
    FileVersion version = read();
    act();
    QCOMPARE(version.changeOf(m_name, calls), change);
    QCOMPARE(version.changeOf(m_name, calls), change);
}

void FileVersionTest::sameBytesAreNoChange_data()
{
    QTest::addColumn<Act>("act");
    QTest::newRow("touched") << Act(
        [this] { QCOMPARE(::utimensat(AT_FDCWD, m_name.constData(), nullptr, 0), 0); });
    QTest::newRow("other rights") << Act([this] { QCOMPARE(::chmod(m_name.constData(), 0640), 0); });
    QTest::newRow("written the same") << Act([this] { writeFile(m_name, m_old); });
    QTest::newRow("replaced by the same") << Act([this] { renameOver(m_old); });
}

/// Known by its new times then: not read at the next look.
void FileVersionTest::sameBytesAreNoChange()
{
    QFETCH(Act, act);
    age(m_name);
    FileVersion version = read();
    act();
    age(m_name);
    QCOMPARE(version.changeOf(m_name, FileCalls::system()), FileChange::None);
    int count = 0;
    const FileCalls calls = withFaults(FileCalls::system(), [&](const QByteArray &) {
        ++count;
        return 0;
    });
    QCOMPARE(version.changeOf(m_name, calls), FileChange::None);
    QCOMPARE(count, 1);
}

void FileVersionTest::unchangedFileCostsOneCall()
{
    age(m_name);
    FileVersion version = read();
    QByteArrayList made;
    const FileCalls calls = withFaults(FileCalls::system(), [&](const QByteArray &call) {
        made << call;
        return 0;
    });
    QCOMPARE(version.changeOf(m_name, calls), FileChange::None);
    QCOMPARE(made, QByteArrayList{ "stat" });
}

void FileVersionTest::youngStamps_data()
{
    constexpr qint64 ms = 1000000;
    QTest::addColumn<qint64>("modified");
    QTest::addColumn<qint64>("later");
    QTest::addColumn<bool>("isYoung");
    QTest::newRow("at once") << 1500 * ms << 0 * ms << true;
    QTest::newRow("a step of the clock later") << 1500 * ms << 10 * ms << true;
    QTest::newRow("two steps later") << 1500 * ms << 20 * ms << false;
    QTest::newRow("whole seconds, one later") << 2000 * ms << 1000 * ms << true;
    QTest::newRow("whole seconds, nearly two later") << 2000 * ms << 1999 * ms << true;
    QTest::newRow("whole seconds, two later") << 2000 * ms << 2000 * ms << false;
    QTest::newRow("another machine's clock, ahead") << 1500 * ms << -10 * ms << true;
    QTest::newRow("far ahead") << 1500 * ms << -1000 * ms << false;
}

void FileVersionTest::youngStamps()
{
    QFETCH(qint64, modified);
    QFETCH(qint64, later);
    FileStamp stamp;
    stamp.modified = modified;
    QTEST(stamp.isYoungAt(modified + later), "isYoung");
}

/// Its times may say nothing of a write that comes right behind.
void FileVersionTest::youngFileIsCompared()
{
    timespec second = {};
    ::clock_gettime(CLOCK_REALTIME, &second);
    second.tv_nsec = 0;
    const timespec times[2] = { second, second };
    QCOMPARE(::utimensat(AT_FDCWD, m_name.constData(), times, 0), 0);
    FileVersion version = read();
    const struct stat before = statOf(m_name);
    writeFile(m_name, "the NEW content\n");
    FileCalls calls = FileCalls::system();
    calls.stat = [&](const char *, struct stat *info) {
        *info = before;
        return 0;
    };
    QCOMPARE(version.changeOf(m_name, calls), FileChange::Changed);
}

void FileVersionTest::largeFileIsKnownByItsEnd()
{
    const QByteArray end(1000, 'e');
    QCOMPARE(::truncate(m_name.constData(), FileVersion::mostCompared + 5000), 0);
    append(end);
    age(m_name);
    FileVersion version = read();
    append("more\n");
    QCOMPARE(version.changeOf(m_name, FileCalls::system()), FileChange::Grown);
    QCOMPARE(::truncate(m_name.constData(), FileVersion::mostCompared + 5500), 0);
    QCOMPARE(version.changeOf(m_name, FileCalls::system()), FileChange::Changed);
    append(QByteArray(500, 'f'));
    QCOMPARE(version.changeOf(m_name, FileCalls::system()), FileChange::Changed);
}

void FileVersionTest::largeFileIsReadThroughByAnother_data()
{
    QTest::addColumn<Act>("act");
    QTest::addColumn<FileChange>("change");
    const auto writeX = [this](qint64 offset) {
        QFile file(QFile::decodeName(m_name));
        QVERIFY(file.open(QIODevice::ReadWrite) && file.seek(offset));
        QCOMPARE(file.write("x"), 1);
    };
    const auto copyOver = [this] {
        QVERIFY(QFile::copy(QFile::decodeName(m_name), QFile::decodeName(m_folder + "copy")));
        QCOMPARE(::rename((m_folder + "copy").constData(), m_name.constData()), 0);
    };
    QTest::newRow("touched") << Act([] {}) << FileChange::None;
    QTest::newRow("a copy in its place") << Act(copyOver) << FileChange::None;
    QTest::newRow("other rights") << Act([this] { QCOMPARE(::chmod(m_name.constData(), 0640), 0); })
                                  << FileChange::None;
    QTest::newRow("changed at its start") << Act([=] { writeX(0); }) << FileChange::Changed;
    QTest::newRow("changed before its end")
        << Act([=] { writeX(ContentHash::segment - 1); }) << FileChange::Changed;
    QTest::newRow("changed in another's place") << Act([=] {
        copyOver();
        writeX(100);
    }) << FileChange::Replaced;
}

/// No word is said before it is sure, and nothing is read twice.
void FileVersionTest::largeFileIsReadThroughByAnother()
{
    QFETCH(Act, act);
    QFETCH(FileChange, change);
    const FileCalls &calls = FileCalls::system();
    QCOMPARE(::truncate(m_name.constData(), FileVersion::mostCompared + ContentHash::segment / 2), 0);
    age(m_name);
    const FileVersion version = read();
    act();
    const timespec times[2] = { { 2000, 0 }, { 2000, 0 } };
    QCOMPARE(::utimensat(AT_FDCWD, m_name.constData(), times, 0), 0);
    FileVersion unsure = version;
    QCOMPARE(unsure.changeOf(m_name, calls), FileChange::Unsure);
    const auto seen = readThrough(m_name);
    QVERIFY(seen);
    unsure.noteSeen(*seen);
    for (int look = 0; look < 2; ++look) {
        const FileCalls unread =
            withFaults(calls, [](const QByteArray &call) { return call == "open" ? EIO : 0; });
        QCOMPARE(unsure.changeOf(m_name, unread), change);
    }
    append("x");
    unsure = version;
    unsure.noteSeen(*seen);
    QVERIFY(unsure.changeOf(m_name, calls) != FileChange::None);
}

void FileVersionTest::noFileHasNoChange()
{
    FileVersion version;
    QCOMPARE(version.changeOf(m_name, FileCalls::system()), FileChange::None);
    QCOMPARE(version.changeOf(m_folder + "missing", FileCalls::system()), FileChange::None);
}

void FileVersionTest::unansweredIsNoChange_data()
{
    QTest::addColumn<int>("error");
    QTest::newRow("EIO") << EIO;
    QTest::newRow("EACCES") << EACCES;
    QTest::newRow("ESTALE") << ESTALE;
}

void FileVersionTest::unansweredIsNoChange()
{
    QFETCH(int, error);
    FileVersion version = read();
    const FileCalls calls =
        withFaults(FileCalls::system(), [&](const QByteArray &call) { return call == "stat" ? error : 0; });
    QCOMPARE(version.changeOf(m_name, calls), FileChange::None);
    QCOMPARE(version.changeOf(m_name, calls, FileChange::Unsure), FileChange::Unsure);
}

/// Its times tell, where its content does not.
void FileVersionTest::changeOfAFileThatCannotBeRead()
{
    FileVersion version = read();
    const FileCalls calls =
        withFaults(FileCalls::system(), [](const QByteArray &call) { return call == "open" ? EACCES : 0; });
    QCOMPARE(version.changeOf(m_name, calls), FileChange::None);
    writeFile(m_name, "the NEW content\n");
    age(m_name);
    QCOMPARE(version.changeOf(m_name, calls), FileChange::Changed);
}

void FileVersionTest::writtenFileIsKnown()
{
    for (const Way way : { Way::NewFile, Way::Replace, Way::ThroughLink, Way::HardLink, Way::ClosedFolder }) {
        init();
        ::unlink(m_name.constData());
        const QByteArray name = prepare(way);
        const FileCalls calls = callsFor(way);
        SafeFile file(name, calls);
        QVERIFY(save(file, m_new));
        FileVersion version = file.version();
        QCOMPARE(version.stamp().size, m_new.size());
        QCOMPARE(version.changeOf(name, calls), FileChange::None);
        QByteArray other = m_new;
        other[1] = 'x';
        writeFile(name, other);
        QCOMPARE(version.changeOf(name, calls), FileChange::Changed);
    }
}

void FileVersionTest::obstacles_data()
{
    QTest::addColumn<int>("error");
    QTest::addColumn<quint64>("freeBlocks");
    QTest::addColumn<int>("obstacle"); // -1: none
    constexpr quint64 much = 1 << 20;
    QTest::newRow("none") << 0 << much << -1;
    QTest::newRow("not allowed") << EACCES << much << int(WriteObstacle::NotAllowed);
    QTest::newRow("immutable") << EPERM << much << int(WriteObstacle::NotAllowed);
    QTest::newRow("read-only") << EROFS << much << int(WriteObstacle::ReadOnlyDisk);
    QTest::newRow("gone") << ENOENT << much << -1;
    QTest::newRow("full") << 0 << quint64{ 0 } << int(WriteObstacle::FullDisk);
    QTest::newRow("nearly full") << 0 << quint64{ 256 } << int(WriteObstacle::FullDisk);
    QTest::newRow("room enough") << 0 << quint64{ 257 } << -1;
    QTest::newRow("no disk") << 0 << quint64{ 0 } << -1;
}

void FileVersionTest::obstacles()
{
    QFETCH(int, error);
    QFETCH(quint64, freeBlocks);
    QFETCH(int, obstacle);
    const bool hasDisk = QByteArrayView(QTest::currentDataTag()) != "no disk";
    FileCalls calls = FileCalls::system();
    calls.access = [error](const char *, int mode, int flags) {
        errno = error;
        return error != 0 || mode != W_OK || flags != AT_EACCESS ? -1 : 0;
    };
    calls.statvfs = [freeBlocks, hasDisk](const char *, struct statvfs *disk) {
        *disk = {};
        disk->f_frsize = 4096;
        disk->f_blocks = hasDisk ? 1 << 21 : 0;
        disk->f_bavail = freeBlocks;
        return 0;
    };
    const auto found = writeObstacle(m_name, calls);
    QCOMPARE(found ? int(*found) : -1, obstacle);
}

/// What the disk does not say is no obstacle.
void FileVersionTest::everyFailingCallOfObstacles()
{
    for (const char *failing : { "access", "statvfs", "stat" }) {
        const FileCalls calls = withFaults(
            FileCalls::system(), [&](const QByteArray &call) { return call == failing ? EIO : 0; });
        QVERIFY(!writeObstacle(m_name, calls));
    }
}

REGISTER_TEST(runCoreTest<FileVersionTest>)
#include "fileversion_test.moc"
