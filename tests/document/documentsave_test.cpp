#include "document/documentsave.h"

#include "document/textdocument.h"
#include "files/copycontent.h"
#include "files/endorder.h"
#include "jobs/job.h"
#include "tests/document/documentfolder.h"
#include "tests/jobs/steppedrunner.h"
#include "tests/testprogram.h"

#include <QSignalSpy>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <limits>
#include <new>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

const QByteArray oldText = "the old text\n";
constexpr int lineCount = 170'000; ///< of the text here, which takes several steps

/// What is written, and how many steps that takes.
constexpr int allSteps = 5;

QByteArray newText()
{
    return QByteArray("another line\n").repeated(lineCount);
}

} // namespace

/// A save that is made step by step while others go on.
class DocumentSaveTest : public QObject {
    Q_OBJECT

private slots:
    void init();

    void isAsOneInOneGo_data();
    void isAsOneInOneGo();
    void documentIsHeldMeanwhile();
    void progressGoesToTheEnd();
    void writesWhatThereWasWhenItBegan();
    void stoppedAfterAnyStep_data() { addSteps(); }
    void stoppedAfterAnyStep();
    void stoppedWhileTheFileIsCopied();
    void failsInAnyStep_data() { addSteps(); }
    void failsInAnyStep();
    void memoryRunsOutInAnyStep_data() { addSteps(); }
    void memoryRunsOutInAnyStep();
    void documentIsClosedAfterAnyStep_data() { addSteps(); }
    void documentIsClosedAfterAnyStep();
    void folderVanishes();
    void signalGivesItUp();
    void othersWriteAfterAnyStep_data() { addSteps(); }
    void othersWriteAfterAnyStep();
    void largeFileIsReadBehind_data();
    void largeFileIsReadBehind();
    void unreadableOldFileIsKeptOrStays_data();
    void unreadableOldFileIsKeptOrStays();
    void progressCountsTheOldFile();
    void anotherDocumentWritesMeanwhile_data() { addSteps(); }
    void anotherDocumentWritesMeanwhile();
    void anotherCodeIsLookedAt_data();
    void anotherCodeIsLookedAt();

private:
    static void addSteps();
    /// Nothing beside the file, which has this.
    bool isOnly(const QByteArray &content) const
    {
        return m_folder->names() == QStringList{ fileName } && m_folder->read(fileName) == content;
    }

    std::unique_ptr<DocumentFolder> m_folder;
};

void DocumentSaveTest::addSteps()
{
    QTest::addColumn<int>("steps");
    for (int steps = 0; steps < allSteps; ++steps)
        QTest::addRow("after %d", steps) << steps;
}

void DocumentSaveTest::init()
{
    EndOrder::withdraw();
    m_folder = std::make_unique<DocumentFolder>();
    QVERIFY(m_folder->write(fileName, oldText));
}

namespace {

struct Edited : TextDocument {
    explicit Edited(const DocumentFolder &folder, const FileCalls &calls = FileCalls::system())
        : TextDocument({}, calls)
    {
        load(folder.path(), ::fileName, CharCode::Utf8, { CharCode::Utf8, ReturnCode::Lf });
        replace(Offset(), store().length(), QString::fromLatin1(newText()));
    }
    std::unique_ptr<DocumentSave> begin() { return beginSave(path(), name()); }
};

} // namespace

void DocumentSaveTest::isAsOneInOneGo_data()
{
    QTest::addColumn<CharCode>("charCode");
    QTest::addColumn<ReturnCode>("lineEnd");
    QTest::newRow("UTF-8, LF") << CharCode::Utf8 << ReturnCode::Lf;
    QTest::newRow("UTF-8, CR+LF") << CharCode::Utf8 << ReturnCode::CrLf;
    QTest::newRow("JIS, CR") << CharCode::Jis << ReturnCode::Cr;
    QTest::newRow("EUC, LF") << CharCode::Euc << ReturnCode::Lf;
}

