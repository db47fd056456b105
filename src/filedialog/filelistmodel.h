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
    /// To which row letters lead that are typed one after another, from the row `from` on, or from the start
    /// where that is invalid: the first one to the next row that begins with it, each further one to the next
    /// that begins with all of them, and one that is repeated to one row after another. Behind the last row
    /// comes the first; invalid where no letter leads to any. Cost: looks through all rows, without making
    /// values of them, for each letter.
    QModelIndex rowOfTyped(const QString &letters, const QModelIndex &from) const;

    /// Leaves the view as a new one.
    void clear();
    /// Rows that were there before keep what views know of them, such as being selected.
    void setRows(const FileRowList &rows);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    QList<int> rowsBeginningWith(const QString &text, int first, qsizetype most) const;

    FileRowList m_rows;
};
