#include "text/leaflayout.h"

#include <algorithm>
#include <array>

namespace {

/// Cuts a leaf at its TABs and LFs and adds up what is between them.
class Summing {
public:
    explicit Summing(Subpixels tabStop)
        : m_tabStop(tabStop)
    {
    }

    void add(Subpixels width) { m_reach.add(width); }
    void addTab()
    {
        m_reach.addTab(m_tabStop);
        m_summary.widestUnit = int(qMin<Subpixels>(INT_MAX, m_tabStop));
    }
    void addLineEnd()
    {
        if (m_summary.lineEnds++ == 0)
            m_summary.head = m_reach;
        else
            m_summary.widest = qMax(m_summary.widest, m_reach.from(0, m_tabStop));
        m_reach = {};
    }
    TextSummary finish(int narrowest, int widest)
    {
        if (m_summary.lineEnds == 0)
            m_summary.head = m_reach;
        else
            m_summary.tail = m_reach.from(0, m_tabStop);
        m_summary.widestUnit = qMax(m_summary.widestUnit, widest);
        if (narrowest <= widest)
            m_summary.even = narrowest == widest ? narrowest : 0;
        return m_summary;
    }

private:
    Subpixels m_tabStop;
    Reach m_reach;
    TextSummary m_summary;
};

/// How much of a one-byte leaf is anything but printable ASCII.
struct ByteCounts {
    qint64 tabs = 0;
    qint64 lineEnds = 0;
    qint64 others = 0;
};

/// Counts in blocks whose counts fit a byte, which the compiler turns into vector instructions.
ByteCounts countBytes(const uchar *text, qint64 size)
{
    constexpr qint64 block = 192;
    ByteCounts counts;
    for (qint64 begin = 0; begin < size; begin += block) {
        uchar tabs = 0;
        uchar lineEnds = 0;
        uchar others = 0;
        const qint64 end = qMin(size, begin + block);
        for (qint64 i = begin; i < end; ++i) {
            tabs = uchar(tabs + (text[i] == '\t'));
            lineEnds = uchar(lineEnds + (text[i] == '\n'));
            others = uchar(others + (uchar(text[i] - ' ') > '~' - ' '));
        }
        counts.tabs += tabs;
        counts.lineEnds += lineEnds;
        counts.others += others;
    }
    counts.others -= counts.tabs + counts.lineEnds;
    return counts;
}

/// The leaf is printable ASCII of one width and LFs, one of them at least: distances do, in the unwrapped
/// lines and in the wrapped ones. Most of a large file is such.
TextSummary sumPlainLines(const uchar *text, qint64 size, const TextLayout &layout)
{
    const int width = layout.asciiWidth();
    const qint64 unitsOfRow =
        layout.wraps() ? qMax<qint64>(1, layout.limit() / width) : std::numeric_limits<qint64>::max();
    NextUnit<uchar> lineEnd(text, size, '\n');
    const qint64 head = lineEnd.at(0);
    TextSummary summary{
        .units = size, .lineEnds = 1, .head = { .before = head * width }, .widestUnit = width, .even = width
    };
    qint64 longest = 0;
    qint64 begin = head + 1;
    for (qint64 end = lineEnd.at(begin); end < size; end = lineEnd.at(begin)) {
        const qint64 length = end - begin;
        longest = qMax(longest, length);
        if (length > unitsOfRow)
            summary.breaks += (length - 1) / unitsOfRow;
        ++summary.lineEnds;
        begin = end + 1;
    }
    const qint64 breaksAtEnd = size - begin > unitsOfRow ? (size - begin - 1) / unitsOfRow : 0;
    summary.breaks += breaksAtEnd;
    summary.widest = longest * width;
    summary.tail = (size - begin) * width;
    if (layout.wraps())
        summary.tailFill = qint32((size - begin - breaksAtEnd * unitsOfRow) * width);
    return summary;
}

/// The leaf is printable ASCII of one width, TABs and LFs: distances do.
TextSummary sumAscii(const uchar *text, qint64 size, const TextLayout &layout, const ByteCounts &counts)
{
    const int width = layout.asciiWidth();
    Summing sum(layout.tabStop());
    NextUnit<uchar> lineEnd(text, size, '\n');
    NextUnit<uchar> tab(text, counts.tabs > 0 ? size : 0, '\t');
    for (qint64 i = 0; i < size; ++i) {
        const qint64 tabAt = counts.tabs > 0 ? tab.at(i) : size;
        const qint64 end = qMin(lineEnd.at(i), tabAt);
        sum.add((end - i) * width);
        i = end;
        if (i < size)
            i == tabAt ? sum.addTab() : sum.addLineEnd();
    }
    const bool anyText = size > counts.tabs + counts.lineEnds;
    return sum.finish(anyText ? width : INT_MAX, anyText ? width : 0);
}

/// The leaf has one byte a unit: each is a character, and the text is summed up by what occurs in it.
TextSummary sumBytes(const uchar *text, qint64 size, const TextLayout &layout)
{
    std::array<bool, 256> occurs{};
    Summing sum(layout.tabStop());
    NextUnit<uchar> lineEnd(text, size, '\n');
    NextUnit<uchar> tab(text, size, '\t');
    for (qint64 i = 0; i < size; ++i) {
        const qint64 tabAt = tab.at(i);
        const qint64 end = qMin(lineEnd.at(i), tabAt);
        Subpixels width = 0;
        for (; i < end; ++i) {
            width += layout.width(text[i]);
            occurs[text[i]] = true;
        }
        sum.add(width);
        if (i < size)
            i == tabAt ? sum.addTab() : sum.addLineEnd();
    }
    int narrowest = INT_MAX;
    int widest = 0;
    for (size_t byte = 0; byte < occurs.size(); ++byte) {
        if (!occurs[byte])
            continue;
        narrowest = qMin(narrowest, layout.width(uchar(byte)));
        widest = qMax(widest, layout.width(uchar(byte)));
    }
    return sum.finish(narrowest, widest);
}

/// The same for text of one width without TABs: distances do.
template <typename Unit>
void addEvenBreaks(
    TextSummary &summary, const Unit *text, qint64 size, const TextLayout &layout, qint64 begin)
{
    const qint64 unitsOfRow = qMax<qint64>(1, layout.limit() / summary.even);
    NextUnit<Unit> lineEnd(text, size, '\n');
    for (qint64 end; begin <= size; begin = end + 1) {
        end = lineEnd.at(begin);
        const qint64 breaks = end - begin > unitsOfRow ? (end - begin - 1) / unitsOfRow : 0;
        summary.breaks += breaks;
        summary.tailFill = qint32((end - begin - breaks * unitsOfRow) * summary.even);
    }
}

/// Breaks behind the first LF, and the x at the end.
template <typename Unit>
void addBreaks(TextSummary &summary, const Unit *text, qint64 size, const TextLayout &layout)
{
    if (qMax(summary.widest, summary.tail) <= layout.limit()) {
        summary.tailFill = qint32(summary.tail);
        return;
    }
    using Scan = RowScan<Unit>;
    const qint64 begin = NextUnit<Unit>(text, size, '\n').at(0) + 1;
    if (summary.even > 0 && NextUnit<Unit>(text, size, '\t').at(begin) == size)
        return addEvenBreaks(summary, text, size, layout, begin);
    Scan scan(text, size, layout, summary.even, begin, 0);
    for (auto event = scan.next(); event != Scan::Event::None; event = scan.next())
        summary.breaks += event == Scan::Event::Break;
    summary.tailFill = qint32(scan.x());
}

TextSummary summed(const uchar *text, qint64 size, const TextLayout &layout)
{
    const ByteCounts counts = layout.asciiWidth() > 0 ? countBytes(text, size) : ByteCounts{ .others = size };
    const bool isAscii = counts.others == 0;
    if (isAscii && counts.tabs == 0 && counts.lineEnds > 0 && counts.lineEnds < size)
        return sumPlainLines(text, size, layout);
    TextSummary summary = isAscii ? sumAscii(text, size, layout, counts) : sumBytes(text, size, layout);
    summary.units = size;
    if (layout.wraps() && summary.lineEnds > 0)
        addBreaks(summary, text, size, layout);
    return summary;
}

/// Width of a unit that joins no plain one and is neither LF nor TAB, else AdvanceTable::unknown.
class PlainWidths {
public:
    explicit PlainWidths(const TextLayout &layout)
        : m_layout(layout)
        , m_known(layout.knownWidths())
    {
    }

