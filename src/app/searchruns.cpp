#include "app/searchruns.h"

#include "app/documentarea.h"
#include "app/hitview.h"
#include "app/partialreplacements.h"
#include "app/replacerun.h"
#include "editor/ctlediter.h"
#include "platform/messagebox.h"
#include "search/frmreplaceprogress.h"
#include "search/frmsearchdialog.h"
#include "text/enteredtext.h"

namespace {

/// Longer texts are not offered to search for: a field that shows them would take minutes.
constexpr qint64 longestOffered = 65536;

QString textToOffer(const ctlEditer &editor)
{
    const qint64 length = qAbs(editor.cursorOffset() - editor.anchorOffset());
    return length <= longestOffered ? editor.markedText() : QString();
}

} // namespace

SearchRuns::SearchRuns(QWidget &window, DocumentArea &documents)
    : m_window(window)
    , m_documents(documents)
{
}

frmSearchDialog *SearchRuns::panel()
{
    if (m_panel)
        return m_panel;
    m_panel = new frmSearchDialog(&m_window);
    const auto onClick = [this](void (frmSearchDialog::*clicked)(), void (SearchRuns::*command)()) {
        connect(m_panel, clicked, this, [this, command] {
            if (m_documents.beginCommand())
                (this->*command)();
        });
    };
    onClick(&frmSearchDialog::nextClicked, &SearchRuns::searchForward);
    onClick(&frmSearchDialog::befoClicked, &SearchRuns::searchBackward);
    onClick(&frmSearchDialog::allClicked, &SearchRuns::replaceAll);
    return m_panel;
}

void SearchRuns::showPanel(int mode)
{
    const ctlEditer *const editor = m_documents.current();
    panel()->searchMode = mode;
    panel()->findText = editor ? textToOffer(*editor) : QString();
    panel()->hide();
    panel()->show();
}

void SearchRuns::repeatForward()
{
    search(&ctlEditer::searchForward);
}

void SearchRuns::repeatBackward()
{
    search(&ctlEditer::searchBackward);
}

void SearchRuns::searchForward()
{
    takeRequest();
    repeatForward();
}

void SearchRuns::searchBackward()
{
    takeRequest();
    repeatBackward();
}

void SearchRuns::replaceAll()
{
    takeRequest();
    panel()->hide();
    ctlEditer *const editor = m_documents.current();
    if (!editor || m_request.findText.isEmpty() || !editor->document().requestChange())
        return;
    replaceAllIn(*editor);
    // The panel goes at once with the box in front of it: window managers then activate some other window.
    m_window.activateWindow();
}

void SearchRuns::takeRequest()
{
    m_request.searchMode = panel()->searchMode;
    m_request.caseSensitive = panel()->caseSensitive;
    m_request.findText = panel()->findText;
    m_request.replaceText = pastedText(panel()->replaceText);
}

void SearchRuns::search(Direction direction)
{
    ctlEditer *const editor = m_documents.current();
    if (!editor || m_request.findText.isEmpty())
        return;
    beginReplacing(*editor);
    const bool isFound = (editor->*direction)(
        m_request.searchMode, m_request.caseSensitive, m_request.findText, m_request.replaceText);
    endReplacing(*editor);
    if (!isFound)
        return;
    showHit(*editor);
    if (m_panel && m_panel->isVisible())
        uncoverHit(*editor, *m_panel);
}

/// Runs until the result was read.
void SearchRuns::replaceAllIn(ctlEditer &editor)
{
    std::optional<ReplaceGuard> guard(std::in_place);
    editor.setCursorPosition(0, 0);
    QCoreApplication::processEvents();
    frmReplaceProgress progress(&m_window);
    beginReplacing(editor);
    const int count = ReplaceRun(editor, m_request, progress).run();
    endReplacing(editor);
    guard.reset();
    MessageBox::information(&m_window, tr("Replace All"), tr("%1 items was Replaced.").arg(count));
}

void SearchRuns::beginReplacing(ctlEditer &editor)
{
    if (m_request.searchMode == 1)
        PartialReplacements::of(editor, m_documents.notices())
            .begin(m_request.findText.size(), m_request.replaceText.size());
}

void SearchRuns::endReplacing(ctlEditer &editor)
{
    if (m_request.searchMode == 1)
        PartialReplacements::of(editor, m_documents.notices()).end();
}
