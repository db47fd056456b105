#pragma once

#include "app/command.h"
#include "app/windowdialogs.h"
#include "settings/settings.h"

#include <QHash>
#include <QMainWindow>
#include <QTimer>

#include <array>
#include <memory>
#include <optional>

class ctlEditer;
class ctlTabBar;
class DocumentArea;
class FullScreen;
class frmSearchDialog;
class QDateTime;
class QMenuBar;
class QStackedWidget;
class QToolBar;
class Translation;

/// The last search that was asked for.
struct SearchRequest {
    int searchMode = 0; ///< 0 search, 1 replace
    int caseSensitive = 0;
    QString findText;
    QString replaceText;
};

/// The main window: menus, tool bar, key map, the open documents and the commands on them.
///
/// The current document is the editor that the stack shows. A command that needs one does nothing without.
class frmMain : public QMainWindow {
    Q_OBJECT
public:
    /// Reads the settings, sets the application's font and installs the translator.
    explicit frmMain(QWidget *parent = nullptr, WindowDialogs dialogs = {});
    /// Writes the settings.
    ~frmMain() override;

    ctlEditer *currentEditor() const;
    ctlTabBar *tabBar() const;
    /// In full screen, as it was last wanted or told by the window manager.
    bool isCoveringScreen() const;

    /// The action of a menu's item: its menu text, its icon and, on the tool bar, its label and tool tip.
    QAction *item(CommandId command) const;
    QMenu *menu(MenuId menu) const { return m_menus[std::size_t(menu)]; }
    QMenu *recentMenu() const { return m_recentMenu; }

    /// Opens a file, or switches to its tab when it is open already; asks before edits are thrown away.
    /// `charCode` is the CharCode to read it with, 0 to detect.
    void openDocument(const QString &path, int charCode);
    /// Saves under the document's own name and codes. False when it was not written.
    bool slotCmdFileSave(ctlEditer *editor);
    /// The one place that writes: asks for a name when `path` is empty; 0 keeps the document's code or line
    /// end.
    bool slotCmdFileSave(
        ctlEditer *editor, const QString &path, const QString &name, int charCode, int returnCode);
    bool slotCmdFileSaveAs(ctlEditer *editor);
    /// Closes every document, from the last tab backwards; modified ones are asked about, or saved without
    /// asking. False when that was cancelled or a save failed; what was passed by then stays closed.
    bool confirmCloseAll(bool saveWithoutAsking);
    /// The user's session is about to end: asks about modified documents, from the last tab backwards. False
    /// when the session is not to end: that was cancelled, a save failed, or there is something to ask while
    /// nothing may be asked or a dialog waits for its answer. All documents stay open, since the session may
    /// go on all the same; those whose edits nobody wanted are closed without asking when it really ends.
    bool endSession(bool mayAsk);

    /// Gives changed settings to every document and to the menus; no document counts as modified by that.
    void applySettings();
    /// The text that the Date and Time command inserts.
    static QString dateTimeText(const QDateTime &time);

    /// Fills the Recent Files menu from the table.
    void rebuildRecentMenu();
    /// Puts a document that is being closed on top of the table; one that was never saved is left out.
    /// One whose file could not be read keeps the place that was remembered of it.
    void addRecent(ctlEditer *editor);
    /// Puts cursor and view of a document that was just loaded where they were when it was closed, unless the
    /// user does not want that.
    void restorePosition(ctlEditer *editor);

public slots:
    /// A request of the launcher.
    void setDocument(const QString &path);

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

    void slotTabCurrentChanged(ctlEditer *editor);
    /// Makes the first document when the window is active and has none; the time to wait for it is over then.
    void slotEtcFirstNewDoc();
    /// The next tab by id with 1, the previous one with 0; round at the ends.
    void slotEtcChangeTab(int forward);
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
    enum class SaveAnswer { Yes, No, Cancel };

    /// Runs a command, unless a dialog or a replace-all is in its way.
    void run(CommandSlot command);
    /// Whether none is in the way of a command; what is being composed is text then.
    bool mayAct();
    /// Whatever reads a document, or puts another one in its place, calls this first: an input method holds
    /// back text that counts as written for who sees it.
    void commitComposition();

    void createMenuBar();
    void createActions();
    QAction *createAction(const Command &command);
    void createToolBar();
    void buildMenus();
    void nameControls();
    void fillMenu(MenuId id);
    void showToolBarLabels();

    ctlEditer *addDocument(const QString &caption);
    void showDocument(ctlEditer *editor);
    void closeDocument(ctlEditer *editor);
    ctlEditer *editorOfFile(const QString &fileName) const;
    static FileChoice startFor(const ctlEditer *editor);
    void openChosen(ctlEditer *editor, const FileChoice &file);
    bool load(ctlEditer *editor, const FileChoice &file);
    bool loadInto(ctlEditer *editor, const FileChoice &file);
    bool isReloadWanted(const QString &title, const QString &question);
    SaveAnswer askToSave(const ctlEditer *editor);
    bool saveIfWanted(ctlEditer *editor);
    bool hasEdits() const;

    std::optional<RecentEntry> rememberedPlace(const ctlEditer *editor) const;

    void watchSession();
    void closeUnwanted();
    void updateTabText(ctlEditer *editor);
    void updateCaption();

    frmSearchDialog *searchPanel();
    void showSearchPanel(int mode);
    void takeSearchRequest();
    void replaceAll(ctlEditer &editor);
    void search(bool (ctlEditer::*direction)(int, bool, const QString &, const QString &));

    bool installTranslator(int language);
    void changeLanguage(int language, const QString &missingFileText);

    WindowDialogs m_dialogs;
    DocumentArea *m_documents = nullptr;
    QMenuBar *m_menuBar = nullptr;
    QToolBar *m_toolBar = nullptr;
    int m_labelledWidth = 0; ///< of the tool bar with its labels
    std::array<QMenu *, menuCount> m_menus{};
    QMenu *m_recentMenu = nullptr;
    std::array<QList<QAction *>, menuCount> m_items;
    FullScreen *m_fullScreen;
    QTimer m_firstDocumentTimer; ///< from showing the window
    bool m_firstDocumentDue = false; ///< the time is over, but the window was not active
    QTimer m_freeing; ///< runs out once when closed documents are gone
    QList<ctlEditer *> m_unwanted; ///< not to be saved at the end of the session, and not edited since
    QHash<const ctlEditer *, RecentEntry> m_carriedPlaces; ///< of files that could not be read
    SearchRequest m_search;
    frmSearchDialog *m_searchPanel = nullptr; ///< made when it is first needed
    std::unique_ptr<Translation> m_translation;
};
