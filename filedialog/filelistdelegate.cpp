#include "filedialog/filelistdelegate.h"

#include "filedialog/ctlfilelistview.h"
#include "platform/filename.h"

#include <QApplication>
#include <QPainter>
#include <QStyle>

namespace {

constexpr int markMargin = 1;

/// The row of an index of the name column; null elsewhere.
const ctlFileListViewItem *namedItem(const QStyleOptionViewItem &option, const QModelIndex &index)
{
    const auto *list = qobject_cast<const ctlFileListView *>(option.widget);
    return list && index.column() == ctlFileListViewItem::NameColumn ? list->itemAtIndex(index) : nullptr;
}

QRect pictureRect(const QStyleOptionViewItem &option)
{
    const QStyle *style = option.widget ? option.widget->style() : QApplication::style();
    return style->subElementRect(QStyle::SE_ItemViewItemDecoration, &option, option.widget);
}

/// The cell with the style's margins outside of it where the text takes the column's whole width: a date does
/// in wide fonts.
QRect textCell(const QStyleOptionViewItem &option, int column)
{
    if (column != ctlFileListViewItem::DateColumn)
        return option.rect;
    const QStyle *style = option.widget ? option.widget->style() : QApplication::style();
    const int margin = style->pixelMetric(QStyle::PM_FocusFrameHMargin, &option, option.widget) + 1;
    return option.rect.adjusted(-margin, 0, margin, 0);
}

/// Columns count from the picture's left edge and reach its width, rows count from the row's edge.
void paintMarks(QPainter *painter, const QRect &row, const QRect &picture, const ctlFileListViewItem &item)
{
    const auto paintMark = [painter](FileIcon mark, QPoint at) {
        filePicture(mark).icon.paint(painter, QRect(at, filePicture(mark).size));
    };
    const auto left = [&] { return picture.left() + markMargin; };
    const auto right = [&](FileIcon mark) {
        return picture.left() + picture.width() - filePicture(mark).size.width() - markMargin;
    };
    const auto bottom = [&](FileIcon mark) {
        return row.top() + row.height() - filePicture(mark).size.height() - markMargin;
    };
    if (item.isLink())
        paintMark(FileIcon::LinkMark, { left(), bottom(FileIcon::LinkMark) });
    if (item.isLocked())
        paintMark(FileIcon::LockMark, { right(FileIcon::LockMark), row.top() + markMargin });
    if (item.isExec())
        paintMark(FileIcon::ExecMark, { right(FileIcon::ExecMark), bottom(FileIcon::ExecMark) });
}

} // namespace

QString FileListDelegate::displayText(const QVariant &value, const QLocale & /*locale*/) const
{
    return FileName::forDisplay(value.toString());
}

void FileListDelegate::paint(
    QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    painter->save();
    painter->setClipRect(option.rect, Qt::IntersectClip);
    QStyleOptionViewItem cell(option);
    cell.rect = textCell(option, index.column());
    QStyledItemDelegate::paint(painter, cell, index);
    if (const ctlFileListViewItem *item = namedItem(option, index)) {
        initStyleOption(&cell, index);
        paintMarks(painter, option.rect, pictureRect(cell), *item);
    }
    painter->restore();
}

void FileListDelegate::initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    if (const ctlFileListViewItem *item = namedItem(*option, index))
        option->decorationSize = filePicture(item->icon()).size;
}
