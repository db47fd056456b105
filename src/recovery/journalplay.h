#pragma once

#include "recovery/journalreader.h"
#include "text/textchange.h"
#include "text/textstore.h"

#include <QDeadlineTimer>

#include <memory>

/// What a journal says as far as it is whole.
struct JournalOutline {
    JournalBase base;
    std::optional<BaseSeen> seen;
    JournalState state; ///< that of the last commit
    qint64 commits = 0; ///< 0: there is nothing to be restored
};

/// Looks through a journal, and checks what JournalPlay relies upon. Of one whose start is lost the base is
/// one of no file, as long as what follows says; the journal begins with what is whole then. Cost: the file
/// is read once, or a few times where its start is lost.
JournalOutline outlineOf(JournalReader &journal);

/// The same in steps.
class OutlineReading {
public:
    /// `journal` is not owned. Reads its base, which takes all of it where its start is lost.
    explicit OutlineReading(JournalReader &journal);
    ~OutlineReading();
    Q_DISABLE_COPY_MOVE(OutlineReading)

    /// Reads so many bytes or a few more; whether all is read.
    bool readOn(qint64 bytes);
    /// As far as it is read.
    const JournalOutline &outline() const;

private:
    class Reader;

    JournalReader &m_journal;
    std::unique_ptr<Reader> m_reader; ///< null: there is no journal
};

/// What the journal keeps of the text of the base: all of it where its outline says so, or its end where the
/// start is lost, or nothing. Read in turns.
class KeptBase {
public:
    /// `journal` is not owned.
    explicit KeptBase(JournalReader &journal);
    ~KeptBase();
    Q_DISABLE_COPY_MOVE(KeptBase)

    /// Goes on until the time is over, by a record at least; whether all is read.
    bool readOn(QDeadlineTimer end);
    /// Then.
    TextPiece take();

private:
    class Builder;

    JournalReader &m_journal;
    std::unique_ptr<Builder> m_builder;
};

/// Makes the text of the base that of the last commit, edit by edit, in turns. Nobody sees what it is
/// between.
class JournalPlay {
public:
    /// Neither the journal nor its outline is owned.
    JournalPlay(JournalReader &journal, const JournalOutline &outline, TextPiece base);
    ~JournalPlay();
    Q_DISABLE_COPY_MOVE(JournalPlay)

    enum class Step { More, Done, Failed };
    /// Goes on until the time is over, by a record at least. Failed: the file, which could be read before,
    /// cannot be read now.
    Step playOn(QDeadlineTimer end);
    /// Of the last commit, when it is done.
    const TextPiece &text() const;
    /// What became of the base by then.
    TextChange change() const;

private:
    class Player;

    JournalReader &m_journal;
    const JournalOutline &m_outline;
    std::unique_ptr<Player> m_player;
    qint64 m_commits = 0; ///< that were played
};
