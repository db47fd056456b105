#include "codec/charcode.h"
#include "codec/codecs.h"
#include "document/countwork.h"
#include "document/detection.h"
#include "document/documentsave.h"
#include "document/inputwork.h"
#include "document/lineends.h"
#include "document/readwork.h"
#include "document/searchwork.h"
#include "jobs/job.h"
#include "jobs/poolrunner.h"
#include "jobs/threadrunner.h"
#include "tests/codec/storedbytes.h"
#include "tests/document/documentfolder.h"
#include "tests/files/pipe.h"
#include "tests/testprogram.h"
#include "tests/text/editedstore.h"
#include "text/layoutchange.h"

#include <QSignalSpy>
#include <QTest>

#include <array>
#include <numeric>

using namespace Qt::StringLiterals;

namespace {

/// More than reading or writing takes in one step, and decodes in one part.
constexpr int manyLines = 50'000;

QString longText()
{
    QString text;
    text.reserve(qsizetype{ manyLines } * 40);
    for (int i = 0; i < manyLines; ++i)
        text +=
            (i % 5 == 0 ? u"かな漢字 %1 ホゲ\n"_s : u"a line of a log, number %1, nothing else\n"_s).arg(i);
    return text;
}

/// Walks through a text by several threads at once, again and again.
class SummingWork : public JobWork {
public:
    static constexpr int parts = 4;
    explicit SummingWork(TextSnapshot text)
        : m_text(std::move(text))
    {
    }

    Step step(JobTurn &turn) override
    {
        std::array<quint64, parts> sums{};
        turn.spread(parts, [&](int part) { sums[size_t(part)] = sumOf(part); });
        const quint64 sum = std::accumulate(sums.begin(), sums.end(), quint64());
        isAlwaysTheSame = isAlwaysTheSame && (m_round == 0 || sum == m_sum);
        m_sum = sum;
        return ++m_round == 5 ? Step::Done : Step::More;
    }
    bool isAlwaysTheSame = true;

private:
    quint64 sumOf(int part) const
    {
        const Offset end(m_text.length() * (part + 1) / parts);
        quint64 sum = 0;
        for (Offset at(m_text.length() * part / parts); at < end;) {
            const TextChunk chunk = m_text.spelledChunkAt(at);
            for (const char unit : chunk.latin1)
                sum = sum * 31 + uchar(unit);
            for (const QChar unit : chunk.utf16)
                sum = sum * 31 + unit.unicode();
            at += chunk.size();
        }
        return sum;
    }

    const TextSnapshot m_text;
    quint64 m_sum = 0;
    int m_round = 0;
};

} // namespace

/// Loading, saving and reading a text by jobs in threads, while this one edits.
class JobsInThreadsTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void reads_data() { addCodes(); }
    void reads();
    void readsWhatComesByAndBy();
    void readingIsStopped_data();
    void readingIsStopped();
    void savesWhileTheTextIsEdited_data() { addCodes(); }
    void savesWhileTheTextIsEdited();
    void savingIsStopped();
    void severalReadWhileTheTextIsEdited();
    void searchesWhileTheTextIsEdited_data();
    void searchesWhileTheTextIsEdited();
    void searchingIsGivenUp();
    void countsWhileTheTextIsEdited();
    void readsWhileTheTextIsLaidOut();

private:
    static void addCodes();

    QString m_text;
    DocumentFolder m_folder;
};

void JobsInThreadsTest::initTestCase()
{
    m_text = longText();
}

void JobsInThreadsTest::addCodes()
{
    QTest::addColumn<CharCode>("code");
    for (const CharCode code : { CharCode::Utf8, CharCode::ShiftJis, CharCode::Jis, CharCode::Unicode })
        QTest::addRow("%s", infoOf(code).name.data()) << code;
}

void JobsInThreadsTest::reads()
{
    QFETCH(CharCode, code);
    const TextCodec &codec = code == CharCode::Unicode ? utf16LittleEndianCodec() : infoOf(code).codec();
    QByteArray bytes = storedBytes(codec, storeWith(m_text));
    QVERIFY(m_folder.write(fileName, bytes));
    normalizeLineEnds(bytes, detectReturnCode(bytes, ReturnCode::Lf));
    const TextStore expected = codec.decode(bytes, LayoutRule());

    PoolRunner runner;
    TextStore store;
    auto owned = std::make_unique<ReadWork>(
        FileReading::Request{ m_folder.path() + fileName, code, {} }, LayoutCopy(store));
    ReadWork &work = *owned;
    Job job(std::move(owned), runner);
    connect(&job, &Job::partReady, this, [&] {
        for (ReadWork::Part &part : work.take()) {
            if (part.startsOver)
                store = TextStore();
            store.append(std::move(part.text));
            work.setLayout(LayoutCopy(store));
        }
    });
    QSignalSpy finished(&job, &Job::finished);
    QTRY_COMPARE(finished.size(), 1);
    QCOMPARE(finished[0][0].value<JobOutcome>(), JobOutcome::Done);
    QVERIFY(store.text() == expected.text());
    store.checkInvariants();
}

