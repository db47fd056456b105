#include "tests/faults/onefault.h"
#include "tests/faults/operations.h"
#include "tests/figures.h"
#include "tests/testprogram.h"

#include <sys/wait.h>

using namespace Qt::StringLiterals;

/// AddressSanitizer would keep the last 256 MiB that were freed, and every process that is made to be killed
/// takes longer the more memory this one has.
extern "C" const char *__asan_default_options() // NOLINT(bugprone-reserved-identifier)
{
    return "quarantine_size_mb=16";
}

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
    void initTestCase();
    void everyFaultOfEveryCall_data();
    void everyFaultOfEveryCall();
    void killedAtEveryCall_data();
    void killedAtEveryCall();
    void cleanupTestCase();

private:
    /// The names of the calls that there are when none fails.
    QByteArrayList callsOf(Operation &operation) const;
    /// What is wrong after the next start; empty for nothing.
    QString lostOnDisk(const Operation &operation, bool isDone) const;
    /// In a process that is killed before its step-th call, or at its end; whether it was.
    static bool runKilled(Operation &operation, qsizetype step);

    const Sandbox m_sandbox;
    int m_faults = 0;
    int m_kills = 0;
};

QByteArrayList FaultsTest::callsOf(Operation &operation) const
{
    m_sandbox.empty();
    operation.prepare();
    OneFault none(faultKinds[0], 0);
    operation.run(none.calls(), [&none] { none.begin(); });
    operation.noteResult();
    return none.seen();
}

QString FaultsTest::lostOnDisk(const Operation &operation, bool isDone) const
{
    const NextStart start = m_sandbox.startAgain();
    const QString stray = m_sandbox.unexplained(start);
    const QString lost = operation.lostOnDisk(start, isDone);
    return lost.isEmpty() && !stray.isEmpty() ? u"left behind: "_s + stray : lost;
}

/// What another thread has locked stays locked in a child that is made meanwhile, and threads with GLib's
/// event loop lock its memory until their very end.
void FaultsTest::initTestCase()
{
    qputenv("QT_NO_GLIB", "1");
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
    const QByteArrayList calls = callsOf(*operation);
    QVERIFY(!calls.isEmpty());
    QCOMPARE(lostOnDisk(*operation, true), QString());
    for (const FaultKind &kind : faultKinds) {
        for (qsizetype step = 1; step <= calls.size() && kind.effect != FaultKind::Effect::Kills; ++step) {
            if (!canMeet(kind, calls[step - 1]))
                continue;
            ++m_faults;
            m_sandbox.empty();
            operation->prepare();
            OneFault fault(kind, step);
            const bool isDone = operation->run(fault.calls(), [&fault] { fault.begin(); });
            QString lost = isDone || !mustBeDone(kind) ? operation->lostInWindow() : u"not done"_s;
            if (lost.isEmpty())
                lost = lostOnDisk(*operation, isDone);
            QCOMPARE(fault.seen().value(step - 1), calls[step - 1]);
            QVERIFY2(lost.isEmpty(),
                qPrintable(u"%1 at call %2: %3"_s.arg(QLatin1StringView(kind.name)).arg(step).arg(lost)));
        }
    }
}

bool FaultsTest::runKilled(Operation &operation, qsizetype step)
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
    const qsizetype calls = callsOf(*operation).size();
    for (qsizetype step = 1; step <= calls + 1; ++step, ++m_kills) {
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
