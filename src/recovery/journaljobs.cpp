#include "recovery/journaljobs.h"

#include "files/endorder.h"
#include "recovery/journalwriter.h"

#include <algorithm>
#include <cerrno>
#include <new>
#include <utility>

namespace {

/// A work of a journal. The writer refers to the write that it has begun, so that one lives as long.
class WorkOfJournal : public JobWork {
public:
    WorkOfJournal(std::shared_ptr<JournalWriter> writer, std::shared_ptr<const JournalWrite> begun)
        : m_writer(std::move(writer))
        , m_begun(std::move(begun))
    {
    }
    /// After Failed, as errno.
    int error() const { return m_writer->error(); }

protected:
    JournalWriter &writer() { return *m_writer; }

private:
    const std::shared_ptr<JournalWriter> m_writer;
    const std::shared_ptr<const JournalWrite> m_begun;
};

JobWork::Step stepOf(JournalWriter::Progress progress)
{
    switch (progress) {
    case JournalWriter::Progress::More:
        return JobWork::Step::More;
    case JournalWriter::Progress::Done:
        return JobWork::Step::Done;
    case JournalWriter::Progress::Failed:
        return JobWork::Step::Failed;
    }
    Q_UNREACHABLE();
}

/// Too little memory is a failure like that of a disk, told and tried again as that is.
template <class Act> JobWork::Step tried(JournalWriter &writer, const Act &act)
{
    try {
        return stepOf(act());
    } catch (const std::bad_alloc &) {
        return stepOf(writer.failed(ENOMEM));
    }
}

class WritingWork : public WorkOfJournal {
public:
    WritingWork(std::shared_ptr<JournalWriter> writer, std::shared_ptr<const JournalWrite> begun,
        std::shared_ptr<const JournalWrite> next)
        : WorkOfJournal(std::move(writer), std::move(begun))
        , m_next(std::move(next))
    {
    }

    Step step(JobTurn &) override
    {
        const EndOrder::Delay delay;
        return tried(writer(), [this] {
            if (!std::exchange(m_hasBegun, true))
                writer().begin(*m_next);
            return writer().step();
        });
    }

private:
    const std::shared_ptr<const JournalWrite> m_next;
    bool m_hasBegun = false;
};

class LeisureWork : public WorkOfJournal {
public:
    using WorkOfJournal::WorkOfJournal;
    Step step(JobTurn &) override
    {
        return tried(writer(), [this] { return writer().stepAtLeisure(); });
    }
};

/// What a writer does last is done also when nobody waits for it any more.
class LastWork : public WorkOfJournal {
public:
    LastWork(std::shared_ptr<JournalWriter> writer, std::shared_ptr<const JournalWrite> begun,
        void (JournalWriter::*last)())
        : WorkOfJournal(std::move(writer), std::move(begun))
        , m_last(last)
    {
    }
    Step step(JobTurn &) override
    {
        giveUp();
        return Step::Done;
    }
    void giveUp() override { (writer().*m_last)(); }

private:
    void (JournalWriter::*const m_last)();
};

} // namespace

JournalJobs::JournalJobs(QByteArray folder, const FileCalls &calls)
    : m_folder(std::move(folder))
    , m_calls(calls)
    , m_runner(PoolRunner::OneThread())
{
}

JournalJobs::~JournalJobs() = default;

/// The step of a job before it that is being made ends first: there is one thread.
template <class Work, class Finish>
void JournalJobs::start(Journal &journal, std::unique_ptr<Work> work, Finish finish)
{
    const Work &working = *work;
    journal.job.reset();
    journal.job = std::make_unique<Job>(std::move(work), m_runner);
    connect(journal.job.get(), &Job::finished, this, [&working, finish](JobOutcome outcome) {
        finish(outcome == JobOutcome::Failed ? working.error() : 0);
    });
}

void JournalJobs::write(int number, std::shared_ptr<const JournalWrite> write)
{
    Journal &journal = m_journals[number];
    if (!journal.writer)
        journal.writer = std::make_shared<JournalWriter>(m_folder, m_calls);
    auto begun = std::exchange(journal.begun, write);
    journal.isAtLeisure = false;
    start(journal, std::make_unique<WritingWork>(journal.writer, std::move(begun), std::move(write)),
        [this, number](int error) { noteWritten(number, error); });
}

void JournalJobs::noteWritten(int number, int error)
{
    Journal &journal = m_journals.at(number);
    const auto over = std::move(journal.job);
    if (journal.writer->hasLeisureWork())
        beginLeisure(number);
    emit told({ number, error });
}

void JournalJobs::beginLeisure(int number)
{
    Journal &journal = m_journals.at(number);
    journal.isAtLeisure = true;
    start(journal, std::make_unique<LeisureWork>(journal.writer, journal.begun), [this, number](int error) {
        const auto over = std::move(m_journals.at(number).job);
        if (error != 0)
            emit told({ number, error, WriteResult::Of::Leisure });
    });
}

void JournalJobs::rest(int number)
{
    endWriting(number, &JournalWriter::rest, [this, number] {
        Journal &journal = m_journals.at(number);
        const auto over = std::move(journal.job);
        journal.begun.reset();
    });
}

void JournalJobs::remove(int number)
{
    endWriting(number, &JournalWriter::remove, [this, number] { m_journals.extract(number); });
}

void JournalJobs::leave(int number)
{
    endWriting(number, &JournalWriter::leave, [this, number] {
        const auto over = m_journals.extract(number);
        emit told({ number, 0, WriteResult::Of::Leaving });
    });
}

template <class Finish> void JournalJobs::endWriting(int number, void (JournalWriter::*last)(), Finish finish)
{
    const auto found = m_journals.find(number);
    if (found == m_journals.end())
        return;
    Journal &journal = found->second;
    journal.isAtLeisure = false;
    start(journal, std::make_unique<LastWork>(journal.writer, journal.begun, last),
        [finish](int) { finish(); });
}

bool JournalJobs::wait(Until until, QDeadlineTimer end)
{
    while (Job *const job = jobToAwait(until)) {
        if (!job->wait(end))
            return false;
    }
    return true;
}

Job *JournalJobs::jobToAwait(Until until) const
{
    const auto found = std::ranges::find_if(m_journals, [until](const auto &entry) {
        const Journal &journal = entry.second;
        return journal.job && (until == Until::NothingLeft || !journal.isAtLeisure);
    });
    return found == m_journals.end() ? nullptr : found->second.job.get();
}
