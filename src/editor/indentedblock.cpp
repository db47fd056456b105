#include "editor/indentedblock.h"

#include <QVarLengthArray>

#include <algorithm>
#include <optional>

namespace {

/// Of one part, which is made in a few milliseconds.
constexpr qint64 partUnits = qint64{ 1 } << 18;

/// Builds lines of a block anew; each that is not empty gets a TAB, or loses the one it begins with.
class IndentedText {
public:
    IndentedText(Indentation direction, bool atLineStart, const LayoutCopy &layout)
        : m_text(layout)
        , m_direction(direction)
        , m_atLineStart(atLineStart)
    {
    }

    void append(const TextChunk &chunk)
    {
        if (chunk.isLatin1())
            appendUnits<char, QByteArrayView>(chunk.latin1, chunk.spelling);
        else
            appendUnits<char16_t, QStringView>(chunk.utf16, chunk.spelling);
    }

    TextStore finish() { return m_text.finish(); }

private:
    template <typename Unit, typename View>
    void appendUnits(View units, std::optional<QByteArrayView> spelling)
    {
        QVarLengthArray<Unit, 8192> made;
        while (!units.isEmpty()) {
            if (m_atLineStart)
                units = units.sliced(beginLine(units, made));
            const qsizetype lineEnd = units.indexOf(Unit('\n'));
            const qsizetype size = lineEnd == -1 ? units.size() : lineEnd + 1;
            if (spelling && size > 0) {
                m_text.append(View(made.data(), made.size()));
                made.clear();
                m_text.spell(*spelling);
            }
            made.append(reinterpret_cast<const Unit *>(units.data()), size);
            units = units.sliced(size);
            m_atLineStart = lineEnd != -1;
        }
        m_text.append(View(made.data(), made.size()));
    }

    /// How many of its units are left out.
    template <typename View, typename Made> qsizetype beginLine(View units, Made &made)
    {
        using Unit = typename Made::value_type;
        if (m_direction == Indentation::Out)
            return units.front() == Unit('\t') ? 1 : 0;
        if (units.front() != Unit('\n'))
            made.append(Unit('\t'));
        return 0;
    }

    TextStore::Builder m_text;
    const Indentation m_direction;
    bool m_atLineStart;
};

bool isAtLineStart(const TextSnapshot &text, Offset offset)
{
    return offset == Offset() || text.at(offset - 1) == u'\n';
}

TextStore indentedPart(
    const TextSnapshot &text, TextRange part, Indentation direction, const LayoutCopy &layout)
{
    IndentedText made(direction, isAtLineStart(text, part.start), layout);
    for (Offset at = part.start; at < part.end;) {
        TextChunk chunk = text.spelledChunkAt(at);
        chunk.truncate(qMin(chunk.size(), part.end - at));
        made.append(chunk);
        at += chunk.size();
    }
    return made.finish();
}

} // namespace

IndentedBlock::IndentedBlock(const TextStore &store, TextRange range, Indentation direction)
    : m_text(store)
    , m_direction(direction)
    , m_rest(range)
{
    m_layouts.emplace_back(store);
    m_block = TextStore::Builder(m_layouts.front()).finish();
}

TextRange IndentedBlock::takeRange()
{
    const Offset start = m_rest.start;
    m_rest.start = qMin(start + partUnits, m_rest.end);
    return { start, m_rest.start };
}

void IndentedBlock::makeNext(int parts, const Spread &spread)
{
    std::vector<TextRange> ranges;
    while (int(ranges.size()) < parts && !isWhole())
        ranges.push_back(takeRange());
    while (m_layouts.size() < ranges.size())
        m_layouts.push_back(m_layouts.front());
    std::vector<std::optional<TextStore>> made(ranges.size());
    spread(int(ranges.size()), [&](int i) {
        const auto part = size_t(i);
        made[part] = indentedPart(m_text, ranges[part], m_direction, m_layouts[part]);
    });
    for (std::optional<TextStore> &part : made)
        m_block.append(std::move(*part));
}

bool IndentedBlock::isLaidOutAs(const TextStore &store) const
{
    return m_layouts.front().layout().stamp() == store.layout().stamp();
}

TextPiece IndentedBlock::take()
{
    if (!std::ranges::all_of(m_layouts, &LayoutCopy::isComplete))
        m_block.forgetLayout();
    return m_block.piece({}, m_block.length());
}
