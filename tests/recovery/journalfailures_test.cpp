#include "tests/faults/onefault.h"
#include "tests/recovery/journalbytes.h"
#include "tests/testprogram.h"

#include <QSignalSpy>
#include <QTest>

#include <condition_variable>
#include <mutex>
#include <new>

using namespace Qt::StringLiterals;
using Outcome = Restored::Outcome;

/// What is lost when a call of the system fails: nothing that was written before, and nothing at all once the
/// calls succeed again.
class JournalFailuresTest : public QObject {
    Q_OBJECT

private slots:
    void everyFailingCallOfWrites_data() { addFaults(); }
    void everyFailingCallOfWrites();
    void shortWritesAreContinued();
    void journalReadInPartIsKept();
    void fullDiskIsToldAndTriedAgain();
    void tooLittleMemoryIsToldAndTriedAgain();
    void fullDiskIsForgottenWithTheLastEdit();
    void oldJournalStaysWhileThereIsNoNewOne_data();
    void oldJournalStaysWhileThereIsNoNewOne();
    void folderThatCannotBeMadeIsTold();
    void folderOfAnotherUserIsNotUsed();
    void folderWithoutLocksIsNotUsed();
    void flushDoesNotWaitForADiskThatHangs();
    void closedJournalGoesAlsoWhenTheProgramEnds();

private:
    static void addFaults()
    {
        QTest::addColumn<FaultKind>("kind");
        for (const FaultKind &kind : faultKinds) {
            if (kind.effect != FaultKind::Effect::Kills)
                QTest::newRow(kind.name) << kind;
        }
    }
    /// What would come back if the program were killed now.
    static QString killedNow(const RecoveryFolder &folder);
};

QString JournalFailuresTest::killedNow(const RecoveryFolder &folder)
{
    const QByteArray bytes = JournalBytes::only(folder);
    if (bytes.isEmpty())
        return u"(none)"_s;
    RecoveryFolder copy;
    TextDocument document;
    const Restored restored = restore(JournalBytes::put(copy, bytes).journal, document);
    return restored.outcome == Outcome::NotPossible ? u"(broken)"_s : document.store().text();
}

void JournalFailuresTest::everyFailingCallOfWrites()
{
    QFETCH(FaultKind, kind);
    bool isReached = true;
    for (qsizetype step = 1; isReached; ++step) {
        RecoveryFolder folder;
        QVERIFY(folder.documents().write(u"file"_s, "text\n"));
        OneFault fault(kind, step);
        fault.begin();
        const FileCalls &calls = fault.calls();
        QString last = u"(none)"_s;
        {
            Run run(folder, calls);
            QVERIFY(!run.document.load(folder.documents().path(), u"file"_s, {}, {}));
            for (const QString &letter : { u"a"_s, u"b"_s, u"c"_s }) {
                run.document.replace({}, 0, letter);
                const bool isWritten = run.pause();
                const QString now = killedNow(folder);
                QVERIFY2(now == run.text() || (!isWritten && now == last), qPrintable(now));
                QCOMPARE(run.journals.failure() != 0, !isWritten);
                last = now;
            }
            QVERIFY(run.pause());
            QCOMPARE(killedNow(folder), u"cbatext\n"_s);
            QVERIFY(run.pause());
            QCOMPARE(run.journals.failure(), 0);
        }
        const auto found = folder.leftBehind(); // clears away what was not finished
        QCOMPARE(found.size(), 1U);
        QCOMPARE(folder.files().size(), 1);
        isReached = fault.seen().size() >= step;
    }
}

void JournalFailuresTest::shortWritesAreContinued()
{
    FileCalls calls = quickCalls();
    calls.pwrite = [](int file, const void *from, size_t size, off_t offset) {
        return ::pwrite(file, from, qMin<size_t>(size, 7), offset);
    };
    calls.pread = [](int file, void *to, size_t size, off_t offset) {
        return ::pread(file, to, qMin<size_t>(size, 7), offset);
    };
    RecoveryFolder folder;
    {
        Run run(folder, calls);
        run.document.replace({}, 0, u"a long text, at least longer than seven bytes");
        QVERIFY(run.pause());
    }
    TextDocument document;
    const auto found = findLeftBehind(folder.journals(), calls);
    QCOMPARE(restore(found.at(0).journal, document, calls).outcome, Outcome::New);
    QCOMPARE(document.store().text(), u"a long text, at least longer than seven bytes"_s);
}

