#include "jobs/job.h"

#include "tests/jobs/countingwork.h"
#include "tests/jobs/steppedrunner.h"
#include "tests/testprogram.h"

#include <QSignalSpy>

#include <new>

using namespace Qt::StringLiterals;

namespace {

/// Writes down the signals of a job, in their order.
QStringList &record(QStringList &told, Job &job)
{
    QObject::connect(&job, &Job::progressed, &job,
        [&told](const JobProgress &progress) { told << u"%1/%2"_s.arg(progress.done).arg(progress.total); });
    QObject::connect(&job, &Job::partReady, &job, [&told] { told << u"part"_s; });
    QObject::connect(&job, &Job::finished, &job, [&told](JobOutcome outcome) {
        told << (outcome == JobOutcome::Done     ? u"done"_s
                : outcome == JobOutcome::Stopped ? u"stopped"_s
                                                 : u"failed"_s);
    });
    return told;
}

} // namespace

/// A job, step by step.
class JobTest : public QObject {
    Q_OBJECT

private slots:
    void nothingIsDoneBeforeItsTurn();
    void everyStepIsTold();
    void newsAreJoined();
    void endsAreToldInOrder();
    void jobsTakeTurns();
    void stopsAfterAnyStep_data();
    void stopsAfterAnyStep();
    void whatIsDoneIsDone();
    void failsInTheMiddle();
    void failsForWantOfMemory();
    void theWorkLivesAsLongAsTheJob();
    void givenUpAfterAnyStep_data();
    void givenUpAfterAnyStep();
    void mayBeDestroyedByWhoIsTold();
    void othersAreToldInANestedLoop();
    void waits();
    void endsWithoutItsRunner();
    void stepsAreSpread();
};

void JobTest::nothingIsDoneBeforeItsTurn()
{
    CountingLife life;
    SteppedRunner runner;
    const Job job(std::make_unique<CountingWork>(1, &life), runner);
    QCoreApplication::processEvents();
    QCOMPARE(life.steps, 0);
    QVERIFY(!job.isFinished());
}

void JobTest::everyStepIsTold()
{
    SteppedRunner runner;
    auto work = std::make_unique<CountingWork>(2);
    CountingWork &counting = *work;
    Job job(std::move(work), runner);
    QStringList told;
    record(told, job);
    QVERIFY(runner.step());
    QCOMPARE(told, QStringList({ u"1/2"_s, u"part"_s }));
    QCOMPARE(job.progress(), (JobProgress{ 1, 2 }));
    QVERIFY(runner.step());
    QCOMPARE(told.mid(2), QStringList({ u"2/2"_s, u"part"_s, u"done"_s }));
    QCOMPARE(counting.numbers.take(), std::vector<int>({ 1, 2 }));
    QVERIFY(counting.numbers.take().empty());
    QVERIFY(!runner.step());
    QCoreApplication::processEvents();
    QCOMPARE(told.size(), 5);
    QVERIFY(job.isFinished());
}

void JobTest::newsAreJoined()
{
    struct Chatty : JobWork {
        Step step(JobTurn &turn) override
        {
            for (int i = 1; i <= 3; ++i) {
                turn.tellProgress({ i, 3 });
                turn.tellPart();
            }
            return Step::Done;
        }
    };
    SteppedRunner runner;
    Job job(std::make_unique<Chatty>(), runner);
    QStringList told;
    record(told, job);
    runner.runAll();
    QCOMPARE(told, QStringList({ u"3/3"_s, u"part"_s, u"done"_s }));
}

void JobTest::endsAreToldInOrder()
{
    struct Untold : JobRunner {
        QList<JobRun *> runs;
        bool start(JobRun &run) override
        {
            runs << &run;
            return true;
        }
        int threads() const override { return 1; }
        void spread(int, const std::function<void(int)> &) override { }
    } runner;
    Job a(std::make_unique<CountingWork>(2), runner);
    Job b(std::make_unique<CountingWork>(1), runner);
    QStringList ended;
    connect(&a, &Job::finished, this, [&ended] { ended << u"a"_s; });
    connect(&b, &Job::finished, this, [&ended] { ended << u"b"_s; });
    JobRun *const first = runner.runs.first();
    QVERIFY(first->step());
    QVERIFY(!runner.runs.last()->step());
    QVERIFY(!first->step());
    QTRY_COMPARE(ended, QStringList({ u"b"_s, u"a"_s }));
}

void JobTest::jobsTakeTurns()
{
    CountingLife first, second;
    SteppedRunner runner;
    const Job a(std::make_unique<CountingWork>(3, &first), runner);
    const Job b(std::make_unique<CountingWork>(3, &second), runner);
    runner.step();
    runner.step();
    QCOMPARE(first.steps, 1);
    QCOMPARE(second.steps, 1);
}

void JobTest::stopsAfterAnyStep_data()
{
    QTest::addColumn<int>("steps");
    for (int steps = 0; steps < 3; ++steps)
        QTest::addRow("after %d", steps) << steps;
}

void JobTest::stopsAfterAnyStep()
{
    QFETCH(int, steps);
    CountingLife life;
    SteppedRunner runner;
    Job job(std::make_unique<CountingWork>(3, &life), runner);
    for (int i = 0; i < steps; ++i)
        runner.step();
    QStringList told;
    record(told, job);
    job.stop();
    QVERIFY(told.isEmpty());
    QVERIFY(!job.isFinished());
    runner.step();
    QCOMPARE(told, QStringList{ u"stopped"_s });
    QCOMPARE(life.steps, steps);
    QVERIFY(life.isGivenUp);
    QVERIFY(job.isFinished());
    QVERIFY(runner.isIdle());
}

