#include "filedialog/fileorder.h"

#include "filedialog/ctlfilelistviewitem.h"

#include <algorithm>
#include <numeric>

namespace {

QString dateKey(const FileEntry &entry)
{
    constexpr int firstYear = 1900;
    const std::optional<std::tm> t = entry.localTime();
    if (!t)
        return {};
    return QString::asprintf(
        "%d%02d%02d%02d%02d", t->tm_year + firstYear, t->tm_mon + 1, t->tm_mday, t->tm_hour, t->tm_min);
}

/// Rows of equal keys keep their order.
void sortByKey(std::vector<int> &rows, const FileEntries &entries, FileOrder order)
{
    std::vector<QString> keys;
    keys.reserve(entries.size());
    for (const auto &entry : entries)
        keys.push_back(sortKey(*entry, order.column));
    const bool ascending = order.direction == Qt::AscendingOrder;
    std::ranges::stable_sort(rows, [&keys, ascending](int a, int b) {
        return ascending ? keys[size_t(a)] < keys[size_t(b)] : keys[size_t(b)] < keys[size_t(a)];
    });
}

std::vector<int> rowsAsTheyAre(const FileEntries &entries)
{
    std::vector<int> rows(entries.size());
    std::iota(rows.begin(), rows.end(), 0);
    return rows;
}

} // namespace

QString sortKey(const FileEntry &entry, int column)
{
    constexpr qint64 kilobyte = 1024;
    const QChar kind = entry.isFolder ? u'0' : u'1';
    switch (column) {
    case ctlFileListViewItem::SizeColumn:
        return kind + QString::number(entry.size / kilobyte).rightJustified(9, u'0');
    case ctlFileListViewItem::DateColumn:
        return kind + dateKey(entry);
    default:
        return kind + entry.name.toUpper();
    }
}

std::vector<int> sortedRows(const FileEntries &entries, FileOrder order)
{
    std::vector<int> rows = rowsAsTheyAre(entries);
    std::ranges::sort(
        rows, [&entries](int a, int b) { return entries[size_t(a)]->name < entries[size_t(b)]->name; });
    constexpr FileOrder byName;
    sortByKey(rows, entries, byName);
    if (order != byName)
        sortByKey(rows, entries, order);
    return rows;
}

std::vector<int> resortedRows(const FileEntries &entries, FileOrder order)
{
    std::vector<int> rows = rowsAsTheyAre(entries);
    sortByKey(rows, entries, order);
    return rows;
}