/// From a pipe that this thread writes, and ends while it could go on.
void JobsInThreadsTest::readsWhatComesByAndBy()
{
    const QByteArray line = "かな漢字 line\n";
    Pipe pipe;
    ThreadRunner runner;
    TextStore store;
    const auto input = std::make_shared<InputReading>(pipe.takeInput());
    auto owned = std::make_unique<InputWork>(input, CharCode::Utf8, FileCodes(), LayoutCopy(store));
    InputWork &work = *owned;
    Job job(std::move(owned), runner);
    connect(&job, &Job::partReady, this, [&] {
        for (ReadWork::Part &part : work.take()) {
            store.append(std::move(part.text));
            work.setLayout(LayoutCopy(store));
        }
    });
    QSignalSpy finished(&job, &Job::finished);
    for (int lines = 1; lines <= 3; ++lines) {
        pipe.put(line);
        QTRY_COMPARE(store.text(), QString::fromUtf8(line.repeated(lines)));
    }
    input->end();
    QTRY_COMPARE(finished.size(), 1);
    QCOMPARE(store.text(), QString::fromUtf8(line.repeated(3)));
}

void JobsInThreadsTest::readingIsStopped_data()
{
    QTest::addColumn<bool>("isGivenUp");
    QTest::newRow("and told") << false;
    QTest::newRow("by its end") << true;
}

void JobsInThreadsTest::readingIsStopped()
{
    QFETCH(bool, isGivenUp);
    QVERIFY(m_folder.write(fileName, m_text.toUtf8()));
    PoolRunner runner;
    for (int round = 0; round < 5; ++round) {
        TextStore store;
        auto owned = std::make_unique<ReadWork>(
            FileReading::Request{ m_folder.path() + fileName, {}, {} }, LayoutCopy(store));
        ReadWork &work = *owned;
        auto job = std::make_unique<Job>(std::move(owned), runner);
        QSignalSpy begun(job.get(), &Job::partReady);
        if (round > 0)
            QTRY_VERIFY(!begun.isEmpty());
        for (ReadWork::Part &part : work.take())
            store.append(std::move(part.text));
        job->stop();
        if (isGivenUp)
            job.reset();
        else
            QVERIFY(job->wait(QDeadlineTimer::Forever));
        QVERIFY(m_text.startsWith(store.text()));
    }
}

void JobsInThreadsTest::savesWhileTheTextIsEdited()
{
    QFETCH(CharCode, code);
    TextStore store = storeWith(m_text);
    const TextCodec &codec = infoOf(code).codec();
    const QByteArray expected = storedBytes(codec, store);
    PoolRunner runner;
    Job job(std::make_unique<DocumentSave>(SaveTarget{ m_folder.path(), fileName },
                WrittenText{ TextSnapshot(store), { &codec, TextCodec::AsRead::Nothing } },
                DocumentSave::LookFor::Bytes),
        runner);
    QSignalSpy finished(&job, &Job::finished);
    for (int round = 0; finished.isEmpty(); ++round) {
        editAllOver(store, round);
        QCoreApplication::processEvents();
    }
    QCOMPARE(finished[0][0].value<JobOutcome>(), JobOutcome::Done);
    QVERIFY(m_folder.read(fileName) == expected);
}

/// It may be over before.
void JobsInThreadsTest::savingIsStopped()
{
    TextStore store = storeWith(m_text);
    PoolRunner runner;
    for (int round = 0; round < 5; ++round) {
        QVERIFY(m_folder.write(fileName, "the old text"));
        const QByteArray whole = storedBytes(utf8Codec(), store);
        Job job(std::make_unique<DocumentSave>(SaveTarget{ m_folder.path(), fileName },
                    WrittenText{ TextSnapshot(store), { &utf8Codec(), TextCodec::AsRead::Nothing } },
                    DocumentSave::LookFor::Nothing),
            runner);
        QSignalSpy begun(&job, &Job::progressed), finished(&job, &Job::finished);
        if (round > 0)
            QTRY_VERIFY(!begun.isEmpty());
        job.stop();
        editAllOver(store, round);
        QVERIFY(job.wait(QDeadlineTimer::Forever));
        const bool isWritten = finished[0][0].value<JobOutcome>() == JobOutcome::Done;
        QVERIFY(m_folder.read(fileName) == (isWritten ? whole : "the old text"_ba));
        QCOMPARE(m_folder.names(), QStringList{ fileName });
    }
}

