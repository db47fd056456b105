#include "filedialog/filelistdelegate.h"

#include "filedialog/ctlfilelistview.h"
#include "files/filename.h"
#include "rows/narrowfont.h"

#include <QApplication>
#include <QPainter>
#include <QStyle>

namespace {

constexpr int emblemMargin = 1;

/// The row of an index of the name column; null elsewhere.
const ctlFileListViewItem *namedItem(const QStyleOptionViewItem &option, const QModelIndex &index)
{
    const auto *list = qobject_cast<const ctlFileListView *>(option.widget);
    return list && index.column() == ctlFileListViewItem::NameColumn ? list->rows().itemAt(index) : nullptr;
}

QRect pictureRect(const QStyleOptionViewItem &option)
{
    const QStyle *style = option.widget ? option.widget->style() : QApplication::style();
    return style->subElementRect(QStyle::SE_ItemViewItemDecoration, &option, option.widget);
}

/// Sizes and dates that do not fit are set narrower: without its end a number would be another one.
void fitText(QStyleOptionViewItem &option)
{
    constexpr int narrowest = 50; // per cent
    const QStyle *style = option.widget ? option.widget->style() : QApplication::style();
    const int margin = style->pixelMetric(QStyle::PM_FocusFrameHMargin, &option, option.widget) + 1;
    const int room = option.rect.width() - 2 * margin;
    option.font = narrowToFit(option.font, narrowest,
        [&](const QFont &font) { return QFontMetricsF(font).horizontalAdvance(option.text) <= room; });
}

/// Columns count from the picture's left edge and reach its width, rows count from the row's edge.
void paintEmblems(QPainter *painter, const QRect &row, const QRect &picture, const ctlFileListViewItem &item)
{
    const auto paintEmblem = [painter](FileIcon emblem, QPoint at) {
        filePicture(emblem).icon.paint(painter, QRect(at, filePicture(emblem).size));
    };
    const auto left = [&] { return picture.left() + emblemMargin; };
    const auto right = [&](FileIcon emblem) {
        return picture.left() + picture.width() - filePicture(emblem).size.width() - emblemMargin;
    };
    const auto bottom = [&](FileIcon emblem) {
        return row.top() + row.height() - filePicture(emblem).size.height() - emblemMargin;
    };
    if (item.isLink())
        paintEmblem(FileIcon::LinkEmblem, { left(), bottom(FileIcon::LinkEmblem) });
    if (item.isLocked())
        paintEmblem(FileIcon::LockEmblem, { right(FileIcon::LockEmblem), row.top() + emblemMargin });
    if (item.isExec())
        paintEmblem(FileIcon::ExecEmblem, { right(FileIcon::ExecEmblem), bottom(FileIcon::ExecEmblem) });
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
    paintEmblems(painter, option.rect, pictureRect(cell), *item);
    painter->restore();
}

void FileListDelegate::initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    if (const ctlFileListViewItem *item = namedItem(*option, index))
        option->decorationSize = filePicture(item->icon()).size;
    else
        fitText(*option);
}
