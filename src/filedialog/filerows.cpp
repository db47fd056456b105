#include "filedialog/filerows.h"

#include "filedialog/sortwork.h"

#include <utility>

using namespace std::chrono_literals;

namespace {

/// Takes the time that it takes to destroy many rows.
class DiscardWork : public JobWork {
public:
    explicit DiscardWork(FileRowList &&rows)
        : m_rows(std::move(rows))
    {
    }

    Step step(JobTurn & /*turn*/) override
    {
        m_rows.clear();
        return Step::Done;
    }
    void giveUp() override { m_rows.clear(); }

private:
    FileRowList m_rows;
};

} // namespace

FileRows::FileRows(const Surroundings &surroundings, const FolderJobs &jobs)
    : m_surroundings(surroundings)
    , m_jobs(jobs)
{
    constexpr auto pause = 200ms; // showing a hundred thousand rows takes a tenth of this
    m_pause.setSingleShot(true);
    m_pause.setInterval(pause);
    m_pause.callOnTimeout(this, [this] { m_folder->askForPart(); });
}

FileRows::~FileRows()
{
    m_reading.reset();
    m_sorting.reset();
    if (!m_shown.isEmpty())
        Job(std::make_unique<DiscardWork>(std::exchange(m_shown, {})), m_jobs.threads());
}

void FileRows::read(const QString &folder, const NameFilter &filter, FileOrder order)
{
    m_pause.stop();
    dropSorting();
    m_wanted = order;
    m_taken = order;
    auto work =
        std::make_unique<FolderWork>(folder, filter, m_surroundings, order, std::exchange(m_shown, {}));
    m_folder = work.get();
    m_hasFailed = false;
    m_reading.emplace(std::move(work), m_jobs.threads());
    connect(&*m_reading, &Job::finished, this, &FileRows::noteOutcome);
    waitFor(*m_reading);
    connect(&*m_reading, &Job::partReady, this, &FileRows::came);
    connect(&*m_reading, &Job::finished, this, &FileRows::endReading);
}

void FileRows::waitFor(Job &job) const
{
    if (m_jobs.patience > 0ms)
        job.wait(QDeadlineTimer(m_jobs.patience));
}

void FileRows::sort(FileOrder order)
{
    m_wanted = order;
    if (isReading()) {
        m_folder->setOrder(order);
        m_folder->askForPart();
        return;
    }
    if (m_shown.isEmpty()) {
        m_taken = order;
        return;
    }
    auto work = std::make_unique<SortWork>(m_shown, order);
    m_sort = work.get();
    m_sorting.emplace(std::move(work), m_jobs.threads());
    connect(&*m_sorting, &Job::finished, this, &FileRows::noteSorted);
    waitFor(*m_sorting);
    if (m_sorting->isFinished())
        emit came();
    else
        connect(&*m_sorting, &Job::finished, this, &FileRows::came);
}

FileRowList FileRows::take()
{
    if (m_folder) {
        for (FolderWork::Part &part : m_folder->parts.take())
            takePart(std::move(part));
    }
    if (m_sort && m_sorting->isFinished())
        takeSorted();
    if (isReading())
        m_pause.start();
    else
        settleOrder();
    return m_shown;
}

void FileRows::takeSorted()
{
    m_shown = std::exchange(m_sort, nullptr)->rows;
    m_taken = m_wanted;
}

/// What is being sorted are not all rows any more.
void FileRows::takePart(FolderWork::Part &&part)
{
    dropSorting();
    m_shown = std::move(part.rows);
    m_taken = part.order;
}

/// A part of a folder would look like the whole of it.
void FileRows::noteOutcome(JobOutcome outcome)
{
    m_hasFailed = outcome == JobOutcome::Failed;
    if (!m_hasFailed)
        return;
    dropSorting();
    m_shown.clear();
}

void FileRows::noteSorted(JobOutcome outcome)
{
    if (outcome != JobOutcome::Failed)
        return;
    m_sort = nullptr;
    m_wanted = m_taken;
    emit notSorted();
}

void FileRows::dropSorting()
{
    m_sorting.reset();
    m_sort = nullptr;
}

void FileRows::endReading()
{
    m_pause.stop();
    if (m_hasFailed)
        emit came();
    settleOrder();
    emit ended();
}

/// Another order may have been wanted when the last rows were sorted already.
void FileRows::settleOrder()
{
    if (m_taken != m_wanted && !isSorting())
        sort(m_wanted);
}
