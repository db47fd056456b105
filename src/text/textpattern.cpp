#include "text/textpattern.h"

#include "text/textsnapshot.h"
#include "text/unitfold.h"

#include <QList>

#include <algorithm>
#include <limits>

namespace {

/// Candidates are picked by two units that are at most this far apart, so that few places of a chunk need a
/// look beyond its end.
constexpr qsizetype maxDistance = 63;

/// Places that are tried at once, and then, where one of them may be a hit.
constexpr qint64 blockSize = 64;
constexpr qint64 smallBlockSize = 32;

/// Units that may be compared in vain before a search goes on unit by unit.
constexpr qint64 freeComparisons = 4096;

QString folded(const QString &text)
{
    QString units = text;
    char16_t before = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t unit = text.at(i).unicode();
        units[i] = QChar(foldedUnit(unit, before));
        before = unit;
    }
    return units;
}

char16_t unitOf(const TextChunk &chunk, qint64 index)
{
    return chunk.isLatin1() ? uchar(chunk.latin1.at(index)) : chunk.utf16.at(index).unicode();
}

/// Calls `function(units)` with the chunk's units as uchar or as char16_t.
template <typename Function> decltype(auto) visit(const TextChunk &chunk, Function &&function)
{
    return chunk.isLatin1() ? function(reinterpret_cast<const uchar *>(chunk.latin1.data()))
                            : function(reinterpret_cast<const char16_t *>(chunk.utf16.utf16()));
}

} // namespace

TextPattern::TextPattern(const QString &text, Qt::CaseSensitivity caseSensitivity)
    : m_text(text)
    , m_caseSensitivity(caseSensitivity)
    // A surrogate by itself has no case, whatever stands before it.
    , m_folds(caseSensitivity == Qt::CaseInsensitive && !(text.size() == 1 && text.front().isSurrogate()))
    , m_folded(m_folds ? folded(text) : text)
{
    // No line holds a line end.
    if (text.contains(u'\n'))
        m_folded.clear();
    if (m_folded.isEmpty())
        return;
    m_distance = qMin(m_folded.size() - 1, maxDistance);
    m_latin1 = { probeOf<uchar>(0), probeOf<uchar>(m_distance) };
    m_utf16 = { probeOf<char16_t>(0), probeOf<char16_t>(m_distance) };
}

QList<char16_t> TextPattern::unitsEqualTo(qsizetype index) const
{
    const char16_t wanted = m_folded.at(index).unicode();
    if (!m_folds)
        return { wanted };
    const char16_t before = index > 0 ? m_folded.at(index - 1).unicode() : u'\0';
    QList<char16_t> units;
    const bool isLow = QChar::isLowSurrogate(wanted);
    for (char32_t unit = isLow ? 0xdc00 : 0; unit <= (isLow ? 0xdfff : 0xffff); ++unit) {
        if (foldedUnit(char16_t(unit), before) == wanted)
            units << char16_t(unit);
    }
    return units;
}

template <typename Unit> TextPattern::Probe<Unit> TextPattern::probeOf(qsizetype index) const
{
    Probe<Unit> probe;
    std::size_t count = 0;
    for (const char16_t unit : unitsEqualTo(index)) {
        if (unit > std::numeric_limits<Unit>::max())
            continue;
        Q_ASSERT(count < probe.most);
        if (count == 0)
            probe.values.fill(Unit(unit));
        probe.values[count++] = Unit(unit);
    }
    probe.isPossible = count > 0;
    return probe;
}

/// How long the longest beginning of `units` is that also ends at each of its units.
static QList<qsizetype> bordersOf(const QString &units)
{
    QList<qsizetype> borders(units.size(), 0);
    for (qsizetype i = 1, border = 0; i < units.size(); ++i) {
        while (border > 0 && units.at(i) != units.at(border))
            border = borders.at(border - 1);
        border += units.at(i) == units.at(border);
        borders[i] = border;
    }
    return borders;
}

