#include "document/readwork.h"

#include "document/textdocument.h"
#include "jobs/job.h"
#include "tests/document/documentfolder.h"
#include "tests/jobs/steppedrunner.h"
#include "tests/testprogram.h"

#include <QSignalSpy>
#include <QTest>

#include <new>

using namespace Qt::StringLiterals;

namespace {

constexpr FileCodes silentCodes{ CharCode::ShiftJis, ReturnCode::CrLf };

QByteArray textOfManyLines()
{
    QByteArray text;
    for (int i = 0; text.size() < 2'000'000; ++i)
        text += "a line with a number " + QByteArray::number(i) + '\n';
    return text;
}

/// Takes over what a job has read, as a document does.
struct Reader {
    Reader(const QString &file, const FileCalls &calls = FileCalls::system())
    {
        auto owned = std::make_unique<ReadWork>(
            FileReading::Request{ file, {}, silentCodes }, LayoutCopy(store), calls);
        work = owned.get();
        job.emplace(std::move(owned), runner);
        QObject::connect(&*job, &Job::partReady, &*job, [this] { take(); });
        QObject::connect(&*job, &Job::finished, &*job, [this](JobOutcome how) { outcome = how; });
    }
    void take()
    {
        for (ReadWork::Part &part : work->take()) {
            if (part.startsOver)
                store = TextStore();
            store.append(std::move(part.text));
            ++parts;
        }
    }

    SteppedRunner runner;
    TextStore store;
    ReadWork *work = nullptr;
    std::optional<Job> job;
    std::optional<JobOutcome> outcome;
    int parts = 0;
};

} // namespace

/// A file that is read by a job, step by step.
class ReadWorkTest : public QObject {
    Q_OBJECT

private slots:
    void handsTheTextOver();
    void tellsHowFarItIs();
    void isStopped_data();
    void isStopped();
    void errorInTheMiddleFails_data();
    void errorInTheMiddleFails();
    void missingFileFails();
    void noMemoryToHandPartsOver();
};

void ReadWorkTest::handsTheTextOver()
{
    const DocumentFolder folder;
    const QByteArray text = textOfManyLines();
    QVERIFY(folder.write(fileName, text));
    Reader reader(folder.path() + fileName);
    reader.runner.runAll();
    QCOMPARE(reader.outcome, JobOutcome::Done);
    QVERIFY(reader.parts > 1);
    QVERIFY(reader.store.text() == QString::fromUtf8(text));
    reader.store.checkInvariants();
    QCOMPARE(reader.work->result().codes.charCode, CharCode::Utf8);
    QCOMPARE(reader.work->result().codes.returnCode, ReturnCode::Lf);
    QCOMPARE(reader.work->result().version.stamp().size, text.size());
}

void ReadWorkTest::tellsHowFarItIs()
{
    const DocumentFolder folder;
    const QByteArray text = textOfManyLines();
    QVERIFY(folder.write(fileName, text));
    Reader reader(folder.path() + fileName);
    qint64 done = 0;
    while (reader.runner.step()) {
        QVERIFY(reader.job->progress().done >= done);
        done = reader.job->progress().done;
        QCOMPARE(reader.job->progress().total, text.size());
    }
    QCOMPARE(done, text.size());
}

void ReadWorkTest::isStopped_data()
{
    QTest::addColumn<int>("steps");
    for (const int steps : { 0, 1 })
        QTest::addRow("after %d", steps) << steps;
}

void ReadWorkTest::isStopped()
{
    QFETCH(int, steps);
    const DocumentFolder folder;
    QVERIFY(folder.write(fileName, textOfManyLines()));
    Reader reader(folder.path() + fileName);
    for (int i = 0; i < steps; ++i)
        QVERIFY(reader.runner.step());
    reader.job->stop();
    QVERIFY(reader.runner.runAll() <= 1);
    QCOMPARE(reader.outcome, JobOutcome::Stopped);
}

void ReadWorkTest::errorInTheMiddleFails_data()
{
    QTest::addColumn<qint64>("from");
    for (const qint64 from : { 0, 1, 300'000, 1'000'000, 1'999'000 })
        QTest::addRow("from byte %lld on", from) << from;
}

void ReadWorkTest::errorInTheMiddleFails()
{
    QFETCH(qint64, from);
    const DocumentFolder folder;
    QVERIFY(folder.write(fileName, textOfManyLines()));
    FileCalls calls = FileCalls::system();
    calls.pread = [from](int fd, void *to, size_t size, off_t offset) -> ssize_t {
        if (offset + qint64(size) > from) {
            errno = EIO;
            return -1;
        }
        return FileCalls::system().pread(fd, to, size, offset);
    };
    Reader reader(folder.path() + fileName, calls);
    reader.runner.runAll();
    QCOMPARE(reader.outcome, JobOutcome::Failed);
    QCOMPARE(reader.work->failure(), ReadFailure::BrokenOff);
}

void ReadWorkTest::missingFileFails()
{
    const DocumentFolder folder;
    Reader reader(folder.path() + fileName);
    reader.runner.runAll();
    QCOMPARE(reader.outcome, JobOutcome::Failed);
    QCOMPARE(reader.work->failure(), ReadFailure::Missing);
}

namespace {

struct NoMemory : JobTurn {
    bool isStopped() const override { return false; }
    void tellProgress(JobProgress) override { }
    void tellPart() override { throw std::bad_alloc(); }
    int threads() const override { return 1; }
    void spread(int count, const std::function<void(int)> &part) override
    {
        for (int i = 0; i < count; ++i)
            part(i);
    }
};

} // namespace

void ReadWorkTest::noMemoryToHandPartsOver()
{
    const DocumentFolder folder;
    QVERIFY(folder.write(fileName, textOfManyLines()));
    const TextStore store;
    ReadWork work({ folder.path() + fileName, {}, silentCodes }, LayoutCopy(store));
    NoMemory turn;
    QVERIFY_THROWS_EXCEPTION(std::bad_alloc, work.step(turn));
    work.giveUp();
    QCOMPARE(work.failure(), ReadFailure::TooLarge);
}

REGISTER_TEST(runCoreTest<ReadWorkTest>)
#include "readwork_test.moc"
