#include "document/searchwork.h"

#include "jobs/job.h"
#include "tests/jobs/steppedrunner.h"
#include "tests/testprogram.h"

#include <QTest>

using namespace Qt::StringLiterals;

/// Searching a snapshot step by step.
class SearchWorkTest : public QObject {
    Q_OBJECT

private slots:
    void takesTheFirstOfItsDirection_data();
    void takesTheFirstOfItsDirection();
    void searchesTheTextAsItWas();
    void tellsHowFarItIs();

private:
    /// The begin of the hit and the number of steps.
    std::pair<std::optional<Offset>, int> run(SearchDirection direction, TextRange range)
    {
        SteppedRunner runner;
        auto owned = std::make_unique<SearchWork>(TextSnapshot(m_store), m_pattern, direction, range);
        const SearchWork *const work = owned.get();
        const Job job(std::move(owned), runner);
        const int steps = runner.runAll();
        return { work->begin(), steps };
    }

    static constexpr qint64 partUnits = qint64{ 1 } << 19; ///< two of which are a step here
    const TextPattern m_pattern{ u"needle"_s, Qt::CaseSensitive };
    TextStore m_store;
};

void SearchWorkTest::takesTheFirstOfItsDirection_data()
{
    QTest::addColumn<SearchDirection>("direction");
    QTest::addColumn<qint64>("hit");
    QTest::addColumn<int>("steps");
    QTest::newRow("next") << SearchDirection::Forward << qint64(100) << 1;
    QTest::newRow("previous") << SearchDirection::Backward << 5 * partUnits - 3 << 1;
}

/// One hit lies in each of two parts of a step, one on the border of two.
void SearchWorkTest::takesTheFirstOfItsDirection()
{
    QFETCH(SearchDirection, direction);
    m_store.replace({}, m_store.length(), QString(6 * partUnits, u'.'));
    for (const qint64 at : { qint64(100), partUnits + 5, 4 * partUnits + 5, 5 * partUnits - 3 })
        m_store.replace(Offset(at), 6, u"needle");
    const auto [begin, steps] = run(direction, { {}, m_store.end() });
    QVERIFY(begin);
    QTEST(begin->value(), "hit");
    QTEST(steps, "steps");
    QVERIFY(!run(direction, { Offset(partUnits + 6), Offset(3 * partUnits) }).first);
}

void SearchWorkTest::searchesTheTextAsItWas()
{
    m_store.replace({}, m_store.length(), QString(3 * partUnits, u'.') + u"needle"_s);
    SteppedRunner runner;
    auto owned = std::make_unique<SearchWork>(
        TextSnapshot(m_store), m_pattern, SearchDirection::Forward, TextRange{ {}, m_store.end() });
    const SearchWork *const work = owned.get();
    const Job job(std::move(owned), runner);
    runner.step();
    m_store.replace({}, m_store.length(), u"needle");
    runner.runAll();
    QCOMPARE(work->begin(), Offset(3 * partUnits));
}

void SearchWorkTest::tellsHowFarItIs()
{
    m_store.replace({}, m_store.length(), QString(5 * partUnits, u'.'));
    SteppedRunner runner;
    Job job(std::make_unique<SearchWork>(TextSnapshot(m_store), m_pattern, SearchDirection::Forward,
                TextRange{ Offset(partUnits), m_store.end() }),
        runner);
    QList<qint64> done;
    connect(&job, &Job::progressed, this, [&](const JobProgress &progress) {
        QCOMPARE(progress.total, 4 * partUnits);
        done << progress.done / partUnits;
    });
    runner.runAll();
    QCOMPARE(done, QList<qint64>({ 2, 4 }));
}

REGISTER_TEST(runCoreTest<SearchWorkTest>)
#include "searchwork_test.moc"