/// Takes a text unit by unit and tells where the pattern is complete: Knuth, Morris and Pratt's way.
class UnitMatcher {
public:
    explicit UnitMatcher(const QString &units)
        : m_units(units)
        , m_borders(bordersOf(units))
    {
    }
    bool take(char16_t unit)
    {
        if (m_matched == m_units.size())
            m_matched = m_borders.last();
        while (m_matched > 0 && m_units.at(m_matched) != unit)
            m_matched = m_borders.at(m_matched - 1);
        m_matched += m_units.at(m_matched) == unit;
        return m_matched == m_units.size();
    }

private:
    const QString m_units;
    const QList<qsizetype> m_borders;
    qsizetype m_matched = 0;
};

/// One search of a store or a snapshot, for a hit that begins in a range of it.
template <class Text> class PatternSearch {
public:
    PatternSearch(const TextPattern &pattern, const Text &text, TextRange begins)
        : m_pattern(pattern)
        , m_text(text)
        , m_length(pattern.length())
        , m_first(begins.start)
        , m_last(qMin(begins.end - 1, text.end() - pattern.length()))
    {
    }

    std::optional<Offset> forwards();
    std::optional<Offset> backwards();

private:
    template <typename Unit> using Probes = TextPattern::Probes<Unit>;
    const Probes<uchar> &probesFor(const uchar *) const { return m_pattern.m_latin1; }
    const Probes<char16_t> &probesFor(const char16_t *) const { return m_pattern.m_utf16; }

    template <typename Unit> bool isCandidate(const Unit *units) const;
    template <qint64 count, typename Unit> bool hasCandidate(const Unit *units) const;
    template <typename Unit>
    bool settlesBlock(const TextChunk &chunk, const Unit *units, qint64 begin, qint64 end);
    template <typename Unit> bool settlesForwards(const TextChunk &chunk, const Unit *units, qint64 count);
    template <typename Unit> bool settlesBackwards(const TextChunk &chunk, const Unit *units, qint64 first);
    template <typename Unit> bool settlesAcross(const TextChunk &chunk, const Unit *units, qint64 index);
    bool settlesAt(const TextChunk &chunk, qint64 index);
    bool matches(const TextChunk &chunk, qint64 index);
    qint64 equalUnits(const TextChunk &chunk, qint64 index, qint64 done, char16_t before) const;
    bool beginsInsidePair(Offset offset) const;
    char16_t unitBefore(Offset offset) const { return offset > Offset() ? m_text.at(offset - 1) : u'\0'; }

    std::optional<Offset> forwardsByUnits(Offset from) const;
    std::optional<Offset> backwardsByUnits(Offset from) const;
    char16_t folded(char16_t unit, char16_t before) const
    {
        return m_pattern.m_folds ? foldedUnit(unit, before) : unit;
    }

    const TextPattern &m_pattern;
    const Text &m_text;
    const qint64 m_length;
    const Offset m_first; ///< of the places where a hit may begin
    const Offset m_last;
    Offset m_from; ///< the one of them that is tried first
    qint64 m_compared = 0; ///< units that equalled the pattern's at places that were no hits
    std::optional<Offset> m_hit;
    std::optional<Offset> m_givenUpAt; ///< the place from which on the search is to go on unit by unit
};

template <class Text> template <typename Unit> bool PatternSearch<Text>::isCandidate(const Unit *units) const
{
    const Probes<Unit> &probes = probesFor(units);
    return probes.first.has(units[0]) && probes.second.has(units[m_pattern.m_distance]);
}

/// Whether one of `count` places is a candidate; without a branch, for the compiler to make vectors of.
template <class Text>
template <qint64 count, typename Unit>
bool PatternSearch<Text>::hasCandidate(const Unit *units) const
{
    const Probes<Unit> probes = probesFor(units);
    const Unit *const second = units + m_pattern.m_distance;
    Unit any = 0;
    for (qint64 i = 0; i < count; ++i) {
        Unit isFirst = 0;
        Unit isSecond = 0;
        for (std::size_t k = 0; k < probes.first.most; ++k) {
            isFirst = Unit(isFirst | Unit(units[i] == probes.first.values[k]));
            isSecond = Unit(isSecond | Unit(second[i] == probes.second.values[k]));
        }
        any = Unit(any | (isFirst & isSecond));
    }
    return any != 0;
}

