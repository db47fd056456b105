#pragma once

#include "text/textstore.h"

class QMimeData;
class QObject;
class TextCursor;
class TextDocument;
class TextMimeData;

/// Text of one editor as clipboards and drags carry it, and what they bring as text for it.
class TextExchange {
public:
    /// `editor` is by what text is known that comes back to where it is from.
    TextExchange(const QObject &editor, const TextDocument &document, const TextCursor &cursor);

    TextPiece selectedPiece() const;
    /// The selected text as it is now, or as it is whenever somebody asks; owned by the caller.
    TextMimeData *selectionData() const;
    TextMimeData *followingSelectionData() const;
    /// The text that data bring; from this program as it is, where its bytes mean the same here.
    TextPiece pieceOf(const QMimeData &data) const;

private:
    const QObject &m_editor;
    const TextDocument &m_document;
    const TextCursor &m_cursor;
};
