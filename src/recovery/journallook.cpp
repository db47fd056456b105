#include "recovery/journallook.h"

namespace {

constexpr qint64 unitsOfLook = qint64{ 1 } << 20;
constexpr qint64 bytesOfLook = qint64{ 1 } << 22;

} // namespace

OpenJournal::OpenJournal(SharedFd openFile, const FileCalls &calls)
    : file(std::move(openFile))
    , reader(file->number(), calls)
{
}

SharedJournal openAgain(const ClaimedJournal &journal, const FileCalls &calls)
{
    const SharedFd file = journal.openAgain();
    return file ? std::make_shared<OpenJournal>(file, calls) : SharedJournal();
}

JournalLook::JournalLook(SharedJournal journal, TextSnapshot text)
    : m_journal(std::move(journal))
    , m_text(std::move(text))
{
}

JobWork::Step JournalLook::step(JobTurn &turn)
{
    const bool isDone = !lookOn();
    tellProgress(turn);
    return isDone ? Step::Done : Step::More;
}

/// The text may turn out to be longer than what is looked at.
void JournalLook::tellProgress(JobTurn &turn) const
{
    if (m_outline)
        turn.tellProgress({ m_journal->reader.offset(), m_bytes + m_text.length() });
    else if (const qint64 units = m_rest.end - Offset())
        turn.tellProgress({ m_bytes + units - m_rest.length(), m_bytes + units });
}

bool JournalLook::lookOn()
{
    if (!m_isOpen) {
        m_isOpen = readOutline();
        return !m_isOpen || beginHash();
    }
    const TextRange next = { m_rest.start, qMin(m_rest.start + unitsOfLook, m_rest.end) };
    m_rest.start = next.end;
    m_hash.add(m_text, next);
    if (!m_rest.isEmpty())
        return true;
    m_result = m_hash.result();
    return false;
}

/// Whether it is read.
bool JournalLook::readOutline()
{
    if (m_journal->outline.commits > 0)
        return true;
    if (!m_outline) {
        m_bytes = m_journal->reader.size();
        m_outline.emplace(m_journal->reader);
    }
    if (!m_outline->readOn(bytesOfLook))
        return false;
    m_journal->outline = m_outline->outline();
    m_outline.reset();
    return true;
}

/// False: nobody asks for one.
bool JournalLook::beginHash()
{
    const JournalOutline &outline = m_journal->outline;
    if (outline.commits == 0 || !outline.seen || m_text.length() < outline.base.length)
        return false;
    m_rest = { {}, Offset(outline.base.length) };
    return true;
}