void DocumentSaveTest::isAsOneInOneGo()
{
    QFETCH(CharCode, charCode);
    QFETCH(ReturnCode, lineEnd);
    TextDocument document;
    document.replace({}, 0, u"text \u6F22\u5B57\n"_s.repeated(lineCount));
    document.replace(document.store().end(), 0, u"behind\u0000the end"_s);
    QCOMPARE(document.save(m_folder->path(), u"one go"_s, charCode, lineEnd).outcome,
        SaveResult::Outcome::Written);
    document.replace({}, 0, u"x"_s);
    document.undo();
    const QSignalSpy saved(&document, &TextDocument::saved), codes(&document, &TextDocument::codesChanged);
    const auto save = document.beginSave(m_folder->path(), fileName, charCode, lineEnd);
    QCOMPARE(codes.size(), 1);
    while (save->makeStep())
        QCOMPARE(m_folder->read(fileName), oldText);
    QCOMPARE(saved.size(), 0);
    QCOMPARE(document.endSave(*save).outcome, SaveResult::Outcome::Written);
    QCOMPARE(saved.size(), 1);
    QCOMPARE(m_folder->read(fileName), m_folder->read(u"one go"_s));
    QCOMPARE(document.name(), fileName);
    QCOMPARE(document.file().change(), FileChange::None);
}

void DocumentSaveTest::documentIsHeldMeanwhile()
{
    Edited document(*m_folder);
    const QSignalSpy refused(&document, &TextDocument::refused);
    const auto save = document.begin();
    QVERIFY(!document.requestChange());
    QCOMPARE(refused.size(), 1);
    while (save->makeStep()) { }
    QVERIFY(document.isHeld());
    document.endSave(*save);
    QVERIFY(document.requestChange());
    QVERIFY(!document.isEdited());
}

void DocumentSaveTest::progressGoesToTheEnd()
{
    Edited document(*m_folder);
    SteppedRunner runner;
    Job job(document.begin(), runner);
    QList<qint64> done;
    connect(&job, &Job::progressed, this, [&](const JobProgress &progress) {
        QCOMPARE(progress.total, document.store().length());
        done << progress.done;
    });
    QCOMPARE(runner.runAll(), allSteps);
    QVERIFY(std::is_sorted(done.begin(), done.end()));
    QVERIFY(done.size() >= 3);
    QCOMPARE(done.last(), document.store().length());
}

void DocumentSaveTest::writesWhatThereWasWhenItBegan()
{
    Edited document(*m_folder);
    const auto save = document.begin();
    QVERIFY(save->makeStep());
    document.setHeld(false);
    document.replace({}, 0, u"later "_s);
    while (save->makeStep()) { }
    QVERIFY(isOnly(newText()));
}

void DocumentSaveTest::stoppedAfterAnyStep()
{
    QFETCH(int, steps);
    Edited document(*m_folder);
    auto begun = document.begin();
    const DocumentSave &save = *begun;
    SteppedRunner runner;
    Job job(std::move(begun), runner);
    QSignalSpy finished(&job, &Job::finished);
    while (steps-- > 0)
        runner.step();
    job.stop();
    runner.runAll();
    QCOMPARE(finished.takeFirst().first().value<JobOutcome>(), JobOutcome::Stopped);
    QVERIFY(isOnly(oldText));
    QCOMPARE(document.endSave(save).outcome, SaveResult::Outcome::NotWritten);
    QVERIFY(document.isEdited());
    QVERIFY(document.history().canUndo());
    QVERIFY(document.requestChange());
    QCOMPARE(document.save(document.path(), fileName).outcome, SaveResult::Outcome::Written);
    QVERIFY(isOnly(newText()));
}

/// One of two names is written over in place, within a step.
void DocumentSaveTest::stoppedWhileTheFileIsCopied()
{
    const QByteArray otherName = QFile::encodeName(m_folder->path() + u"other.txt"_s);
    QCOMPARE(::link(QFile::encodeName(m_folder->path() + fileName).constData(), otherName.constData()), 0);
    int writes = 0;
    Job *written = nullptr;
    FileCalls calls = FileCalls::system();
    calls.pwrite = [&](int fd, const void *from, size_t size, off_t offset) {
        if (--writes == 0)
            written->stop();
        return ::pwrite(fd, from, size, offset);
    };
    Edited document(*m_folder, calls);
    const qint64 all = 2 * newText().size() + oldText.size();
    int stopped = 0;
    for (auto outcome = JobOutcome::Stopped; outcome == JobOutcome::Stopped; ++stopped) {
        auto begun = document.begin();
        const DocumentSave &save = *begun;
        SteppedRunner runner;
        Job job(std::move(begun), runner);
        written = &job;
        QSignalSpy finished(&job, &Job::finished);
        for (int step = 1; step < allSteps; ++step)
            runner.step();
        writes = 1 + stopped;
        runner.runAll();
        outcome = finished.takeFirst().first().value<JobOutcome>();
        const bool isDone = outcome == JobOutcome::Done;
        QCOMPARE(document.endSave(save).outcome,
            isDone ? SaveResult::Outcome::Written : SaveResult::Outcome::NotWritten);
        QCOMPARE(document.isEdited(), !isDone);
        QVERIFY(m_folder->read(fileName) == (isDone ? newText() : oldText));
        QCOMPARE(m_folder->names(), (QStringList{ fileName, u"other.txt"_s }));
        if (isDone)
            QVERIFY((job.progress() == JobProgress{ all, all }));
    }
    QVERIFY(stopped > newText().size() / copiedBlock);
}

