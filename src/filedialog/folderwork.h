#pragma once

#include "filedialog/ctlfilelistviewitem.h"
#include "filedialog/fileorder.h"
#include "jobs/handover.h"
#include "jobs/jobwork.h"

#include <QTreeWidgetItem>

#include <atomic>

/// Reads a folder and sorts its rows, again and again while they come.
class FolderWork : public JobWork {
public:
    struct Part {
        std::vector<std::unique_ptr<ctlFileListViewItem>> fresh; ///< rows that have come since the last part
        std::vector<int> rows; ///< all of them in their order, counted as they have come
        FileOrder order;
    };
    using OldRows = std::vector<std::unique_ptr<QTreeWidgetItem>>;

    /// `oldRows` go first, which takes long where there are many.
    FolderWork(const QString &folder, const NameFilter &filter, const Surroundings &surroundings,
        FileOrder order, OldRows oldRows);

    Step step(JobTurn &turn) override;
    void giveUp() override;

    /// For whoever takes: the order of the next parts.
    void setOrder(FileOrder order) { m_order = order; }
    /// What has come is told of once, besides at the end, and again each time that this is called: sorting
    /// and showing it takes the longer, the more there is.
    void askForPart() { m_isPartWanted = true; }
    HandOver<Part> parts;

private:
    void read(FileEntry &&entry);
    void handOver(JobTurn &turn);

    FolderReader m_reader;
    const Surroundings m_surroundings;
    OldRows m_oldRows;
    std::vector<std::unique_ptr<ctlFileListViewItem>> m_fresh;
    FileEntries m_entries;
    std::atomic<bool> m_isPartWanted = true;
    std::atomic<FileOrder> m_order;
};
