#include "filedialog/fileorder.h"

#include "jobs/memoryleft.h"

#include <algorithm>
#include <utility>

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

void SortedRows::add(const FileRowList::value_type &row)
{
    m_rows.push_back({ {}, sortKey(row->fileInfo(), ctlFileListViewItem::NameColumn), row });
}

FileRowList SortedRows::inOrder(FileOrder order)
{
    if (order != m_order)
        m_sorted = 0;
    m_order = order;
    const auto isBefore = [this](const KeyedRow &a, const KeyedRow &b) { return comesBefore(a, b); };
    const auto added = m_rows.begin() + std::ptrdiff_t(m_sorted);
    for (auto row = added; row != m_rows.end(); ++row)
        row->key = sortKey(row->row->fileInfo(), order.column);
    std::sort(added, m_rows.end(), isBefore);
    std::inplace_merge(m_rows.begin(), added, m_rows.end(), isBefore);
    m_sorted = m_rows.size();
    FileRowList rows;
    rows.reserve(qsizetype(m_rows.size()));
    for (const KeyedRow &row : m_rows)
        rows.append(row.row);
    return rows;
}

bool SortedRows::comesBefore(const KeyedRow &a, const KeyedRow &b) const
{
    if (const int byKey = a.key.compare(b.key); byKey != 0)
        return (byKey < 0) == (m_order.direction == Qt::AscendingOrder);
    if (const int byName = a.name.compare(b.name); byName != 0)
        return byName < 0;
    return a.row->fileInfo().name < b.row->fileInfo().name;
}

void resortRows(FileRowList &rows, FileOrder order)
{
    struct KeyedRow {
        QString key;
        FileRowList::value_type row;
    };
    constexpr size_t rowsBetweenLooks = 256;
    std::vector<KeyedRow> keyed;
    keyed.reserve(size_t(rows.size()));
    for (const auto &row : std::as_const(rows)) {
        if (keyed.size() % rowsBetweenLooks == 0)
            MemoryLeft::require();
        keyed.push_back({ sortKey(row->fileInfo(), order.column), row });
    }
    const bool ascending = order.direction == Qt::AscendingOrder;
    std::ranges::stable_sort(keyed, [ascending](const KeyedRow &a, const KeyedRow &b) {
        return ascending ? a.key < b.key : b.key < a.key;
    });
    std::ranges::transform(keyed, rows.begin(), [](KeyedRow &keyedRow) { return std::move(keyedRow.row); });
}
