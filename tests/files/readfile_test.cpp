#include "files/readfile.h"

#include "files/filename.h"
#include "tests/seeds.h"
#include "tests/testprogram.h"

#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

using Failure = std::optional<ReadFailure>;

/// A folder with one file in it.
class FileFixture {
public:
    explicit FileFixture(const QByteArray &content, const QString &name = u"file.txt"_s)
        : m_name(m_folder.path() + u'/' + name)
    {
        const int file = open(FileName::toBytes(m_name).constData(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
        m_isWritten = file >= 0
            && write(file, content.constData(), static_cast<size_t>(content.size())) == content.size();
        close(file);
    }
    ~FileFixture() { unlink(FileName::toBytes(m_name).constData()); }
    Q_DISABLE_COPY_MOVE(FileFixture)
    bool isWritten() const { return m_isWritten; }
    const QString &name() const { return m_name; }

private:
    QTemporaryDir m_folder;
    QString m_name;
    bool m_isWritten = false;
};

const QByteArray untouched = QByteArrayLiteral("untouched");

Failure readAllOf(const QString &fileName, QByteArray &bytes, const FileCalls &calls = FileCalls::system())
{
    FileStamp stamp;
    return readFileFrom(fileName, 0, bytes, stamp, calls);
}

} // namespace

/// How the bytes of a file are read, and what is refused.
class ReadFileTest : public QObject {
    Q_OBJECT

private slots:
    void readsFile_data();
    void readsFile();
    void readsThroughLink();
    void readsNameOfAnyBytes();
    void sizeZeroIsNotOpened();
    void refuses_data();
    void refuses();
    void refusesFileThatMayNotBeRead();
    void refusesFileLargerThanMemory();
    void readErrorIsNotTheEnd();
    void interruptedReadGoesOn();
    void fileThatShrinksIsTakenAsItIs();
    void fileThatGrowsIsTakenAsItIs();
};

void ReadFileTest::readsFile_data()
{
    QTest::addColumn<qsizetype>("size");
    for (const qsizetype size : { 0, 1, 4095, 65535, 65536, 65537, 1 << 20, (1 << 20) + 1, 5000000 })
        QTest::addRow("%lld bytes", qint64{ size }) << size;
}

void ReadFileTest::readsFile()
{
    QFETCH(qsizetype, size);
    QByteArray content(size, Qt::Uninitialized);
    QRandomGenerator random(seedOr(20020311));
    for (char &byte : content)
        byte = static_cast<char>(random.bounded(256));
    const FileFixture file(content);
    QVERIFY(file.isWritten());
    QByteArray bytes = untouched;
    QVERIFY(!readAllOf(file.name(), bytes));
    QVERIFY(bytes == content);
}

void ReadFileTest::readsThroughLink()
{
    const FileFixture file("content");
    const QString link = file.name() + u".link"_s;
    QCOMPARE(symlink("file.txt", FileName::toBytes(link).constData()), 0);
    QByteArray bytes;
    QVERIFY(!readAllOf(link, bytes));
    QCOMPARE(bytes, QByteArray("content"));
}

void ReadFileTest::readsNameOfAnyBytes()
{
    const FileFixture file("content", FileName::fromBytes("\x8A\xBF\x8E\x9A.txt"));
    QVERIFY(file.isWritten());
    QByteArray bytes;
    QVERIFY(!readAllOf(file.name(), bytes));
    QCOMPARE(bytes, QByteArray("content"));
}

void ReadFileTest::sizeZeroIsNotOpened()
{
    const FileFixture file("");
    FileCalls calls = FileCalls::system();
    int opened = 0;
    calls.open = [&opened](const char *, int, mode_t) {
        ++opened;
        return -1;
    };
    QByteArray bytes = untouched;
    QVERIFY(!readAllOf(file.name(), bytes, calls));
    QCOMPARE(bytes, QByteArray());
    QCOMPARE(opened, 0);
    QVERIFY(!readAllOf(u"/proc/self/status"_s, bytes));
    QCOMPARE(bytes, QByteArray());
}

void ReadFileTest::refuses_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<Failure>("failure");
    const Failure missing = ReadFailure::Missing;
    QTest::newRow("missing") << u"nothing"_s << missing;
    QTest::newRow("missing folder") << u"nothing/file"_s << missing;
    QTest::newRow("file as a folder") << u"file/file"_s << missing;
    QTest::newRow("link to nothing") << u"link"_s << missing;
    QTest::newRow("no name") << QString() << Failure(ReadFailure::Folder);
    QTest::newRow("folder") << u"folder"_s << Failure(ReadFailure::Folder);
    QTest::newRow("pipe nobody writes to") << u"pipe"_s << Failure(ReadFailure::Device);
    QTest::newRow("device") << u"../../../../../../../../dev/zero"_s << Failure(ReadFailure::Device);
    QTest::newRow("link in a circle") << u"circle"_s << Failure(ReadFailure::NotOpened);
    QTest::newRow("name too long") << QString(5000, u'a') << Failure(ReadFailure::NotOpened);
}

