#include "app/frmmain.h"

#include "app/documentarea.h"
#include "editor/ctlediter.h"
#include "editor/ctltabbar.h"
#include "files/filename.h"
#include "platform/endquestion.h"
#include "platform/messagebox.h"
#include "platform/qcop.h"
#include "platform/qpeapplication.h"
#include "settings/settings.h"

#include <QDir>
#include <QStackedWidget>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

/// Tells the file explorer, when it runs, that a file has changed.
void announceSaved(const ctlEditer *editor)
{
    const QString channel = u"QPE/Application/corvex"_s;
    if (!QCopChannel::isRegistered(channel))
        return;
    QCopEnvelope message(channel, u"refreshListItem(QString,QString)"_s);
    message << editor->path() << editor->name();
}

/// Who cancels closing a document does not want the whole program to end because of a request that has been
/// waiting for this answer.
void withdrawEnd()
{
    if (auto *application = qobject_cast<QPEApplication *>(qApp))
        application->withdrawEnd();
}

/// The folder that is offered for new documents may not be there yet. One that was named otherwise is not
/// made: it is more likely mistyped.
void makeDocumentsFolder(const QString &folder)
{
    if (folder == QDir::homePath() + u"/Documents/"_s && !FileName::exists(folder))
        ::mkdir(FileName::toBytes(folder).constData(), S_IRWXU | S_IRWXG | S_IRWXO);
}

} // namespace

void frmMain::slotCmdFileSave()
{
    if (ctlEditer *editor = currentEditor())
        slotCmdFileSave(editor);
}

bool frmMain::slotCmdFileSave(ctlEditer *editor)
{
    return slotCmdFileSave(editor, editor->path(), editor->name(), 0, 0);
}

bool frmMain::slotCmdFileSave(
    ctlEditer *editor, const QString &path, const QString &name, int charCode, int returnCode)
{
    if (path.isEmpty())
        return slotCmdFileSaveAs(editor);
    const bool isSaved = editor->saveFile(path, name, charCode, returnCode);
    updateCaption();
    if (!isSaved)
        return false;
    m_carriedPlaces.remove(editor);
    updateTabText(editor);
    m_documents->arrange();
    announceSaved(editor);
    return true;
}

void frmMain::slotCmdFileSaveAs()
{
    if (ctlEditer *editor = currentEditor())
        slotCmdFileSaveAs(editor);
}

bool frmMain::slotCmdFileSaveAs(ctlEditer *editor)
{
    tabBar()->setCurrentTab(editor);
    FileChoice start = startFor(editor);
    while (const std::optional<FileChoice> file = m_dialogs.chooseFile(this, frmFileDialog::SaveAs, start)) {
        makeDocumentsFolder(file->folder);
        if (slotCmdFileSave(editor, file->folder, file->name, file->charCode, file->returnCode))
            return true;
        // Binary text cannot be saved anywhere.
        if (CharCode(editor->charCode()) == CharCode::Binary)
            return false;
        start = *file; // what was chosen is not lost, and can be mended
    }
    return false;
}

void frmMain::slotCmdFileSaveAll()
{
    ctlEditer *const before = currentEditor();
    if (!before)
        return;
    for (const int id : tabBar()->ids()) {
        ctlEditer *editor = tabBar()->editorOf(id);
        if (editor && editor->edited() && !slotCmdFileSave(editor))
            return;
    }
    // A document that asked something was shown for that; where saving stops, it stays so.
    tabBar()->setCurrentTab(before);
}

void frmMain::slotCmdFileCloseTab()
{
    ctlEditer *editor = currentEditor();
    if (editor && saveIfWanted(editor))
        closeDocument(editor);
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

bool frmMain::confirmCloseAll(bool saveWithoutAsking)
{
    const EndQuestion question;
    commitComposition();
    while (tabBar()->count() > 0) {
        ctlEditer *editor = tabBar()->editors().constLast();
        if (editor->edited() && saveWithoutAsking && !slotCmdFileSave(editor))
            return false;
        if (editor->edited()) {
            tabBar()->setCurrentTab(editor);
            if (!saveIfWanted(editor))
                return false;
        }
        closeDocument(editor);
    }
    return true;
}

/// Asks about a modified document and saves it on "Yes". False when it is not to be closed.
bool frmMain::saveIfWanted(ctlEditer *editor)
{
    if (!editor->edited())
        return true;
    switch (askToSave(editor)) {
    case SaveAnswer::Yes:
        return slotCmdFileSave(editor);
    case SaveAnswer::No:
        return true;
    case SaveAnswer::Cancel:
        withdrawEnd();
        return false;
    }
    Q_UNREACHABLE();
}

frmMain::SaveAnswer frmMain::askToSave(const ctlEditer *editor)
{
    const QString question =
        tr("\"%1\" is edited.\n Would you want to save this file?").arg(FileName::forMessage(editor->name()));
    const QStringList buttons{ tr("Yes"), tr("No"), tr("Cancel") };
    return SaveAnswer(MessageBox::question(
        this, tr("Confirm File Save"), question, buttons, int(SaveAnswer::Yes), int(SaveAnswer::Cancel)));
}

void frmMain::closeDocument(ctlEditer *editor)
{
    m_unwanted.removeOne(editor);
    m_documents->stack()->removeWidget(editor);
    tabBar()->removeTab(editor);
    addRecent(editor);
    editor->blockSignals(true);
    editor->hide();
    connect(editor, &QObject::destroyed, &m_freeing, qOverload<>(&QTimer::start));
    editor->deleteLater();
    slotTabCurrentChanged(nullptr);
    if (ctlEditer *next = currentEditor())
        next->setFocus();
    m_documents->arrange();
}
