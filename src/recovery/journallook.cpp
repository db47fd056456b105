#include "recovery/journallook.h"

namespace {

constexpr qint64 unitsOfLook = qint64{ 1 } << 20;

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
    const qint64 units = m_journal->outline.base.length;
    turn.tellProgress({ units - m_rest.length(), units });
    return isDone ? Step::Done : Step::More;
}

bool JournalLook::lookOn()
{
    if (!m_isOpen) {
        m_isOpen = true;
        if (m_journal->outline.commits == 0)
            m_journal->outline = outlineOf(m_journal->reader);
        return beginHash();
    }
    const TextRange next = { m_rest.start, qMin(m_rest.start + unitsOfLook, m_rest.end) };
    m_rest.start = next.end;
    m_hash.add(m_text, next);
    if (!m_rest.isEmpty())
        return true;
    m_result = m_hash.result();
    return false;
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