    const quint16 *known() const { return m_known; }
    int of(char16_t unit) const
    {
        const quint16 width = m_known[unit];
        return width != AdvanceTable::unknown ? width : measured(unit);
    }

private:
    int measured(char16_t unit) const
    {
        if (unit != u'\n' && unit != u'\t' && !QChar::isSurrogate(unit))
            m_layout.width(unit);
        return m_known[unit];
    }

    const TextLayout &m_layout;
    const quint16 *m_known;
};

/// Least and largest of some widths.
struct WidthRange {
    int narrowest = INT_MAX;
    int widest = INT_MAX; ///< of none: no width lies between the two

    bool isEmpty() const { return narrowest == INT_MAX; }
    bool holds(int width) const { return uint(width) - uint(narrowest) <= uint(widest) - uint(narrowest); }
    void add(int width)
    {
        widest = isEmpty() ? width : qMax(widest, width);
        narrowest = qMin(narrowest, width);
    }
};

/// Sums up any text. Notes x before each of its units, so that rows are cut without a second look at it.
class AnySum {
public:
    AnySum(const char16_t *text, qint64 size, const TextLayout &layout)
        : m_text(text)
        , m_size(size)
        , m_layout(layout)
        , m_plain(layout)
        , m_sum(layout.tabStop())
        , m_x(size + 1)
    {
        m_x[0] = 0;
    }

