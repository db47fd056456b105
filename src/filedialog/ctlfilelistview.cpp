#include "filedialog/ctlfilelistview.h"

#include "filedialog/filelistdelegate.h"
#include "files/filename.h"
#include "platform/busypointer.h"
#include "platform/screenclass.h"

#include <QApplication>
#include <QDir>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>

namespace {

constexpr std::array smallWidths{ 140, 50, 88 };
constexpr std::array vgaWidths{ 245, 90, 140 };
constexpr int emptyMargin = 6;

/// The folder that holds `path`; "/" holds itself.
QString folderAbove(const QString &path)
{
    const QString clean = QDir::cleanPath(path);
    return clean.first(std::max<qsizetype>(clean.lastIndexOf(u'/'), 1));
}

/// One name for each folder, ending in "/", however it was spelt: a document is known by folder and name.
QString folderName(const QString &path)
{
    const QString name = FileName::absolute(FileName::toBytes(path));
    return name.endsWith(u'/') ? name : name + u'/';
}

QString lastComponent(const QString &path)
{
    const QString clean = QDir::cleanPath(path);
    return clean.sliced(clean.lastIndexOf(u'/') + 1);
}

/// Rows with equal keys keep their order.
void sortByKey(QList<QTreeWidgetItem *> &items, int column, Qt::SortOrder order)
{
    const bool ascending = order == Qt::AscendingOrder;
    for (QTreeWidgetItem *item : items)
        static_cast<ctlFileListViewItem *>(item)->setSortColumn(column, ascending);
    std::stable_sort(
        items.begin(), items.end(), [ascending](const QTreeWidgetItem *a, const QTreeWidgetItem *b) {
            return ascending ? *a < *b : *b < *a;
        });
}

} // namespace

ctlFileListView::ctlFileListView(QWidget *parent, const Surroundings &usedSurroundings)
    : QTreeWidget(parent)
    , surroundings(usedSurroundings)
{
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setHorizontalScrollMode(ScrollPerPixel);
    setItemDelegate(new FileListDelegate(this));
    setUpColumns();
    connect(this, &QTreeWidget::itemSelectionChanged, this, [this] { slotSelectionChanged(selectedItem()); });
    connect(this, &QTreeWidget::itemDoubleClicked, this, &ctlFileListView::slotExecItem);
    connect(this, &QTreeWidget::itemClicked, this, &ctlFileListView::slotMouseClicked);
}

void ctlFileListView::setUpColumns()
{
    setHeaderLabels({ tr("Name"), tr("Size"), tr("Date Modified") });
    QFont font = QApplication::font();
    font.setPointSize(forScreen(6, 14));
    header()->setFont(font);
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(QHeaderView::Interactive);
    const auto &widths = forScreen(smallWidths, vgaWidths);
    for (int column = 0; column < ctlFileListViewItem::ColumnCount; ++column)
        header()->resizeSection(column, widths.at(size_t(column)));
    for (int column = 0; column < ctlFileListViewItem::ColumnCount; ++column) {
        const QKeySequence keys(int(Qt::CTRL) | (int(Qt::Key_1) + column));
        headerItem()->setToolTip(column, keys.toString(QKeySequence::NativeText));
    }
    headerItem()->setTextAlignment(ctlFileListViewItem::SizeColumn, Qt::AlignRight | Qt::AlignVCenter);
    headerItem()->setTextAlignment(ctlFileListViewItem::DateColumn, Qt::AlignCenter);
    header()->setSectionsClickable(true);
    header()->setSortIndicatorShown(true);
    header()->setSortIndicator(ctlFileListViewItem::NameColumn, Qt::AscendingOrder);
    connect(header(), &QHeaderView::sortIndicatorChanged, this, &ctlFileListView::sortRows);
}

ctlFileListViewItem *ctlFileListView::selectedItem() const
{
    return static_cast<ctlFileListViewItem *>(selectedItems().value(0));
}

