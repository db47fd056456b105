#pragma once

#include "recovery/documentjournal.h"
#include "recovery/journalfolder.h"
#include "recovery/leftbehind.h"
#include "recovery/restoring.h"

#include <QTimer>

#include <chrono>
#include <map>
#include <memory>

/// The recovery journals of a program: every edited document that is attached has one on the disk, half a
/// second after typing has paused and two seconds after it was begun at the latest.
///
///     RecoveryJournals journals;
///     journals.attach(document, [&] { return placeOf(editor); });   when the document is made
///     journals.end(document);                                       when its user has closed it
///     journals.keep(document, KeptFor::Substitution);               behind a save that wrote "?"
///     journals.endKeeping(document, KeptFor::Substitution);         when the user has been told
///     journals.flush(500ms);                                        before the program ends unasked
///     journals.restore(found, document);                            into one that is attached and empty
///
/// A document that is destroyed without end() leaves its journal behind, and so does a program that just
/// ends. Nothing here shows anything; a failure is told by failureChanged().
///
/// Threads: jobs write; all functions are for the thread of the documents, and but for flush(), restore(),
/// claim() and discard() none waits for a disk.
class RecoveryJournals : public QObject {
    Q_OBJECT
public:
    explicit RecoveryJournals(QByteArray folder = journalFolder(),
        const FileCalls &calls = FileCalls::system(), JournalClock clock = steadyClock());
    ~RecoveryJournals() override;

    bool isAttached(const TextDocument &document) const { return journalOf(document) != nullptr; }
    /// Follows a document until end(), or until it is destroyed. `place` is asked at each write.
    void attach(TextDocument &document, PlaceReader place = {});
    /// The document is closed: its journal goes.
    void end(TextDocument &document);
    /// The document is closed, but its text is nowhere else: it is left behind, and leftBehindChanged() says
    /// when it can be found.
    void leave(TextDocument &document);
    /// Right behind a save that did not write all of the text, or when the file is gone: the text stays in
    /// the journal, until endKeeping() for the same reason or a save that writes all of it.
    void keep(const TextDocument &document, KeptFor reason);
    void endKeeping(const TextDocument &document, KeptFor reason);

    /// Writes what is due by the clock; the timer calls it.
    void writeDue();
    /// How long a user who ends the program may be kept waiting for journals.
    static constexpr std::chrono::milliseconds longestFlush{ 2000 };
    /// Writes all there is, within a time; whether all is on the disk. Time that is left goes into keeping
    /// the texts of files, for when those are changed.
    bool flush(std::chrono::milliseconds limit);

    /// Why there is no recovery, as errno; 0: there is.
    int failure() const { return m_failure; }
    /// The program ends: no more is written, and others may find the journals, although the memory of a large
    /// text is freed before the system lets its files go. Waits for the disk no longer than this.
    void leaveAll(std::chrono::milliseconds limit);
    /// Tries again at once; it is tried again by and by anyway.
    void retry();

    /// Looks for journals that other runs left behind, as a job; foundLeftBehind() tells what was found when
    /// this was asked for last; where there is too little memory, later. See findLeftBehind().
    void lookForLeftBehind();
    /// Restores one into an attached document; see restore(). Its journal goes when the document has one of
    /// its own or needs none; the result has it where not all of it could be restored.
    Restored restore(const LeftBehind &found, TextDocument &document);
    /// Locks one against others, for whoever restores it in turns; see Restoring.
    ClaimedJournal claim(const LeftBehind &found) const;
    /// What has come of that, of an attached document: as for restore().
    Restored takeRestored(Restored &&restored, const TextDocument &document);
    /// The user does not want it; false if it is still there: in use, or the folder cannot be written.
    bool discard(const LeftBehind &found);

    static JournalClock steadyClock();

signals:
    /// failure() is another one.
    void failureChanged();
    /// There is another one to be found.
    void leftBehindChanged();
    void foundLeftBehind(const std::vector<LeftBehind> &found);

private:
    DocumentJournal *journalOf(const TextDocument &document) const;
    void noteResult(const WriteResult &result);
    void schedule();
    void noteFailures();
    void noteLeaving(const WriteResult &result);

    const QByteArray m_folder;
    const FileCalls &m_calls;
    const JournalClock m_clock;
    JournalJobs m_jobs;
    std::map<const QObject *, std::unique_ptr<DocumentJournal>> m_journals;
    std::map<int, std::unique_ptr<DocumentJournal>> m_leaving; ///< by number; null: on its last way
    std::unique_ptr<Job> m_looking;
    QTimer m_lookingAgain; ///< when there was too little memory for it
    QTimer m_timer;
    int m_failure = 0;
};