    TextSummary make()
    {
        for (qint64 i = 0; i < m_size;) {
            const qint64 end = addPlain(i);
            if (end == m_size)
                break;
            if (m_text[end] == '\t')
                addTab(end);
            else if (m_text[end] == '\n')
                addLineEnd(end);
            i = m_cut > end ? m_cut : addJoined(i, end);
        }
        m_sum.add(widthFrom(m_cut, m_size));
        TextSummary summary = m_sum.finish(m_widths.narrowest, m_widths.isEmpty() ? 0 : m_widths.widest);
        summary.units = m_size;
        if (m_layout.wraps() && summary.lineEnds > 0)
            addAllBreaks(summary);
        return summary;
    }

private:
    Subpixels widthFrom(qint64 from, qint64 to) const { return m_x[to] - m_x[from]; }
    void addTab(qint64 at)
    {
        cut(at);
        m_sum.addTab();
        m_hasTab = true;
    }
    void addLineEnd(qint64 at)
    {
        cut(at);
        m_sum.addLineEnd();
        if (m_row >= 0)
            addRows(at);
        m_row = at + 1;
    }
    void addAllBreaks(TextSummary &summary)
    {
        if (m_hasTab) // where x depends on the rows
            return addBreaks(summary, m_text, m_size, m_layout);
        addRows(m_size);
        summary.breaks = m_breaks;
        summary.tailFill = qint32(widthFrom(m_row, m_size));
    }
    /// Of what is between two cuts widths add up; the unit of a cut is 0 wide.
    void cut(qint64 at)
    {
        m_sum.add(widthFrom(m_cut, at));
        m_cut = at + 1;
        m_x[m_cut] = m_x[at];
    }
    /// Goes on as far as there are plain characters.
    qint64 addPlain(qint64 i)
    {
        for (;;) {
            i = addNoted(i);
            const int width = i < m_size ? m_plain.of(m_text[i]) : AdvanceTable::unknown;
            if (width == AdvanceTable::unknown)
                return i;
            m_widths.add(width);
        }
    }
    /// Goes on as far as there are widths between those that were noted.
    qint64 addNoted(qint64 i)
    {
        const char16_t *const text = m_text;
        const quint16 *const known = m_plain.known();
        qint32 *const xs = m_x.data();
        const qint64 size = m_size;
        const WidthRange widths = m_widths;
        for (qint32 x = xs[i]; i < size && widths.holds(known[text[i]]); xs[++i] = x)
            x += known[text[i]];
        return i;
    }
    /// Adds the character that unit `at` is part of, which may begin with the plain unit before it, added
    /// already, if that is not before `from`. Returns the place behind it, `from` at the least.
    qint64 addJoined(qint64 from, qint64 at)
    {
        const qint64 start = qMax(from, at - 1);
        const TextLayout::Character found = m_layout.character(m_text, m_size, start);
        m_widths.add(found.width);
        if (found.end > start + 1)
            m_widths.add(0);
        std::fill(m_x.data() + start + 1, m_x.data() + found.end + 1, m_x[start] + found.width);
        return found.end;
    }
    /// Goes from the row's start to that of the last row of its line, whose end is `end`.
    void addRows(qint64 end)
    {
        while (m_layout.wraps() && widthFrom(m_row, end) > m_layout.limit()) {
            const qint64 next = breakBehind(m_row, end);
            if (next == end)
                return;
            m_row = next;
            ++m_breaks;
        }
    }
    /// Where the row that begins at `row` ends at the latest, if the units up to `end` are too wide for it:
    /// the first of them that reaches beyond the limit, but for the row's first one; none that is 0 wide.
    qint64 breakBehind(qint64 row, qint64 end) const
    {
        constexpr qint64 stride = 8;
        const qint32 *const x = m_x.data();
        const Subpixels reach = x[row] + m_layout.limit();
        qint64 i = row;
        while (i + stride <= end && x[i + stride] <= reach)
            i += stride;
        while (x[i + 1] <= reach)
            ++i;
        if (x[i] > x[row])
            return i;
        do
            ++i;
        while (i < end && x[i + 1] == x[i]);
        return i;
    }

