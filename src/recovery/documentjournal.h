#pragma once

#include "recovery/claimedjournal.h"
#include "recovery/journaljobs.h"
#include "recovery/journaltext.h"
#include "recovery/writeschedule.h"

#include <QObject>

#include <functional>
#include <optional>

/// Tells where a document is looked at now.
using PlaceReader = std::function<ViewPlace()>;
/// Tells the time, in ms of any one clock.
using JournalClock = std::function<qint64()>;

/// Why a text stays in its journal though its document is not edited.
enum class KeptFor : quint8 {
    Substitution = 1, ///< its save wrote other characters
    FileLost = 2, ///< its file is gone, or has another text
};
Q_DECLARE_FLAGS(KeptForAny, KeptFor)

/// Follows one document and has what was edited written to its journal.
///
/// Cost: an edit is noted in a few words; what it was is seen when it is written, from the text then and the
/// text before.
class DocumentJournal : public QObject {
    Q_OBJECT
public:
    /// Nothing is owned; all must outlive it. Of a document that is edited already the whole text is written.
    DocumentJournal(TextDocument &document, PlaceReader place, JournalJobs &jobs, const JournalClock &clock);
    /// What there is of files stays, for others to find, unless end() was called.
    ~DocumentJournal() override;

    /// When writeNow() is to be called; nothing while all is written or on its way.
    std::optional<qint64> due() const;
    /// Sends what was edited on its way, or ends the journal of a document that is not edited any more.
    /// Nothing while another write is on its way.
    void writeNow();
    /// Of any journal.
    void noteResult(const WriteResult &result);
    /// All that was edited is on the disk.
    bool isWritten() const { return !m_isOnItsWay && !m_schedule.due(); }
    /// Why the last write failed, as errno; 0: it did not.
    int error() const { return m_error; }
    /// Tries again at once what failed.
    void retry();

    /// What the file has is not all of the text, for a reason: it is kept until there is none any more or the
    /// file has it, by a save or by being read again.
    void keep(KeptFor reason);
    void endKeeping(KeptFor reason);
    /// The journal from which the document was restored goes when there is another one.
    void supersede(ClaimedJournal &&old);
    /// The document is closed.
    void end();
    /// The document is closed, but its text is to be found by others: sends all of it on its way. To be
    /// destroyed, whatever becomes of the document, when the write of the journal of this number is done.
    int leave();

signals:
    /// due() has come to be.
    void dirtied();

private:
    void noteChange(const TextChange &change);
    void noteSaved();
    void beginAnew(WholeIn where);
    bool isTextOfFile() const;
    void setDirty();
    void setAside();
    void removeOld();
    JournalState state() const;

    TextDocument &m_document;
    const PlaceReader m_place;
    JournalJobs &m_jobs;
    const JournalClock &m_clock;
    WriteSchedule m_schedule;
    JournalText m_text;
    int m_number; ///< of the journal; another base has another one
    bool m_isBegun = false; ///< there is a file, or is about to be
    bool m_isOnItsWay = false;
    KeptForAny m_keptFor;
    int m_error = 0;
    std::vector<int> m_old; ///< journals that go when this one is written or not needed
    ClaimedJournal m_superseded; ///< goes with them
};
