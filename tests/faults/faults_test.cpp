#include "tests/faults/onefault.h"
#include "tests/faults/operations.h"
#include "tests/figures.h"
#include "tests/testprogram.h"

#include <sys/wait.h>

using namespace Qt::StringLiterals;

namespace {

/// What was interrupted is repeated, and the rest of what was cut short is written or read.
bool mustBeDone(const FaultKind &kind)
{
    return kind.error == EINTR || kind.effect == FaultKind::Effect::IsShort;
}

} // namespace

/// Every call to the system that an operation makes meets every fault once.
class FaultsTest : public QObject {
    Q_OBJECT

private slots:
    void everyFaultOfEveryCall_data();
    void everyFaultOfEveryCall();
    void killedAtEveryCall_data();
    void killedAtEveryCall();
    void cleanupTestCase();

private:
    /// How many calls there are when none fails.
    int callsOf(Operation &operation) const;
    /// What is wrong after the next start; empty for nothing.
    QString lostOnDisk(const Operation &operation, bool isDone) const;
    /// In a process that is killed before its step-th call, or at its end; whether it was.
    static bool runKilled(Operation &operation, int step);

    const Sandbox m_sandbox;
    int m_faults = 0;
    int m_kills = 0;
};

int FaultsTest::callsOf(Operation &operation) const
{
    m_sandbox.empty();
    operation.prepare();
    OneFault none(faultKinds[0], 0);
    operation.run(none.calls(), [&none] { none.begin(); });
    operation.noteResult();
    return none.count();
}

QString FaultsTest::lostOnDisk(const Operation &operation, bool isDone) const
{
    const NextStart start = m_sandbox.startAgain();
    const QString stray = m_sandbox.unexplained(start);
    const QString lost = operation.lostOnDisk(start, isDone);
    return lost.isEmpty() && !stray.isEmpty() ? u"left behind: "_s + stray : lost;
}

void FaultsTest::everyFaultOfEveryCall_data()
{
    QTest::addColumn<NamedOperation>("named");
    for (const NamedOperation &named : operations()) {
        // It differs from a short one in what a kill between two blocks leaves.
        if (!QByteArrayView(named.name).contains("long text"))
            QTest::newRow(named.name) << named;
    }
}

void FaultsTest::everyFaultOfEveryCall()
{
    QFETCH(NamedOperation, named);
    const auto operation = named.make(m_sandbox);
    const int calls = callsOf(*operation);
    QVERIFY(calls > 0);
    QCOMPARE(lostOnDisk(*operation, true), QString());
    for (const FaultKind &kind : faultKinds) {
        for (int step = 1; step <= calls && kind.effect != FaultKind::Effect::Kills; ++step, ++m_faults) {
            m_sandbox.empty();
            operation->prepare();
            OneFault fault(kind, step);
            const bool isDone = operation->run(fault.calls(), [&fault] { fault.begin(); });
            QString lost = isDone || !mustBeDone(kind) ? operation->lostInWindow() : u"not done"_s;
            if (lost.isEmpty())
                lost = lostOnDisk(*operation, isDone);
            QVERIFY2(fault.count() >= step, kind.name);
            QVERIFY2(lost.isEmpty(),
                qPrintable(u"%1 at call %2: %3"_s.arg(QLatin1StringView(kind.name)).arg(step).arg(lost)));
        }
    }
}

bool FaultsTest::runKilled(Operation &operation, int step)
{
    const pid_t child = ::fork();
    if (child == 0) {
        OneFault fault(faultKinds[std::size(faultKinds) - 1], step);
        operation.run(fault.calls(), [&fault] { fault.begin(); });
        ::kill(::getpid(), SIGKILL);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
}

void FaultsTest::killedAtEveryCall_data()
{
    QTest::addColumn<NamedOperation>("named");
    for (const NamedOperation &named : operations())
        QTest::newRow(named.name) << named;
}

/// What is on the disk before a call is what is there after the one before it.
void FaultsTest::killedAtEveryCall()
{
    QFETCH(NamedOperation, named);
    const auto operation = named.make(m_sandbox);
    const int calls = callsOf(*operation);
    for (int step = 1; step <= calls + 1; ++step, ++m_kills) {
        m_sandbox.empty();
        operation->prepare();
        QVERIFY(runKilled(*operation, step));
        const QString lost = lostOnDisk(*operation, false);
        QVERIFY2(lost.isEmpty(), qPrintable(u"at call %1: %2"_s.arg(step).arg(lost)));
    }
}

void FaultsTest::cleanupTestCase()
{
    reportFigure("calls to the system that met a fault", m_faults);
    reportFigure("processes killed at a call to the system", m_kills);
}

REGISTER_TEST(runCoreTest<FaultsTest>)
#include "faults_test.moc"
