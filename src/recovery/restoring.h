#pragma once

#include "document/textdocument.h"
#include "jobs/jobwork.h"
#include "recovery/claimedjournal.h"
#include "recovery/journallook.h"
#include "text/layoutchange.h"

#include <QByteArrayList>

/// What became of the restoring of a document.
struct Restored {
    enum class Outcome {
        Edited, ///< the file was loaded, and all edits were made again: one Undo leads back to it
        Saved, ///< the file was loaded, and has all edits: its save was just not noted any more
        /// The file was never there, or is another one now: a document never saved has the text, of the same
        /// file if that was new and still is. One Undo leads to none.
        New,
        /// The same, but of the file nothing is known any more: only what was written near the edits is
        /// there, with lines "[...]" between.
        Parts,
        /// Nothing in the journal is whole, and the document is as it was; or it cannot be read just now, and
        /// the document may be a new one without text.
        NotPossible,
        InUse, ///< another program restores or has restored it, or it is gone; the document is as it was
    };
    Outcome outcome = Outcome::NotPossible;
    /// The document has what there was.
    bool isRestored() const { return outcome != Outcome::NotPossible && outcome != Outcome::InUse; }
    ViewPlace place; ///< within the text
    QString path; ///< of the document's file as it was, whatever has become of it; empty for none
    bool hasReadError = false; ///< there may be more in the journal than could be read now
    ClaimedJournal journal; ///< locked against others, until it is discarded or superseded
};

/// Restores what a journal (name of the file) left behind into a document, with its text, codes, name and
/// edited state, in one go. Cost: as loading the file, and what was edited.
Restored restore(
    const QByteArray &journal, TextDocument &document, const FileCalls &calls = FileCalls::system());

/// The same in turns, for whoever has the file read and the journal looked through behind a window.
///
///     restoring.lookInFile(hash);                    when the file was read, if it could be
///     while (!restoring.prepare(end)) { }            in turns; the document stays as it is
///     for (name : restoring.copies())                each of them read, until one is it
///         isFound = restoring.lookInCopy(hash);
///     while (!restoring.prepare(end)) { }            once more where there are some
///     restoring.finish();
class Restoring {
public:
    /// `claimed` is the journal that was looked through. The document and `calls` are not owned.
    Restoring(ClaimedJournal &&claimed, SharedJournal journal, TextDocument &document,
        const FileCalls &calls = FileCalls::system());
    ~Restoring();
    Q_DISABLE_COPY_MOVE(Restoring)

    /// The document was read just now from the file that the edits begin with, as LeftBehind::readAs tells;
    /// `hash` is that of its text, see JournalLook.
    void lookInFile(std::optional<quint64> hash);
    /// The same from one of copies(); whether it has that text.
    bool lookInCopy(std::optional<quint64> hash);
    /// When all is prepared: names of files in which to look for the text that the edits begin with, if that
    /// was not found yet: those which saves that were interrupted have left.
    QByteArrayList copies() const;

    /// Makes the text that comes back, until the time is over; whether it is made. Nobody may change the
    /// document meanwhile.
    bool prepare(QDeadlineTimer end);
    /// How far that is.
    JobProgress progress() const;
    /// Then: puts it into the document, as one step of the history, which may be changed again by now.
    Restored finish();

private:
    enum class Base { File, StartOfText, Kept, Unknown };

    const JournalBase &base() const { return m_journal->outline.base; }
    bool isPossible() const { return m_journal->outline.commits > 0; }
    FileCodes codes() const;
    bool hasBaseTimes() const;
    bool isBase(std::optional<quint64> hash) const;
    bool beginsWithBase(std::optional<quint64> hash) const;
    void takeStartOfText();
    bool findBase(QDeadlineTimer end);
    bool play(QDeadlineTimer end);
    bool compare(QDeadlineTimer end);
    bool showGaps(QDeadlineTimer end);
    bool measure(QDeadlineTimer end);
    Restored::Outcome putOnFile();
    Restored::Outcome putAnew();
    void start();

    ClaimedJournal m_claimed;
    const SharedJournal m_journal;
    TextDocument &m_document;
    const FileCalls &m_calls;
    Base m_from = Base::Unknown;
    std::optional<TextPiece> m_base;
    std::optional<KeptBase> m_kept; ///< while it is read
    std::optional<JournalPlay> m_play;
    const qint64 m_bytes; ///< of the journal
    qint64 m_played = 0; ///< of them
    bool m_hasFailed = false;
    std::optional<TextPiece> m_text; ///< that comes back
    class Comparison;
    std::unique_ptr<Comparison> m_comparison; ///< with the file, while it is made
    bool m_mayBeSaved = false; ///< that is still to be made
    bool m_isSaved = false; ///< the file has that text
    class Gaps;
    std::unique_ptr<Gaps> m_gaps; ///< while they are put into it
    std::optional<LayoutChange> m_measuring;
};
