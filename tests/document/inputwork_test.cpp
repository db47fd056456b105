#include "document/inputwork.h"

#include "jobs/job.h"
#include "tests/files/pipe.h"
#include "tests/jobs/steppedrunner.h"
#include "tests/testprogram.h"

#include <QScopeGuard>
#include <QTest>

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {

constexpr FileCodes codesOfSilentInput{ CharCode::ShiftJis, ReturnCode::CrLf };

/// Takes over what comes, as a document does.
struct InputReader {
    explicit InputReader(SharedFd input)
        : reading(std::make_shared<InputReading>(std::move(input), InputReading::Pace{ 0ms, 0ms }))
    {
        auto owned =
            std::make_unique<InputWork>(reading, std::nullopt, codesOfSilentInput, LayoutCopy(store));
        work = owned.get();
        job.emplace(std::move(owned), runner);
        QObject::connect(&*job, &Job::partReady, &*job, [this] { take(); });
        QObject::connect(&*job, &Job::progressed, &*job, [this] { ++progresses; });
        QObject::connect(&*job, &Job::finished, &*job, [this](JobOutcome how) { outcome = how; });
    }
    void take()
    {
        for (ReadWork::Part &part : work->take()) {
            if (part.startsOver)
                store = TextStore();
            store.append(std::move(part.text));
        }
    }
    /// More than what has come needs.
    void makeSteps()
    {
        for (int i = 0; i < 5; ++i)
            runner.step();
    }

    const std::shared_ptr<InputReading> reading;
    SteppedRunner runner;
    TextStore store;
    InputWork *work = nullptr;
    std::optional<Job> job;
    std::optional<JobOutcome> outcome;
    int progresses = 0;
};

} // namespace

/// Text that is handed over as it comes from a pipe.
class InputWorkTest : public QObject {
    Q_OBJECT

private slots:
    void isThereAsItComes_data();
    void isThereAsItComes();
    void isShownAnewInAnotherCode();
    void endedKeepsWhatHasCome();
    void nothingComes();
    void brokenKeepsWhatHasCome();
    void whatCannotBeKeptFails();
};

void InputWorkTest::isThereAsItComes_data()
{
    QTest::addColumn<QByteArrayList>("portions");
    QTest::addColumn<QStringList>("texts");
    QTest::newRow("lines") << QByteArrayList{ "one\n", "two\n" }
                           << QStringList{ u"one\n"_s, u"one\ntwo\n"_s };
    QTest::newRow("parts of a line") << QByteArrayList{ "o", "n", "e" }
                                     << QStringList{ u"o"_s, u"on"_s, u"one"_s };
    QTest::newRow("CR, then LF") << QByteArrayList{ "one\r", "\ntwo" }
                                 << QStringList{ u"one"_s, u"one\ntwo"_s };
    QTest::newRow("parts of a character") << QByteArrayList{ "a\n\xe3", "\x81", "\x82", "\n" }
                                          << QStringList{ u"a\n"_s, u"a\n"_s, u"a\nあ"_s, u"a\nあ\n"_s };
    QTest::newRow("EUC without ASCII") << QByteArrayList{ "\xa4\xa2\xa4", "\xa4", "\xb4\xc1" }
                                       << QStringList{ u"あ"_s, u"あい"_s, u"あい漢"_s };
}

void InputWorkTest::isThereAsItComes()
{
    QFETCH(QByteArrayList, portions);
    QFETCH(QStringList, texts);
    Pipe pipe;
    InputReader reader(pipe.takeInput());
    for (qsizetype i = 0; i < portions.size(); ++i) {
        pipe.put(portions[i]);
        reader.makeSteps();
        QCOMPARE(reader.store.text(), texts[i]);
    }
    pipe.close();
    reader.runner.runAll();
    QCOMPARE(reader.outcome, JobOutcome::Done);
    QCOMPARE(reader.store.text(), texts.last());
    QCOMPARE(reader.progresses, 0);
}

/// That of which nothing can be shown before its end.
void InputWorkTest::isShownAnewInAnotherCode()
{
    Pipe pipe;
    InputReader reader(pipe.takeInput());
    pipe.put("one\n\xe3\x81\x82\n");
    reader.makeSteps();
    QCOMPARE(reader.store.text(), u"one\nあ\n"_s);
    pipe.put("\x82\xa0\n");
    reader.makeSteps();
    pipe.close();
    reader.runner.runAll();
    QCOMPARE(reader.work->result().codes.charCode, CharCode::ShiftJis);
    QVERIFY(reader.store.text().endsWith(u"\nあ\n"_s));
}

void InputWorkTest::endedKeepsWhatHasCome()
{
    Pipe pipe;
    InputReader reader(pipe.takeInput());
    pipe.put("one\n\xe3\x81\x82");
    reader.makeSteps();
    reader.reading->end();
    pipe.put("two\n");
    reader.runner.runAll();
    QCOMPARE(reader.outcome, JobOutcome::Done);
    QCOMPARE(reader.store.text(), u"one\nあ"_s);
}

void InputWorkTest::nothingComes()
{
    Pipe pipe;
    InputReader reader(pipe.takeInput());
    reader.makeSteps();
    QVERIFY(!reader.outcome);
    pipe.close();
    reader.runner.runAll();
    QCOMPARE(reader.outcome, JobOutcome::Done);
    QCOMPARE(reader.store.length(), 0);
}

/// A folder is read in the place of the pipe.
void InputWorkTest::brokenKeepsWhatHasCome()
{
    Pipe pipe;
    const SharedFd input = pipe.takeInput();
    InputReader reader(input);
    pipe.put("one\n");
    reader.makeSteps();
    breakInput(*input);
    reader.runner.runAll();
    QCOMPARE(reader.outcome, JobOutcome::Done);
    QVERIFY(reader.reading->isBroken());
    QCOMPARE(reader.store.text(), u"one\n"_s);
}

void InputWorkTest::whatCannotBeKeptFails()
{
    const auto putBack = qScopeGuard(
        [folder = qgetenv("TMPDIR")] { folder.isEmpty() ? qunsetenv("TMPDIR") : qputenv("TMPDIR", folder); });
    qputenv("TMPDIR", "/proc"); // where nothing can be made
    Pipe pipe;
    InputReader reader(pipe.takeInput());
    pipe.put("one\n");
    reader.runner.runAll();
    QCOMPARE(reader.outcome, JobOutcome::Failed);
    QCOMPARE(reader.work->failure(), ReadFailure::BrokenOff);
}

REGISTER_TEST(runCoreTest<InputWorkTest>)
#include "inputwork_test.moc"
