#pragma once

#include "filedialog/fileorder.h"
#include "jobs/jobwork.h"

/// Sorts entries that are in an order into another one.
class SortWork : public JobWork {
public:
    SortWork(FileEntries entries, FileOrder order);

    Step step(JobTurn &turn) override;

    std::vector<int> rows; ///< at the end: where each row's entry stood
private:
    FileEntries m_entries;
    const FileOrder m_order;
};
