#include "filedialog/ctlfilelistview.h"

#include "filedialog/filelistdelegate.h"
#include "files/filename.h"
#include "platform/busypointer.h"
#include "platform/keypause.h"
#include "platform/screenclass.h"

#include <QApplication>
#include <QDir>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>
#include <array>

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

} // namespace

ctlFileListView::ctlFileListView(
    QWidget *parent, const Surroundings &usedSurroundings, const FolderJobs &jobs)
    : QTreeView(parent)
    , surroundings(usedSurroundings)
    , m_reading(usedSurroundings, jobs)
    , m_model(new FileListModel(this))
{
    setModel(m_model);
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setHorizontalScrollMode(ScrollPerPixel);
    setItemDelegate(new FileListDelegate(this));
    setUpColumns();
    connect(selectionModel(), &QItemSelectionModel::selectionChanged, this,
        [this] { slotSelectionChanged(selectedItem()); });
    connect(this, &QTreeView::doubleClicked, this,
        [this](const QModelIndex &index) { slotExecItem(m_model->itemAt(index)); });
    connect(this, &QTreeView::clicked, this,
        [this](const QModelIndex &index) { slotMouseClicked(m_model->itemAt(index)); });
    connect(&m_reading, &FileRows::came, this, &ctlFileListView::arrangeWhenReleased);
    connect(&m_reading, &FileRows::ended, this, &ctlFileListView::showBusy);
    connect(&m_reading, &FileRows::ended, this, &ctlFileListView::selectTypedAgain);
    connect(&m_reading, &FileRows::notSorted, this, &ctlFileListView::notSorted, Qt::QueuedConnection);
    m_typing.setSingleShot(true);
    m_typing.callOnTimeout(this, &ctlFileListView::selectTypedAgain);
}

/// So m_reading has the rows alone.
ctlFileListView::~ctlFileListView()
{
    m_model->clear();
}

void ctlFileListView::setUpColumns()
{
    QFont font = QApplication::font();
    font.setPointSize(forScreen(6, 14));
    header()->setFont(font);
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(QHeaderView::Interactive);
    const auto &widths = forScreen(smallWidths, vgaWidths);
    for (int column = 0; column < ctlFileListViewItem::ColumnCount; ++column)
        header()->resizeSection(column, widths.at(size_t(column)));
    header()->setSectionsClickable(true);
    header()->setSortIndicatorShown(true);
    header()->setSortIndicator(ctlFileListViewItem::NameColumn, Qt::AscendingOrder);
    connect(header(), &QHeaderView::sortIndicatorChanged, this, &ctlFileListView::sortRows);
}

QModelIndex ctlFileListView::selectedIndex() const
{
    return selectionModel()->selectedRows().value(0);
}

