#include "widget/textclipboard.h"

#include "widget/cursormoves.h"
#include "widget/textedits.h"
#include "widget/textexchange.h"
#include "widget/textmimedata.h"
#include "widget/textview.h"

#include <QClipboard>
#include <QGuiApplication>

TextClipboard::TextClipboard(const TextCursor &cursor, const TextView &view, const TextExchange &exchange,
    CursorMoves &moves, TextEdits &edits)
    : m_cursor(cursor)
    , m_view(view)
    , m_exchange(exchange)
    , m_moves(moves)
    , m_edits(edits)
{
}

void TextClipboard::copy()
{
    if (m_cursor.hasSelection())
        QGuiApplication::clipboard()->setMimeData(m_exchange.selectionData());
}

void TextClipboard::cut()
{
    copy();
    m_edits.eraseSelection();
}

bool TextClipboard::canPaste()
{
    const QMimeData *const data = QGuiApplication::clipboard()->mimeData();
    return data && data->hasText();
}

void TextClipboard::paste()
{
    if (const QMimeData *const data = QGuiApplication::clipboard()->mimeData())
        insert(m_exchange.textOf(*data));
}

void TextClipboard::insert(const std::optional<BroughtText> &brought)
{
    if (!brought)
        return m_tellShortage();
    if (brought->length() == 0 || m_insertLong(*brought))
        return;
    const std::optional<TextPiece> text = TextExchange::pieceOf(*brought);
    if (!text)
        m_tellShortage();
    else if (!text->isEmpty())
        m_edits.insert(*text);
}

void TextClipboard::pasteSelection(QPointF at)
{
    const QClipboard *const clipboard = QGuiApplication::clipboard();
    if (!clipboard->supportsSelection())
        return;
    const QMimeData *const data = clipboard->mimeData(QClipboard::Selection);
    if (!data)
        return;
    // What is selected here is taken before the cursor drops it.
    const std::optional<BroughtText> brought = m_exchange.textOf(*data);
    m_moves.moveTo(m_view.placeAt(at), Selecting::Drop);
    insert(brought);
}
