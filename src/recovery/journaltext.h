#pragma once

#include "document/textdocument.h"
#include "recovery/journalwrite.h"

/// Where a document's text is whole.
enum class WholeIn {
    NoFile,
    FileRead, ///< its file, which was read
    FileWritten, ///< its file, which was written
};

/// What is known of a document's text for its journal: what it began with, what was written last, and where
/// it was changed since. An edit costs a few words.
class JournalText {
public:
    /// Begins with the text as it is now, which is that of the document's file, or with none. No text is held
    /// before there is something to be written: what it began with the history has.
    void begin(const TextDocument &document, WholeIn where);
    /// Forgets all texts, for the memory they take; begin() must be next.
    void drop();
    bool isDropped() const { return m_isDropped; }
    void note(const TextChange &change);
    /// What is to be written, which counts as written from now on.
    std::shared_ptr<const JournalWrite> next(const TextDocument &document, const JournalState &state);
    /// Nothing was written, or it is gone.
    void returnToBase();

private:
    void takeBase(const TextDocument &document);

    bool m_isDropped = true;
    JournalBase m_base;
    std::optional<QByteArray> m_baseEnd; ///< what stood behind its text
    SharedSnapshot m_baseText;
    SharedSnapshot m_written;
    TextChange m_change; ///< since it was written
    TextChange m_changeOfBase;
};
