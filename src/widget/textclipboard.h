#pragma once

#include <QPointF>

#include <functional>
#include <optional>
#include <utility>

class CursorMoves;
class TextCursor;
class TextEdits;
class TextExchange;
class TextView;
struct BroughtText;

/// Copies selected text to the clipboard and pastes what is there, or what is selected elsewhere.
class TextClipboard {
public:
    TextClipboard(const TextCursor &cursor, const TextView &view, const TextExchange &exchange,
        CursorMoves &moves, TextEdits &edits);

    /// Inserts what is brought where that takes long; false: it is to be inserted at once.
    using LongInserter = std::function<bool(const BroughtText &brought)>;
    void setLongInserter(LongInserter inserter) { m_insertLong = std::move(inserter); }
    bool insertLong(const BroughtText &brought) const { return m_insertLong(brought); }
    /// Who is told where there is too little memory for what is brought, which changes nothing then.
    void setShortageTeller(std::function<void()> teller) { m_tellShortage = std::move(teller); }
    void tellShortage() const { m_tellShortage(); }

    /// Nothing where nothing is selected.
    void copy();
    void cut();
    static bool canPaste();
    /// Nothing where there is no text.
    void paste();
    /// The primary selection, where the cursor goes first.
    void pasteSelection(QPointF at);

private:
    void insert(const std::optional<BroughtText> &brought);

    const TextCursor &m_cursor;
    const TextView &m_view;
    const TextExchange &m_exchange;
    CursorMoves &m_moves;
    TextEdits &m_edits;
    LongInserter m_insertLong = [](const BroughtText &) { return false; };
    std::function<void()> m_tellShortage = [] {};
};
