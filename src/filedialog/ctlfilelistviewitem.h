#pragma once

#include "filedialog/fileentry.h"
#include "filedialog/fileicons.h"
#include "filedialog/locations.h"

#include <QCoreApplication>
#include <QList>
#include <QVariant>

#include <memory>

/// One row of the file list: an entry of the folder with its picture, its emblems and its sort keys.
///
/// Texts are made when they are asked for. Rows never change, so threads may share them.
class ctlFileListViewItem {
    Q_DECLARE_TR_FUNCTIONS(ctlFileListViewItem)
public:
    enum Column { NameColumn, SizeColumn, DateColumn, ColumnCount };

    ctlFileListViewItem(FileEntry entry, const Surroundings &surroundings);

    const FileEntry &fileInfo() const { return m_fileInfo; }
    bool isFolder() const { return m_fileInfo.isFolder; }
    FileIcon icon() const { return m_icon; }

    bool isLink() const { return m_fileInfo.isLink; }
    /// A file that nobody may write.
    bool isLocked() const;
    /// A file that its owner, or both group and others, may execute; never one on a memory card, where the
    /// file system gives these rights to all files.
    bool isExec() const;

    /// Sorts the row in the column (sortKey()), whatever the direction.
    QString key(int column, bool ascending) const;
    /// What stands in the column.
    QString text(int column) const;
    /// What a view shows of the row, as a model's data().
    QVariant data(int column, int role) const;
    static Qt::Alignment alignment(int column);

private:
    const FileEntry m_fileInfo;
    const FileIcon m_icon;
};

/// Rows in an order.
using FileRowList = QList<std::shared_ptr<const ctlFileListViewItem>>;
