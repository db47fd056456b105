#include "recovery/documentjournal.h"

#include "document/utf16text.h"

#include <QDateTime>

DocumentJournal::DocumentJournal(
    TextDocument &document, PlaceReader place, JournalJobs &jobs, const JournalClock &clock)
    : m_document(document)
    , m_place(std::move(place))
    , m_jobs(jobs)
    , m_clock(clock)
    , m_number(jobs.newJournal())
{
    connect(&document, &TextDocument::changed, this, &DocumentJournal::noteChange);
    connect(&document, &TextDocument::aboutToReplace, this, [this] { m_text.drop(); });
    connect(&document, &TextDocument::replaced, this,
        [this] { beginAnew(m_document.isEdited() ? WholeIn::NoFile : WholeIn::FileRead); });
    connect(&document, &TextDocument::saved, this, &DocumentJournal::noteSaved);
    connect(&document, &TextDocument::detached, this, [this] { beginAnew(WholeIn::NoFile); });
    m_text.begin(document, document.isEdited() ? WholeIn::NoFile : WholeIn::FileRead);
    if (document.isEdited())
        setDirty();
}

DocumentJournal::~DocumentJournal()
{
    m_jobs.leave(m_number);
    for (const int old : m_old)
        m_jobs.leave(old);
}

void DocumentJournal::noteChange(const TextChange &change)
{
    if (isTextOfFile() && !m_keptFor)
        return beginAnew(WholeIn::FileRead);
    m_text.note(change);
    setDirty();
}

/// What the file had got was read, and not edited.
bool DocumentJournal::isTextOfFile() const
{
    const UndoHistory &history = m_document.history();
    return !m_document.isEdited() && !history.canUndo() && !history.canRedo();
}

/// Soon, because who is killed now has lost nothing; but first it may be said that the text is to be kept.
void DocumentJournal::noteSaved()
{
    beginAnew(WholeIn::FileWritten);
    m_schedule.noteUrgent(m_clock());
    emit dirtied();
}

void DocumentJournal::setDirty()
{
    const bool wasDue = due().has_value();
    m_schedule.noteEdit(m_clock());
    if (!wasDue && due())
        emit dirtied();
}

/// The journal of the text before is needed until it is sure that this one is not.
void DocumentJournal::beginAnew(WholeIn where)
{
    setAside();
    m_keptFor = {};
    m_text.begin(m_document, where);
    setDirty();
}

void DocumentJournal::setAside()
{
    if (std::exchange(m_isBegun, false)) {
        m_jobs.rest(m_number);
        m_old.push_back(std::exchange(m_number, m_jobs.newJournal()));
    }
    m_isOnItsWay = false;
}

void DocumentJournal::removeOld()
{
    for (const int old : std::exchange(m_old, {}))
        m_jobs.remove(old);
    m_superseded.discard();
}

std::optional<qint64> DocumentJournal::due() const
{
    return m_isOnItsWay || m_text.isDropped() ? std::nullopt : m_schedule.due();
}

void DocumentJournal::writeNow()
{
    if (!due())
        return;
    m_schedule.noteBegun();
    if (!m_document.isEdited() && !m_keptFor) {
        setAside();
        removeOld();
        m_text.returnToBase();
        m_error = 0;
        return;
    }
    m_isOnItsWay = true;
    m_isBegun = true;
    m_jobs.write(m_number, m_text.next(m_document, state()));
}

void DocumentJournal::noteResult(const WriteResult &result)
{
    if (result.journal != m_number || result.of == WriteResult::Of::Leaving)
        return;
    if (result.of == WriteResult::Of::Write)
        m_isOnItsWay = false;
    m_error = result.error;
    if (result.error != 0) {
        m_schedule.noteFailure(m_clock());
        emit dirtied();
        return;
    }
    m_schedule.noteWritten();
    removeOld();
}

void DocumentJournal::retry()
{
    m_schedule.forgetFailures();
}

void DocumentJournal::keep(KeptFor reason)
{
    const bool isKept = std::exchange(m_keptFor, m_keptFor | reason).toInt() != 0;
    if (isKept)
        return;
    setAside();
    m_text.begin(m_document, WholeIn::NoFile);
    m_schedule.noteUrgent(m_clock());
    emit dirtied();
}

void DocumentJournal::endKeeping(KeptFor reason)
{
    const bool isKept = m_keptFor.testFlag(reason);
    m_keptFor.setFlag(reason, false);
    if (isKept)
        setDirty();
}

void DocumentJournal::supersede(ClaimedJournal &&old)
{
    m_superseded = std::move(old);
    setDirty();
}

void DocumentJournal::end()
{
    setAside();
    removeOld();
}

int DocumentJournal::leave()
{
    disconnect(&m_document, nullptr, this, nullptr);
    keep(KeptFor::FileLost);
    setDirty();
    writeNow();
    return m_number;
}

JournalState DocumentJournal::state() const
{
    return { QDateTime::currentMSecsSinceEpoch(), m_document.store().length(), m_document.charCode(),
        m_document.returnCode(), byteCodecNumber(m_document.byteCodec()), m_place ? m_place() : ViewPlace(),
        keepsUtf16(m_document) };
}
