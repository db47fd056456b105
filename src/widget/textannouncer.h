#pragma once

#include "text/textchange.h"
#include "text/textstore.h"

class QObject;

/// Tells assistive technology what changes in one editor. While none is listening a call costs one test.
class TextAnnouncer {
public:
    explicit TextAnnouncer(QObject &editor);

    /// Keeps the text as it is, without a copy of it, until announceChange().
    void keep(const TextStore &store);
    /// Tells what has become of the text that was kept. Of what was removed and of what was inserted at most
    /// TextAccessible::longestUnit units are told.
    void announceChange(const TextStore &store, const TextChange &change);
    /// Tells where the cursor and the other end of the selection are, if that is news.
    void announceCursor(Offset cursor, Offset anchor);

private:
    QObject &m_editor;
    TextPiece m_before;
    bool m_keeps = false;
    Offset m_cursor;
    Offset m_anchor;
};
