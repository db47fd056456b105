#include "platform/pendingevents.h"

#include "tests/testprogram.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QSocketNotifier>
#include <QThread>
#include <QTimer>

#include <array>
#include <memory>

#include <unistd.h>

using namespace std::chrono_literals;

namespace {

void processAll()
{
    while (QAbstractEventDispatcher::instance()->processEvents(QEventLoop::AllEvents)) { }
}

/// Both ends of a pipe.
class Pipe {
public:
    Pipe() { m_isOpen = pipe(m_ends.data()) == 0; }
    ~Pipe()
    {
        close(m_ends[0]);
        close(m_ends[1]);
    }
    Q_DISABLE_COPY_MOVE(Pipe)
    bool isOpen() const { return m_isOpen; }
    int reading() const { return m_ends[0]; }
    bool write() const { return ::write(m_ends[1], "x", 1) == 1; }
    bool read() const
    {
        char byte = 0;
        return ::read(m_ends[0], &byte, 1) == 1;
    }

private:
    std::array<int, 2> m_ends{ -1, -1 };
    bool m_isOpen = false;
};

} // namespace

class PendingEventsTest : public QObject {
    Q_OBJECT

private slots:
    void init() { processAll(); }
    void postedAreProcessedEachTime();
    void postedInOtherThreadsToo();
    void allAreLookedForAtFirst();
    void allAreLookedForInTime();
    void noneAreLookedForBefore();
    void allAreLookedForWhileThereAreSome();
    void tellsTheTime();

private:
    PendingEvents m_seldom{ 1h };
};

void PendingEventsTest::postedAreProcessedEachTime()
{
    int calls = 0;
    for (int i = 0; i < 10; ++i) {
        QMetaObject::invokeMethod(
            this, [&calls] { ++calls; }, Qt::QueuedConnection);
        QCOMPARE(calls, i);
        m_seldom.process();
        QCOMPARE(calls, i + 1);
    }
}

void PendingEventsTest::postedInOtherThreadsToo()
{
    m_seldom.process();
    int calls = 0;
    const auto call = [&] {
        QMetaObject::invokeMethod(
            this, [&calls] { ++calls; }, Qt::QueuedConnection);
    };
    const std::unique_ptr<QThread> thread(QThread::create(call));
    thread->start();
    QVERIFY(thread->wait());
    QCOMPARE(calls, 0);
    m_seldom.process();
    QCOMPARE(calls, 1);
}

void PendingEventsTest::allAreLookedForAtFirst()
{
    const Pipe pipe;
    QVERIFY(pipe.isOpen());
    int calls = 0;
    const QSocketNotifier notifier(pipe.reading(), QSocketNotifier::Read);
    connect(&notifier, &QSocketNotifier::activated, this, [&] { calls += pipe.read() ? 1 : 0; });
    QVERIFY(pipe.write());
    PendingEvents(1h).process();
    QCOMPARE(calls, 1);
}

void PendingEventsTest::allAreLookedForInTime()
{
    const Pipe pipe;
    QVERIFY(pipe.isOpen());
    int calls = 0;
    const QSocketNotifier notifier(pipe.reading(), QSocketNotifier::Read);
    connect(&notifier, &QSocketNotifier::activated, this, [&] { calls += pipe.read() ? 1 : 0; });
    PendingEvents events;
    events.process();
    QVERIFY(pipe.write());
    while (calls == 0)
        events.process();
    QCOMPARE(calls, 1);
}

void PendingEventsTest::noneAreLookedForBefore()
{
    PendingEvents events(1h);
    events.process();
    int calls = 0;
    QTimer timer;
    timer.setSingleShot(true);
    connect(&timer, &QTimer::timeout, this, [&calls] { ++calls; });
    timer.start(0);
    for (int i = 0; i < 10; ++i)
        events.process();
    QCOMPARE(calls, 0);
    processAll();
    QCOMPARE(calls, 1);
}

/// Each of them is seen before anything else is done.
void PendingEventsTest::allAreLookedForWhileThereAreSome()
{
    PendingEvents events(1h);
    int calls = 0;
    QTimer timer;
    connect(&timer, &QTimer::timeout, this, [&calls] { ++calls; });
    timer.start(0);
    for (int i = 0; i < 10; ++i) {
        events.process();
        QCOMPARE(calls, i + 1);
    }
}

void PendingEventsTest::tellsTheTime()
{
    const auto before = PendingEvents::Clock::now();
    const auto told = m_seldom.process();
    QVERIFY(told >= before);
    QVERIFY(told <= PendingEvents::Clock::now());
}

REGISTER_TEST(runCoreTest<PendingEventsTest>)
#include "pendingevents_test.moc"
