#pragma once

#include "codec/charcode.h"
#include "codec/returncode.h"
#include "filedialog/favourites.h"
#include "filedialog/folderjobs.h"

#include <QDialog>
#include <QString>

#include <optional>

class QComboBox;
class QLineEdit;
class QMenu;
class QToolButton;
class ctlFileListView;
class ctlFileListViewItem;

/// Asks for a file to open, or for a folder and name to save under, with the code and line end to use.
///
/// Modal; made for one use. The list is filled a moment after construction, so that the window shows at once.
/// Nothing is opened, made or written: a folder that was named, or a file without permission, is for whoever
/// uses the result to refuse.
class frmFileDialog : public QDialog {
    Q_OBJECT
public:
    enum Mode : int { Open = 0, SaveAs = 1 };

    /// `folder` ends in "/"; one that does not exist is shown empty. `name` may be empty.
    frmFileDialog(
        QWidget *parent, Mode mode, const QString &folder, const QString &name, const FolderJobs &jobs = {});

    /// Chooses the rows of a code and a line end; one that the list does not have changes nothing.
    void showCodes(std::optional<CharCode> code, std::optional<ReturnCode> lineEnd);

    /// The result, to be read when exec() gave QDialog::Accepted: the file is dirPath + fileName. A refused
    /// input writes them as well.
    QString dirPath; ///< ends in "/"
    QString fileName;
    std::optional<CharCode> charCode; ///< nothing: detect, or keep
    std::optional<ReturnCode> returnCode; ///< nothing: keep

    FavoriteTexts favoritePaths;
    FavoriteTexts favoriteNames;

public slots:
    /// What needs the disk: pictures, favourites, the start folder.
    void initTimer();
    void refreshFileList();
    void slotLvFileSelected(const QString &name);
    void slotLvExecItem(const ctlFileListViewItem *item);
    void slotLvListRefreshed(const QString &path);
    void slotLvNotSorted();
    void slotCmbFilActivated(int row);
    void slotCmdEtcUpperDir();
    void slotCmdEtcRefresh();
    void slotCmdMnuFavor(int id);
    /// Checks the input; closes the dialog, or says what is wrong and stays.
    void accept() override;

protected:
    void showEvent(QShowEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    QWidget *createTopRow();
    QToolButton *createToolButton(const char *icon, const QString &text);
    void createList();
    void createFileTypes();
    QComboBox *createChoice(int height);
    QWidget *createCodeRow();
    QWidget *createButtonRow();
    void layOut();
    void chooseStartType();
    void typeName(const QString &text);
    void growList();
    QString emptyText(const QString &path) const;
    bool isNameUsable();
    bool isFileUsable();

    Mode m_mode;
    QComboBox *m_folder;
    QMenu *m_favorites;
    ctlFileListView *m_list;
    QLineEdit *m_name;
    QComboBox *m_type;
    QComboBox *m_charCode;
    QComboBox *m_returnCode;
    QSize m_openedSize; ///< invalid before it is shown
};
