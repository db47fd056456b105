#pragma once

#include "filedialog/fileentry.h"

#include <QtGlobal>

#include <memory>
#include <vector>

/// Entries that several threads may read.
using FileEntries = std::vector<std::shared_ptr<const FileEntry>>;

/// By which column a list is sorted. Aligned so that threads hand it over without a lock.
struct alignas(2 * sizeof(int)) FileOrder {
    int column = 0; ///< of ctlFileListViewItem
    Qt::SortOrder direction = Qt::AscendingOrder;

    friend bool operator==(const FileOrder &, const FileOrder &) = default;
};

/// Sorts an entry in a column. Folders come first: their keys begin with "0", those of files with "1".
QString sortKey(const FileEntry &entry, int column);

/// Where in `entries` each row's stands, in their order; those of equal keys are in that of their names.
std::vector<int> sortedRows(const FileEntries &entries, FileOrder order);
/// The same, where those of equal keys stay as they are.
std::vector<int> resortedRows(const FileEntries &entries, FileOrder order);
