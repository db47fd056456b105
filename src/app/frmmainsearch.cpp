#include "app/frmmain.h"

#include "app/hitview.h"
#include "app/replacerun.h"
#include "editor/ctlediter.h"
#include "text/enteredtext.h"
#include "platform/messagebox.h"
#include "search/frmjumpto.h"
#include "search/frmreplaceprogress.h"
#include "search/frmsearchdialog.h"

#include <QCoreApplication>

namespace {

/// Longer texts are not offered to search for: a field that shows them would take minutes.
constexpr qint64 longestOffered = 65536;

QString textToOffer(const ctlEditer &editor)
{
    const qint64 length = qAbs(editor.cursorOffset() - editor.anchorOffset());
    return length <= longestOffered ? editor.markedText() : QString();
}

} // namespace

frmSearchDialog *frmMain::searchPanel()
{
    if (!m_searchPanel) {
        m_searchPanel = new frmSearchDialog(this);
        connect(
            m_searchPanel, &frmSearchDialog::nextClicked, this, [this] { run(&frmMain::slotEtcSearchNext); });
        connect(
            m_searchPanel, &frmSearchDialog::befoClicked, this, [this] { run(&frmMain::slotEtcSearchBefo); });
        connect(
            m_searchPanel, &frmSearchDialog::allClicked, this, [this] { run(&frmMain::slotEtcReplaceAll); });
    }
    return m_searchPanel;
}

void frmMain::showSearchPanel(int mode)
{
    frmSearchDialog *const panel = searchPanel();
    const ctlEditer *const editor = currentEditor();
    panel->searchMode = mode;
    panel->findText = editor ? textToOffer(*editor) : QString();
    panel->hide();
    panel->show();
}

void frmMain::takeSearchRequest()
{
    m_search.searchMode = m_searchPanel->searchMode;
    m_search.caseSensitive = m_searchPanel->caseSensitive;
    m_search.findText = m_searchPanel->findText;
    m_search.replaceText = pastedText(m_searchPanel->replaceText);
}

void frmMain::search(bool (ctlEditer::*direction)(int, bool, const QString &, const QString &))
{
    ctlEditer *const editor = currentEditor();
    if (!editor || m_search.findText.isEmpty())
        return;
    const bool isFound = (editor->*direction)(
        m_search.searchMode, m_search.caseSensitive != 0, m_search.findText, m_search.replaceText);
    if (!isFound)
        return;
    showHit(*editor);
    if (m_searchPanel && m_searchPanel->isVisible())
        uncoverHit(*editor, *m_searchPanel);
}

void frmMain::slotCmdViewSearch()
{
    showSearchPanel(0);
}

void frmMain::slotCmdViewReplace()
{
    showSearchPanel(1);
}

void frmMain::slotCmdViewSrchNext()
{
    search(&ctlEditer::searchForward);
}

void frmMain::slotCmdViewSrchBefo()
{
    search(&ctlEditer::searchBackward);
}

void frmMain::slotEtcSearchNext()
{
    takeSearchRequest();
    slotCmdViewSrchNext();
}

void frmMain::slotEtcSearchBefo()
{
    takeSearchRequest();
    slotCmdViewSrchBefo();
}

void frmMain::slotEtcReplaceAll()
{
    takeSearchRequest();
    m_searchPanel->hide();
    ctlEditer *const editor = currentEditor();
    if (!editor || m_search.findText.isEmpty())
        return;
    replaceAll(*editor);
    // The panel goes at once with the box in front of it: window managers then activate some other window.
    activateWindow();
}

/// Runs until the result was read.
void frmMain::replaceAll(ctlEditer &editor)
{
    std::optional<ReplaceGuard> guard(std::in_place);
    editor.setCursorPosition(0, 0);
    QCoreApplication::processEvents();
    frmReplaceProgress progress(this);
    const int count = ReplaceRun(editor, m_search, progress).run();
    guard.reset();
    MessageBox::information(this, tr("Replace All"), tr("%1 items was Replaced.").arg(count));
}

void frmMain::slotCmdViewGyoJump()
{
    ctlEditer *const editor = currentEditor();
    if (!editor)
        return;
    frmJumpTo dialog(this);
    if (dialog.exec() == QDialog::Accepted)
        editor->jumpToLine(dialog.lineNo);
}

void frmMain::slotCmdViewLastEdit()
{
    if (ctlEditer *editor = currentEditor())
        editor->jumpToLastEdit();
}
