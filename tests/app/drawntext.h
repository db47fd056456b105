#pragma once

#include "editor/ctlediter.h"

/// The text with the marked part in brackets, "|" at the cursor.
inline QString drawn(const ctlEditer &editor)
{
    QString text = editor.text();
    const qint64 cursor = editor.cursorOffset();
    const qint64 anchor = editor.anchorOffset();
    text.insert(qMax(cursor, anchor), cursor == anchor ? u"|" : cursor > anchor ? u"|]" : u"]");
    if (cursor != anchor)
        text.insert(qMin(cursor, anchor), cursor > anchor ? u"[" : u"[|");
    return text;
}
