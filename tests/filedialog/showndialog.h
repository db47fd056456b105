#pragma once

#include "filedialog/ctlfilelistview.h"
#include "filedialog/frmfiledialog.h"
#include "tests/filedialog/formtest.h"

#include <QComboBox>
#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QToolButton>

inline QString latin1(const char *text)
{
    return QString::fromLatin1(text);
}

/// A dialog that is shown and filled, and its controls.
struct ShownDialog {
    ShownDialog(frmFileDialog::Mode mode, const QString &folder, const QString &name,
        const FolderJobs &jobs = inOneGo())
        : dialog(nullptr, mode, folder, name, jobs)
        , list(dialog.findChild<ctlFileListView *>())
        , combos(dialog.findChildren<QComboBox *>())
    {
        dialog.show();
        dialog.activateWindow();
        dialog.initTimer();
    }

    /// The dialog begins by itself, too, a moment after it was made.
    bool waitForItsOwnStart() const { return QSignalSpy(list, &ctlFileListView::listRefreshed).wait(); }
    QComboBox *comboWith(const char *row) const
    {
        for (QComboBox *box : combos) {
            if (box->findText(latin1(row)) >= 0)
                return box;
        }
        return nullptr;
    }
    QComboBox *types() const { return comboWith("all files (*.*)"); }
    QComboBox *charCodes() const { return comboWith("UTF-8"); }
    QComboBox *returnCodes() const { return comboWith("CR"); }
    QComboBox *folders() const
    {
        for (QComboBox *box : combos) {
            if (box->isEditable())
                return box;
        }
        return nullptr;
    }
    QLineEdit *name() const
    {
        for (QLineEdit *edit : dialog.findChildren<QLineEdit *>()) {
            if (!qobject_cast<QComboBox *>(edit->parentWidget()))
                return edit;
        }
        return nullptr;
    }
    QPushButton *button(const char *text) const
    {
        for (QPushButton *push : dialog.findChildren<QPushButton *>()) {
            if (push->text() == latin1(text))
                return push;
        }
        return nullptr;
    }
    QToolButton *tool(const char *accessibleName) const
    {
        for (QToolButton *push : dialog.findChildren<QToolButton *>()) {
            if (push->accessibleName() == latin1(accessibleName))
                return push;
        }
        return nullptr;
    }
    QStringList names() const
    {
        QStringList result;
        for (int row = 0; row < list->rows().rowCount(); ++row)
            result += list->rows().index(row, ctlFileListViewItem::NameColumn).data().toString();
        return result;
    }
    void select(const QString &file) const { list->selectRow(list->rows().indexOf(file)); }
    void pick(QComboBox *box, int row) const
    {
        box->setCurrentIndex(row);
        emit box->activated(row);
    }
    bool isAccepted() const { return !dialog.isVisible() && dialog.result() == QDialog::Accepted; }

    frmFileDialog dialog;
    ctlFileListView *list;
    QList<QComboBox *> combos;
};

/// Before each dialog's test: the settings and the screen of a first start.
inline void resetDialogs()
{
    failOnWarnings();
    setScreenClass(false);
    QFile::remove(
        QStandardPaths::writableLocation(QStandardPaths::ConfigLocation) + QStringLiteral("/corvex.conf"));
}
