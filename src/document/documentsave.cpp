#include "document/documentsave.h"

#include "document/readcode.h"
#include "files/filename.h"

DocumentSave::DocumentSave(SaveTarget target, WrittenText text, LookFor lookFor, const FileCalls &calls)
    : m_target(std::move(target))
    , m_text(text)
    , m_writer(FileName::toBytes(m_target.path + m_target.name), std::move(text), calls)
    , m_isLooking(lookFor == LookFor::Bytes)
{
    if (m_target.keepsOldContent)
        m_writer.keepOldContent();
}

bool DocumentSave::makeStep()
{
    if (m_isLooking) {
        look();
        return true;
    }
    m_step = m_writer.step();
    return m_step == DocumentWriter::Step::More;
}

JobWork::Step DocumentSave::step(JobTurn &turn)
{
    const bool hasMore = makeStep();
    turn.tellProgress({ m_writer.unitsDone(), m_writer.unitsInAll() });
    if (hasMore)
        return Step::More;
    return isWritten() ? Step::Done : Step::Failed;
}

void DocumentSave::look()
{
    constexpr qint64 unitsPerStep = qint64{ 1 } << 20;
    const TextRange range{ m_looked, qMin(m_looked + unitsPerStep, m_text.text.end()) };
    m_looked = range.end;
    m_hasBytes = ::hasBytes(m_text.text, range);
    m_isLooking = !m_hasBytes && m_looked < m_text.text.end();
}
