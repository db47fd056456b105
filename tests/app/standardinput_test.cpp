#include "app/standardinput.h"
#include "tests/testprogram.h"

#include <QByteArray>
#include <QTest>

#include <array>

#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

/// What a start brings that only its own process can read.
class StandardInputTest : public QObject {
    Q_OBJECT

private slots:
    void readsAPipeToItsEnd();
    void tellsWhatCannotBeRead();
    void knowsOwnFiles_data();
    void knowsOwnFiles();
};

void StandardInputTest::readsAPipeToItsEnd()
{
    std::array<int, 2> ends{};
    QCOMPARE(::pipe(ends.data()), 0);
    QCOMPARE(::write(ends[1], "one\ntwo\n", 8), 8);
    ::close(ends[1]);
    const SharedFd file = readInput(ends[0]);
    ::close(ends[0]);
    QVERIFY(file);
    std::array<char, 16> read{};
    QCOMPARE(::pread(file->number(), read.data(), read.size(), 0), 8);
    QCOMPARE(QByteArray(read.data(), 8), "one\ntwo\n"_ba);
}

void StandardInputTest::tellsWhatCannotBeRead()
{
    const int folder = ::open("/", O_RDONLY | O_CLOEXEC);
    QVERIFY(folder != -1);
    QVERIFY(!readInput(folder));
    ::close(folder);
}

void StandardInputTest::knowsOwnFiles_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isOwn");
    QTest::newRow("of the shell") << u"/dev/fd/2"_s << true;
    QTest::newRow("of the system") << u"/proc/self/fd/2"_s << true;
    QTest::newRow("closed") << u"/dev/fd/987654"_s << false;
    QTest::newRow("no number") << u"/dev/fd/2x"_s << false;
    QTest::newRow("negative") << u"/dev/fd/-1"_s << false;
    QTest::newRow("the folder") << u"/dev/fd/"_s << false;
    QTest::newRow("a file") << u"/dev/null"_s << false;
    QTest::newRow("below another folder") << u"/a/dev/fd/2"_s << false;
    QTest::newRow("none") << QString() << false;
}

void StandardInputTest::knowsOwnFiles()
{
    QFETCH(QString, name);
    QTEST(ownFileNamed(name).has_value(), "isOwn");
}

REGISTER_TEST(runPlainTest<StandardInputTest>)
#include "standardinput_test.moc"
