#include "recovery/recoveryjournals.h"

#include <algorithm>

namespace {

class LookingWork : public JobWork {
public:
    LookingWork(QByteArray folder, const FileCalls &calls)
        : m_folder(std::move(folder))
        , m_calls(calls)
    {
    }
    Step step(JobTurn &) override
    {
        m_found = findLeftBehind(m_folder, m_calls);
        return Step::Done;
    }
    const std::vector<LeftBehind> &found() const { return m_found; }

private:
    const QByteArray m_folder;
    const FileCalls &m_calls;
    std::vector<LeftBehind> m_found;
};

} // namespace

RecoveryJournals::RecoveryJournals(QByteArray folder, const FileCalls &calls, JournalClock clock)
    : m_folder(std::move(folder))
    , m_calls(calls)
    , m_clock(std::move(clock))
    , m_jobs(m_folder, calls)
{
    connect(&m_jobs, &JournalJobs::told, this, &RecoveryJournals::noteResult);
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &RecoveryJournals::writeDue);
    m_lookingAgain.setSingleShot(true);
    connect(&m_lookingAgain, &QTimer::timeout, this, &RecoveryJournals::lookForLeftBehind);
}

RecoveryJournals::~RecoveryJournals() = default;

JournalClock RecoveryJournals::steadyClock()
{
    return [] {
        const auto now = std::chrono::steady_clock::now().time_since_epoch();
        return qint64{ std::chrono::duration_cast<std::chrono::milliseconds>(now).count() };
    };
}

DocumentJournal *RecoveryJournals::journalOf(const TextDocument &document) const
{
    const auto found = m_journals.find(&document);
    return found == m_journals.end() ? nullptr : found->second.get();
}

void RecoveryJournals::attach(TextDocument &document, PlaceReader place)
{
    Q_ASSERT(!journalOf(document));
    auto journal = std::make_unique<DocumentJournal>(document, std::move(place), m_jobs, m_clock);
    connect(journal.get(), &DocumentJournal::dirtied, this, &RecoveryJournals::schedule);
    connect(&document, &QObject::destroyed, this, [this](QObject *gone) { m_journals.erase(gone); });
    m_journals[&document] = std::move(journal);
    schedule();
}

void RecoveryJournals::end(TextDocument &document)
{
    if (DocumentJournal *const journal = journalOf(document)) {
        journal->end();
        disconnect(&document, nullptr, this, nullptr);
        m_journals.erase(&document);
        if (m_failure != 0) // it may have been this one's
            noteFailures();
    }
}

void RecoveryJournals::leave(TextDocument &document)
{
    const auto found = m_journals.find(&document);
    if (found == m_journals.end())
        return;
    disconnect(&document, nullptr, this, nullptr);
    std::unique_ptr<DocumentJournal> journal = std::move(found->second);
    m_journals.erase(found);
    const int number = journal->leave();
    m_leaving[number] = std::move(journal);
    noteFailures();
}

/// A text that could not be written is given up: what would tell of it is closed.
void RecoveryJournals::noteLeaving(const WriteResult &result)
{
    const auto found = m_leaving.find(result.journal);
    if (found == m_leaving.end())
        return;
    if (result.of == WriteResult::Of::Write) {
        found->second->noteResult(result);
        found->second.reset();
    } else if (result.of == WriteResult::Of::Leaving) {
        m_leaving.erase(found);
        emit leftBehindChanged();
    }
}

void RecoveryJournals::keep(const TextDocument &document, KeptFor reason)
{
    if (DocumentJournal *const journal = journalOf(document))
        journal->keep(reason);
}

void RecoveryJournals::endKeeping(const TextDocument &document, KeptFor reason)
{
    if (DocumentJournal *const journal = journalOf(document))
        journal->endKeeping(reason);
}

void RecoveryJournals::writeDue()
{
    for (const auto &[document, journal] : m_journals) {
        if (const auto due = journal->due(); due && *due <= m_clock())
            journal->writeNow();
    }
    noteFailures(); // of what needs no journal any more
    schedule();
}

/// The timer is set for the first that is due, and left alone while it comes early enough: an edit that puts
/// a write off costs nothing.
void RecoveryJournals::schedule()
{
    std::optional<qint64> first;
    for (const auto &[document, journal] : m_journals) {
        if (const auto due = journal->due())
            first = first ? qMin(*first, *due) : *due;
    }
    if (!first)
        return;
    const qint64 wait = qBound<qint64>(0, *first - m_clock(), WriteSchedule::longestRetry);
    if (!m_timer.isActive() || m_timer.remainingTime() > wait)
        m_timer.start(int(wait));
}

bool RecoveryJournals::flush(std::chrono::milliseconds limit)
{
    const QDeadlineTimer end(limit);
    using Until = JournalJobs::Until;
    const auto isWritten = [](const auto &entry) { return entry.second->isWritten(); };
    // What is on its way has to arrive first; only then what was edited since can go.
    constexpr int mostRounds = 2;
    for (int round = 0; round < mostRounds && !std::ranges::all_of(m_journals, isWritten); ++round) {
        for (const auto &[document, journal] : m_journals)
            journal->writeNow();
        m_jobs.wait(Until::AllWritten, end);
    }
    m_jobs.wait(Until::NothingLeft, end);
    return std::ranges::all_of(m_journals, isWritten);
}

void RecoveryJournals::leaveAll(std::chrono::milliseconds limit)
{
    m_journals.clear();
    m_jobs.wait(JournalJobs::Until::NothingLeft, QDeadlineTimer(limit));
}

void RecoveryJournals::noteResult(const WriteResult &result)
{
    for (const auto &[document, journal] : m_journals)
        journal->noteResult(result);
    noteLeaving(result);
    noteFailures();
    schedule();
}

void RecoveryJournals::noteFailures()
{
    int failure = 0;
    for (const auto &[document, journal] : m_journals)
        failure = journal->error() != 0 ? journal->error() : failure;
    if (std::exchange(m_failure, failure) != failure)
        emit failureChanged();
}

void RecoveryJournals::retry()
{
    for (const auto &[document, journal] : m_journals)
        journal->retry();
    schedule();
}

void RecoveryJournals::lookForLeftBehind()
{
    m_lookingAgain.stop();
    auto work = std::make_unique<LookingWork>(m_folder, m_calls);
    const LookingWork &looking = *work;
    m_looking = std::make_unique<Job>(std::move(work), m_jobs.runner());
    connect(m_looking.get(), &Job::finished, this, [this, &looking](JobOutcome outcome) {
        if (outcome == JobOutcome::Done)
            emit foundLeftBehind(looking.found());
        else
            m_lookingAgain.start(int(WriteSchedule::firstRetry));
    });
}

Restored RecoveryJournals::restore(const LeftBehind &found, TextDocument &document)
{
    return takeRestored(::restore(found.journal, document, m_calls), document);
}

ClaimedJournal RecoveryJournals::claim(const LeftBehind &found) const
{
    return ClaimedJournal::claim(found.journal, m_calls);
}

Restored RecoveryJournals::takeRestored(Restored &&restored, const TextDocument &document)
{
    DocumentJournal *const journal = journalOf(document);
    if (restored.isRestored() && !restored.hasReadError && journal)
        journal->supersede(std::move(restored.journal));
    return std::move(restored);
}

bool RecoveryJournals::discard(const LeftBehind &found)
{
    ClaimedJournal journal = ClaimedJournal::claim(found.journal, m_calls);
    return journal && journal.discard();
}
