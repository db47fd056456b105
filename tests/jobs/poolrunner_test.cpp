#include "jobs/poolrunner.h"

#include "jobs/job.h"
#include "tests/jobs/countingwork.h"
#include "tests/jobs/fewthreads.h"
#include "tests/testprogram.h"

#include <QSignalSpy>

#include <array>
#include <latch>
#include <numeric>
#include <thread>

using namespace Qt::StringLiterals;

namespace {

/// Adds up numbers, in parts that several threads make.
class AddingWork : public JobWork {
public:
    static constexpr int parts = 7;
    static constexpr int rounds = 50;

    Step step(JobTurn &turn) override
    {
        std::array<qint64, parts> sums{};
        turn.spread(parts, [&](int part) {
            for (int i = 0; i < 1000; ++i)
                sums[size_t(part)] += part;
        });
        sum = std::accumulate(sums.begin(), sums.end(), sum);
        turn.tellProgress({ ++m_round, rounds });
        return m_round == rounds ? Step::Done : Step::More;
    }

    qint64 sum = 0;

private:
    int m_round = 0;
};

/// Takes one step, which ends when somebody else says so.
class WaitingWork : public JobWork {
public:
    explicit WaitingWork(std::latch &end)
        : m_end(end)
    {
    }
    Step step(JobTurn &) override
    {
        m_end.wait();
        return Step::Done;
    }

private:
    std::latch &m_end;
};

} // namespace

/// Jobs in threads.
class PoolRunnerTest : public QObject {
    Q_OBJECT

private slots:
    void worksElsewhereAndTellsHere();
    void handsOverInOrder();
    void oneThatWaitsKeepsNoOtherWaiting();
    void manyAtOnce();
    void partsAreSpread();
    void stops();
    void waits();
    void waitsNoLongerThanItMay();
    void endsWithJobsInFlight();
    void jobsAreGivenUpInFlight();
    void goesOnWithFewThreads_data();
    void goesOnWithFewThreads();
    void waitsWithoutThreads();
    void eventsComeBetweenStepsWithoutThreads();
    void orderIsKeptWhenAThreadComes();
    void endsWithoutThreads();
};

void PoolRunnerTest::worksElsewhereAndTellsHere()
{
    struct Whose : JobWork {
        std::thread::id worker;
        Step step(JobTurn &turn) override
        {
            worker = std::this_thread::get_id();
            turn.tellPart();
            return Step::Done;
        }
    };
    PoolRunner runner;
    auto work = std::make_unique<Whose>();
    const Whose &whose = *work;
    Job job(std::move(work), runner);
    QSignalSpy part(&job, &Job::partReady), finished(&job, &Job::finished);
    connect(&job, &Job::partReady, this, [this] { QCOMPARE(QThread::currentThread(), thread()); });
    QTRY_COMPARE(finished.size(), 1);
    QCOMPARE(part.size(), 1);
    QVERIFY(whose.worker != std::thread::id());
    QVERIFY(whose.worker != std::this_thread::get_id());
}

void PoolRunnerTest::handsOverInOrder()
{
    constexpr int count = 2000;
    PoolRunner runner;
    auto work = std::make_unique<CountingWork>(count);
    CountingWork &counting = *work;
    Job job(std::move(work), runner);
    std::vector<int> numbers;
    connect(&job, &Job::partReady, this, [&] {
        for (const int number : counting.numbers.take())
            numbers.push_back(number);
    });
    QTRY_VERIFY(job.isFinished());
    std::vector<int> expected(count);
    std::iota(expected.begin(), expected.end(), 1);
    QCOMPARE(numbers, expected);
    QCOMPARE(job.progress(), (JobProgress{ count, count }));
}

void PoolRunnerTest::oneThatWaitsKeepsNoOtherWaiting()
{
    std::latch end(1);
    PoolRunner runner;
    const Job waiting(std::make_unique<WaitingWork>(end), runner);
    const Job other(std::make_unique<CountingWork>(10), runner);
    QTRY_VERIFY(other.isFinished());
    QVERIFY(!waiting.isFinished());
    end.count_down();
    QTRY_VERIFY(waiting.isFinished());
}

void PoolRunnerTest::manyAtOnce()
{
    PoolRunner runner;
    std::vector<std::unique_ptr<Job>> jobs;
    for (int i = 1; i <= 50; ++i)
        jobs.push_back(std::make_unique<Job>(std::make_unique<CountingWork>(i), runner));
    for (const auto &job : jobs)
        QTRY_VERIFY(job->isFinished());
    for (int i = 1; i <= 50; ++i)
        QCOMPARE(jobs[size_t(i) - 1]->progress().done, i);
}

void PoolRunnerTest::partsAreSpread()
{
    PoolRunner runner;
    auto work = std::make_unique<AddingWork>();
    const AddingWork &adding = *work;
    const Job job(std::move(work), runner);
    const Job other(std::make_unique<AddingWork>(), runner);
    QTRY_VERIFY(job.isFinished() && other.isFinished());
    QCOMPARE(adding.sum, AddingWork::rounds * 1000 * AddingWork::parts * (AddingWork::parts - 1) / 2);
}

void PoolRunnerTest::stops()
{
    struct Endless : JobWork {
        Step step(JobTurn &turn) override
        {
            turn.tellPart();
            while (!turn.isStopped())
                std::this_thread::yield();
            return Step::More;
        }
    };
    PoolRunner runner;
    Job job(std::make_unique<Endless>(), runner);
    QSignalSpy begun(&job, &Job::partReady), finished(&job, &Job::finished);
    QTRY_COMPARE(begun.size(), 1);
    job.stop();
    QTRY_COMPARE(finished.size(), 1);
    QCOMPARE(finished[0][0].value<JobOutcome>(), JobOutcome::Stopped);
}

