#include "app/indentruns.h"

#include "app/documentarea.h"
#include "app/longindent.h"
#include "app/windowjobs.h"
#include "editor/ctlediter.h"

IndentRuns::IndentRuns(DocumentArea &documents, const WindowJobs &jobs)
    : m_documents(documents)
    , m_jobs(jobs)
{
    connect(&documents, &DocumentArea::added, this, [this](ctlEditer *editor) {
        editor->setBlockIndenter([this, editor](TextRange lines, Indentation direction) {
            return begin(*editor, lines, direction);
        });
    });
    connect(&documents, &DocumentArea::closed, this,
        [this](const ctlEditer *editor) { m_underWay.erase(editor); });
}

IndentRuns::~IndentRuns() = default;

bool IndentRuns::begin(ctlEditer &editor, TextRange lines, Indentation direction)
{
    if (lines.length() < m_jobs.fewest)
        return false;
    auto &indent = m_underWay[&editor];
    indent = std::make_unique<LongIndent>(editor, lines, direction, m_documents, *m_jobs.runner);
    connect(indent.get(), &LongIndent::ended, this, [this, &editor] { end(editor); });
    return true;
}

/// It is still telling of its end. What can be undone may be told of a document that is not shown.
void IndentRuns::end(ctlEditer &editor)
{
    m_underWay.extract(&editor).mapped().release()->deleteLater();
    emit m_documents.workEnded();
}

void IndentRuns::stop(const ctlEditer *editor)
{
    if (const auto found = m_underWay.find(editor); found != m_underWay.end())
        found->second->stop();
}
