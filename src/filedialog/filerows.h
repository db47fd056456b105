#pragma once

#include "filedialog/folderjobs.h"
#include "filedialog/folderwork.h"
#include "jobs/job.h"

#include <QTimer>

#include <optional>

class SortWork;

/// The rows of a list of files: read and sorted behind the window, where that takes long. What is not wanted
/// any more is given up at once, whatever the disk does.
class FileRows : public QObject {
    Q_OBJECT
public:
    FileRows(const Surroundings &surroundings, const FolderJobs &jobs);
    ~FileRows() override;

    /// Begins with the rows of another folder, of which take() has those that could be had without waiting.
    /// The rows of before are destroyed behind the window, unless somebody else has them.
    void read(const QString &folder, const NameFilter &filter, FileOrder order);
    /// The rows that there are, and those that come. Where there is too little memory for it they stay in the
    /// order that they have.
    void sort(FileOrder order);
    /// That the rows have, or get.
    FileOrder order() const { return m_wanted; }
    bool isReading() const { return m_reading && !m_reading->isFinished(); }
    /// There was too little memory for it: there are no rows.
    bool hasFailed() const { return m_hasFailed; }
    bool isSorting() const { return m_sorting && !m_sorting->isFinished(); }

    /// All that have come, in their order.
    FileRowList take();

signals:
    /// There is something to take; in the event loop, or in sort().
    void came();
    /// All of the folder has come, or it has failed.
    void ended();
    /// There was too little memory for sort(); in sort(), or in the event loop before came().
    void notSorted();

private:
    void waitFor(Job &job) const;
    void takePart(FolderWork::Part &&part);
    void takeSorted();
    void noteOutcome(JobOutcome outcome);
    void noteSorted(JobOutcome outcome);
    void dropSorting();
    void endReading();
    void settleOrder();

    const Surroundings m_surroundings;
    const FolderJobs m_jobs;
    FileOrder m_wanted;
    FileOrder m_taken; ///< of m_shown
    FileRowList m_shown; ///< as they were taken last
    bool m_hasFailed = false;
    QTimer m_pause; ///< before the next part is asked for
    FolderWork *m_folder = nullptr; ///< owned by its job
    SortWork *m_sort = nullptr; ///< owned by its job; null: there is nothing to take of it
    std::optional<Job> m_reading;
    std::optional<Job> m_sorting;
};