void DocumentSaveTest::failsInAnyStep()
{
    QFETCH(int, steps);
    bool isBroken = false;
    FileCalls calls = FileCalls::system();
    const auto breaking = [&isBroken](auto call, auto failure) {
        return [call, failure, &isBroken](auto... arguments) -> decltype(failure) {
            if (!isBroken)
                return call(arguments...);
            errno = ENOSPC;
            return failure;
        };
    };
    calls.open = breaking(calls.open, -1);
    calls.pwrite = breaking(calls.pwrite, ssize_t(-1));
    calls.fsync = breaking(calls.fsync, -1);
    Edited document(*m_folder, calls);
    const auto save = document.begin();
    while (steps-- > 0)
        QVERIFY(save->makeStep());
    isBroken = true;
    while (save->makeStep()) { }
    QVERIFY(isOnly(oldText));
    QCOMPARE(document.endSave(*save).outcome, SaveResult::Outcome::NotWritten);
    QVERIFY(document.isEdited());
    isBroken = false;
    QCOMPARE(document.save(document.path(), fileName).outcome, SaveResult::Outcome::Written);
}

void DocumentSaveTest::memoryRunsOutInAnyStep()
{
    QFETCH(int, steps);
    bool hasMemory = true;
    const auto needing = [&hasMemory](auto call) {
        return [call, &hasMemory](auto... arguments) {
            if (!hasMemory)
                throw std::bad_alloc();
            return call(arguments...);
        };
    };
    FileCalls calls = FileCalls::system();
    calls.pwrite = needing(calls.pwrite);
    calls.fsync = needing(calls.fsync);
    Edited document(*m_folder, calls);
    {
        SteppedRunner runner;
        auto owned = document.begin();
        const DocumentSave &save = *owned;
        Job job(std::move(owned), runner);
        const QSignalSpy finished(&job, &Job::finished);
        while (steps-- > 0)
            QVERIFY(runner.step());
        hasMemory = false;
        runner.runAll();
        QCOMPARE(finished.size(), 1);
        QCOMPARE(finished[0][0].value<JobOutcome>(), JobOutcome::Failed);
        QCOMPARE(document.endSave(save).outcome, SaveResult::Outcome::NotWritten);
    }
    QVERIFY(isOnly(oldText));
    QVERIFY(document.isEdited());
    hasMemory = true;
    QCOMPARE(document.save(document.path(), fileName).outcome, SaveResult::Outcome::Written);
}

void DocumentSaveTest::documentIsClosedAfterAnyStep()
{
    QFETCH(int, steps);
    SteppedRunner runner;
    {
        Edited document(*m_folder);
        const Job job(document.begin(), runner);
        while (steps-- > 0)
            runner.step();
    }
    QVERIFY(!runner.isIdle());
    runner.runAll();
    QVERIFY(isOnly(oldText));
}

void DocumentSaveTest::folderVanishes()
{
    Edited document(*m_folder);
    const auto save = document.begin();
    QVERIFY(save->makeStep());
    QVERIFY(QDir(m_folder->path()).removeRecursively());
    while (save->makeStep()) { }
    QCOMPARE(document.endSave(*save).outcome, SaveResult::Outcome::NotWritten);
    QVERIFY(document.isEdited());
    QCOMPARE(document.store().length(), newText().size());
}

