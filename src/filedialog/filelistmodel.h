#pragma once

#include "filedialog/ctlfilelistviewitem.h"

#include <QAbstractTableModel>

/// The rows of a list of files and the titles of its columns, as a view asks for them.
class FileListModel : public QAbstractTableModel {
    Q_DECLARE_TR_FUNCTIONS(ctlFileListView)
public:
    using QAbstractTableModel::QAbstractTableModel;

    /// Null where there is none.
    const ctlFileListViewItem *itemAt(const QModelIndex &index) const;
    /// Of the first row of that name; invalid where there is none. Cost: looks through all rows.
    QModelIndex indexOf(const QString &name) const;

    /// Leaves the view as a new one.
    void clear();
    /// Rows that were there before keep what views know of them, such as being selected.
    void setRows(const FileRowList &rows);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    /// The first row that begins with what is typed is found without a value of each row's being made.
    QModelIndexList match(const QModelIndex &start, int role, const QVariant &value, int hits,
        Qt::MatchFlags flags) const override;

private:
    QModelIndexList rowBeginningWith(const QString &text, int first) const;

    FileRowList m_rows;
};
