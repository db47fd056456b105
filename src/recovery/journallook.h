#pragma once

#include "files/sharedfd.h"
#include "jobs/jobwork.h"
#include "recovery/claimedjournal.h"
#include "recovery/journalplay.h"
#include "recovery/texthash.h"
#include "text/textsnapshot.h"

/// A journal that was looked through: what is read of it next is up to who has this.
struct OpenJournal {
    OpenJournal(SharedFd openFile, const FileCalls &calls);
    Q_DISABLE_COPY_MOVE(OpenJournal)

    const SharedFd file;
    JournalReader reader;
    JournalOutline outline; ///< of nothing until lookThrough()
};
using SharedJournal = std::shared_ptr<OpenJournal>;
/// For who reads it in another thread. Null where it cannot be opened.
SharedJournal openAgain(const ClaimedJournal &journal, const FileCalls &calls = FileCalls::system());

/// Looks through a journal, and through the text that its edits may begin with: which of it the journal
/// knows by its hash.
///
/// In any thread, by itself or as a job; the text is nobody's to change meanwhile.
class JournalLook : public JobWork {
public:
    /// One that was looked through is not looked through once more. `text` may be none.
    JournalLook(SharedJournal journal, TextSnapshot text);

    Step step(JobTurn &turn) override;
    /// A part of it, of some milliseconds; false: that was the last one.
    bool lookOn();
    /// When it is done: of the first units of the text, as many as the base has; nothing where it has fewer,
    /// or the journal knows no hash.
    std::optional<quint64> hash() const { return m_result; }

private:
    bool readOutline();
    bool beginHash();
    void tellProgress(JobTurn &turn) const;

    const SharedJournal m_journal;
    const TextSnapshot m_text;
    qint64 m_bytes = 0; ///< of the journal that is looked through
    std::optional<OutlineReading> m_outline; ///< while it is
    bool m_isOpen = false;
    TextRange m_rest;
    TextHash m_hash;
    std::optional<quint64> m_result;
};
