#pragma once

#include <QStyledItemDelegate>

/// Paints the rows of a file list: over the picture of the name column the emblems of links, write-protected
/// files and executables; in a name, undecodable bytes and control characters as what can be seen.
class FileListDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QString displayText(const QVariant &value, const QLocale &locale) const override;
    void paint(
        QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override;
};
