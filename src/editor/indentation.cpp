#include "editor/indentation.h"

#include "text/textsnapshot.h"

#include <QThread>
#include <QVarLengthArray>

#include <optional>

namespace {

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

PartwiseText indenting(const TextStore &store, TextRange range, Indentation direction)
{
    return PartwiseText(
        store, range, [text = TextSnapshot(store), direction](TextRange part, const LayoutCopy &layout) {
            return indentedPart(text, part, direction, layout);
        });
}

TextPiece indented(const TextStore &store, TextRange range, Indentation direction)
{
    PartwiseText block = indenting(store, range, direction);
    while (!block.isWhole())
        block.makeNext(QThread::idealThreadCount(), spreadOverThreads);
    return block.take();
}
