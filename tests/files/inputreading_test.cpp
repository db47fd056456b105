#include "files/inputreading.h"
#include "tests/testprogram.h"

#include <QByteArray>
#include <QTest>

#include <array>

#include <fcntl.h>

using namespace std::chrono_literals;

/// What comes from a pipe.
class InputReadingTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void keepsWhatComesUntilItsEnd();
    void waitsForMore();
    void gathersWhatComesBitByBit();
    void endedKeepsWhatHasCome();
    void nothingComes();
    void longOnesTakeSteps();
    void brokenKeepsWhatHasCome();

private:
    using Step = InputReading::Step;
    static constexpr InputReading::Pace hurried{ 0ms, 0ms };
    void put(const QByteArray &bytes)
    {
        QCOMPARE(::write(m_end, bytes.constData(), size_t(bytes.size())), bytes.size());
    }
    void closeIt() { ::close(std::exchange(m_end, -1)); }
    static QByteArray kept(const InputReading &reading)
    {
        QByteArray bytes(reading.size() + 1, Qt::Uninitialized);
        bytes.truncate(::pread(reading.kept()->number(), bytes.data(), size_t(bytes.size()), 0));
        return bytes;
    }

    std::unique_ptr<InputReading> m_reading;
    int m_end = -1;
};

void InputReadingTest::init()
{
    std::array<int, 2> ends{};
    QCOMPARE(::pipe2(ends.data(), O_CLOEXEC), 0);
    m_reading = std::make_unique<InputReading>(std::make_shared<OpenFd>(ends[0]), hurried);
    m_end = ends[1];
}

void InputReadingTest::cleanup()
{
    m_reading.reset();
    if (m_end != -1)
        closeIt();
}

void InputReadingTest::keepsWhatComesUntilItsEnd()
{
    put("one\n");
    QCOMPARE(m_reading->step(), Step::More);
    put(QByteArray("tw\0", 3));
    QCOMPARE(m_reading->step(), Step::More);
    put("o");
    closeIt();
    QCOMPARE(m_reading->step(), Step::More);
    QCOMPARE(m_reading->step(), Step::Done);
    QCOMPARE(kept(*m_reading), QByteArray("one\ntw\0o", 8));
}

void InputReadingTest::waitsForMore()
{
    QCOMPARE(m_reading->step(), Step::More);
    QCOMPARE(m_reading->size(), 0);
    put("late");
    QCOMPARE(m_reading->step(), Step::More);
    QCOMPARE(m_reading->size(), 4);
}

/// Each write into such a pipe is a portion that is read by itself.
void InputReadingTest::gathersWhatComesBitByBit()
{
    constexpr InputReading::Pace patient{ 0ms, 1h };
    std::array<int, 2> ends{};
    QCOMPARE(::pipe2(ends.data(), O_CLOEXEC | O_DIRECT), 0);
    InputReading reading(std::make_shared<OpenFd>(ends[0]), patient);
    for (const char *const portion : { "one\n", "two\n", "three" })
        QVERIFY(::write(ends[1], portion, qstrlen(portion)) > 0);
    ::close(ends[1]);
    QCOMPARE(reading.step(), Step::Done);
    QCOMPARE(kept(reading), QByteArray("one\ntwo\nthree"));
}

void InputReadingTest::endedKeepsWhatHasCome()
{
    put("one");
    QCOMPARE(m_reading->step(), Step::More);
    m_reading->end();
    put("two");
    QCOMPARE(m_reading->step(), Step::Done);
    QCOMPARE(kept(*m_reading), QByteArray("one"));
}

void InputReadingTest::nothingComes()
{
    closeIt();
    QCOMPARE(m_reading->step(), Step::Done);
    QCOMPARE(m_reading->size(), 0);
}

void InputReadingTest::longOnesTakeSteps()
{
    QByteArray all;
    for (int i = 0; i < 50; ++i) {
        const QByteArray some = QByteArray::number(i).repeated(20'000);
        put(some);
        all += some;
        while (m_reading->size() < all.size())
            QCOMPARE(m_reading->step(), Step::More);
    }
    closeIt();
    QCOMPARE(m_reading->step(), Step::Done);
    QVERIFY(kept(*m_reading) == all);
}

/// By what stands in the place of the pipe.
void InputReadingTest::brokenKeepsWhatHasCome()
{
    const int number = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
    InputReading reading(std::make_shared<OpenFd>(number), hurried);
    std::array<int, 2> ends{};
    QCOMPARE(::pipe2(ends.data(), O_CLOEXEC), 0);
    QCOMPARE(::dup3(ends[0], number, O_CLOEXEC), number);
    QCOMPARE(::write(ends[1], "one", 3), 3);
    QCOMPARE(reading.step(), Step::More);
    const int folder = ::open("/", O_RDONLY | O_CLOEXEC);
    QCOMPARE(::dup3(folder, number, O_CLOEXEC), number);
    QVERIFY(!reading.isBroken());
    QCOMPARE(reading.step(), Step::Failed);
    QVERIFY(reading.isBroken());
    QCOMPARE(kept(reading), QByteArray("one"));
    ::close(folder);
    ::close(ends[0]);
    ::close(ends[1]);
}

REGISTER_TEST(runPlainTest<InputReadingTest>)
#include "inputreading_test.moc"
