#include "app/frmmain.h"

#include "app/frmguide.h"
#include "app/keymap.h"
#include "app/windowparts.h"
#include "editor/ctlediter.h"
#include "editor/ctltabbar.h"
#include "platform/lastingfont.h"
#include "platform/messagebox.h"
#include "platform/resource.h"
#include "platform/screenclass.h"
#include "settings/settings.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDateTime>
#include <QKeyEvent>

using namespace Qt::StringLiterals;

namespace {

/// By the values of Language.
constexpr CommandSlot languageSlots[] = { &frmMain::slotCmdViewLangEn, &frmMain::slotCmdViewLangJa,
    &frmMain::slotCmdViewLangFr };

QFont applicationFont()
{
    QFont font = QApplication::font();
    font.setPointSize(forScreen(10, 18));
    return font;
}

} // namespace

frmMain::frmMain(QWidget *parent, WindowDialogs dialogs, WindowJobs jobs)
    : QMainWindow(parent)
{
    setObjectName(u"frmMain"_s);
    new LastingFont(applicationFont(), this);
    // Now, while there are no parts of the window that would have to measure their texts twice.
    QCoreApplication::sendPostedEvents(this, QEvent::ApplicationFontChange);
    readSettings();
    QMultiLineEdit::setDefaultTabStop(appSettings().TabLen);
    setWindowTitle(u"Marlo!Pad QT"_s);
    setWindowIcon(Resource::loadIcon(u"marlopad"_s));
    // The tool bars hold the menus: no menu may offer to hide them.
    setContextMenuPolicy(Qt::NoContextMenu);
    m_parts = std::make_unique<WindowParts>(*this, std::move(dialogs), std::move(jobs));
    connectParts();
    retranslate();
    m_parts->windowSize.restore();
    m_parts->notices.tellOfEarlierRuns();
    m_parts->firstOffers.make();
}

frmMain::~frmMain()
{
    writeSettings();
}

void frmMain::connectParts()
{
    connect(&m_parts->menus, &MainMenus::chosen, this, &frmMain::run);
    connect(&m_parts->recentMenu, &RecentMenu::chosen, this, [this](int row) {
        if (m_parts->documents.beginCommand())
            slotCmdMnuRecent(row);
    });
    connect(&m_parts->places, &RecentPlaces::changed, this, &frmMain::rebuildRecentMenu);
    connect(&m_parts->documents, &DocumentArea::added, this, [this](const ctlEditer *editor) {
        connect(editor, &ctlEditer::undoAvailable2, this, &frmMain::slotEdUndoAvailable);
        connect(editor, &ctlEditer::redoAvailable2, this, &frmMain::slotEdRedoAvailable);
        connect(editor, &ctlEditer::copyAvailable, this, &frmMain::slotEdCopyAvailable);
    });
    connect(&m_parts->documents, &DocumentArea::currentChanged, this, &frmMain::slotTabCurrentChanged);
    connect(&m_parts->documents, &DocumentArea::workEnded, this,
        [this] { slotTabCurrentChanged(currentEditor()); });
    connect(&m_parts->documents, &DocumentArea::refreshed, this, &frmMain::updateCaption);
    connect(&m_parts->firstOffers, &FirstOffers::languageChosen, this,
        [this](int language) { (this->*languageSlots[language])(); });
    connect(
        &m_parts->statusLine, &StatusLine::jumpWanted, this, [this] { run(&frmMain::slotCmdViewGyoJump); });
    connect(&m_parts->textSizeWheel, &TextSizeWheel::turned, this,
        [this](int notches) { setTextSize(appSettings().FontSize + notches); });
    connect(&m_parts->documents, &DocumentArea::moreOptionsWanted, this, &frmMain::slotEtcMoreOptions);
    connect(&m_parts->tabMenu, &TabMenu::moreOptionsWanted, this, &frmMain::slotEtcMoreOptions);
    connect(&m_parts->sessionEnd, &SessionEnd::settingsTakenOver, this, &frmMain::applySettings);
}

