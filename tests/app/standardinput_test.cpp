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
    void givesAPipeAsItIs();
    void tellsWhatCannotBeRead();
    void knowsOwnFiles_data();
    void knowsOwnFiles();
};

/// Whoever has it may close it.
void StandardInputTest::givesAPipeAsItIs()
{
    std::array<int, 2> ends{};
    QCOMPARE(::pipe(ends.data()), 0);
    const SharedFd input = inputFrom(ends[0]);
    ::close(ends[0]);
    QVERIFY(input);
    QCOMPARE(::write(ends[1], "one", 3), 3);
    std::array<char, 4> read{};
    QCOMPARE(::read(input->number(), read.data(), read.size()), 3);
    ::close(ends[1]);
}

void StandardInputTest::tellsWhatCannotBeRead()
{
    const int folder = ::open("/", O_RDONLY | O_CLOEXEC);
    QVERIFY(folder != -1);
    QVERIFY(!inputFrom(folder));
    QCOMPARE(errno, EISDIR);
    ::close(folder);
    const int forWriting = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    QVERIFY(forWriting != -1);
    QVERIFY(!inputFrom(forWriting));
    QCOMPARE(errno, EBADF);
    ::close(forWriting);
    QVERIFY(!inputFrom(forWriting));
    QCOMPARE(errno, EBADF);
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
