#pragma once

#include "recovery/journalrecord.h"
#include "text/textchange.h"
#include "text/textsnapshot.h"

#include <memory>

/// A text that a journal knows, shared with the thread that writes.
using SharedSnapshot = std::shared_ptr<const TextSnapshot>;

/// What one write brings into a document's journal. Not changed any more; made and destroyed in the
/// document's thread, as its snapshots are.
struct JournalWrite {
    JournalBase base;
    SharedSnapshot baseText;
    SharedSnapshot committed; ///< what the write before this one brought, or the base
    SharedSnapshot text;
    TextChange change; ///< from the committed text to this one
    TextChange changeOfBase; ///< from the base to this one
    JournalState state;
};