ctlEditer *frmMain::currentEditor() const
{
    return m_parts->documents.current();
}

ctlTabBar *frmMain::tabBar() const
{
    return m_parts->documents.tabBar();
}

bool frmMain::isCoveringScreen() const
{
    return m_parts->fullScreen.isOn();
}

QAction *frmMain::item(CommandId command) const
{
    return m_parts->menus.item(command);
}

QMenu *frmMain::menu(MenuId id) const
{
    return m_parts->menus.menu(id);
}

QMenu *frmMain::recentMenu() const
{
    return &m_parts->recentMenu;
}

void frmMain::openDocument(const QString &path, int charCode)
{
    m_parts->loader.open(path, requestedCharCode(charCode));
}

bool frmMain::slotCmdFileSave(ctlEditer *editor)
{
    return m_parts->saver.save(editor);
}

bool frmMain::slotCmdFileSave(
    ctlEditer *editor, const QString &path, const QString &name, int charCode, int returnCode)
{
    return m_parts->saver.saveTo(
        editor, { path, name, requestedCharCode(charCode), requestedReturnCode(returnCode) });
}

bool frmMain::slotCmdFileSaveAs(ctlEditer *editor)
{
    return m_parts->saver.saveAs(editor);
}

bool frmMain::confirmCloseAll(bool saveWithoutAsking)
{
    m_parts->lastSession.beginEnd();
    const bool isClosed =
        m_parts->closer.closeAll(saveWithoutAsking ? EditsAtClosing::Save : EditsAtClosing::Ask);
    if (!isClosed)
        m_parts->lastSession.cancelEnd();
    return isClosed;
}

void frmMain::applySettings()
{
    QMultiLineEdit::setDefaultTabStop(appSettings().TabLen);
    tabBar()->applySettings();
    m_parts->statusLine.applySettings();
    m_parts->lastSession.applySettings();
    m_parts->documents.notices().applySettings();
    m_parts->documentJournals.applySettings();
    for (ctlEditer *editor : m_parts->documents.editors())
        editor->applySettings();
    if (ctlEditer *editor = currentEditor())
        editor->viewport()->update();
    rebuildRecentMenu();
}

QString frmMain::dateTimeText(const QDateTime &time)
{
    return time.toString(u"yyyy/MM/dd hh:mm\n");
}

void frmMain::rebuildRecentMenu()
{
    m_parts->recentMenu.rebuild();
}

void frmMain::addRecent(ctlEditer *editor)
{
    m_parts->places.add(*editor);
}

void frmMain::restorePosition(ctlEditer *editor)
{
    m_parts->places.restore(*editor);
}

void frmMain::setDocument(const QString &path)
{
    m_parts->requested.open({ path });
}

void frmMain::openRequested(const FileRequest &request)
{
    m_parts->requested.open(request);
}

void frmMain::slotCmdFileNew()
{
    m_parts->documents.present(m_parts->documents.add());
}

void frmMain::slotCmdFileOpen()
{
    m_parts->loader.askAndOpen();
}

void frmMain::slotCmdFileReload()
{
    m_parts->loader.askAndReload();
}

void frmMain::slotCmdFileProp()
{
    m_parts->properties.show();
}

void frmMain::slotCmdFileSave()
{
    if (ctlEditer *editor = currentEditor())
        m_parts->saver.beginSave(editor);
}

void frmMain::slotCmdFileSaveAs()
{
    if (ctlEditer *editor = currentEditor())
        m_parts->saver.beginSaveAs(editor);
}

void frmMain::slotCmdFileCloseTab()
{
    m_parts->closer.askAndClose();
}

void frmMain::slotCmdFileSaveAll()
{
    m_parts->saver.saveAll();
}

void frmMain::slotCmdFileQuitSave()
{
    if (confirmCloseAll(true))
        close();
}

void frmMain::slotCmdFileQuitNoSave()
{
    if (confirmCloseAll(false))
        close();
}

