#include "files/copycontent.h"
#include "tests/testprogram.h"

#include <QTemporaryFile>

/// Bytes on their way from one file to another.
class CopyContentTest : public QObject {
    Q_OBJECT

private slots:
    void copiesAll_data();
    void copiesAll();
    void shortCountsGoOn();
    void interruptedCallsAreRepeated();
    void whatFailsIsTold();
};

namespace {

/// What a file holds, from its start.
QByteArray bytesOf(QFile &file)
{
    file.seek(0);
    return file.readAll();
}

} // namespace

void CopyContentTest::copiesAll_data()
{
    QTest::addColumn<qsizetype>("size");
    for (const qsizetype size : { qsizetype(0), qsizetype(1), copiedBlock, copiedBlock + 1 })
        QTest::addRow("%lld bytes", qlonglong(size)) << size;
}

void CopyContentTest::copiesAll()
{
    QFETCH(qsizetype, size);
    QTemporaryFile from, to;
    QVERIFY(from.open() && to.open());
    const QByteArray bytes(size, 'x');
    QVERIFY(writeAt(FileCalls::system(), from.handle(), bytes, 0));
    off_t copied = -1;
    QVERIFY(copyContent(FileCalls::system(), from.handle(), to.handle(), &copied));
    QCOMPARE(qsizetype(copied), size);
    QVERIFY(bytesOf(to) == bytes);
}

void CopyContentTest::shortCountsGoOn()
{
    FileCalls calls = FileCalls::system();
    calls.pread = [](int fd, void *to, size_t size, off_t offset) {
        return FileCalls::system().pread(fd, to, qMin<size_t>(size, 3), offset);
    };
    calls.pwrite = [](int fd, const void *from, size_t size, off_t offset) {
        return FileCalls::system().pwrite(fd, from, qMin<size_t>(size, 2), offset);
    };
    QTemporaryFile from, to;
    QVERIFY(from.open() && to.open());
    QVERIFY(writeAt(calls, from.handle(), "0123456789", 0));
    off_t copied = 0;
    QVERIFY(copyContent(calls, from.handle(), to.handle(), &copied));
    QCOMPARE(bytesOf(to), QByteArray("0123456789"));
}

void CopyContentTest::interruptedCallsAreRepeated()
{
    FileCalls calls = FileCalls::system();
    int interruptions = 2;
    calls.pwrite = [&interruptions](int fd, const void *from, size_t size, off_t offset) -> ssize_t {
        if (interruptions-- > 0) {
            errno = EINTR;
            return -1;
        }
        return FileCalls::system().pwrite(fd, from, size, offset);
    };
    QTemporaryFile file;
    QVERIFY(file.open());
    QVERIFY(writeAt(calls, file.handle(), "abc", 1));
    QCOMPARE(bytesOf(file), QByteArray("\0abc", 4));
}

void CopyContentTest::whatFailsIsTold()
{
    FileCalls calls = FileCalls::system();
    QTemporaryFile from, to;
    QVERIFY(from.open() && to.open());
    QVERIFY(writeAt(calls, from.handle(), "abc", 0));
    off_t copied = 0;
    calls.pwrite = [](int, const void *, size_t, off_t) -> ssize_t { return 0; };
    errno = 0;
    QVERIFY(!copyContent(calls, from.handle(), to.handle(), &copied));
    QCOMPARE(errno, ENOSPC);
    calls = FileCalls::system();
    calls.pread = [](int, void *, size_t, off_t) -> ssize_t {
        errno = EIO;
        return -1;
    };
    QVERIFY(!copyContent(calls, from.handle(), to.handle(), &copied));
    QVERIFY(bytesOf(to).isEmpty());
}

REGISTER_TEST(runPlainTest<CopyContentTest>)
#include "copycontent_test.moc"
