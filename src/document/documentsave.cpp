#include "document/documentsave.h"

#include "document/readcode.h"
#include "files/endorder.h"
#include "files/filename.h"

DocumentSave::DocumentSave(SaveTarget target, WrittenText text, LookFor lookFor, const FileCalls &calls)
    : m_target(std::move(target))
    , m_text(text)
    , m_overtaken(m_target.before.overtaken)
    , m_writer(FileName::toBytes(m_target.path + m_target.name), std::move(text), calls)
    , m_isLooking(lookFor == LookFor::Bytes)
{
    m_writer.keepUnlessOf(m_target.before.stamp);
    if (m_target.before.doubt)
        m_reading.emplace(FileName::toBytes(m_target.path + m_target.name), calls);
    else if (m_overtaken != Overtaken::No)
        m_writer.keepOldContent();
    if (m_target.keepsOldContent)
        m_writer.keepOldContent();
}

bool DocumentSave::makeStep(const std::function<bool()> &isWanted)
{
    if (m_reading) {
        readOld();
        return true;
    }
    if (m_isLooking) {
        look();
        return true;
    }
    m_step = m_writer.step(isWanted);
    return m_step == DocumentWriter::Step::More;
}

JobWork::Step DocumentSave::step(JobTurn &turn)
{
    const bool hasMore = makeStep([&] {
        turn.tellProgress(progress());
        return !turn.isStopped();
    });
    turn.tellProgress(progress());
    if (isWritten())
        return Step::Done;
    const bool isAsBefore = hasMore || (turn.isStopped() && keptCopy().isEmpty());
    return isAsBefore ? Step::More : Step::Failed;
}

/// A byte that is read or copied counts as much as a unit that is written.
JobProgress DocumentSave::progress() const
{
    return { m_oldDone + m_writer.unitsDone() + m_writer.bytesCopied(),
        m_oldInAll + m_writer.unitsInAll() + m_writer.bytesToCopy() };
}

/// The end of the process does not wait for it.
void DocumentSave::readOld()
{
    const bool hasMore = !EndOrder::isGiven() && m_reading->step();
    m_oldDone = m_reading->bytesDone();
    m_oldInAll = m_reading->bytesInAll();
    if (hasMore)
        return;
    const std::optional<SeenContent> seen = m_reading->seen();
    m_reading.reset();
    const BeforeWriting::Doubt &doubt = *m_target.before.doubt;
    if (seen && doubt.hashes.contains(seen->hash)) {
        m_overtaken = doubt.overtaken;
        m_writer.keepUnlessOf(seen->stamp);
    }
    if (m_overtaken != Overtaken::No)
        m_writer.keepOldContent();
}

std::optional<FileStamp> DocumentSave::unexpected() const
{
    const bool isKeptAnyway = m_overtaken != Overtaken::No || m_target.keepsOldContent;
    return isWritten() && !isKeptAnyway && !keptCopy().isEmpty() ? std::optional(m_writer.oldStamp())
                                                                 : std::nullopt;
}

void DocumentSave::look()
{
    constexpr qint64 unitsPerStep = qint64{ 1 } << 20;
    const TextRange range{ m_looked, qMin(m_looked + unitsPerStep, m_text.text.end()) };
    m_looked = range.end;
    m_hasBytes = ::hasBytes(m_text.text, range);
    m_isLooking = !m_hasBytes && m_looked < m_text.text.end();
}