void DocumentSaveTest::signalGivesItUp()
{
    Edited document(*m_folder);
    const auto save = document.begin();
    QVERIFY(save->makeStep());
    EndOrder::give();
    while (save->makeStep()) { }
    EndOrder::withdraw();
    QVERIFY(!save->isWritten());
    QVERIFY(isOnly(oldText));
}

void DocumentSaveTest::othersWriteAfterAnyStep()
{
    QFETCH(int, steps);
    Edited document(*m_folder);
    const auto save = document.begin();
    while (steps-- > 0)
        QVERIFY(save->makeStep());
    QVERIFY(m_folder->write(fileName, "of others"));
    while (save->makeStep()) { }
    const SaveResult result = document.endSave(*save);
    QCOMPARE(result.outcome, SaveResult::Outcome::Written);
    QCOMPARE(result.overtaken, Overtaken::ByProgram);
    QVERIFY(isOnly(newText()));
    QFile kept(result.keptCopy);
    QVERIFY(kept.open(QIODevice::ReadOnly));
    QCOMPARE(kept.readAll(), QByteArray("of others"));
}

namespace {

void setTime(const QString &name, time_t time)
{
    const timespec times[] = { { time, 0 }, { time, 0 } };
    QCOMPARE(::utimensat(AT_FDCWD, QFile::encodeName(name).constData(), times, 0), 0);
}

} // namespace

void DocumentSaveTest::largeFileIsReadBehind_data()
{
    QTest::addColumn<bool>("isChanged");
    QTest::addColumn<bool>("isWrittenMeanwhile");
    QTest::newRow("touched") << false << false;
    QTest::newRow("changed") << true << false;
    QTest::newRow("written meanwhile") << false << true;
}

/// Its times have changed, and a save wants to know why.
void DocumentSaveTest::largeFileIsReadBehind()
{
    QFETCH(bool, isChanged);
    QFETCH(bool, isWrittenMeanwhile);
    QByteArray content = QByteArray(QByteArray(4095, 'l') + '\n').repeated(FileVersion::mostCompared / 3000);
    QVERIFY(m_folder->write(fileName, content));
    setTime(m_folder->path() + fileName, 1000);
    qint64 read = 0;
    FileCalls calls = FileCalls::system();
    calls.pread = [&read, inner = calls.pread](int fd, void *to, size_t size, off_t offset) {
        read += qint64(size);
        return inner(fd, to, size, offset);
    };
    Edited document(*m_folder, calls);
    content[0] = isChanged ? 'L' : 'l';
    QVERIFY(m_folder->write(fileName, content));
    setTime(m_folder->path() + fileName, 2000);
    read = 0;
    const auto save = document.begin();
    QVERIFY(read <= FileVersion::mostCompared);
    qint64 most = 0;
    for (int step = 0; std::exchange(read, 0), save->makeStep(); ++step) {
        most = qMax(most, read);
        if (step == 1 && isWrittenMeanwhile)
            setTime(m_folder->path() + fileName, 3000);
    }
    QVERIFY(most > 0 && most <= FileVersion::mostCompared / 2);
    const SaveResult result = document.endSave(*save);
    QCOMPARE(result.outcome, SaveResult::Outcome::Written);
    const bool isKept = isChanged || isWrittenMeanwhile;
    QCOMPARE(result.overtaken, isKept ? Overtaken::ByProgram : Overtaken::No);
    QCOMPARE(!result.keptCopy.isEmpty(), isKept);
    QVERIFY(isOnly(newText()));
}

void DocumentSaveTest::unreadableOldFileIsKeptOrStays_data()
{
    QTest::addColumn<int>("errors");
    QTest::addColumn<SaveResult::Outcome>("outcome");
    QTest::newRow("once") << 1 << SaveResult::Outcome::Written;
    QTest::newRow("for good") << std::numeric_limits<int>::max() << SaveResult::Outcome::NotWritten;
}

