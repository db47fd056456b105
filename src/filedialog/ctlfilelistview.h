#pragma once

#include "filedialog/filelistmodel.h"
#include "filedialog/filerows.h"

#include <QTimer>
#include <QTreeView>

/// Shows the contents of one folder, folders first, and walks the tree of folders by itself.
///
/// A folder of many entries, or one on a slow disk, fills behind the window: what has come is shown in its
/// order, and can be selected and opened. A name that is typed meanwhile leads to a row of these, and when
/// all are there to the one to which it leads among all; no key opens a row that has just been chosen so.
///
/// Backspace and Left go up; Return, a double click, or a tap on the row that was already selected opens a
/// row; Ctrl+1 to Ctrl+3 sort by a column as a click on its title does; Ctrl+Right and Ctrl+Left scroll to
/// the next and the previous column. A row that is opened is a folder that is entered, or a file that
/// execItem() reports.
class ctlFileListView : public QTreeView {
    Q_OBJECT
public:
    explicit ctlFileListView(QWidget *parent = nullptr, const Surroundings &surroundings = userSurroundings(),
        const FolderJobs &jobs = {});
    ~ctlFileListView() override;

    /// The folder that is shown, ending in "/"; empty before the first one.
    QString currentPath;
    /// Which files are shown, patterns separated by ";"; takes effect with the next showFolder().
    QString nameFilter;
    /// What stands in the list where a folder has nothing to show, and describes it to assistive tools;
    /// nothing when empty. Set it when listRefreshed() comes.
    QString emptyText;
    /// Letters that are typed are the name of a file to be, and told by typed(); so is Return where no row is
    /// selected. Otherwise letters lead to the row that begins so, and that Return to nothing.
    bool isTypingName = false;
    /// As they were when the list was made: folders of programs and other places have pictures of their own.
    const Surroundings surroundings;

    const FileListModel &rows() const { return *m_model; }
    /// The selected row; null without one.
    const ctlFileListViewItem *selectedItem() const { return m_model->itemAt(selectedIndex()); }
    /// Selects it and gives it the focus.
    void selectRow(const QModelIndex &index);

    /// Shows a folder, `path` with "/" at its end, from the top, under its absolute name; coming from one of
    /// its own folders, that one is selected and in view. A folder that cannot be read is shown empty; where
    /// there is too little memory for it the list says so. What
    /// cannot be read at once comes later; what comes of another folder does not, whatever its disk does.
    void showFolder(const QString &path);
    bool isFilling() const { return m_reading.isReading(); }
    /// The rows will come into another order.
    bool isSorting() const { return m_reading.isSorting(); }
    /// Shows the folder above; nothing above the root.
    void goUpFolder();
    /// Gives the names so many pixels more, or less.
    void widenNames(int by);
    void keyboardSearch(const QString &search) override;

public slots:
    void slotSelectionChanged(const ctlFileListViewItem *item);
    void slotExecItem(const ctlFileListViewItem *item);
    void slotMouseClicked(const ctlFileListViewItem *item);

signals:
    /// A file was selected, by its name without folder.
    void fileSelected(const QString &name);
    /// A folder is shown, also one that is empty or cannot be read.
    void listRefreshed(const QString &path);
    /// Text was typed, see isTypingName; Return brings none.
    void typed(const QString &text);
    /// There was too little memory to sort the list, which stays as it was; from the event loop, when it says
    /// so again.
    void notSorted();
    /// A file was opened.
    void execItem(const ctlFileListViewItem *item);

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;

private:
    void setUpColumns();
    QModelIndex selectedIndex() const;
    enum class Step { Before, Next };
    void showColumn(Step step);
    void sortByColumn(int column);
    bool selectRowOfFocus();
    FileOrder order() const;
    void arrangeWhenReleased();
    void arrange();
    void replaceRows(const FileRowList &rows);
    void selectFolderLeft();
    bool isSettled() const;
    void selectTypedAgain();
    void forgetTyped();
    void openByKey(const ctlFileListViewItem *item);
    void sortRows();
    void showOrder();
    void showBusy();
    QString textWithoutRows() const;
    void describe();

    FileRows m_reading;
    FileListModel *const m_model;
    QString m_folderLeft; ///< is selected when its row comes; empty: none is
    QString m_typed; ///< the letters that were typed last
    QPersistentModelIndex m_typedFrom; ///< the row that was selected before them
    QTimer m_typing; ///< runs while a further letter belongs to them
    bool m_isTypedDue = false; ///< to be looked up again when the list is settled
    bool m_isPressed = false; ///< by the mouse
    bool m_isArrangementDue = false; ///< when it is not any more
    /// Rows of before a refresh stay in these: they are compared, never followed.
    const ctlFileListViewItem *m_selectedEntry = nullptr;
    const ctlFileListViewItem *m_pressedEntry = nullptr;
    /// The first click of a double click has opened its row: the second is not for what stands there now.
    bool m_openedByClick = false;
    bool m_ignoresRelease = false;
};
