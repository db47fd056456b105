#include "filedialog/filerows.h"

#include "filedialog/sortwork.h"

using namespace std::chrono_literals;

namespace {

QList<QTreeWidgetItem *> picked(const QList<QTreeWidgetItem *> &rows, const std::vector<int> &places)
{
    QList<QTreeWidgetItem *> result;
    result.reserve(qsizetype(places.size()));
    for (const int place : places)
        result.append(rows.at(place));
    return result;
}

FileEntries entriesOf(const QList<QTreeWidgetItem *> &rows)
{
    FileEntries entries;
    entries.reserve(size_t(rows.size()));
    for (const QTreeWidgetItem *row : rows)
        entries.push_back(static_cast<const ctlFileListViewItem *>(row)->sharedInfo());
    return entries;
}

} // namespace

FileRows::FileRows(const Surroundings &surroundings, const FolderJobs &jobs)
    : m_surroundings(surroundings)
    , m_jobs(jobs)
{
    constexpr auto pause = 200ms; // showing a hundred thousand rows takes a fifth of this
    m_pause.setSingleShot(true);
    m_pause.setInterval(pause);
    m_pause.callOnTimeout(this, [this] { m_folder->askForPart(); });
}

FileRows::~FileRows() = default;

void FileRows::read(
    const QString &folder, const NameFilter &filter, FileOrder order, FolderWork::OldRows oldRows)
{
    m_pause.stop();
    m_sorting.reset();
    m_arrived.clear();
    m_shown.clear();
    m_wanted = order;
    m_taken = order;
    auto work = std::make_unique<FolderWork>(folder, filter, m_surroundings, order, std::move(oldRows));
    m_folder = work.get();
    begin(m_reading, std::move(work));
    connect(&*m_reading, &Job::partReady, this, &FileRows::came);
    connect(&*m_reading, &Job::finished, this, &FileRows::endReading);
}

void FileRows::begin(std::optional<Job> &job, std::unique_ptr<JobWork> work)
{
    job.emplace(std::move(work), m_jobs.threads());
    if (m_jobs.patience > 0ms)
        job->wait(QDeadlineTimer(m_jobs.patience));
}

void FileRows::sort(FileOrder order)
{
    m_wanted = order;
    if (isReading()) {
        m_folder->setOrder(order);
        m_folder->askForPart();
        return;
    }
    m_taken = order;
    if (m_shown.isEmpty())
        return;
    auto work = std::make_unique<SortWork>(entriesOf(m_shown), order);
    m_sort = work.get();
    begin(m_sorting, std::move(work));
    if (m_sorting->isFinished())
        emit came();
    else
        connect(&*m_sorting, &Job::finished, this, &FileRows::came);
}

QList<QTreeWidgetItem *> FileRows::take()
{
    if (m_folder) {
        for (FolderWork::Part &part : m_folder->parts.take())
            takePart(std::move(part));
    }
    if (m_sorting && m_sorting->isFinished())
        takeSorted();
    if (isReading())
        m_pause.start();
    else
        settleOrder();
    return m_shown;
}

/// What is being sorted are not all rows any more.
void FileRows::takePart(FolderWork::Part &&part)
{
    m_sorting.reset();
    for (auto &row : part.fresh)
        m_arrived.append(row.release());
    m_shown = picked(m_arrived, part.rows);
    m_taken = part.order;
}

void FileRows::takeSorted()
{
    const std::vector<int> rows = std::exchange(m_sort->rows, {});
    if (!rows.empty())
        m_shown = picked(m_shown, rows);
}

void FileRows::endReading()
{
    m_pause.stop();
    settleOrder();
    emit ended();
}

/// Another order may have been wanted when the last rows were sorted already.
void FileRows::settleOrder()
{
    if (m_taken != m_wanted)
        sort(m_wanted);
}