/// Read errors in the middle of a file of which nobody knows whether it is still the same: it might be
/// another program's work.
void DocumentSaveTest::unreadableOldFileIsKeptOrStays()
{
    QFETCH(int, errors);
    QFETCH(SaveResult::Outcome, outcome);
    const QByteArray content =
        QByteArray(QByteArray(4095, 'l') + '\n').repeated(FileVersion::mostCompared / 3000);
    QVERIFY(m_folder->write(fileName, content));
    setTime(m_folder->path() + fileName, 1000);
    int errorsLeft = 0;
    FileCalls calls = FileCalls::system();
    calls.pread = [&errorsLeft, inner = calls.pread](int fd, void *to, size_t size, off_t offset) {
        if (errorsLeft == 0 || offset == 0)
            return inner(fd, to, size, offset);
        --errorsLeft;
        errno = EIO;
        return ssize_t{ -1 };
    };
    Edited document(*m_folder, calls);
    setTime(m_folder->path() + fileName, 2000);
    const auto save = document.begin();
    errorsLeft = errors;
    while (save->makeStep()) { }
    QVERIFY(errorsLeft < errors);
    const SaveResult result = document.endSave(*save);
    QCOMPARE(result.outcome, outcome);
    const bool isWritten = outcome == SaveResult::Outcome::Written;
    QCOMPARE(result.keptCopy.isEmpty(), !isWritten);
    QVERIFY(isOnly(isWritten ? newText() : content));
    if (!isWritten)
        return;
    QFile kept(result.keptCopy);
    QVERIFY(kept.open(QIODevice::ReadOnly));
    QVERIFY(kept.readAll() == content);
}

/// It is read through before.
void DocumentSaveTest::progressCountsTheOldFile()
{
    const QByteArray content =
        QByteArray(QByteArray(4095, 'l') + '\n').repeated(FileVersion::mostCompared / 3000);
    QVERIFY(m_folder->write(fileName, content));
    setTime(m_folder->path() + fileName, 1000);
    Edited document(*m_folder);
    setTime(m_folder->path() + fileName, 2000);
    SteppedRunner runner;
    Job job(document.begin(), runner);
    QVERIFY(runner.step());
    QVERIFY(job.progress().done > 0);
    const qint64 all = content.size() + newText().size();
    QCOMPARE(job.progress().total, all);
    qint64 before = 0;
    while (job.progress().done < content.size() && runner.step()) {
        QVERIFY(job.progress().done > before);
        before = job.progress().done;
    }
    runner.runAll();
    QCOMPARE(job.progress().done, all);
    QCOMPARE(job.progress().total, all);
}

/// The later one says who has written, and keeps that.
void DocumentSaveTest::anotherDocumentWritesMeanwhile()
{
    QFETCH(int, steps);
    Edited document(*m_folder);
    TextDocument other;
    QVERIFY(!other.load(m_folder->path(), fileName, CharCode::Utf8, {}));
    other.replace({}, 0, u"other "_s);
    const auto save = document.begin();
    while (steps-- > 0)
        QVERIFY(save->makeStep());
    QCOMPARE(other.save(m_folder->path(), fileName).outcome, SaveResult::Outcome::Written);
    while (save->makeStep()) { }
    const SaveResult result = document.endSave(*save);
    QCOMPARE(result.outcome, SaveResult::Outcome::Written);
    QCOMPARE(result.overtaken, Overtaken::ByDocument);
    QFile kept(result.keptCopy);
    QVERIFY(kept.open(QIODevice::ReadOnly));
    QCOMPARE(kept.readAll(), "other " + oldText);
    QVERIFY(isOnly(newText()));
}

void DocumentSaveTest::anotherCodeIsLookedAt_data()
{
    QTest::addColumn<QByteArray>("end");
    QTest::addColumn<bool>("hasBytes");
    QTest::newRow("plain") << QByteArray("plain") << false;
    QTest::newRow("an undecodable byte") << QByteArray("\xff") << true;
}

/// Text that was read in a code keeps its bytes for that code.
void DocumentSaveTest::anotherCodeIsLookedAt()
{
    QFETCH(QByteArray, end);
    QFETCH(bool, hasBytes);
    QVERIFY(m_folder->write(fileName, newText() + end));
    TextDocument document;
    document.load(m_folder->path(), fileName, CharCode::Euc, {});
    const TextCodec &before = document.byteCodec();
    const auto save = document.beginSave(m_folder->path(), fileName, CharCode::ShiftJis);
    while (save->makeStep()) { }
    document.endSave(*save);
    QCOMPARE(&document.byteCodec() == &before, hasBytes);
}

REGISTER_TEST(runCoreTest<DocumentSaveTest>)
#include "documentsave_test.moc"