/// What cannot be read now may be read another time.
void JournalFailuresTest::journalReadInPartIsKept()
{
    RecoveryFolder folder;
    {
        Run run(folder);
        run.document.replace({}, 0, u"first");
        QVERIFY(run.pause());
        run.document.replace({}, 0, QString(200'000, u'x'));
        QVERIFY(run.pause());
    }
    const LeftBehind found = folder.leftBehind().at(0);
    FileCalls calls = quickCalls();
    calls.pread = [](int file, void *to, size_t size, off_t offset) {
        errno = EIO;
        return offset >= 65536 ? ssize_t(-1) : ::pread(file, to, size, offset);
    };
    {
        Run run(folder, calls);
        QVERIFY(run.journals.restore(found, run.document).hasReadError);
        QCOMPARE(run.text(), u"first"_s);
        QVERIFY(run.pause());
    }
    QVERIFY(QFile::exists(QFile::decodeName(found.journal)));
}

void JournalFailuresTest::fullDiskIsToldAndTriedAgain()
{
    std::atomic<bool> isFull = true;
    const FileCalls calls = withFaults(
        quickCalls(), [&isFull](const QByteArray &call) { return isFull && call == "pwrite" ? ENOSPC : 0; });
    RecoveryFolder folder;
    Run run(folder, calls);
    const QSignalSpy told(&run.journals, &RecoveryJournals::failureChanged);
    run.document.replace({}, 0, u"text");
    QVERIFY(!run.pause());
    QCOMPARE(run.journals.failure(), ENOSPC);
    QCOMPARE(told.size(), 1);
    QCOMPARE(folder.files(), QStringList());
    isFull = false;
    folder.now += WriteSchedule::longestRetry;
    run.journals.writeDue();
    QTRY_COMPARE(run.journals.failure(), 0);
    QCOMPARE(told.size(), 2);
    QCOMPARE(killedNow(folder), u"text"_s);
}

/// What had been written before is still there meanwhile.
void JournalFailuresTest::tooLittleMemoryIsToldAndTriedAgain()
{
    std::atomic<bool> hasMemory = true;
    FileCalls calls = quickCalls();
    calls.pwrite = [&hasMemory](int file, const void *from, size_t size, off_t offset) {
        if (!hasMemory)
            throw std::bad_alloc();
        return ::pwrite(file, from, size, offset);
    };
    RecoveryFolder folder;
    Run run(folder, calls);
    run.document.replace({}, 0, u"text");
    QVERIFY(run.pause());
    hasMemory = false;
    run.document.replace({}, 0, u"more ");
    QVERIFY(!run.pause());
    QCOMPARE(run.journals.failure(), ENOMEM);
    QCOMPARE(killedNow(folder), u"text"_s);
    hasMemory = true;
    QVERIFY(run.pause());
    QCOMPARE(run.journals.failure(), 0);
    QCOMPARE(killedNow(folder), u"more text"_s);
}

void JournalFailuresTest::fullDiskIsForgottenWithTheLastEdit()
{
    const FileCalls calls =
        withFaults(quickCalls(), [](const QByteArray &call) { return call == "pwrite" ? ENOSPC : 0; });
    RecoveryFolder folder;
    Run run(folder, calls);
    run.document.replace({}, 0, u"text");
    QVERIFY(!run.pause());
    QCOMPARE(run.journals.failure(), ENOSPC);
    const QSignalSpy told(&run.journals, &RecoveryJournals::failureChanged);
    run.document.undo();
    QVERIFY(!run.document.isEdited());
    folder.now += WriteSchedule::longestRetry;
    run.journals.writeDue();
    QCOMPARE(run.journals.failure(), 0);
    QCOMPARE(told.size(), 1);
}

void JournalFailuresTest::oldJournalStaysWhileThereIsNoNewOne_data()
{
    QTest::addColumn<std::function<void(Run & run)>>("act");
    const auto save = [](Run &run) {
        run.document.save(run.document.path(), run.document.name());
        run.journals.keep(run.document, KeptFor::Substitution);
    };
    const auto setText = [](Run &run) {
        TextStore text;
        text.replace(Offset(0), 0, u"another text");
        run.document.setText(std::move(text));
    };
    using Act = std::function<void(Run & run)>;
    QTest::newRow("detached from its file") << Act([](Run &run) { run.document.detachFromFile(u"b"_s); });
    QTest::newRow("saved with substitutes") << Act(save);
    QTest::newRow("another text") << Act(setText);
}

/// What begins another journal may not be the end of the one that there is.
void JournalFailuresTest::oldJournalStaysWhileThereIsNoNewOne()
{
    QFETCH(std::function<void(Run & run)>, act);
    std::atomic<bool> isFull = false;
    const FileCalls calls = withFaults(
        quickCalls(), [&isFull](const QByteArray &call) { return isFull && call == "pwrite" ? ENOSPC : 0; });
    RecoveryFolder folder;
    QVERIFY(folder.documents().write(u"file"_s, "text\n"));
    Run run(folder, calls);
    QVERIFY(!run.document.load(folder.documents().path(), u"file"_s, {}, {}));
    run.document.replace({}, 0, u"a");
    QVERIFY(run.pause());
    isFull = true;
    act(run);
    QVERIFY(!run.pause());
    QCOMPARE(killedNow(folder), u"atext\n"_s);
    isFull = false;
    folder.now += WriteSchedule::longestRetry;
    QVERIFY(run.pause());
    QCOMPARE(killedNow(folder), run.text());
    QCOMPARE(folder.files().size(), 1);
}

/// With its reason, which the user is told.
void JournalFailuresTest::folderThatCannotBeMadeIsTold()
{
    RecoveryFolder folder;
    std::atomic<bool> isReadOnly = true;
    const FileCalls calls = withFaults(quickCalls(),
        [&isReadOnly](const QByteArray &call) { return isReadOnly && call == "mkdir" ? EROFS : 0; });
    Run run(folder, calls);
    run.document.replace({}, 0, u"text");
    QVERIFY(!run.pause());
    QCOMPARE(run.journals.failure(), EROFS);
    isReadOnly = false;
    folder.now += WriteSchedule::longestRetry;
    QVERIFY(run.pause());
    QCOMPARE(run.journals.failure(), 0);
    QCOMPARE(killedNow(folder), u"text"_s);
}

void JournalFailuresTest::folderOfAnotherUserIsNotUsed()
{
    FileCalls calls = quickCalls();
    calls.fstat = [](int file, struct stat *info) {
        const int result = ::fstat(file, info);
        info->st_uid += 1;
        return result;
    };
    RecoveryFolder folder;
    Run run(folder, calls);
    run.document.replace({}, 0, u"text");
    QVERIFY(!run.pause());
    QCOMPARE(run.journals.failure(), EPERM);
    QCOMPARE(folder.files(), QStringList());
}

/// Another program could not know whose its journals are.
void JournalFailuresTest::folderWithoutLocksIsNotUsed()
{
    FileCalls calls = quickCalls();
    calls.flock = [](int, int) {
        errno = ENOLCK;
        return -1;
    };
    RecoveryFolder folder;
    Run run(folder, calls);
    run.document.replace({}, 0, u"text");
    QVERIFY(!run.pause());
    QCOMPARE(run.journals.failure(), ENOLCK);
    QCOMPARE(folder.files(), QStringList());
}

void JournalFailuresTest::flushDoesNotWaitForADiskThatHangs()
{
    std::mutex mutex;
    std::condition_variable released;
    bool hangs = true;
    FileCalls calls = quickCalls();
    calls.fsync = [&](int) {
        std::unique_lock lock(mutex);
        released.wait(lock, [&hangs] { return !hangs; });
        return 0;
    };
    RecoveryFolder folder;
    Run run(folder, calls);
    run.document.replace({}, 0, u"text");
    QVERIFY(!run.journals.flush(std::chrono::milliseconds(1)));
    {
        const std::lock_guard lock(mutex);
        hangs = false;
    }
    released.notify_all();
    QVERIFY(run.journals.flush(std::chrono::minutes(1)));
}

/// The disk is so slow that the journal is still being written when the document is closed and the program
/// ends.
void JournalFailuresTest::closedJournalGoesAlsoWhenTheProgramEnds()
{
    std::mutex mutex;
    std::condition_variable changed;
    bool hangs = false, isHanging = false;
    FileCalls calls = quickCalls();
    calls.fsync = [&](int) {
        std::unique_lock lock(mutex);
        isHanging = hangs;
        changed.notify_all();
        changed.wait(lock, [&hangs] { return !hangs; });
        return 0;
    };
    const auto setHanging = [&](bool wanted) {
        const std::lock_guard lock(mutex);
        hangs = wanted;
        changed.notify_all();
    };
    RecoveryFolder folder;
    {
        Run run(folder, calls);
        run.document.replace({}, 0, u"text");
        QVERIFY(run.pause());
        QCOMPARE(folder.files().size(), 1);
        setHanging(true);
        run.document.replace({}, 0, u"more ");
        run.journals.flush(std::chrono::milliseconds(0));
        std::unique_lock lock(mutex);
        changed.wait(lock, [&isHanging] { return isHanging; });
        lock.unlock();
        run.journals.end(run.document);
        setHanging(false);
    }
    QCOMPARE(folder.files(), QStringList());
}

REGISTER_TEST(runCoreTest<JournalFailuresTest>)
#include "journalfailures_test.moc"
