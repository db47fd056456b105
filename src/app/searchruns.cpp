#include "app/searchruns.h"

#include "app/documentarea.h"
#include "app/hitview.h"
#include "app/longsearch.h"
#include "app/partialreplacements.h"
#include "app/replacerun.h"
#include "app/windowjobs.h"
#include "editor/ctlediter.h"
#include "editor/memorybox.h"
#include "platform/messagebox.h"
#include "platform/windowsystem.h"
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

SearchRuns::SearchRuns(QWidget &window, DocumentArea &documents, const WindowJobs &jobs)
    : m_window(window)
    , m_documents(documents)
    , m_jobs(jobs)
{
}

SearchRuns::~SearchRuns() = default;

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
    connect(&m_documents, &DocumentArea::noticeToggled, m_panel,
        [this] { m_panel->keepClearOf(m_documents.noticePlace()); });
    return m_panel;
}

void SearchRuns::showPanel(int mode)
{
    const ctlEditer *const editor = m_documents.current();
    panel()->searchMode = mode;
    panel()->findText = editor ? textToOffer(*editor) : QString();
    panel()->hide();
    panel()->keepClearOf(m_documents.noticePlace());
    panel()->show();
}

void SearchRuns::repeatForward()
{
    search(SearchDirection::Forward);
}

void SearchRuns::repeatBackward()
{
    search(SearchDirection::Backward);
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
    WindowSystem::activate(m_window);
}

void SearchRuns::takeRequest()
{
    m_request.searchMode = panel()->searchMode;
    m_request.caseSensitive = panel()->caseSensitive;
    m_request.findText = panel()->findText;
    m_request.replaceText = pastedText(panel()->replaceText);
}

void SearchRuns::search(SearchDirection direction)
{
    ctlEditer *const editor = m_documents.current();
    if (!editor || m_request.findText.isEmpty())
        return;
    if (const auto underWay = m_long.find(editor); underWay != m_long.end())
        underWay->second->refuse();
    else if (editor->store().length() < m_jobs.fewest)
        searchShort(*editor, direction);
    else
        searchLong(*editor, direction);
}

void SearchRuns::searchShort(ctlEditer &editor, SearchDirection direction)
{
    const auto search =
        direction == SearchDirection::Forward ? &ctlEditer::searchForward : &ctlEditer::searchBackward;
    beginReplacing(editor, m_request);
    const bool isFound = (editor.*search)(
        m_request.searchMode, m_request.caseSensitive, m_request.findText, m_request.replaceText);
    endReplacing(editor, m_request);
    if (isFound)
        show(editor);
}

void SearchRuns::searchLong(ctlEditer &editor, SearchDirection direction)
{
    if (m_request.searchMode == 1 && !editor.document().requestChange())
        return;
    auto search = std::make_unique<LongSearch>(editor, m_request, direction);
    if (search->searchNear(m_jobs.fewest)) {
        takeHit(editor, *search);
        return;
    }
    connect(search.get(), &LongSearch::ended, this, [this, &editor] { endLong(editor); });
    search->searchRest(m_documents, *m_jobs.runner);
    m_long.emplace(&editor, std::move(search));
}

/// It is still telling of its end.
void SearchRuns::endLong(ctlEditer &editor)
{
    LongSearch *const search = m_long.extract(&editor).mapped().release();
    search->deleteLater();
    takeHit(editor, *search);
    emit m_documents.workEnded();
}

void SearchRuns::takeHit(ctlEditer &editor, LongSearch &search)
{
    if (!search.isFound())
        return;
    beginReplacing(editor, search.request());
    const bool isFound = search.takeHit();
    endReplacing(editor, search.request());
    if (isFound)
        show(editor);
}

void SearchRuns::show(ctlEditer &editor)
{
    showHit(editor);
    if (m_panel && m_panel->isVisible() && m_documents.current() == &editor)
        uncoverHit(editor, *m_panel);
}

/// Runs until the result was read.
void SearchRuns::replaceAllIn(ctlEditer &editor)
{
    std::optional<ReplaceGuard> guard(std::in_place);
    editor.setCursorPosition(0, 0);
    QCoreApplication::processEvents();
    frmReplaceProgress progress(&m_window);
    beginReplacing(editor, m_request);
    ReplaceRun run(editor, m_request, progress);
    const int count = run.run();
    endReplacing(editor, m_request);
    guard.reset();
    if (run.hadTooLittleMemory())
        tellTooLittleMemory(&m_window);
    MessageBox::information(&m_window, tr("Replace All"), tr("%1 items was Replaced.").arg(count));
}

void SearchRuns::beginReplacing(ctlEditer &editor, const SearchRequest &request)
{
    if (request.searchMode == 1)
        PartialReplacements::of(editor, m_documents.notices())
            .begin(request.findText.size(), request.replaceText.size());
}

void SearchRuns::endReplacing(ctlEditer &editor, const SearchRequest &request)
{
    if (request.searchMode == 1)
        PartialReplacements::of(editor, m_documents.notices()).end();
}