const ctlFileListViewItem *ctlFileListView::itemAtIndex(const QModelIndex &index) const
{
    return static_cast<const ctlFileListViewItem *>(itemFromIndex(index));
}

void ctlFileListView::showFolder(const QString &path)
{
    const BusyPointer busy; // a folder may hold a hundred thousand files
    const QString folder = folderName(path);
    clear();
    horizontalScrollBar()->setValue(0);
    setUpdatesEnabled(false);
    fill(folder);
    if (topLevelItemCount() > 0 && !selectFolderLeft(folder))
        scrollToItem(topLevelItem(0));
    setUpdatesEnabled(true);
    currentPath = folder;
    emit listRefreshed(currentPath);
}

void ctlFileListView::fill(const QString &path)
{
    std::vector<FileEntry> entries = readFolder(path, NameFilter(nameFilter));
    std::sort(entries.begin(), entries.end(),
        [](const FileEntry &a, const FileEntry &b) { return a.name < b.name; });
    QList<QTreeWidgetItem *> items;
    items.reserve(qsizetype(entries.size()));
    for (FileEntry &entry : entries)
        items.append(new ctlFileListViewItem(std::move(entry), surroundings));
    // By name first: that order stays between rows whose keys are equal.
    sortByKey(items, ctlFileListViewItem::NameColumn, Qt::AscendingOrder);
    sortByKey(items, header()->sortIndicatorSection(), header()->sortIndicatorOrder());
    addTopLevelItems(items);
}

/// When the list comes from a folder in this one: selects that folder. False otherwise.
bool ctlFileListView::selectFolderLeft(const QString &path)
{
    if (currentPath.isEmpty() || folderAbove(currentPath) != QDir::cleanPath(path))
        return false;
    const QString name = lastComponent(currentPath);
    for (int row = 0; row < topLevelItemCount(); ++row) {
        QTreeWidgetItem *item = topLevelItem(row);
        if (item->text(ctlFileListViewItem::NameColumn) != name)
            continue;
        setCurrentItem(item);
        scrollToItem(item);
        m_pressedEntry = item;
        return true;
    }
    return false;
}

void ctlFileListView::goUpFolder()
{
    if (currentPath.isEmpty() || currentPath == u"/")
        return;
    const QString above = folderAbove(currentPath);
    showFolder(above == u"/" ? above : above + u'/');
}

void ctlFileListView::sortRows(int column, Qt::SortOrder order)
{
    const BusyPointer busy;
    for (int row = 0; row < topLevelItemCount(); ++row) {
        auto *item = static_cast<ctlFileListViewItem *>(topLevelItem(row));
        item->setSortColumn(column, order == Qt::AscendingOrder);
    }
    QTreeWidget::sortItems(column, order);
}

void ctlFileListView::sortByColumn(int column)
{
    const bool isSorted = header()->sortIndicatorSection() == column;
    const bool reverses = isSorted && header()->sortIndicatorOrder() == Qt::AscendingOrder;
    header()->setSortIndicator(column, reverses ? Qt::DescendingOrder : Qt::AscendingOrder);
}

/// Scrolls until the nearest column that begins left or right of the view's left edge begins there, or as far
/// as there is something to scroll.
void ctlFileListView::showColumn(Step step)
{
    const int left = horizontalScrollBar()->value();
    int to = step == Step::Next ? left : 0;
    for (int column = 0; column < ctlFileListViewItem::ColumnCount; ++column) {
        const int start = header()->sectionPosition(column);
        if (step == Step::Before && start < left)
            to = start;
        if (step == Step::Next && to == left && start > left)
            to = start;
    }
    horizontalScrollBar()->setValue(to);
}

void ctlFileListView::slotSelectionChanged(ctlFileListViewItem *item)
{
    if (!item)
        return;
    m_selectedEntry = item;
    if (!item->isFolder())
        emit fileSelected(item->fileInfo().name);
}

