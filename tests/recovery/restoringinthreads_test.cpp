#include "jobs/job.h"
#include "jobs/poolrunner.h"
#include "recovery/journallook.h"
#include "recovery/restoring.h"
#include "tests/recovery/recoveryfolder.h"
#include "tests/testprogram.h"

using namespace Qt::StringLiterals;

/// Texts that come back, looked at by a job in threads while this one edits.
class RestoringInThreadsTest : public QObject {
    Q_OBJECT

private slots:
    void init();

    void isFoundWhileOthersAreEdited();
    void lookIsStopped();

private:
    static constexpr int lines = 200'000;

    SharedJournal openJournal(ClaimedJournal &claimed) const;

    std::unique_ptr<RecoveryFolder> m_folder;
    TextDocument m_document; ///< read from the file that the edits begin with
    QString m_text; ///< that comes back
};

/// Of several steps of each kind.
void RestoringInThreadsTest::init()
{
    m_folder = std::make_unique<RecoveryFolder>();
    const DocumentFolder &files = m_folder->documents();
    QVERIFY(files.write(u"a.txt"_s, QByteArray("a line of a long text\n").repeated(lines)));
    {
        Run run(*m_folder);
        QVERIFY(!run.document.load(files.path(), u"a.txt"_s, {}, {}));
        run.document.replace(Offset(0), 0, u"first "_s);
        run.document.replace(Offset(100), 5, u"an edit of a text\n"_s.repeated(lines));
        QVERIFY(run.pause());
        m_text = run.text();
    }
    QVERIFY(!m_document.load(files.path(), u"a.txt"_s, {}, {}));
}

SharedJournal RestoringInThreadsTest::openJournal(ClaimedJournal &claimed) const
{
    claimed = ClaimedJournal::claim(m_folder->leftBehind().front().journal, FileCalls::system());
    return openAgain(claimed);
}

/// What is edited shares its nodes with the text that is looked at.
void RestoringInThreadsTest::isFoundWhileOthersAreEdited()
{
    ClaimedJournal claimed;
    const SharedJournal journal = openJournal(claimed);
    QVERIFY(journal);
    const TextStore &store = std::as_const(m_document).store();
    TextStore other(store.layoutRule());
    other.insert({}, store.piece({}, store.length()));
    PoolRunner runner;
    auto work = std::make_unique<JournalLook>(journal, TextSnapshot(store));
    const JournalLook &look = *work;
    const Job job(std::move(work), runner);
    int edits = 0;
    while (!job.isFinished()) {
        other.replace(Offset(edits++ * 1000 % other.length()), 1, u"x");
        QCoreApplication::processEvents();
    }
    QVERIFY(edits > 0);
    QVERIFY(look.hash().has_value());
    Restoring restoring(std::move(claimed), journal, m_document);
    restoring.lookInFile(look.hash());
    while (!restoring.prepare(QDeadlineTimer(1)))
        other.replace(Offset(edits++ * 1000 % other.length()), 1, u"x");
    QCOMPARE(restoring.finish().outcome, Restored::Outcome::Edited);
    QVERIFY(store.text() == m_text);
    store.checkInvariants();
    other.checkInvariants();
}

void RestoringInThreadsTest::lookIsStopped()
{
    for (const bool isGivenUp : { false, true }) {
        ClaimedJournal claimed;
        const SharedJournal journal = openJournal(claimed);
        PoolRunner runner;
        auto job = std::make_unique<Job>(
            std::make_unique<JournalLook>(journal, TextSnapshot(std::as_const(m_document).store())), runner);
        if (isGivenUp)
            job.reset();
        else
            job->stop();
        m_document.replace(Offset(0), 0, u"x"_s);
        QTRY_VERIFY(!job || job->isFinished());
    }
    QCOMPARE(m_folder->leftBehind().size(), 1u);
}

REGISTER_TEST(runCoreTest<RestoringInThreadsTest>)
#include "restoringinthreads_test.moc"