    const char16_t *m_text;
    qint64 m_size;
    const TextLayout &m_layout;
    PlainWidths m_plain;
    Summing m_sum;
    WidthRange m_widths;
    QVarLengthArray<qint32, NodeSizes().leafUnits + 1> m_x; ///< before each unit; TABs and LFs are 0 wide
    qint64 m_cut = 0; ///< behind the last TAB or LF
    bool m_hasTab = false;
    qint64 m_row = -1; ///< start of the last row behind the first LF; -1: there is none
    qint64 m_breaks = 0;
};

TextSummary summed(const char16_t *text, qint64 size, const TextLayout &layout)
{
    return AnySum(text, size, layout).make();
}

} // namespace

TextSummary summaryOf(const TextLeaf &leaf, const TextLayout &layout)
{
    return leaf.visit([&](const auto *text) { return summed(text, leaf.size, layout); });
}

qint64 unitAcross(
    const TextTree &leaf, const TextLayout &layout, qint64 from, qint64 to, Subpixels &x, Subpixels target)
{
    return leafOf(leaf).visit([&](const auto *text) {
        UnitWidths widths(text, leaf.units(), layout);
        qint64 i = from;
        for (; i < to; ++i) {
            const Subpixels after = text[i] == '\t' ? Reach::nextStop(x, layout.tabStop()) : x + widths.at(i);
            if (after > target)
                break;
            x = after;
        }
        return i;
    });
}

qint64 lineEndsBefore(const TextLeaf &leaf, qint64 to)
{
    return leaf.visit([to](const auto *text) -> qint64 { return std::count(text, text + to, '\n'); });
}

qint64 behindLineEnd(const TextLeaf &leaf, qint64 count)
{
    return leaf.visit([&](const auto *text) {
        NextUnit lineEnd(text, leaf.size, '\n');
        qint64 position = 0;
        for (; count > 0; --count)
            position = lineEnd.at(position) + 1;
        return position;
    });
}
