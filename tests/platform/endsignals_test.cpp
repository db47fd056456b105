#include "platform/endsignals.h"

#include "files/endorder.h"
#include "tests/testprogram.h"

#include <QTest>

#include <csignal>
#include <functional>

#include <sys/wait.h>
#include <unistd.h>

using namespace std::chrono_literals;

/// What becomes of a process that does not end by itself when it is told to.
class EndSignalsTest : public QObject {
    Q_OBJECT

private slots:
    void stuckProcessIsEnded();
    void whatMustNotBeBrokenOffIsWaitedFor();
    void butNotForEver();

private:
    static constexpr EndSignals::Patience patience{ 50ms, 10000ms };
    static constexpr int ownEnd = 42;

    /// How a process ended that was told to while it does `work`, which keeps its event loop waiting.
    static int statusOf(const std::function<void()> &work, EndSignals::Patience given = patience)
    {
        const pid_t child = ::fork();
        if (child == 0) {
            const EndSignals told(nullptr, given);
            ::raise(SIGTERM);
            work();
            ::_exit(ownEnd);
        }
        int status = 0;
        return ::waitpid(child, &status, 0) == child && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    [[noreturn]] static void waitForEver()
    {
        for (;;)
            ::pause();
    }
};

void EndSignalsTest::stuckProcessIsEnded()
{
    QCOMPARE(statusOf([] { waitForEver(); }), EXIT_FAILURE);
    QCOMPARE(statusOf([] { // of which nothing is left
        {
            const EndOrder::Delay delay;
        }
        waitForEver();
    }),
        EXIT_FAILURE);
}

/// The clock has asked several times by then.
void EndSignalsTest::whatMustNotBeBrokenOffIsWaitedFor()
{
    QCOMPARE(statusOf([] {
        const EndOrder::Delay delay;
        for (int asked = 0; asked < 3; ++asked)
            ::pause(); // until the next signal
    }),
        ownEnd);
}

void EndSignalsTest::butNotForEver()
{
    QCOMPARE(statusOf(
                 [] {
                     const EndOrder::Delay delay;
                     waitForEver();
                 },
                 { 50ms, 150ms }),
        EXIT_FAILURE);
}

REGISTER_TEST(runCoreTest<EndSignalsTest>)
#include "endsignals_test.moc"
