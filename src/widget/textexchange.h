#pragma once

#include "text/textstore.h"

#include <optional>

class QMimeData;
class QObject;
class TextCursor;
class TextDocument;
class TextMimeData;

/// What clipboards and drags bring, as it comes: it is still to be made fit for the document.
struct BroughtText {
    enum class From {
        Document, ///< itself: letter for letter with its spellings
        SameCode, ///< another one, of whose bytes the same holds; its line ends may be others
        Elsewhere,
    };
    From from = From::Elsewhere;
    TextPiece piece = {}; ///< from this program
    QString string = {}; ///< from others
    /// Where it is dropped, and is selected then; else it takes the place of the selection.
    std::optional<Offset> droppedAt = {};

    qint64 length() const { return piece.length() + string.size(); }
};

/// Text of one editor as clipboards and drags carry it, and what they bring as text for it.
class TextExchange {
public:
    /// `editor` is by what text is known that comes back to where it is from.
    TextExchange(const QObject &editor, const TextDocument &document, const TextCursor &cursor);

    TextPiece selectedPiece() const;
    /// The selected text as it is now, or as it is whenever somebody asks; owned by the caller.
    TextMimeData *selectionData() const;
    TextMimeData *followingSelectionData() const;
    /// The text that data bring; nothing where there is too little memory for it. Other programs may take
    /// long to give it.
    std::optional<BroughtText> textOf(const QMimeData &data) const;
    /// The same, fit for the document; without a look at it where it is its own. Nothing as above.
    static std::optional<TextPiece> pieceOf(const BroughtText &brought);

private:
    BroughtText broughtBy(const QMimeData &data) const;

    const QObject &m_editor;
    const TextDocument &m_document;
    const TextCursor &m_cursor;
};
