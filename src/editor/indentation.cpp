#include "editor/indentation.h"

namespace {

/// Builds the lines of a block anew; each that is not empty gets a TAB, or loses the one it begins with.
class IndentedText {
public:
    IndentedText(Indentation direction, bool atLineStart)
        : m_text(LayoutRule{})
        , m_direction(direction)
        , m_atLineStart(atLineStart)
    {
    }

    void append(const TextChunk &chunk)
    {
        if (chunk.isLatin1())
            appendUnits(chunk.latin1, '\n', '\t', chunk.spelling);
        else
            appendUnits(chunk.utf16, u'\n', u'\t', chunk.spelling);
    }

    TextPiece finish()
    {
        const TextStore text = m_text.finish();
        return text.piece({}, text.length());
    }

private:
    template <typename View, typename Unit>
    void appendUnits(View units, Unit lineFeed, Unit tabulator, std::optional<QByteArrayView> spelling)
    {
        while (!units.isEmpty()) {
            const bool isTab = units.front() == tabulator;
            if (m_atLineStart && units.front() != lineFeed && m_direction == Indentation::In)
                m_text.append(u"\t");
            else if (m_atLineStart && isTab && m_direction == Indentation::Out)
                units = units.sliced(1);
            m_atLineStart = appendLine(units, lineFeed, spelling);
        }
    }

    /// Up to a line end, which it tells of, or to the end of the units.
    template <typename View, typename Unit>
    bool appendLine(View &units, Unit lineFeed, std::optional<QByteArrayView> spelling)
    {
        if (units.isEmpty())
            return false;
        const qsizetype lineEnd = units.indexOf(lineFeed);
        const qsizetype size = lineEnd == -1 ? units.size() : lineEnd + 1;
        if (spelling)
            m_text.spell(*spelling);
        m_text.append(units.first(size));
        units = units.sliced(size);
        return lineEnd != -1;
    }

    TextStore::Builder m_text;
    const Indentation m_direction;
    bool m_atLineStart;
};

} // namespace

TextPiece indented(const TextStore &store, TextRange range, Indentation direction)
{
    IndentedText text(direction, range.start == Offset() || store.at(range.start - 1) == u'\n');
    for (Offset at = range.start; at < range.end;) {
        TextChunk chunk = store.spelledChunkAt(at);
        chunk.truncate(qMin(chunk.size(), range.end - at));
        text.append(chunk);
        at += chunk.size();
    }
    return text.finish();
}
