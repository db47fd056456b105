#include "tests/files/savedfile.h"
#include "tests/recovery/journalbytes.h"
#include "tests/testprogram.h"

#include <QSignalSpy>
#include <QTest>

#include <condition_variable>
#include <mutex>

using namespace Qt::StringLiterals;
using Outcome = Restored::Outcome;

namespace {

struct FaultKind {
    const char *name;
    int error;
};
constexpr FaultKind faultKinds[] = { { "ENOSPC", ENOSPC }, { "EIO", EIO }, { "EACCES", EACCES },
    { "EINTR", EINTR }, { "EDQUOT", EDQUOT }, { "EROFS", EROFS } };

/// The system's, but nothing waits for the disk.
FileCalls quickCalls()
{
    FileCalls calls = FileCalls::system();
    calls.fsync = [](int) { return 0; };
    return calls;
}

/// Lets one call fail, once.
class OneFault {
public:
    OneFault(int step, int error)
        : m_step(step)
        , m_error(error)
    {
    }
    FileCalls calls()
    {
        return withFaults(quickCalls(),
            [this](const QByteArray &call) { return canFail(call) && ++m_count == m_step ? m_error : 0; });
    }
    bool isReached() const { return m_count >= m_step; }

private:
    /// A file that was closed is closed, whatever close() says. A signal interrupts what may wait.
    bool canFail(const QByteArray &call) const
    {
        static const QSet<QByteArray> waiting{ "open", "pread", "pwrite", "fsync", "flock", "fchmod" };
        return m_error == EINTR ? waiting.contains(call) : call != "close" && call != "closedir";
    }

    const int m_step;
    const int m_error;
    int m_count = 0;
};

} // namespace

/// What is lost when a call of the system fails: nothing that was written before, and nothing at all once the
/// calls succeed again.
class JournalFailuresTest : public QObject {
    Q_OBJECT

private slots:
    void everyFailingCallOfWrites_data() { addFaults(); }
    void everyFailingCallOfWrites();
    void everyFailingCallOfRestoring_data() { addFaults(); }
    void everyFailingCallOfRestoring();
    void everyFailingCallOfTheList_data() { addFaults(); }
    void everyFailingCallOfTheList();
    void shortWritesAreContinued();
    void fullDiskIsToldAndTriedAgain();
    void folderOfAnotherUserIsNotUsed();
    void folderWithoutLocksIsNotUsed();
    void flushDoesNotWaitForADiskThatHangs();

private:
    static void addFaults()
    {
        QTest::addColumn<int>("error");
        for (const FaultKind &kind : faultKinds)
            QTest::newRow(kind.name) << kind.error;
    }
    /// What would come back if the program were killed now.
    static QString killedNow(const RecoveryFolder &folder);
    static void writeOne(const RecoveryFolder &folder);
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
    QFETCH(int, error);
    bool isReached = true;
    for (int step = 1; isReached; ++step) {
        RecoveryFolder folder;
        QVERIFY(folder.documents().write(u"file"_s, "text\n"));
        OneFault fault(step, error);
        const FileCalls calls = fault.calls();
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
        isReached = fault.isReached();
    }
}

void JournalFailuresTest::writeOne(const RecoveryFolder &folder)
{
    RecoveryFolder clock;
    RecoveryJournals journals(folder.journals(), FileCalls::system(), clock.clock());
    TextDocument document({ CharCode::Utf8, ReturnCode::Lf });
    QVERIFY(!document.load(folder.documents().path(), u"file"_s, {}, {}));
    journals.attach(document);
    document.replace({}, 0, u"a");
    QVERIFY(journals.flush(std::chrono::minutes(1)));
}

void JournalFailuresTest::everyFailingCallOfRestoring()
{
    QFETCH(int, error);
    RecoveryFolder folder;
    QVERIFY(folder.documents().write(u"file"_s, "text\n"));
    writeOne(folder);
    const LeftBehind found = folder.leftBehind().at(0);
    bool isReached = true;
    for (int step = 1; isReached; ++step) {
        OneFault fault(step, error);
        TextDocument document;
        const FileCalls calls = fault.calls();
        const Restored restored = restore(found.journal, document, calls);
        const bool isRestored = restored.outcome == Outcome::Edited || restored.outcome == Outcome::New;
        QCOMPARE(document.store().text(), isRestored ? u"atext\n"_s : QString());
        QVERIFY(isRestored || error != EINTR);
        QVERIFY(isRestored || restored.hasReadError || !restored.journal);
        isReached = fault.isReached();
        QVERIFY(isReached || restored.outcome == Outcome::Edited);
    }
    QCOMPARE(folder.leftBehind().size(), 1U);
}

void JournalFailuresTest::everyFailingCallOfTheList()
{
    QFETCH(int, error);
    RecoveryFolder folder;
    QVERIFY(folder.documents().write(u"file"_s, "text\n"));
    writeOne(folder);
    bool isReached = true;
    for (int step = 1; isReached; ++step) {
        OneFault fault(step, error);
        findLeftBehind(folder.journals(), fault.calls());
        isReached = fault.isReached();
    }
    QCOMPARE(folder.leftBehind().size(), 1U);
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

REGISTER_TEST(runCoreTest<JournalFailuresTest>)
#include "journalfailures_test.moc"
