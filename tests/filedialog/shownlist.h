#pragma once

#include "filedialog/ctlfilelistview.h"
#include "tests/filedialog/formtest.h"

#include <QSignalSpy>

/// A list that shows a folder in a window, with what it reports.
struct ShownList {
    using Item = ctlFileListViewItem;

    explicit ShownList(const QString &path, const Surroundings &surroundings = userSurroundings(),
        const FolderJobs &jobs = inOneGo())
        : list(nullptr, surroundings, jobs)
    {
        list.resize(210, 130);
        list.nameFilter = QStringLiteral("*");
        list.show();
        list.activateWindow();
        list.setFocus();
        list.showFolder(path);
    }

    QStringList names() const
    {
        QStringList result;
        for (int row = 0; row < list.rows().rowCount(); ++row)
            result += itemAt(row)->text(Item::NameColumn);
        return result;
    }
    QModelIndex index(int row) const { return list.rows().index(row, Item::NameColumn); }
    QModelIndex index(const char *name) const { return list.rows().indexOf(QString::fromUtf8(name)); }
    const Item *itemAt(int row) const { return list.rows().itemAt(index(row)); }
    const Item *item(const char *name) const { return list.rows().itemAt(index(name)); }
    /// The name of the row that is shown there.
    QString nameAt(QPoint place) const
    {
        return list.rows().itemAt(list.indexAt(place))->text(Item::NameColumn);
    }
    /// Where all columns of a row stand in the view.
    QRect rect(const QModelIndex &row) const
    {
        return list.visualRect(row).united(list.visualRect(row.siblingAtColumn(Item::DateColumn)));
    }
    QString selected() const
    {
        return list.selectedItem() ? list.selectedItem()->text(Item::NameColumn) : QString();
    }
    QPoint place(const char *name) const { return rect(index(name)).center(); }
    void click(QPoint at) { QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, at); }
    void click(const char *name) { click(place(name)); }
    /// The four events of a double click.
    void doubleClick(QPoint at, Qt::MouseButton button = Qt::LeftButton)
    {
        QTest::mouseClick(list.viewport(), button, {}, at);
        QTest::mouseDClick(list.viewport(), button, {}, at);
    }
    void key(Qt::Key key) { QTest::keyClick(&list, key); }

    ctlFileListView list;
    QSignalSpy selectedFiles{ &list, &ctlFileListView::fileSelected };
    QSignalSpy refreshed{ &list, &ctlFileListView::listRefreshed };
    QSignalSpy opened{ &list, &ctlFileListView::execItem };
};

inline QStringList strings(std::initializer_list<const char *> texts)
{
    QStringList result;
    for (const char *text : texts)
        result += QString::fromUtf8(text);
    return result;
}

/// Before each list's test: the small screen, and the icons.
inline void resetLists()
{
    failOnWarnings();
    setScreenClass(false);
    loadFileIcons();
}
