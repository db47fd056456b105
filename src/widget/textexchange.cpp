#include "widget/textexchange.h"

#include "document/textdocument.h"
#include "jobs/memoryleft.h"
#include "text/enteredtext.h"
#include "widget/textcursor.h"
#include "widget/textmimedata.h"

#include <new>

namespace {

/// Nothing where there is too little memory for it, or would be for whatever comes next.
template <typename Make> auto ifThereIsMemory(const Make &make) -> std::optional<decltype(make())>
{
    try {
        std::optional made(make());
        MemoryLeft::require();
        return made;
    } catch (const std::bad_alloc &) {
        return std::nullopt;
    }
}

/// With LF for each CR+LF and CR, which another document may have for its line ends.
TextPiece withLineFeeds(const TextPiece &piece)
{
    const QString text = piece.text();
    if (!text.contains(u'\r'))
        return piece;
    TextStore store;
    store.insert({}, piece);
    for (qsizetype at = text.size(); --at >= 0;) {
        if (text[at] == u'\r')
            store.replace(
                Offset(at), 1, QStringView(text).sliced(at + 1).startsWith(u'\n') ? QStringView() : u"\n");
    }
    return store.piece({}, store.length());
}

TextPiece madeFit(const BroughtText &brought)
{
    switch (brought.from) {
    case BroughtText::From::Document:
        return brought.piece;
    case BroughtText::From::SameCode:
        return withLineFeeds(brought.piece);
    case BroughtText::From::Elsewhere:
        return TextPiece(pastedText(brought.piece.isEmpty() ? brought.string : brought.piece.text()));
    }
    Q_UNREACHABLE();
}

} // namespace

TextExchange::TextExchange(const QObject &editor, const TextDocument &document, const TextCursor &cursor)
    : m_editor(editor)
    , m_document(document)
    , m_cursor(cursor)
{
}

TextPiece TextExchange::selectedPiece() const
{
    const TextRange range = m_cursor.selection();
    return m_document.store().piece(range.start, range.length());
}

TextMimeData *TextExchange::selectionData() const
{
    return new TextMimeData([piece = selectedPiece()] { return piece; }, m_document.byteCodec(), &m_editor);
}

TextMimeData *TextExchange::followingSelectionData() const
{
    return new TextMimeData([this] { return selectedPiece(); }, m_document.byteCodec(), &m_editor);
}

std::optional<BroughtText> TextExchange::textOf(const QMimeData &data) const
{
    return ifThereIsMemory([&] { return broughtBy(data); });
}

BroughtText TextExchange::broughtBy(const QMimeData &data) const
{
    using From = BroughtText::From;
    const auto *const own = qobject_cast<const TextMimeData *>(&data);
    if (!own)
        return { From::Elsewhere, {}, data.text() };
    if (&own->byteCodec() != &m_document.byteCodec())
        return { From::Elsewhere, own->piece() };
    return { own->isFrom(&m_editor) ? From::Document : From::SameCode, own->piece() };
}

std::optional<TextPiece> TextExchange::pieceOf(const BroughtText &brought)
{
    return ifThereIsMemory([&] { return madeFit(brought); });
}
