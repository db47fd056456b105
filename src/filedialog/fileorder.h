#pragma once

#include "filedialog/ctlfilelistviewitem.h"

#include <QtGlobal>

#include <vector>

/// By which column a list is sorted. Aligned so that threads hand it over without a lock.
struct alignas(2 * sizeof(int)) FileOrder {
    int column = 0; ///< of ctlFileListViewItem
    Qt::SortOrder direction = Qt::AscendingOrder;

    friend bool operator==(const FileOrder &, const FileOrder &) = default;
};

/// Sorts an entry in a column. Folders come first: their keys begin with "0", those of files with "1".
QString sortKey(const FileEntry &entry, int column);

/// Rows that come in no order, in an order; those of equal keys are in that of their names.
class SortedRows {
public:
    void add(const FileRowList::value_type &row);
    /// All that were added. Cost: sorts those that were added since the last call, and looks at the others
    /// once where they are in this order already.
    FileRowList inOrder(FileOrder order);
    void clear() { m_rows.clear(); }

private:
    struct KeyedRow {
        QString key;
        QString name; ///< in upper case
        FileRowList::value_type row;
    };
    bool comesBefore(const KeyedRow &a, const KeyedRow &b) const;

    std::vector<KeyedRow> m_rows;
    size_t m_sorted = 0; ///< of the rows, in m_order; those behind them have come since
    FileOrder m_order;
};

/// Those of equal keys stay as they are. Throws std::bad_alloc where there is too little memory, and leaves
/// all rows as they are.
void resortRows(FileRowList &rows, FileOrder order);
