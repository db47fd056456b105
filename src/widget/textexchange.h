#pragma once

#include "text/textstore.h"

#include <QByteArray>

class QMimeData;
class QObject;
class TextCursor;
class TextMimeData;

/// Text of one editor as clipboards and drags carry it, and what they bring as text for it.
class TextExchange {
public:
    /// `editor` is by what text is known that comes back to where it is from.
    TextExchange(const QObject &editor, const TextStore &store, const TextCursor &cursor);

    /// Names the code that bytes in the text, undecodable ones and spellings, are of.
    void setByteCode(const QByteArray &code) { m_byteCode = code; }

    TextPiece selectedPiece() const;
    /// The selected text as it is now, or as it is whenever somebody asks; owned by the caller.
    TextMimeData *selectionData() const;
    TextMimeData *followingSelectionData() const;
    /// The text that data bring; from this program as it is, where its bytes mean the same here.
    TextPiece pieceOf(const QMimeData &data) const;

private:
    const QObject &m_editor;
    const TextStore &m_store;
    const TextCursor &m_cursor;
    QByteArray m_byteCode;
};