/// How many units of the chunk from `index` on equal the pattern's from `done` on.
template <class Text>
qint64 PatternSearch<Text>::equalUnits(
    const TextChunk &chunk, qint64 index, qint64 done, char16_t before) const
{
    const qint64 count = qMin(chunk.size() - index, m_length - done);
    const char16_t *const wanted = QStringView(m_pattern.m_folded).utf16() + done;
    return visit(chunk, [&](const auto *units) {
        units += index;
        qint64 i = 0;
        if (!m_pattern.m_folds) {
            while (i < count && units[i] == wanted[i])
                ++i;
            return i;
        }
        for (; i < count && foldedUnit(units[i], before) == wanted[i]; ++i)
            before = units[i];
        return i;
    });
}

/// When case does not count a pair is one character, and a pattern that begins with a low surrogate does not
/// begin inside it.
template <class Text> bool PatternSearch<Text>::beginsInsidePair(Offset offset) const
{
    return m_pattern.m_folds && m_pattern.m_folded.front().isLowSurrogate()
        && QChar::isHighSurrogate(unitBefore(offset));
}

/// Whether there is a hit at an index of the chunk; it may end in another one.
template <class Text> bool PatternSearch<Text>::matches(const TextChunk &chunk, qint64 index)
{
    TextChunk part = chunk;
    qint64 done = equalUnits(part, index, 0, 0);
    Offset end = part.offset + index + done;
    while (done < m_length && end == part.offset + part.size() && end < m_text.end()) {
        const char16_t before = unitOf(part, part.size() - 1);
        part = m_text.chunkAt(end);
        const qint64 equal = equalUnits(part, 0, done, before);
        done += equal;
        end += equal;
    }
    m_compared += done;
    return done == m_length && !beginsInsidePair(chunk.offset + index);
}

/// Whether the search is over here: there is a hit, or too much was compared in vain.
template <class Text> bool PatternSearch<Text>::settlesAt(const TextChunk &chunk, qint64 index)
{
    const Offset offset = chunk.offset + index;
    if (matches(chunk, index))
        m_hit = offset;
    else if (m_compared > freeComparisons + 8 * qAbs(offset - m_from))
        m_givenUpAt = offset;
    return m_hit || m_givenUpAt;
}

template <class Text>
template <typename Unit>
bool PatternSearch<Text>::settlesAcross(const TextChunk &chunk, const Unit *units, qint64 index)
{
    return probesFor(units).first.has(units[index]) && settlesAt(chunk, index);
}

/// Tries places of which one may be a hit.
template <class Text>
template <typename Unit>
bool PatternSearch<Text>::settlesBlock(const TextChunk &chunk, const Unit *units, qint64 begin, qint64 end)
{
    for (qint64 small = begin; small < end; small += smallBlockSize) {
        const qint64 smallEnd = qMin(end, small + smallBlockSize);
        if (smallEnd - small == smallBlockSize && !hasCandidate<smallBlockSize>(units + small))
            continue;
        for (qint64 index = small; index < smallEnd; ++index) {
            if (isCandidate(units + index) && settlesAt(chunk, index))
                return true;
        }
    }
    return false;
}

/// Tries the chunk's first `count` places.
template <class Text>
template <typename Unit>
bool PatternSearch<Text>::settlesForwards(const TextChunk &chunk, const Unit *units, qint64 count)
{
    if (!probesFor(units).first.isPossible)
        return false;
    const qint64 across = qBound<qint64>(0, chunk.size() - m_pattern.m_distance, count);
    const qint64 inside = probesFor(units).second.isPossible ? across : 0;
    for (qint64 begin = 0; begin < inside; begin += blockSize) {
        const qint64 end = qMin(inside, begin + blockSize);
        if (end - begin == blockSize && !hasCandidate<blockSize>(units + begin))
            continue;
        if (settlesBlock(chunk, units, begin, end))
            return true;
    }
    for (qint64 index = across; index < count; ++index) {
        if (settlesAcross(chunk, units, index))
            return true;
    }
    return false;
}

