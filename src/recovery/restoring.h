#pragma once

#include "document/textdocument.h"
#include "recovery/claimedjournal.h"
#include "recovery/journalrecord.h"

/// What became of the restoring of a document.
struct Restored {
    enum class Outcome {
        Edited, ///< the file was loaded, and all edits were made again: one Undo leads back to it
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
/// edited state. Cost: as loading the file, and what was edited.
Restored restore(
    const QByteArray &journal, TextDocument &document, const FileCalls &calls = FileCalls::system());
/// The same of one that is locked already, into a document that was read just now from the file that the
/// edits begin with, as LeftBehind::readAs tells: it is not read once more, whatever it has become since.
Restored restoreOnFile(
    ClaimedJournal &&journal, TextDocument &document, const FileCalls &calls = FileCalls::system());