void ReadFileTest::refuses()
{
    QFETCH(QString, name);
    QFETCH(Failure, failure);
    const QTemporaryDir folder;
    const auto path = [&folder](
                          const char *entry) { return QByteArray(folder.path().toUtf8() + '/' + entry); };
    QCOMPARE(mkdir(path("folder").constData(), 0700), 0);
    QCOMPARE(mkfifo(path("pipe").constData(), 0600), 0);
    QCOMPARE(symlink("nowhere", path("link").constData()), 0);
    QCOMPARE(symlink("circle", path("circle").constData()), 0);
    QCOMPARE(close(creat(path("file").constData(), 0600)), 0);
    QByteArray bytes = untouched;
    QCOMPARE(readAllOf(folder.path() + u'/' + name, bytes), failure);
    QCOMPARE(bytes, untouched);
}

void ReadFileTest::refusesFileThatMayNotBeRead()
{
    const FileFixture file("content");
    FileCalls calls = FileCalls::system();
    calls.open = [](const char *, int, mode_t) {
        errno = EACCES;
        return -1;
    };
    QByteArray bytes = untouched;
    QCOMPARE(readAllOf(file.name(), bytes, calls), Failure(ReadFailure::NotOpened));
    QCOMPARE(bytes, untouched);
}

void ReadFileTest::refusesFileLargerThanMemory()
{
    const FileFixture file("");
    QCOMPARE(truncate(FileName::toBytes(file.name()).constData(), off_t{ 1 } << 43), 0);
    QByteArray bytes = untouched;
    QCOMPARE(readAllOf(file.name(), bytes), Failure(ReadFailure::TooLarge));
    QCOMPARE(bytes, untouched);
}

void ReadFileTest::readErrorIsNotTheEnd()
{
    const FileFixture file(QByteArray(3 << 20, 'a'));
    FileCalls calls = FileCalls::system();
    int closed = 0;
    calls.pread = [](int fd, void *to, size_t size, off_t offset) -> ssize_t {
        if (offset < 1000000)
            return pread(fd, to, size, offset);
        errno = EIO;
        return -1;
    };
    calls.close = [&closed](int fd) {
        ++closed;
        return close(fd);
    };
    QByteArray bytes = untouched;
    QCOMPARE(readAllOf(file.name(), bytes, calls), Failure(ReadFailure::BrokenOff));
    QCOMPARE(bytes, untouched);
    QCOMPARE(closed, 1);
}

void ReadFileTest::interruptedReadGoesOn()
{
    const FileFixture file("content");
    FileCalls calls = FileCalls::system();
    int interruptions = 3;
    calls.pread = [&interruptions](int fd, void *to, size_t size, off_t offset) -> ssize_t {
        if (interruptions-- <= 0)
            return pread(fd, to, std::min<size_t>(size, 2), offset);
        errno = EINTR;
        return -1;
    };
    QByteArray bytes;
    QVERIFY(!readAllOf(file.name(), bytes, calls));
    QCOMPARE(bytes, QByteArray("content"));
}

void ReadFileTest::fileThatShrinksIsTakenAsItIs()
{
    const FileFixture file("content");
    FileCalls calls = FileCalls::system();
    calls.fstat = [](int fd, struct stat *info) {
        const int result = fstat(fd, info);
        info->st_size += 1000000;
        return result;
    };
    QByteArray bytes;
    QVERIFY(!readAllOf(file.name(), bytes, calls));
    QCOMPARE(bytes, QByteArray("content"));
}

void ReadFileTest::fileThatGrowsIsTakenAsItIs()
{
    const QByteArray content = QByteArray("content").repeated(100000);
    const FileFixture file(content);
    FileCalls calls = FileCalls::system();
    calls.fstat = [](int fd, struct stat *info) {
        const int result = fstat(fd, info);
        info->st_size = 10;
        return result;
    };
    QByteArray bytes;
    QVERIFY(!readAllOf(file.name(), bytes, calls));
    QVERIFY(bytes == content);
}

REGISTER_TEST(runCoreTest<ReadFileTest>)
#include "readfile_test.moc"
