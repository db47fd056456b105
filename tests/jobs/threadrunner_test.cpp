#include "jobs/threadrunner.h"

#include "jobs/job.h"
#include "tests/jobs/countingwork.h"
#include "tests/jobs/fewthreads.h"
#include "tests/testprogram.h"

#include <QSignalSpy>

#include <latch>

using namespace std::chrono_literals;

namespace {

/// Hangs in its step until somebody else lets it go on.
class HangingWork : public JobWork {
public:
    explicit HangingWork(std::latch &end)
        : m_end(end)
    {
    }
    Step step(JobTurn &turn) override
    {
        turn.tellPart();
        m_end.wait();
        return Step::Done;
    }

private:
    std::latch &m_end;
};

} // namespace

/// Jobs that have a thread each.
class ThreadRunnerTest : public QObject {
    Q_OBJECT

private slots:
    void worksBesideOnesThatHang();
    void endsWithoutOneThatHangs();
    void partsAreMadeByTheJobsThread();
    void worksWithoutAThread();
};

void ThreadRunnerTest::worksBesideOnesThatHang()
{
    std::latch end(1);
    CountingLife life;
    {
        ThreadRunner runner;
        std::vector<std::unique_ptr<Job>> hanging;
        for (int i = 0; i < 20; ++i)
            hanging.push_back(std::make_unique<Job>(std::make_unique<HangingWork>(end), runner));
        Job counting(std::make_unique<CountingWork>(10, &life), runner);
        const QSignalSpy finished(&counting, &Job::finished);
        QTRY_COMPARE(finished.size(), 1);
        hanging.clear(); // nobody waits for them
        end.count_down();
    }
    QVERIFY(life.isDestroyed);
}

void ThreadRunnerTest::endsWithoutOneThatHangs()
{
    std::latch end(1);
    ThreadRunner runner;
    QVERIFY(runner.endWithin(0ms));
    const Job job(std::make_unique<HangingWork>(end), runner);
    const QSignalSpy begun(&job, &Job::partReady);
    QTRY_COMPARE(begun.size(), 1);
    QVERIFY(!runner.endWithin(1ms));
    end.count_down();
    QVERIFY(runner.endWithin(1min));
}

void ThreadRunnerTest::partsAreMadeByTheJobsThread()
{
    ThreadRunner runner;
    QList<int> parts;
    runner.spread(3, [&parts](int part) { parts << part; });
    QCOMPARE(parts, QList<int>({ 0, 1, 2 }));
    QCOMPARE(runner.threads(), 1);
}

void ThreadRunnerTest::worksWithoutAThread()
{
    FewThreads system(1);
    ThreadRunner runner(system.start());
    std::latch end(1);
    const Job hanging(std::make_unique<HangingWork>(end), runner);
    Job counting(std::make_unique<CountingWork>(10), runner);
    const QSignalSpy finished(&counting, &Job::finished);
    QTRY_COMPARE(finished.size(), 1);
    Job waitedFor(std::make_unique<CountingWork>(10), runner);
    QVERIFY(waitedFor.wait(QDeadlineTimer::Forever));
    const Job left(std::make_unique<CountingWork>(10), runner);
    end.count_down();
    QVERIFY(runner.endWithin(1min));
}

REGISTER_TEST(runCoreTest<ThreadRunnerTest>)
#include "threadrunner_test.moc"
