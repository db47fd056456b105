#include "jobs/workturns.h"

#include "jobs/job.h"
#include "tests/jobs/countingwork.h"
#include "tests/jobs/scarcememory.h"
#include "tests/jobs/steppedrunner.h"
#include "tests/testprogram.h"

#include <QSignalSpy>

#include <memory>
#include <new>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// More than there is gives null, as without AddressSanitizer.
extern "C" const char *__asan_default_options() // NOLINT(bugprone-reserved-identifier)
{
    return "allocator_may_return_null=1";
}

/// Work of the window's thread, turn by turn.
class WorkTurnsTest : public QObject {
    Q_OBJECT

private slots:
    void init();

    void goesOnUntilItIsDone();
    void othersHaveTheirTurn();
    void stops();
    void failsWhereATurnThrows();
    void failsBeforeATurnThatHasNoMemory();
    void mayBeDestroyedAtItsEnd();
    void canBeDoneOnceMore();
    void jobHasNoMemoryForAStep();
    void systemHasSomeAndNotAll();

private:
    std::unique_ptr<WorkTurns> turns(const std::function<bool()> &turn);

    QStringList m_told;
};

void WorkTurnsTest::init()
{
    m_told.clear();
}

std::unique_ptr<WorkTurns> WorkTurnsTest::turns(const std::function<bool()> &turn)
{
    const auto noted = [this, turn](QDeadlineTimer) {
        m_told << u"turn"_s;
        return turn();
    };
    return std::make_unique<WorkTurns>(
        nullptr, 1ms, noted, [this] { m_told << u"done"_s; }, [this] { m_told << u"failed"_s; });
}

void WorkTurnsTest::goesOnUntilItIsDone()
{
    int left = 3;
    const auto work = turns([&left] { return --left == 0; });
    work->start();
    QVERIFY(m_told.isEmpty() && work->isUnderWay());
    work->goOn();
    QCOMPARE(m_told, QStringList{ u"turn"_s });
    QTRY_COMPARE(m_told.last(), u"done"_s);
    QCOMPARE(m_told.size(), 4);
    QVERIFY(!work->isUnderWay());
}

void WorkTurnsTest::othersHaveTheirTurn()
{
    const auto endless = turns([] { return false; });
    endless->start();
    bool isOther = false;
    QTimer other;
    other.callOnTimeout([&isOther] { isOther = true; });
    other.start(0);
    QTRY_VERIFY(isOther);
}

void WorkTurnsTest::stops()
{
    std::unique_ptr<WorkTurns> work;
    work = turns([&work] {
        work->stop();
        return false;
    });
    work->goOn();
    QCoreApplication::processEvents();
    QCOMPARE(m_told, QStringList{ u"turn"_s });
    QVERIFY(!work->isUnderWay());
}

void WorkTurnsTest::failsWhereATurnThrows()
{
    int left = 2;
    const auto work = turns([&left]() -> bool {
        if (--left == 0)
            throw std::bad_alloc();
        return false;
    });
    work->start();
    QTRY_COMPARE(m_told, QStringList({ u"turn"_s, u"turn"_s, u"failed"_s }));
    QVERIFY(!work->isUnderWay());
}

void WorkTurnsTest::failsBeforeATurnThatHasNoMemory()
{
    const ScarceMemory scarce(2);
    const auto work = turns([] { return false; });
    work->start();
    QTRY_COMPARE(m_told, QStringList({ u"turn"_s, u"failed"_s }));
}

void WorkTurnsTest::mayBeDestroyedAtItsEnd()
{
    std::unique_ptr<WorkTurns> work;
    for (const bool isDone : { true, false }) {
        const auto turn = [isDone](QDeadlineTimer) { return isDone ? true : throw std::bad_alloc(); };
        const auto destroy = [&work] { work.reset(); };
        work = std::make_unique<WorkTurns>(nullptr, 1ms, turn, destroy, destroy);
        work->goOn();
        QVERIFY(!work);
    }
}

void WorkTurnsTest::canBeDoneOnceMore()
{
    const auto work = turns([] { return true; });
    work->goOn();
    work->goOn();
    QCOMPARE(m_told, QStringList({ u"turn"_s, u"done"_s, u"turn"_s, u"done"_s }));
}

void WorkTurnsTest::jobHasNoMemoryForAStep()
{
    CountingLife life;
    SteppedRunner runner;
    Job job(std::make_unique<CountingWork>(3, &life), runner);
    const QSignalSpy finished(&job, &Job::finished);
    const ScarceMemory scarce(2);
    runner.runAll();
    QCOMPARE(finished.size(), 1);
    QCOMPARE(finished[0][0].value<JobOutcome>(), JobOutcome::Failed);
    QCOMPARE(life.steps, 1);
    QVERIFY(life.isGivenUp);
}

void WorkTurnsTest::systemHasSomeAndNotAll()
{
    QVERIFY(MemoryLeft::has(1 << 20));
    MemoryLeft::require();
    QVERIFY(!MemoryLeft::has(qint64{ 1 } << 60));
    QVERIFY(MemoryLeft::has(1 << 20));
}

REGISTER_TEST(runCoreTest<WorkTurnsTest>)
#include "workturns_test.moc"
