#include "app/longsearch.h"

#include "app/awaitedanswer.h"
#include "document/searchwork.h"
#include "editor/ctlediter.h"

#include <utility>

namespace {

EditorSearch searchFor(ctlEditer &editor, const SearchRequest &request)
{
    EditorSearch search(editor);
    search.setPattern(request.findText, request.caseSensitive ? Qt::CaseSensitive : Qt::CaseInsensitive);
    return search;
}

} // namespace

LongSearch::LongSearch(ctlEditer &editor, const SearchRequest &request, SearchDirection direction)
    : m_editor(editor)
    , m_request(request)
    , m_direction(direction)
    , m_search(searchFor(editor, request))
    , m_start(m_search.start(direction))
    , m_rest(searchedRange(editor.store(), m_search.pattern(), direction, m_start))
{
}

LongSearch::~LongSearch() = default;

bool LongSearch::searchNear(qint64 units)
{
    const TextRange near = takeFirst(m_rest, m_direction, units);
    m_begin = beginOfHit(m_editor.store(), m_search.pattern(), m_direction, near);
    return m_begin || m_rest.isEmpty();
}

void LongSearch::searchRest(DocumentArea &documents, JobRunner &runner)
{
    auto owned =
        std::make_unique<SearchWork>(TextSnapshot(m_editor.store()), m_search.pattern(), m_direction, m_rest);
    const SearchWork *const work = owned.get();
    const auto isWanted = [this] { return m_search.start(m_direction) == m_start; };
    m_answer = std::make_unique<AwaitedAnswer>(
        m_editor, documents, std::move(owned), WorkNotice::Work::Searching, runner, isWanted);
    connect(m_answer.get(), &AwaitedAnswer::ended, this, [this, work](bool isAnswered) {
        if (isAnswered)
            m_begin = work->begin();
        emit ended();
    });
}

void LongSearch::refuse()
{
    m_answer->refuse();
}

bool LongSearch::takeHit()
{
    const bool replaces = m_request.searchMode == 1;
    if (replaces && !m_editor.document().requestChange())
        return false;
    const SearchHit hit = hitAt(m_editor.store(), m_search.pattern(), m_direction, m_start, *m_begin);
    if (replaces)
        m_search.replace(m_direction, hit, m_request.replaceText);
    else
        m_search.select(m_direction, hit);
    return true;
}