void ctlFileListView::slotExecItem(QTreeWidgetItem *item)
{
    if (!item)
        return;
    const auto *row = static_cast<const ctlFileListViewItem *>(item);
    if (row->isFolder())
        showFolder(currentPath + row->fileInfo().name + u'/');
    else
        emit execItem(item);
}

void ctlFileListView::slotMouseClicked(QTreeWidgetItem *item)
{
    if (m_pressedEntry != m_selectedEntry || m_selectedEntry != item)
        return;
    m_openedByClick = true;
    slotExecItem(item);
}

void ctlFileListView::widenNames(int by)
{
    const int width = header()->sectionSize(ctlFileListViewItem::NameColumn);
    header()->resizeSection(ctlFileListViewItem::NameColumn, width + by);
}

void ctlFileListView::paintEvent(QPaintEvent *event)
{
    QTreeWidget::paintEvent(event);
    if (topLevelItemCount() > 0 || emptyText.isEmpty())
        return;
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(viewport()->rect().adjusted(emptyMargin, emptyMargin, -emptyMargin, -emptyMargin),
        int(Qt::AlignHCenter | Qt::AlignTop) | Qt::TextWordWrap, emptyText);
}

/// A blank selects a row, and commands are for others.
static bool isPartOfName(const QKeyEvent &event)
{
    const bool isCommand = event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
    return !isCommand && !event.text().isEmpty() && event.text().front().isPrint() && event.text() != u" ";
}

void ctlFileListView::keyPressEvent(QKeyEvent *event)
{
    if (isTypingName && isPartOfName(*event)) {
        emit typed(event->text());
        return;
    }
    const int column = event->key() - Qt::Key_1;
    if (event->modifiers() == Qt::ControlModifier && column >= 0 && column < ctlFileListViewItem::ColumnCount)
        return sortByColumn(column);
    if (event->modifiers() == Qt::ControlModifier && event->key() == Qt::Key_Right)
        return showColumn(Step::Next);
    if (event->modifiers() == Qt::ControlModifier && event->key() == Qt::Key_Left)
        return showColumn(Step::Before);
    switch (event->key()) {
    case Qt::Key_Backspace:
    case Qt::Key_Left:
        goUpFolder();
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        slotExecItem(selectedItem());
        break;
    case Qt::Key_Right:
        if (selectedItem() && selectedItem()->isFolder())
            slotExecItem(selectedItem());
        break;
    case Qt::Key_End:
        // Where no row has the focus, the toolkit takes every key for one to the first row.
        setCurrentItem(topLevelItem(topLevelItemCount() - 1));
        break;
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Home:
        if (selectRowOfFocus())
            break;
        [[fallthrough]];
    default:
        QTreeWidget::keyPressEvent(event);
    }
}

/// The focus comes to the first row without selecting it. False when a row is selected, or none has the
/// focus.
bool ctlFileListView::selectRowOfFocus()
{
    if (selectedItem() || !currentItem())
        return false;
    currentItem()->setSelected(true);
    scrollToItem(currentItem());
    return true;
}

void ctlFileListView::mousePressEvent(QMouseEvent *event)
{
    m_openedByClick = false;
    m_ignoresRelease = false;
    m_pressedEntry = selectedItem();
    QTreeWidget::mousePressEvent(event);
}

void ctlFileListView::mouseReleaseEvent(QMouseEvent *event)
{
    if (!m_ignoresRelease)
        QTreeWidget::mouseReleaseEvent(event);
    m_ignoresRelease = false;
}

void ctlFileListView::mouseDoubleClickEvent(QMouseEvent *event)
{
    m_ignoresRelease = m_openedByClick || event->button() != Qt::LeftButton;
    m_openedByClick = false;
    if (!m_ignoresRelease)
        QTreeWidget::mouseDoubleClickEvent(event);
}
