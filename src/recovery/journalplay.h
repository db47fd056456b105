#pragma once

#include "recovery/journalreader.h"
#include "text/textsnapshot.h"

/// What a journal says as far as it is whole.
struct JournalOutline {
    JournalBase base;
    std::optional<BaseSeen> seen;
    JournalState state; ///< that of the last commit
    qint64 commits = 0; ///< 0: there is nothing to be restored
};

/// Looks through a journal, and checks what playJournal() relies upon. Of one whose start is lost the base is
/// one of no file, as long as what follows says; the journal begins with what is whole then. Cost: the file
/// is read once, or a few times where its start is lost.
JournalOutline outlineOf(JournalReader &journal);

/// What the journal keeps of the text of the base: all of it where `seen` says so, or its end where the
/// start is lost, or nothing.
TextStore keptBase(JournalReader &journal);

/// Makes a text that of the last commit, edit by edit.
struct JournalPlayer {
    virtual ~JournalPlayer() = default;
    virtual const TextStore &store() const = 0;
    virtual void replace(Offset offset, qint64 removed, const TextPiece &inserted) = 0;
};
/// Whoever plays has the text of the base. False: the file, which could be read before, cannot be read now,
/// and the text is an earlier one.
bool playJournal(JournalReader &journal, const JournalOutline &outline, JournalPlayer &player);
