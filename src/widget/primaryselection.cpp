#include "widget/primaryselection.h"

#include "widget/textcursor.h"
#include "widget/textexchange.h"
#include "widget/textmimedata.h"

#include <QClipboard>
#include <QGuiApplication>

#include <utility>

/// Units of a primary selection that are kept when the text is selected no more.
static constexpr qint64 mostKept = qint64(4) << 20;

PrimarySelection::PrimarySelection(const TextCursor &cursor, const TextExchange &exchange)
    : m_cursor(cursor)
    , m_exchange(exchange)
{
}

PrimarySelection::~PrimarySelection()
{
    freeze();
}

void PrimarySelection::offer()
{
    QClipboard *const clipboard = QGuiApplication::clipboard();
    if (!clipboard->supportsSelection() || !m_cursor.hasSelection())
        return;
    m_offered = m_exchange.followingSelectionData();
    clipboard->setMimeData(m_offered, QClipboard::Selection);
}

void PrimarySelection::freeze()
{
    if (!m_offered || !m_cursor.hasSelection())
        return;
    TextMimeData *const data = std::exchange(m_offered, nullptr);
    const TextRange range = m_cursor.selection();
    if (range.length() <= mostKept) {
        data->setSource([piece = m_exchange.selectedPiece()] { return piece; });
        return;
    }
    data->setSource([] { return TextPiece(); });
    QGuiApplication::clipboard()->clear(QClipboard::Selection);
}