void JobsInThreadsTest::severalReadWhileTheTextIsEdited()
{
    TextStore store = storeWith(m_text);
    PoolRunner runner;
    std::vector<std::unique_ptr<Job>> jobs;
    std::vector<const SummingWork *> works;
    for (int i = 0; i < 3; ++i) {
        auto work = std::make_unique<SummingWork>(TextSnapshot(store));
        works.push_back(work.get());
        jobs.push_back(std::make_unique<Job>(std::move(work), runner));
        editAllOver(store, i);
    }
    for (int round = 0; !std::ranges::all_of(jobs, &Job::isFinished); ++round) {
        editAllOver(store, round);
        QCoreApplication::processEvents();
    }
    QVERIFY(std::ranges::all_of(works, &SummingWork::isAlwaysTheSame));
    store.checkInvariants();
}

void JobsInThreadsTest::searchesWhileTheTextIsEdited_data()
{
    QTest::addColumn<SearchDirection>("direction");
    QTest::addColumn<QString>("wanted");
    QTest::newRow("next") << SearchDirection::Forward << u"number 49999,"_s;
    QTest::newRow("previous") << SearchDirection::Backward << u"number 1,"_s;
    QTest::newRow("in vain") << SearchDirection::Forward << u"number 50000,"_s;
}

void JobsInThreadsTest::searchesWhileTheTextIsEdited()
{
    QFETCH(SearchDirection, direction);
    QFETCH(QString, wanted);
    TextStore store = storeWith(m_text);
    PoolRunner runner;
    auto owned = std::make_unique<SearchWork>(
        TextSnapshot(store), TextPattern(wanted, Qt::CaseSensitive), direction, TextRange{ {}, store.end() });
    const SearchWork &work = *owned;
    const Job job(std::move(owned), runner);
    for (int round = 0; !job.isFinished(); ++round) {
        editAllOver(store, round);
        QCoreApplication::processEvents();
    }
    const qsizetype expected = m_text.indexOf(wanted);
    QCOMPARE(work.begin(), expected < 0 ? std::nullopt : std::optional(Offset(expected)));
    store.checkInvariants();
}

void JobsInThreadsTest::searchingIsGivenUp()
{
    TextStore store = storeWith(m_text);
    PoolRunner runner;
    for (int round = 0; round < 5; ++round) {
        const TextPattern wanted(u"not there"_s, Qt::CaseInsensitive);
        const Job job(std::make_unique<SearchWork>(TextSnapshot(store), wanted, SearchDirection::Forward,
                          TextRange{ {}, store.end() }),
            runner);
        const QSignalSpy begun(&job, &Job::progressed);
        if (round > 0)
            QTRY_VERIFY(!begun.isEmpty());
        editAllOver(store, round);
    }
    store.checkInvariants();
}

void JobsInThreadsTest::countsWhileTheTextIsEdited()
{
    TextStore store = storeWith(m_text);
    const TextCounts expected = countText(store);
    PoolRunner runner;
    auto owned = std::make_unique<CountWork>(TextSnapshot(store));
    const CountWork &work = *owned;
    const Job job(std::move(owned), runner);
    for (int round = 0; !job.isFinished(); ++round) {
        editAllOver(store, round);
        QCoreApplication::processEvents();
    }
    QCOMPARE(work.counts().lineFeeds, expected.lineFeeds);
    QCOMPARE(work.counts().singleByteChars, expected.singleByteChars);
    QCOMPARE(work.counts().doubleByteChars, expected.doubleByteChars);
}

/// Its nodes have twins in the other layout, over the leaves that both have.
void JobsInThreadsTest::readsWhileTheTextIsLaidOut()
{
    TextStore store = storeWith(m_text);
    PoolRunner runner;
    auto owned = std::make_unique<SummingWork>(TextSnapshot(store));
    const SummingWork &work = *owned;
    const Job job(std::move(owned), runner);
    for (int round = 0; !job.isFinished(); ++round) {
        LayoutRule rule = store.layoutRule();
        rule.limit = (20 + round % 3) * subpixelsPerPixel;
        LayoutChange change(rule);
        for (int turn = 0; !store.setLayout(change, QDeadlineTimer(0)); ++turn) {
            if (turn % 64 == 0)
                editAllOver(store, round);
        }
        QCoreApplication::processEvents();
    }
    QVERIFY(work.isAlwaysTheSame);
    store.checkInvariants();
}

REGISTER_TEST(runCoreTest<JobsInThreadsTest>)
#include "jobsinthreads_test.moc"
