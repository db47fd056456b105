#include "app/frmmain.h"

#include "app/documentarea.h"
#include "codec/charcode.h"
#include "editor/ctlediter.h"
#include "editor/ctltabbar.h"
#include "files/filename.h"
#include "platform/keypause.h"
#include "platform/messagebox.h"
#include "platform/qpeapplication.h"
#include "settings/settings.h"

#include <QDir>
#include <QFileInfo>
#include <QStackedWidget>

using namespace Qt::StringLiterals;

namespace {

/// Going back from the first tab begins here; tabs with higher ids are reached by going forward.
constexpr int lastTabIdBackward = 1000;

bool isSaved(const ctlEditer *editor)
{
    return !editor->path().isEmpty();
}

/// A document that nobody would miss: never saved and not modified.
bool isFresh(const ctlEditer *editor)
{
    return !isSaved(editor) && !editor->edited();
}

/// Plain ASCII is no choice of the user's and would be wrong as soon as the file holds more: detected again.
int codeToReload(const ctlEditer *editor)
{
    return CharCode(editor->charCode()) == CharCode::Ascii ? 0 : editor->charCode();
}

QString fullName(const ctlEditer *editor)
{
    return editor->path() + editor->name();
}

int idBehind(const QList<int> &ids, int current)
{
    const auto found = std::upper_bound(ids.begin(), ids.end(), current);
    return found == ids.end() ? ids.first() : *found;
}

int idBefore(const QList<int> &ids, int current)
{
    const auto behind = std::lower_bound(ids.begin(), ids.end(), current);
    if (behind != ids.begin())
        return *std::prev(behind);
    const auto end = std::upper_bound(std::next(behind), ids.end(), lastTabIdBackward);
    return *std::prev(end == std::next(behind) ? ids.end() : end);
}

/// Folder and name of a file, without looking at the disk. A "/" at the end is not part of the name.
FileChoice fileOf(const QString &path, int charCode)
{
    const QFileInfo info(QDir::cleanPath(path));
    const QString folder = info.absolutePath();
    return { folder.endsWith(u'/') ? folder : folder + u'/', info.fileName(), charCode, 0 };
}

} // namespace

void frmMain::setDocument(const QString &path)
{
    openDocument(path, 0);
}

void frmMain::slotCmdFileNew()
{
    showDocument(addDocument({}));
}

/// A new editor with its tab, not yet the current one; an empty caption is the editor's own name.
ctlEditer *frmMain::addDocument(const QString &caption)
{
    auto *editor = new ctlEditer(m_documents->stack());
    connect(editor, &ctlEditer::undoAvailable2, this, &frmMain::slotEdUndoAvailable);
    connect(editor, &ctlEditer::redoAvailable2, this, &frmMain::slotEdRedoAvailable);
    connect(editor, &ctlEditer::copyAvailable, this, &frmMain::slotEdCopyAvailable);
    connect(editor, &ctlEditer::textChanged, this, [this, editor] { m_unwanted.removeOne(editor); });
    connect(editor, &ctlEditer::aboutToTell, this, [this, editor] { tabBar()->setCurrentTab(editor); });
    m_documents->stack()->addWidget(editor);
    const QString name = caption.isEmpty() ? editor->name() : caption;
    tabBar()->addTab(editor, name);
    editor->setAccessibleName(name);
    return editor;
}

void frmMain::showDocument(ctlEditer *editor)
{
    tabBar()->setCurrentTab(editor);
    m_documents->stack()->setCurrentWidget(editor);
    editor->setFocus();
    updateCaption();
    m_documents->arrange();
}

ctlEditer *frmMain::editorOfFile(const QString &fileName) const
{
    const QList<ctlEditer *> editors = tabBar()->editors();
    const auto found = std::find_if(editors.begin(), editors.end(),
        [&](const ctlEditer *editor) { return isSaved(editor) && fullName(editor) == fileName; });
    return found == editors.end() ? nullptr : *found;
}

void frmMain::openDocument(const QString &path, int charCode)
{
    commitComposition();
    const FileChoice file = fileOf(path, charCode);
    if (ctlEditer *editor = editorOfFile(file.folder + file.name)) {
        tabBar()->setCurrentTab(editor);
        const QString question =
            tr("File named '%1' already opens.\nCancel edit and reload?").arg(FileName::forMessage(path));
        if (editor->edited() && isReloadWanted(tr("Existing File"), question) && loadInto(editor, file))
            restorePosition(editor);
        return;
    }
    ctlEditer *editor = addDocument(FileName::forDisplay(file.name));
    load(editor, file);
    showDocument(editor);
    restorePosition(editor);
}