void frmMain::slotCmdMnuRecent(int id)
{
    if (!currentEditor() || id < 0 || id >= recentEntryCount)
        return;
    const RecentEntry entry = recentFiles().entries[std::size_t(id)];
    if (entry.isUsed())
        m_parts->loader.openChosen(currentEditor(), { entry.path, entry.name });
}

void frmMain::slotCmdEditUndo()
{
    if (ctlEditer *editor = currentEditor())
        editor->undo();
}

void frmMain::slotCmdEditRedo()
{
    if (ctlEditer *editor = currentEditor())
        editor->redo();
}

void frmMain::slotCmdEditCut()
{
    if (ctlEditer *editor = currentEditor())
        editor->cut();
}

void frmMain::slotCmdEditCopy()
{
    if (ctlEditer *editor = currentEditor())
        editor->copy();
}

void frmMain::slotCmdEditPast()
{
    if (ctlEditer *editor = currentEditor())
        editor->paste();
}

void frmMain::slotCmdEditSelAll()
{
    if (ctlEditer *editor = currentEditor())
        editor->selectAll();
}

void frmMain::slotCmdEditDateTime()
{
    if (ctlEditer *editor = currentEditor())
        editor->insert(dateTimeText(QDateTime::currentDateTime()));
}

void frmMain::slotCmdEditOption()
{
    if (m_parts->dialogs.editOptions(this))
        applySettings();
}

void frmMain::slotEtcMoreOptions()
{
    if (m_parts->dialogs.editMoreOptions(this))
        applySettings();
}

void frmMain::slotCmdViewLangJa()
{
    changeLanguage(Japanese, tr("A japanese translation file is not found."));
}

void frmMain::slotCmdViewLangEn()
{
    changeLanguage(English, {});
}

void frmMain::slotCmdViewLangFr()
{
    changeLanguage(French, tr("A french translation file not found."));
}

void frmMain::changeLanguage(int language, const QString &missingFileText)
{
    if (!m_parts->language.use(language)) {
        MessageBox::critical(this, tr("Marlo!Pad QT"), missingFileText);
        return;
    }
    appSettings().Lang = language;
    retranslate();
    showToolBarLabels();
    for (ctlEditer *editor : m_parts->documents.editors())
        m_parts->documents.refresh(editor);
}

void frmMain::retranslate()
{
    m_parts->menus.retranslate();
    rebuildRecentMenu();
    m_parts->commandBar.retranslate();
}

void frmMain::slotCmdViewWinPrev()
{
    slotEtcChangeTab(0);
}

void frmMain::slotCmdViewWinNext()
{
    slotEtcChangeTab(1);
}

void frmMain::slotCmdViewSearch()
{
    m_parts->search.showPanel(0);
}

void frmMain::slotCmdViewReplace()
{
    m_parts->search.showPanel(1);
}

void frmMain::slotCmdViewSrchBefo()
{
    m_parts->search.repeatBackward();
}

void frmMain::slotCmdViewSrchNext()
{
    m_parts->search.repeatForward();
}

void frmMain::slotCmdViewGyoJump()
{
    m_parts->lineJump.ask();
}

void frmMain::slotCmdViewLastEdit()
{
    if (ctlEditer *editor = currentEditor())
        editor->jumpToLastEdit();
}

void frmMain::slotCmdViewFull()
{
    m_parts->fullScreen.toggle();
}

void frmMain::slotCmdViewHelp() { }

void frmMain::slotCmdViewAbout()
{
    const QString contact = u"support@marlopad.example\nhttps://marlopad.example/"_s;
    MessageBox::about(
        this, tr("Marlo!Pad QT"), tr("Marlo!Pad QT Ver1.76\n            2005/07/04\n\n") + contact);
}

void frmMain::slotEtcSearchNext()
{
    m_parts->search.searchForward();
}

void frmMain::slotEtcSearchBefo()
{
    m_parts->search.searchBackward();
}

void frmMain::slotEtcReplaceAll()
{
    m_parts->search.replaceAll();
}