/// Tries the chunk's places from `first` on, the last one first.
template <class Text>
template <typename Unit>
bool PatternSearch<Text>::settlesBackwards(const TextChunk &chunk, const Unit *units, qint64 first)
{
    if (!probesFor(units).first.isPossible)
        return false;
    const qint64 across = qMax(first, chunk.size() - m_pattern.m_distance);
    for (qint64 index = chunk.size(); index-- > across;) {
        if (settlesAcross(chunk, units, index))
            return true;
    }
    const qint64 inside = probesFor(units).second.isPossible ? across : first;
    for (qint64 end = inside; end > first; end -= blockSize) {
        const qint64 begin = qMax(first, end - blockSize);
        if (end - begin == blockSize && !hasCandidate<blockSize>(units + begin))
            continue;
        for (qint64 index = end; index-- > begin;) {
            if (isCandidate(units + index) && settlesAt(chunk, index))
                return true;
        }
    }
    return false;
}

template <class Text> std::optional<Offset> PatternSearch<Text>::forwards()
{
    m_from = m_first;
    for (Offset at = m_first; at <= m_last;) {
        const TextChunk chunk = m_text.chunkAt(at);
        const qint64 count = qMin(chunk.size(), m_last - at + 1);
        if (visit(chunk, [&](const auto *units) { return settlesForwards(chunk, units, count); }))
            return m_givenUpAt ? forwardsByUnits(*m_givenUpAt) : m_hit;
        at += chunk.size();
    }
    return std::nullopt;
}

template <class Text> std::optional<Offset> PatternSearch<Text>::backwards()
{
    m_from = m_last;
    for (Offset end = m_last + 1; end > m_first;) {
        const TextChunk chunk = m_text.chunkBefore(end);
        const qint64 first = qMax<qint64>(0, m_first - chunk.offset);
        if (visit(chunk, [&](const auto *units) { return settlesBackwards(chunk, units, first); }))
            return m_givenUpAt ? backwardsByUnits(*m_givenUpAt) : m_hit;
        end = chunk.offset;
    }
    return std::nullopt;
}

template <class Text> std::optional<Offset> PatternSearch<Text>::forwardsByUnits(Offset from) const
{
    UnitMatcher matcher(m_pattern.m_folded);
    char16_t before = unitBefore(from);
    for (Offset at = from; at < m_last + m_length;) {
        TextChunk chunk = m_text.chunkAt(at);
        chunk.truncate(qMin(chunk.size(), m_last + m_length - at));
        for (qint64 i = 0; i < chunk.size(); ++i, ++at) {
            const char16_t unit = unitOf(chunk, i);
            if (matcher.take(folded(unit, before)) && !beginsInsidePair(at + 1 - m_length))
                return at + 1 - m_length;
            before = unit;
        }
    }
    return std::nullopt;
}

template <class Text> std::optional<Offset> PatternSearch<Text>::backwardsByUnits(Offset from) const
{
    QString reversed = m_pattern.m_folded;
    std::reverse(reversed.begin(), reversed.end());
    UnitMatcher matcher(reversed);
    for (Offset end = from + m_length; end > m_first;) {
        const TextChunk chunk = m_text.chunkBefore(end);
        const char16_t beforeChunk = unitBefore(chunk.offset);
        const qint64 first = qMax<qint64>(0, m_first - chunk.offset);
        for (qint64 i = chunk.size(); i-- > first;) {
            const char16_t before = i > 0 ? unitOf(chunk, i - 1) : beforeChunk;
            if (matcher.take(folded(unitOf(chunk, i), before)) && !beginsInsidePair(chunk.offset + i))
                return chunk.offset + i;
        }
        end = chunk.offset;
    }
    return std::nullopt;
}

template <class Text> std::optional<Offset> TextPattern::indexIn(const Text &text, TextRange begins) const
{
    return m_folded.isEmpty() ? std::nullopt : PatternSearch(*this, text, begins).forwards();
}

template <class Text> std::optional<Offset> TextPattern::lastIndexIn(const Text &text, TextRange begins) const
{
    return m_folded.isEmpty() ? std::nullopt : PatternSearch(*this, text, begins).backwards();
}

template std::optional<Offset> TextPattern::indexIn(const TextStore &text, TextRange begins) const;
template std::optional<Offset> TextPattern::indexIn(const TextSnapshot &text, TextRange begins) const;
template std::optional<Offset> TextPattern::lastIndexIn(const TextStore &text, TextRange begins) const;
template std::optional<Offset> TextPattern::lastIndexIn(const TextSnapshot &text, TextRange begins) const;
