#pragma once

#include "filedialog/fileorder.h"
#include "jobs/jobwork.h"

/// Sorts rows that are in an order into another one.
class SortWork : public JobWork {
public:
    SortWork(FileRowList unsorted, FileOrder order);

    Step step(JobTurn &turn) override;

    FileRowList rows; ///< sorted at the end

private:
    const FileOrder m_order;
};
