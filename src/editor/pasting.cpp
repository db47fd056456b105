#include "editor/pasting.h"

#include "text/enteredtext.h"
#include "text/textsnapshot.h"
#include "widget/textexchange.h"

#include <utility>

namespace {

/// Units that become one, or none, together.
bool belongTogether(char16_t before, char16_t behind)
{
    return (before == u'\r' && behind == u'\n')
        || (QChar::isHighSurrogate(before) && QChar::isLowSurrogate(behind));
}

/// A range that begins and ends where nothing belongs together; what does is part of the earlier one.
template <typename UnitAt> TextRange uncut(TextRange range, Offset end, const UnitAt &unitAt)
{
    const auto behindUncut = [&](Offset place) {
        const bool isCut =
            place > Offset() && place < end && belongTogether(unitAt(place - 1), unitAt(place));
        return isCut ? place + 1 : place;
    };
    return { behindUncut(range.start), behindUncut(range.end) };
}

enum class LineEnds { Kept, BecomeLf };

/// Builds a text letter for letter with its spellings, but perhaps with LF for each CR+LF and CR.
class CopiedText {
public:
    CopiedText(LineEnds lineEnds, const LayoutCopy &layout)
        : m_lineEnds(lineEnds)
        , m_text(layout)
    {
    }

    void append(const TextChunk &chunk)
    {
        if (chunk.spelling && !goes(unitAt(chunk)))
            m_text.spell(*chunk.spelling);
        if (chunk.isLatin1())
            appendUnits(chunk.latin1, '\r', '\n');
        else
            appendUnits(chunk.utf16, QChar(u'\r'), QChar(u'\n'));
    }
    TextStore finish() { return m_text.finish(); }

private:
    static char16_t unitAt(const TextChunk &chunk)
    {
        return chunk.isLatin1() ? uchar(chunk.latin1.front()) : chunk.utf16.front().unicode();
    }
    /// Whether a unit that comes next is left out or becomes another one.
    bool goes(char16_t unit) const
    {
        return m_lineEnds == LineEnds::BecomeLf && (unit == u'\r' || (m_isBehindCr && unit == u'\n'));
    }

    template <typename View, typename Unit> void appendUnits(View units, Unit cr, Unit lf)
    {
        if (m_lineEnds == LineEnds::Kept)
            return m_text.append(units);
        if (std::exchange(m_isBehindCr, false) && units.front() == lf)
            units = units.sliced(1);
        while (!units.isEmpty()) {
            const qsizetype at = units.indexOf(cr);
            if (at < 0)
                return m_text.append(units);
            m_text.append(units.first(at));
            m_text.append(u"\n");
            units = units.sliced(at + 1);
            if (units.isEmpty())
                m_isBehindCr = true;
            else if (units.front() == lf)
                units = units.sliced(1);
        }
    }

    const LineEnds m_lineEnds;
    TextStore::Builder m_text;
    bool m_isBehindCr = false;
};

QString stringOf(const TextSnapshot &text, TextRange range)
{
    QString units;
    units.reserve(range.length());
    for (Offset at = range.start; at < range.end;) {
        TextChunk chunk = text.chunkAt(at);
        chunk.truncate(qMin(chunk.size(), range.end - at));
        if (chunk.isLatin1())
            units += QLatin1StringView(chunk.latin1);
        else
            units += chunk.utf16;
        at += chunk.size();
    }
    return units;
}

/// Where the units of a text come from that another thread makes fit for a document.
class PastedUnits {
public:
    explicit PastedUnits(const BroughtText &brought)
        : m_from(brought.from)
        , m_piece(brought.piece, {})
        , m_string(brought.string)
    {
    }

    TextStore part(TextRange range, const LayoutCopy &layout) const
    {
        const TextRange whole = uncut(range, end(), [this](Offset at) { return unitAt(at); });
        return m_from == BroughtText::From::Elsewhere ? cleanPart(whole, layout) : samePart(whole, layout);
    }
    Offset end() const { return Offset(m_piece.length() + m_string.size()); }

private:
    char16_t unitAt(Offset at) const
    {
        return m_piece.length() > 0 ? m_piece.at(at) : m_string.at(at.value()).unicode();
    }

    TextStore cleanPart(TextRange range, const LayoutCopy &layout) const
    {
        TextStore::Builder text(layout);
        text.append(pastedText(m_piece.length() > 0 ? stringOf(m_piece, range)
                                                    : m_string.sliced(range.start.value(), range.length())));
        return text.finish();
    }
    TextStore samePart(TextRange range, const LayoutCopy &layout) const
    {
        CopiedText text(m_from == BroughtText::From::Document ? LineEnds::Kept : LineEnds::BecomeLf, layout);
        for (Offset at = range.start; at < range.end;) {
            TextChunk chunk = m_piece.spelledChunkAt(at);
            chunk.truncate(qMin(chunk.size(), range.end - at));
            text.append(chunk);
            at += chunk.size();
        }
        return text.finish();
    }

    const BroughtText::From m_from;
    const TextSnapshot m_piece;
    const QString m_string;
};

} // namespace

PartwiseText pasting(const TextStore &store, const BroughtText &brought)
{
    const PastedUnits units(brought);
    return PartwiseText(store, { {}, units.end() },
        [units](TextRange range, const LayoutCopy &layout) { return units.part(range, layout); });
}
