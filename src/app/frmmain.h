#pragma once

#include "app/command.h"
#include "app/windowdialogs.h"
#include "app/windowjobs.h"
#include "platform/filerequest.h"

#include <QMainWindow>

#include <memory>

class QDateTime;
class QMenu;
class ctlEditer;
class ctlTabBar;
struct WindowParts;

/// The main window: it brings its parts together, and has the slots of the commands.
///
/// A command that needs a document does nothing without one.
class frmMain : public QMainWindow {
    Q_OBJECT
public:
    /// Reads the settings, sets the application's font and installs the translator.
    explicit frmMain(QWidget *parent = nullptr, WindowDialogs dialogs = {}, WindowJobs jobs = {});
    /// Writes the settings.
    ~frmMain() override;

    /// Null without documents.
    ctlEditer *currentEditor() const;
    ctlTabBar *tabBar() const;
    /// In full screen, as it was last wanted or told by the window manager.
    bool isCoveringScreen() const;

    /// The action of a menu's item: its menu text, its icon and, on the tool bar, its label and tool tip.
    QAction *item(CommandId command) const;
    QMenu *menu(MenuId id) const;
    QMenu *recentMenu() const;

    /// Opens a file, or switches to its tab when it is open already; asks before edits are thrown away.
    /// `charCode` is the CharCode to read it with, 0 to detect.
    void openDocument(const QString &path, int charCode);
    /// Saves under the document's own name and codes. False when it was not written.
    bool slotCmdFileSave(ctlEditer *editor);
    /// The same as another file; asks for a name when `path` is empty; 0 keeps the document's code or line
    /// end.
    bool slotCmdFileSave(
        ctlEditer *editor, const QString &path, const QString &name, int charCode, int returnCode);
    bool slotCmdFileSaveAs(ctlEditer *editor);
    /// Closes every document, from the last tab backwards; edited ones are asked about, or saved without
    /// asking. False when that was cancelled or a save failed; what was passed by then stays closed.
    bool confirmCloseAll(bool saveWithoutAsking);

    /// Gives changed settings to every document and to the menus; no document counts as edited by that.
    void applySettings();
    /// The text that the Date and Time command inserts.
    static QString dateTimeText(const QDateTime &time);

    /// Fills the Recent Files menu from the table.
    void rebuildRecentMenu();
    /// Puts a document that is being closed on top of the table of recent files.
    void addRecent(ctlEditer *editor);
    /// Puts cursor and view of a document that was just loaded where they were when it was closed.
    void restorePosition(ctlEditer *editor);

public slots:
    /// A request of the launcher.
    void setDocument(const QString &path);
    /// What the launcher does not ask for in that way.
    void openRequested(const FileRequest &request);

    void slotCmdFileNew();
    void slotCmdFileOpen();
    void slotCmdFileReload();
    void slotCmdFileProp();
    void slotCmdFileSave();
    void slotCmdFileSaveAs();
    void slotCmdFileCloseTab();
    void slotCmdFileSaveAll();
    void slotCmdFileQuitSave();
    void slotCmdFileQuitNoSave();
    void slotCmdMnuRecent(int id);

    void slotCmdEditUndo();
    void slotCmdEditRedo();
    void slotCmdEditCut();
    void slotCmdEditCopy();
    void slotCmdEditPast();
    void slotCmdEditSelAll();
    void slotCmdEditDateTime();
    void slotCmdEditOption();

    void slotCmdViewLangJa();
    void slotCmdViewLangEn();
    void slotCmdViewLangFr();
    void slotCmdViewWinPrev();
    void slotCmdViewWinNext();
    void slotCmdViewSearch();
    void slotCmdViewSrchBefo();
    void slotCmdViewSrchNext();
    void slotCmdViewReplace();
    void slotCmdViewGyoJump();
    void slotCmdViewLastEdit();
    void slotCmdViewFull();
    void slotCmdViewHelp();
    void slotCmdViewAbout();

    /// What the search panel's buttons ask for.
    void slotEtcSearchNext();
    void slotEtcSearchBefo();
    /// Replaces every hit in the current document, from its top, and tells how many there were.
    void slotEtcReplaceAll();

    /// The items of the Edit menu and the title become those of the document that is current now, or of none.
    void slotTabCurrentChanged(ctlEditer *editor);
    /// Makes the first document when the window is active and has none; the time to wait for it is over then.
    void slotEtcFirstNewDoc();
    /// The next tab by id with 1, the previous one with 0; round at the ends.
    void slotEtcChangeTab(int forward);
    /// The keys go from the text to the notice above it, or back.
    void slotEtcNotice();
    /// The text of all documents by a point larger or smaller, within what the options allow, or of the size
    /// that a first start has.
    void slotEtcTextLarger();
    void slotEtcTextSmaller();
    void slotEtcTextAsUsual();
    /// The first menu opens.
    void slotEtcMenus();
    void slotEtcTabMenu();
    /// Shows the guide at its table of keys.
    void slotEtcKeys();
    /// Has the user switch on and off what was added to the handheld's program.
    void slotEtcMoreOptions();
    void slotEdUndoAvailable(ctlEditer *editor, bool available);
    void slotEdRedoAvailable(ctlEditer *editor, bool available);
    void slotEdCopyAvailable(bool available);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void connectParts();
    /// Runs a command, unless a dialog or a run of replacements is in its way.
    void run(CommandSlot command);
    void setTextSize(int points);
    void changeLanguage(int language, const QString &missingFileText);
    void retranslate();
    void showToolBarLabels();
    void updateCaption();

    std::unique_ptr<WindowParts> m_parts;
};
