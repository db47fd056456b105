#include "app/frmmain.h"

#include "settings/settings.h"
#include "editor/ctlediter.h"
#include "editor/ctltabbar.h"

#include <QAction>
#include <QDateTime>
#include <QWidget>

using namespace Qt::StringLiterals;

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

QString frmMain::dateTimeText(const QDateTime &time)
{
    return time.toString(u"yyyy/MM/dd hh:mm\n");
}

void frmMain::slotCmdEditOption()
{
    if (m_dialogs.editOptions(this))
        applySettings();
}

void frmMain::applySettings()
{
    QMultiLineEdit::setDefaultTabStop(appSettings().TabLen);
    for (ctlEditer *editor : tabBar()->editors())
        editor->applySettings();
    if (ctlEditer *editor = currentEditor())
        editor->viewport()->update();
    rebuildRecentMenu();
}
