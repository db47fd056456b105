#pragma once

#include "filedialog/fileorder.h"
#include "jobs/handover.h"
#include "jobs/jobwork.h"

#include <atomic>

/// Reads a folder and sorts its rows, again and again while they come.
class FolderWork : public JobWork {
public:
    struct Part {
        FileRowList rows; ///< all that have come, in their order
        FileOrder order;
    };

    /// `oldRows` go first, which takes long where there are many.
    FolderWork(const QString &folder, const NameFilter &filter, const Surroundings &surroundings,
        FileOrder order, FileRowList oldRows);

    Step step(JobTurn &turn) override;
    void giveUp() override;

    /// For whoever takes: the order of the next parts.
    void setOrder(FileOrder order) { m_order = order; }
    /// What has come is told of once, besides at the end, and again each time that this is called: sorting
    /// and showing it takes the longer, the more there is.
    void askForPart() { m_isPartWanted = true; }
    HandOver<Part> parts;

private:
    void handOver(JobTurn &turn);

    FolderReader m_reader;
    const Surroundings m_surroundings;
    FileRowList m_oldRows;
    SortedRows m_rows;
    std::atomic<bool> m_isPartWanted = true;
    std::atomic<FileOrder> m_order;
};