void JobTest::whatIsDoneIsDone()
{
    struct StoppedInItsLastStep : JobWork {
        Job **job;
        Step step(JobTurn &) override
        {
            (*job)->stop();
            return Step::Done;
        }
    };
    SteppedRunner runner;
    Job *itself = nullptr;
    auto work = std::make_unique<StoppedInItsLastStep>();
    work->job = &itself;
    Job job(std::move(work), runner);
    itself = &job;
    QStringList told;
    record(told, job);
    runner.runAll();
    QCOMPARE(told, QStringList{ u"done"_s });
    job.stop();
    QCoreApplication::processEvents();
    QCOMPARE(told.size(), 1);
}

void JobTest::failsInTheMiddle()
{
    CountingLife life;
    SteppedRunner runner;
    auto work = std::make_unique<CountingWork>(3, &life);
    work->failAt(2);
    Job job(std::move(work), runner);
    QStringList told;
    record(told, job);
    QCOMPARE(runner.runAll(), 2);
    QCOMPARE(told.last(), u"failed"_s);
    QVERIFY(!life.isGivenUp);
}

void JobTest::failsForWantOfMemory()
{
    struct Hungry : JobWork {
        Step step(JobTurn &) override { throw std::bad_alloc(); }
        void giveUp() override { isGivenUp = true; }
        bool isGivenUp = false;
    };
    SteppedRunner runner;
    auto work = std::make_unique<Hungry>();
    const Hungry &hungry = *work;
    Job job(std::move(work), runner);
    QSignalSpy finished(&job, &Job::finished);
    QCOMPARE(runner.runAll(), 1);
    QCOMPARE(finished.takeFirst().first().value<JobOutcome>(), JobOutcome::Failed);
    QVERIFY(hungry.isGivenUp);
}

void JobTest::theWorkLivesAsLongAsTheJob()
{
    CountingLife life;
    SteppedRunner runner;
    {
        const Job job(std::make_unique<CountingWork>(1, &life), runner);
        runner.runAll();
        QVERIFY(!life.isDestroyed);
    }
    QVERIFY(life.isDestroyed);
}

void JobTest::givenUpAfterAnyStep_data()
{
    stopsAfterAnyStep_data();
}

void JobTest::givenUpAfterAnyStep()
{
    QFETCH(int, steps);
    CountingLife life;
    SteppedRunner runner;
    {
        const Job job(std::make_unique<CountingWork>(3, &life), runner);
        for (int i = 0; i < steps; ++i)
            runner.step();
    }
    QVERIFY(!life.isDestroyed); // the step that a thread may be making needs it
    runner.step();
    QVERIFY(life.isGivenUp);
    QVERIFY(life.isDestroyed);
    QCOMPARE(life.steps, steps);
}

void JobTest::mayBeDestroyedByWhoIsTold()
{
    CountingLife life;
    SteppedRunner runner;
    auto *const job = new Job(std::make_unique<CountingWork>(3, &life), runner);
    connect(job, &Job::progressed, this, [job] { delete job; });
    connect(job, &Job::partReady, this, [] { QFAIL("told of a job that is gone"); });
    runner.runAll();
    QVERIFY(life.isDestroyed);
    QCOMPARE(life.steps, 1);
}

void JobTest::othersAreToldInANestedLoop()
{
    struct AtOnce : JobWork {
        Step step(JobTurn &) override { return Step::Done; }
    };
    /// Makes all steps before anything is told, as threads may.
    struct Ahead : SteppedRunner {
        bool start(JobRun &run) override
        {
            while (run.step()) { }
            return true;
        }
    };
    Ahead runner;
    const Job a(std::make_unique<AtOnce>(), runner), b(std::make_unique<AtOnce>(), runner);
    bool wasToldMeanwhile = false;
    connect(&a, &Job::finished, this, [&] {
        QTRY_VERIFY(b.isFinished());
        wasToldMeanwhile = true;
    });
    QTRY_VERIFY(wasToldMeanwhile);
    QVERIFY(a.isFinished());
}

void JobTest::waits()
{
    SteppedRunner runner;
    Job job(std::make_unique<CountingWork>(3), runner);
    Job other(std::make_unique<CountingWork>(3), runner);
    QStringList told;
    record(told, job);
    QVERIFY(job.wait(QDeadlineTimer::Forever));
    QCOMPARE(told, QStringList({ u"3/3"_s, u"part"_s, u"done"_s }));
    QVERIFY(job.wait(QDeadlineTimer(0)));
    QVERIFY(!other.isFinished());
}

void JobTest::endsWithoutItsRunner()
{
    CountingLife life;
    std::unique_ptr<Job> job;
    {
        SteppedRunner runner;
        job = std::make_unique<Job>(std::make_unique<CountingWork>(2, &life), runner);
        runner.step();
    }
    QVERIFY(life.isDestroyed);
    job->stop();
    QVERIFY(job->isFinished());
}

void JobTest::stepsAreSpread()
{
    struct Spread : JobWork {
        QList<int> parts;
        Step step(JobTurn &turn) override
        {
            turn.spread(3, [this](int part) { parts << part; });
            return Step::Done;
        }
    };
    SteppedRunner runner;
    auto work = std::make_unique<Spread>();
    const Spread &spread = *work;
    const Job job(std::move(work), runner);
    runner.runAll();
    QCOMPARE(QSet<int>(spread.parts.begin(), spread.parts.end()), QSet<int>({ 0, 1, 2 }));
}

REGISTER_TEST(runCoreTest<JobTest>)
#include "job_test.moc"
