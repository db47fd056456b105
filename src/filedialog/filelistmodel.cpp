#include "filedialog/filelistmodel.h"

#include <QHash>
#include <QKeySequence>

#include <algorithm>

namespace {

/// Where those rows stand that are keys of `places`; the others' stay as they are.
void findPlaces(QHash<const ctlFileListViewItem *, int> &places, const FileRowList &rows)
{
    for (int row = 0; row < int(rows.size()); ++row) {
        const auto found = places.find(rows.at(row).get());
        if (found != places.end())
            *found = row;
    }
}

/// Of the command that sorts by the column.
QString keysOf(int column)
{
    const QKeySequence keys(int(Qt::CTRL) | (int(Qt::Key_1) + column));
    return keys.toString(QKeySequence::NativeText);
}

} // namespace

const ctlFileListViewItem *FileListModel::itemAt(const QModelIndex &index) const
{
    return index.isValid() ? m_rows.at(index.row()).get() : nullptr;
}

QModelIndex FileListModel::indexOf(const QString &name) const
{
    const auto found =
        std::ranges::find_if(m_rows, [&name](const auto &row) { return row->fileInfo().name == name; });
    return found == m_rows.end() ? QModelIndex() : createIndex(int(found - m_rows.begin()), 0);
}

void FileListModel::clear()
{
    beginResetModel();
    m_rows.clear();
    endResetModel();
}

void FileListModel::setRows(const FileRowList &rows)
{
    emit layoutAboutToBeChanged();
    const QModelIndexList before = persistentIndexList();
    QHash<const ctlFileListViewItem *, int> places;
    for (const QModelIndex &index : before)
        places.insert(itemAt(index), -1);
    findPlaces(places, rows);
    QModelIndexList after;
    for (const QModelIndex &old : before)
        after.append(createIndex(places.value(itemAt(old)), old.column()));
    m_rows = rows;
    changePersistentIndexList(before, after);
    emit layoutChanged();
}

int FileListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

int FileListModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ctlFileListViewItem::ColumnCount;
}

QVariant FileListModel::data(const QModelIndex &index, int role) const
{
    return index.isValid() ? m_rows.at(index.row())->data(index.column(), role) : QVariant();
}

QVariant FileListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal)
        return {};
    const bool isName = section == ctlFileListViewItem::NameColumn;
    const bool isSize = section == ctlFileListViewItem::SizeColumn;
    switch (role) {
    case Qt::DisplayRole:
        return isName ? tr("Name") : isSize ? tr("Size") : tr("Date Modified");
    case Qt::ToolTipRole:
        return keysOf(section);
    case Qt::TextAlignmentRole:
        return QVariant::fromValue(ctlFileListViewItem::alignment(section));
    default:
        return {};
    }
}

QModelIndex FileListModel::rowOfTyped(const QString &letters, const QModelIndex &from) const
{
    const auto otherLetter = std::ranges::find_if(letters, [&](QChar c) { return c != letters.front(); });
    const qsizetype repeats = otherLetter - letters.begin();
    QList<int> rows =
        rowsBeginningWith(letters.first(std::min<qsizetype>(repeats, 1)), from.row() + 1, repeats);
    if (rows.isEmpty())
        return {};
    int row = rows.at((repeats - 1) % rows.size());
    for (qsizetype count = repeats + 1; count <= letters.size(); ++count) {
        rows = rowsBeginningWith(letters.first(count), row, 1);
        if (rows.isEmpty())
            break;
        row = rows.first();
    }
    return index(row, ctlFileListViewItem::NameColumn);
}

/// So many at most, from the row on, and on from the start.
QList<int> FileListModel::rowsBeginningWith(const QString &text, int first, qsizetype most) const
{
    QList<int> result;
    const int count = int(m_rows.size());
    for (int i = 0; i < count && result.size() < most; ++i) {
        const int row = (first + i) % count;
        if (m_rows.at(row)->fileInfo().name.startsWith(text, Qt::CaseInsensitive))
            result.append(row);
    }
    return result;
}