void frmMain::slotTabCurrentChanged(ctlEditer *editor)
{
    item(EditCommand::Undo)->setEnabled(editor && editor->undoAvailable());
    item(EditCommand::Redo)->setEnabled(editor && editor->redoAvailable());
    slotEdCopyAvailable(editor && editor->hasMarkedText());
    updateCaption();
}

void frmMain::slotEtcFirstNewDoc()
{
    m_parts->firstDocument.make();
}

void frmMain::slotEtcChangeTab(int forward)
{
    forward ? m_parts->documents.showNext() : m_parts->documents.showPrevious();
}

void frmMain::slotEtcNotice()
{
    m_parts->documents.toggleNoticeKeys();
}

void frmMain::slotEtcTextLarger()
{
    setTextSize(appSettings().FontSize + 1);
}

void frmMain::slotEtcTextSmaller()
{
    setTextSize(appSettings().FontSize - 1);
}

void frmMain::slotEtcTextAsUsual()
{
    setTextSize(AppSettings().FontSize);
}

void frmMain::setTextSize(int points)
{
    appSettings().FontSize = qBound(AppSettings::smallestFontSize, points, AppSettings::largestFontSize);
    applySettings();
}

void frmMain::slotEtcMenus()
{
    m_parts->menus.openFirst();
}

void frmMain::slotEtcTabMenu()
{
    m_parts->tabMenu.showCurrent();
}

void frmMain::slotEtcKeys()
{
    frmGuide guide(this);
    guide.enlarge();
    guide.exec();
}

void frmMain::slotEdUndoAvailable(ctlEditer *editor, bool available)
{
    item(EditCommand::Undo)->setEnabled(available);
    m_parts->documents.refresh(editor);
}

void frmMain::slotEdRedoAvailable(ctlEditer *, bool available)
{
    item(EditCommand::Redo)->setEnabled(available);
}

void frmMain::slotEdCopyAvailable(bool available)
{
    item(EditCommand::Cut)->setEnabled(available);
    item(EditCommand::Copy)->setEnabled(available);
}

void frmMain::updateCaption()
{
    const QString caption = u"Marlo!Pad QT"_s;
    const ctlEditer *editor = currentEditor();
    setWindowTitle(
        editor ? u"%1  [%2][%3]"_s.arg(caption, editor->charCodeName(), editor->returnCodeName()) : caption);
}

void frmMain::run(CommandSlot command)
{
    if (m_parts->documents.beginCommand())
        (this->*command)();
}

void frmMain::showToolBarLabels()
{
    m_parts->commandBar.showLabelsIn(width() - m_parts->menus.barWidth());
}

void frmMain::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape) {
        // A key that is held down must not go on to close the document after leaving full screen.
        if (!event->isAutoRepeat())
            run(isCoveringScreen() ? &frmMain::slotCmdViewFull : &frmMain::slotCmdFileCloseTab);
        return;
    }
    for (const CommandSlot command : commandsForKey(*event))
        run(command);
    QWidget::keyPressEvent(event);
}

void frmMain::resizeEvent(QResizeEvent *event)
{
    QMainWindow::resizeEvent(event);
    m_parts->fullScreen.keep();
    showToolBarLabels();
    m_parts->documents.arrange();
}

void frmMain::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    m_parts->fullScreen.keep();
    m_parts->firstDocument.wait();
    m_parts->recovery.lookWhenShown();
    QMetaObject::invokeMethod(&m_parts->lastSession, &LastSession::open, Qt::QueuedConnection);
}

void frmMain::closeEvent(QCloseEvent *event)
{
    if (!confirmCloseAll(false)) {
        event->ignore();
        return;
    }
    m_parts->journals.flush(RecoveryJournals::longestFlush);
    m_parts->lastSession.write();
    writeSettings();
    m_parts->openingFiles.end();
    event->accept();
    QWidget::closeEvent(event);
}

void frmMain::changeEvent(QEvent *event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::ActivationChange)
        m_parts->firstDocument.noteActivation();
}
