#include "filedialog/filelistdelegate.h"

#include "filedialog/ctlfilelistview.h"
#include "files/filename.h"

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

/// Sizes and dates that do not fit are set narrower: without its end a number would be another one.
void narrowToFit(QStyleOptionViewItem &option)
{
    constexpr int narrowest = 50; // per cent
    constexpr int step = 5;
    const QStyle *style = option.widget ? option.widget->style() : QApplication::style();
    const int margin = style->pixelMetric(QStyle::PM_FocusFrameHMargin, &option, option.widget) + 1;
    const int room = option.rect.width() - 2 * margin;
    // Widths do not shrink in proportion: the system may choose a narrower face.
    const auto fits = [&] { return QFontMetricsF(option.font).horizontalAdvance(option.text) <= room; };
    for (int stretch = QFont::Unstretched - step; !fits() && stretch >= narrowest; stretch -= step)
        option.font.setStretch(stretch);
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
    QStyledItemDelegate::paint(painter, option, index);
    const ctlFileListViewItem *item = namedItem(option, index);
    if (!item)
        return;
    QStyleOptionViewItem cell(option);
    initStyleOption(&cell, index);
    painter->save();
    painter->setClipRect(option.rect, Qt::IntersectClip);
    paintMarks(painter, option.rect, pictureRect(cell), *item);
    painter->restore();
}

void FileListDelegate::initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    if (const ctlFileListViewItem *item = namedItem(*option, index))
        option->decorationSize = filePicture(item->icon()).size;
    else
        narrowToFit(*option);
}
