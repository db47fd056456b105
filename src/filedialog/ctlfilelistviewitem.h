#pragma once

#include "filedialog/fileentry.h"
#include "filedialog/fileicons.h"
#include "filedialog/locations.h"

#include <QCoreApplication>
#include <QTreeWidgetItem>

#include <memory>

/// One row of the file list: an entry of the folder with its picture, its emblems and its sort keys.
///
/// Texts are made when they are asked for; a row takes some 500 bytes. The row is no part of a list until it
/// is added to one, and belongs to no thread before.
class ctlFileListViewItem : public QTreeWidgetItem {
    Q_DECLARE_TR_FUNCTIONS(ctlFileListViewItem)
public:
    enum Column { NameColumn, SizeColumn, DateColumn, ColumnCount };

    ctlFileListViewItem(FileEntry entry, const Surroundings &surroundings);

    const FileEntry &fileInfo() const { return *m_fileInfo; }
    /// For who may outlive the row.
    const std::shared_ptr<const FileEntry> &sharedInfo() const { return m_fileInfo; }
    bool isFolder() const { return m_fileInfo->isFolder; }
    FileIcon icon() const { return m_icon; }

    bool isLink() const { return m_fileInfo->isLink; }
    /// A file that nobody may write.
    bool isLocked() const;
    /// A file that its owner, or both group and others, may execute; never one on a memory card, where the
    /// file system gives these rights to all files.
    bool isExec() const;

    /// Sorts the row in the column (sortKey()), whatever the direction.
    QString key(int column, bool ascending) const;

    QVariant data(int column, int role) const override;

private:
    QString columnText(int column) const;

    std::shared_ptr<const FileEntry> m_fileInfo;
    FileIcon m_icon;
};
