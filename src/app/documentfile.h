#pragma once

#include "editor/ctlediter.h"
#include "files/filename.h"

/// Whether a document was ever saved, or opened from a file; others have no folder.
inline bool hasFile(const ctlEditer &editor)
{
    return !editor.path().isEmpty();
}

/// Folder and name of a document's file.
inline QString fullName(const ctlEditer &editor)
{
    return editor.path() + editor.name();
}

/// Which file has that name now; of no file if there is none.
inline FileStamp fileNow(const ctlEditer &editor)
{
    return stampOf(FileName::toBytes(fullName(editor)), FileCalls::system());
}

/// A document that nobody would miss: never saved, not edited, and no text is on its way into it.
inline bool isFresh(const ctlEditer &editor)
{
    return !hasFile(editor) && !editor.edited() && !editor.document().isHeld();
}