/// Opens a file the user has chosen: in the document that was current then, when nobody would miss that.
void frmMain::openChosen(ctlEditer *editor, const FileChoice &file)
{
    if (!editor || !isFresh(editor) || editorOfFile(file.folder + file.name)) {
        openDocument(file.folder + file.name, file.charCode);
        return;
    }
    if (loadInto(editor, file))
        restorePosition(editor);
    editor->setFocus();
}

/// The one place that reads a file into a document. Keys that are pressed meanwhile were not meant for what
/// it shows then. The place that is remembered of a file that cannot be read stays with its document until it
/// can.
bool frmMain::load(ctlEditer *editor, const FileChoice &file)
{
    KeyPause::begin();
    const bool isAgain = fullName(editor) == file.folder + file.name;
    const bool isLoaded = editor->loadFile(file.folder, file.name, file.charCode);
    if (isLoaded && m_carriedPlaces.contains(editor))
        restorePosition(editor);
    if (isLoaded)
        m_carriedPlaces.remove(editor);
    else if (const auto place = rememberedPlace(editor); place && !isAgain)
        m_carriedPlaces.insert(editor, *place);
    return isLoaded;
}

bool frmMain::loadInto(ctlEditer *editor, const FileChoice &file)
{
    const bool isLoaded = load(editor, file);
    updateTabText(editor);
    updateCaption();
    m_documents->arrange();
    return isLoaded;
}

bool frmMain::isReloadWanted(const QString &title, const QString &question)
{
    return MessageBox::question(this, title, question, { tr("Yes"), tr("No") }, 0, MessageBox::noEscape) == 0;
}

void frmMain::slotCmdFileOpen()
{
    ctlEditer *editor = currentEditor();
    if (const auto file = m_dialogs.chooseFile(this, frmFileDialog::Open, startFor(editor)))
        openChosen(editor, *file);
}

void frmMain::slotCmdFileReload()
{
    ctlEditer *editor = currentEditor();
    if (!editor || !isSaved(editor) || editor->name().isEmpty())
        return;
    const QString question = tr("Cancel edit and reload\n'%1'?").arg(FileName::forMessage(editor->name()));
    if (isReloadWanted(tr("Confirm Reload"), question))
        loadInto(editor, { editor->path(), editor->name(), codeToReload(editor), 0 });
}

/// Where the document lies, or in the user's documents for one that was never saved.
FileChoice frmMain::startFor(const ctlEditer *editor)
{
    if (editor && isSaved(editor))
        return { editor->path(), editor->name() };
    return { QDir::homePath() + u"/Documents/"_s, u".txt"_s };
}

void frmMain::slotEtcChangeTab(int forward)
{
    if (tabBar()->count() < 2)
        return;
    const QList<int> ids = tabBar()->ids();
    const int current = tabBar()->currentTab();
    tabBar()->setCurrentTab(forward ? idBehind(ids, current) : idBefore(ids, current));
}

void frmMain::slotTabCurrentChanged(ctlEditer *editor)
{
    if (editor && editor != currentEditor() && QPEApplication::isBusy()) {
        tabBar()->setCurrentTab(currentEditor());
        return;
    }
    commitComposition();
    if (editor)
        m_documents->stack()->setCurrentWidget(editor);
    const ctlEditer *current = currentEditor();
    item(EditCommand::Undo)->setEnabled(current && current->undoAvailable());
    item(EditCommand::Redo)->setEnabled(current && current->redoAvailable());
    slotEdCopyAvailable(current && current->hasMarkedText());
    updateCaption();
}

void frmMain::slotEdUndoAvailable(ctlEditer *editor, bool available)
{
    item(EditCommand::Undo)->setEnabled(available);
    editor->setEdited(available);
    updateTabText(editor);
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

void frmMain::updateTabText(ctlEditer *editor)
{
    const QString name = FileName::forDisplay(editor->name());
    tabBar()->setTabCaption(editor, editor->edited() ? u"* "_s + name : name);
    editor->setAccessibleName(name);
}

void frmMain::updateCaption()
{
    const QString caption = u"Marlo!Pad QT"_s;
    const ctlEditer *editor = currentEditor();
    setWindowTitle(
        editor ? u"%1  [%2][%3]"_s.arg(caption, editor->charCodeName(), editor->returnCodeName()) : caption);
}