void ctlFileListView::selectRow(const QModelIndex &index)
{
    selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

void ctlFileListView::showFolder(const QString &path)
{
    const BusyPointer busy;
    const QString folder = folderName(path);
    const bool isAbove = !currentPath.isEmpty() && folderAbove(currentPath) == QDir::cleanPath(folder);
    m_folderLeft = isAbove ? lastComponent(currentPath) : QString();
    if (!currentPath.isEmpty())
        forgetTyped();
    m_model->clear();
    m_reading.read(folder, NameFilter(nameFilter), order());
    horizontalScrollBar()->setValue(0);
    verticalScrollBar()->setValue(0);
    arrange();
    if (!selectedItem())
        scrollTo(m_model->index(0, 0));
    currentPath = folder;
    emit listRefreshed(currentPath);
    describe();
    selectTypedAgain();
}

FileOrder ctlFileListView::order() const
{
    return { header()->sortIndicatorSection(), header()->sortIndicatorOrder() };
}

/// A row that changes its place between press and release would not be clicked.
void ctlFileListView::arrangeWhenReleased()
{
    m_isArrangementDue = true;
    if (!m_isPressed)
        arrange();
}

void ctlFileListView::arrange()
{
    m_isArrangementDue = false;
    setUpdatesEnabled(false);
    replaceRows(m_reading.take());
    showOrder();
    selectFolderLeft();
    selectTypedAgain();
    setUpdatesEnabled(true);
    showBusy();
}

/// What is selected and has the focus stays so. Where more has come the rows in view stay there, the selected
/// one before others, otherwise the place in the list.
void ctlFileListView::replaceRows(const FileRowList &rows)
{
    const int left = horizontalScrollBar()->value();
    const int value = verticalScrollBar()->value();
    const bool isMore = rows.size() > m_model->rowCount();
    const QModelIndex selected = selectedIndex().siblingAtColumn(header()->logicalIndexAt(0));
    const bool isInView = viewport()->rect().intersects(visualRect(selected));
    const QPersistentModelIndex top = isMore && value > 0 ? indexAt({}) : QModelIndex();
    const QPersistentModelIndex inView = isMore && isInView ? selected : QModelIndex();
    m_model->setRows(rows);
    executeDelayedItemsLayout();
    verticalScrollBar()->setValue(value);
    scrollTo(top, PositionAtTop);
    scrollTo(inView);
    horizontalScrollBar()->setValue(left);
}

/// Unless its user has gone on to something else in this one.
void ctlFileListView::selectFolderLeft()
{
    if (m_folderLeft.isEmpty() || selectedItem() || verticalScrollBar()->value() > 0)
        return;
    const QModelIndex folder = m_model->indexOf(m_folderLeft);
    if (!folder.isValid())
        return;
    m_folderLeft.clear();
    selectRow(folder);
    scrollTo(folder);
    m_pressedEntry = selectedItem();
}

/// All rows are there, in their order. Before the first folder is shown they are still to come.
bool ctlFileListView::isSettled() const
{
    return !currentPath.isEmpty() && !isFilling() && !isSorting() && !m_isArrangementDue;
}

void ctlFileListView::keyboardSearch(const QString &search)
{
    const bool goesOn = m_typing.isActive();
    const QString letters = goesOn ? m_typed + search : search;
    const QPersistentModelIndex from = goesOn ? m_typedFrom : QPersistentModelIndex(selectedIndex());
    if (const QModelIndex found = m_model->rowOfTyped(letters, from); found.isValid())
        selectRow(found);
    m_typed = letters;
    m_typedFrom = from;
    m_isTypedDue = !isSettled();
    m_folderLeft.clear();
    m_typing.start(QApplication::keyboardInputInterval());
}

/// Unless its user has gone on to something else.
void ctlFileListView::selectTypedAgain()
{
    if (!m_isTypedDue || !isSettled() || m_typing.isActive())
        return;
    m_isTypedDue = false;
    const QModelIndex found = m_model->rowOfTyped(m_typed, m_typedFrom);
    if (!found.isValid() || found == selectedIndex() || !hasFocus())
        return;
    KeyPause::begin(KeyPause::untilNoticed);
    selectRow(found);
}

void ctlFileListView::forgetTyped()
{
    m_isTypedDue = false;
    m_typing.stop();
}

/// Behind a name that is typed while rows still come it is meant for the row to which that leads among all,
/// and another one may be selected: who pressed it sees first which one that is.
void ctlFileListView::openByKey(const ctlFileListViewItem *item)
{
    if (m_isTypedDue && m_typing.isActive())
        KeyPause::begin(KeyPause::untilNoticed);
    else
        slotExecItem(item);
}

void ctlFileListView::sortRows()
{
    const BusyPointer busy;
    m_reading.sort(order());
    showBusy();
}

/// Which is another one than was asked for where sorting has failed.
void ctlFileListView::showOrder()
{
    const FileOrder shown = m_reading.order();
    if (shown == order())
        return;
    const QSignalBlocker asked(header());
    header()->setSortIndicator(shown.column, shown.direction);
}

/// Where it stays so for longer; it can be used all the same.
void ctlFileListView::showBusy()
{
    if (isFilling() || isSorting())
        viewport()->setCursor(Qt::BusyCursor);
    else
        viewport()->unsetCursor();
    viewport()->update();
    describe();
}

QString ctlFileListView::textWithoutRows() const
{
    if (isFilling())
        return tr("Reading the folder…");
    if (m_reading.hasFailed())
        return tr("There is not enough memory to read this folder. Choose Refresh to try again.");
    return emptyText;
}

/// Tools are told of every description, also of the one that there is.
void ctlFileListView::describe()
{
    const QString text = textWithoutRows();
    if (text != accessibleDescription())
        setAccessibleDescription(text);
}

void ctlFileListView::goUpFolder()
{
    if (currentPath.isEmpty() || currentPath == u"/")
        return;
    const QString above = folderAbove(currentPath);
    showFolder(above == u"/" ? above : above + u'/');
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

void ctlFileListView::slotSelectionChanged(const ctlFileListViewItem *item)
{
    forgetTyped();
    if (!item)
        return;
    m_selectedEntry = item;
    if (!item->isFolder())
        emit fileSelected(item->fileInfo().name);
}

void ctlFileListView::slotExecItem(const ctlFileListViewItem *item)
{
    if (!item)
        return;
    if (item->isFolder())
        showFolder(currentPath + item->fileInfo().name + u'/');
    else
        emit execItem(item);
}

void ctlFileListView::slotMouseClicked(const ctlFileListViewItem *item)
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
    QTreeView::paintEvent(event);
    const QString text = textWithoutRows();
    if (m_model->rowCount() > 0 || text.isEmpty())
        return;
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(viewport()->rect().adjusted(emptyMargin, emptyMargin, -emptyMargin, -emptyMargin),
        int(Qt::AlignHCenter | Qt::AlignTop) | Qt::TextWordWrap, text);
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
        if (isTypingName && !selectedItem())
            emit typed({});
        openByKey(selectedItem());
        break;
    case Qt::Key_Right:
        if (selectedItem() && selectedItem()->isFolder())
            openByKey(selectedItem());
        break;
    case Qt::Key_End:
        // Where no row has the focus, the toolkit takes every key for one to the first row.
        selectRow(m_model->index(m_model->rowCount() - 1, 0));
        break;
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Home:
        if (selectRowOfFocus())
            break;
        [[fallthrough]];
    default:
        QTreeView::keyPressEvent(event);
    }
}

/// The focus comes to the first row without selecting it. False when a row is selected, or none has the
/// focus.
bool ctlFileListView::selectRowOfFocus()
{
    if (selectedItem() || !currentIndex().isValid())
        return false;
    selectRow(currentIndex());
    scrollTo(currentIndex());
    return true;
}

void ctlFileListView::mousePressEvent(QMouseEvent *event)
{
    m_isPressed = true;
    m_openedByClick = false;
    m_ignoresRelease = false;
    m_pressedEntry = selectedItem();
    QTreeView::mousePressEvent(event);
}

void ctlFileListView::mouseReleaseEvent(QMouseEvent *event)
{
    if (!m_ignoresRelease)
        QTreeView::mouseReleaseEvent(event);
    m_ignoresRelease = false;
    m_isPressed = false;
    if (m_isArrangementDue)
        arrange();
}

void ctlFileListView::mouseDoubleClickEvent(QMouseEvent *event)
{
    m_ignoresRelease = m_openedByClick || event->button() != Qt::LeftButton;
    m_openedByClick = false;
    if (!m_ignoresRelease)
        QTreeView::mouseDoubleClickEvent(event);
}
