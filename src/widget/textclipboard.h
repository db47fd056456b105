#pragma once

#include <QPointF>

class CursorMoves;
class QMimeData;
class TextCursor;
class TextEdits;
class TextExchange;
class TextView;

/// Copies selected text to the clipboard and pastes what is there, or what is selected elsewhere.
class TextClipboard {
public:
    TextClipboard(const TextCursor &cursor, const TextView &view, const TextExchange &exchange,
        CursorMoves &moves, TextEdits &edits);

    /// Nothing where nothing is selected.
    void copy();
    void cut();
    static bool canPaste();
    /// Nothing where there is no text.
    void paste();
    /// The primary selection, where the cursor goes first.
    void pasteSelection(QPointF at);

private:
    void insert(const QMimeData &data);

    const TextCursor &m_cursor;
    const TextView &m_view;
    const TextExchange &m_exchange;
    CursorMoves &m_moves;
    TextEdits &m_edits;
};