void PoolRunnerTest::waits()
{
    PoolRunner runner;
    Job job(std::make_unique<CountingWork>(100), runner);
    QSignalSpy finished(&job, &Job::finished);
    QVERIFY(job.wait(QDeadlineTimer::Forever));
    QCOMPARE(finished.size(), 1);
    QCOMPARE(job.progress().done, 100);
    QCoreApplication::processEvents();
    QCOMPARE(finished.size(), 1);
}

void PoolRunnerTest::waitsNoLongerThanItMay()
{
    std::latch end(1);
    PoolRunner runner;
    Job job(std::make_unique<WaitingWork>(end), runner);
    QVERIFY(!job.wait(QDeadlineTimer(1)));
    end.count_down();
    QVERIFY(job.wait(QDeadlineTimer::Forever));
}

void PoolRunnerTest::endsWithJobsInFlight()
{
    CountingLife life;
    std::unique_ptr<Job> job;
    {
        PoolRunner runner;
        job = std::make_unique<Job>(std::make_unique<CountingWork>(1'000'000'000, &life), runner);
        QSignalSpy begun(job.get(), &Job::partReady);
        QTRY_VERIFY(!begun.isEmpty());
    }
    QVERIFY(life.isGivenUp);
    QVERIFY(life.isDestroyed);
}

void PoolRunnerTest::jobsAreGivenUpInFlight()
{
    CountingLife life;
    PoolRunner runner;
    {
        Job job(std::make_unique<CountingWork>(1'000'000'000, &life), runner);
        QSignalSpy begun(&job, &Job::partReady);
        QTRY_VERIFY(!begun.isEmpty());
    }
    QTRY_VERIFY(life.isDestroyed);
    QVERIFY(life.isGivenUp);
}

void PoolRunnerTest::goesOnWithFewThreads_data()
{
    QTest::addColumn<int>("threads");
    QTest::addColumn<int>("later");
    QTest::newRow("none") << 0 << 0;
    QTest::newRow("one") << 1 << 0;
    QTest::newRow("none, then one") << 0 << 1;
    QTest::newRow("one, then more") << 1 << 100;
}

void PoolRunnerTest::goesOnWithFewThreads()
{
    QFETCH(int, threads);
    QFETCH(int, later);
    FewThreads system(threads);
    PoolRunner runner(system.start());
    auto work = std::make_unique<AddingWork>();
    const AddingWork &adding = *work;
    const Job spread(std::move(work), runner);
    const Job first(std::make_unique<CountingWork>(20), runner);
    QTRY_VERIFY(first.isFinished());
    if (threads == 0)
        system.give(later);
    const Job second(std::make_unique<CountingWork>(20), runner);
    QTRY_VERIFY(spread.isFinished() && second.isFinished());
    QCOMPARE(adding.sum, AddingWork::rounds * 1000 * AddingWork::parts * (AddingWork::parts - 1) / 2);
}

void PoolRunnerTest::waitsWithoutThreads()
{
    PoolRunner runner(FewThreads(0).start());
    const Job other(std::make_unique<CountingWork>(3), runner);
    Job job(std::make_unique<CountingWork>(5), runner);
    QSignalSpy finished(&job, &Job::finished);
    QVERIFY(job.wait(QDeadlineTimer::Forever));
    QCOMPARE(finished.size(), 1);
    QCOMPARE(job.progress().done, 5);
    QTRY_VERIFY(other.isFinished());
}

void PoolRunnerTest::eventsComeBetweenStepsWithoutThreads()
{
    PoolRunner runner(FewThreads(0).start());
    Job endless(std::make_unique<CountingWork>(1'000'000'000), runner);
    QSignalSpy begun(&endless, &Job::partReady), finished(&endless, &Job::finished);
    QTRY_VERIFY(begun.size() > 3);
    endless.stop();
    QTRY_COMPARE(finished.size(), 1);
    QCOMPARE(finished[0][0].value<JobOutcome>(), JobOutcome::Stopped);
}

/// Of jobs in one thread none begins while a step of another one is made.
void PoolRunnerTest::orderIsKeptWhenAThreadComes()
{
    FewThreads system(0);
    PoolRunner runner(PoolRunner::OneThread(), system.start());
    QStringList ended;
    Job a(std::make_unique<CountingWork>(3), runner), b(std::make_unique<CountingWork>(3), runner);
    connect(
        &a, &Job::partReady, this, [&system] { system.give(1); }, Qt::SingleShotConnection);
    connect(&a, &Job::finished, this, [&ended] { ended << u"a"_s; });
    connect(&b, &Job::finished, this, [&ended] { ended << u"b"_s; });
    QTRY_COMPARE(ended, QStringList({ u"a"_s, u"b"_s }));
}

void PoolRunnerTest::endsWithoutThreads()
{
    CountingLife life;
    std::unique_ptr<Job> job;
    {
        PoolRunner runner(FewThreads(0).start());
        job = std::make_unique<Job>(std::make_unique<CountingWork>(10, &life), runner);
    }
    QVERIFY(life.isDestroyed);
    QVERIFY(job->isFinished());
}

REGISTER_TEST(runCoreTest<PoolRunnerTest>)
#include "poolrunner_test.moc"
