#pragma once

#include "text/textnode.h"

#include <cstring>

/// Where units of one kind are: remembers the next place, so that walking a leaf searches it once.
template <typename Unit> class NextUnit {
public:
    NextUnit(const Unit *text, qint64 size, char wanted)
        : m_text(text)
        , m_size(size)
        , m_wanted(wanted)
    {
    }
    /// The first place at or behind `from`; the size if there is none.
    qint64 at(qint64 from)
    {
        if (m_next < from)
            m_next = find(from);
        return m_next;
    }

private:
    qint64 find(qint64 from) const
    {
        if constexpr (sizeof(Unit) == 1) {
            const void *found = memchr(m_text + from, m_wanted, size_t(m_size - from));
            return found ? static_cast<const Unit *>(found) - m_text : m_size;
        } else {
            const qint64 found = QStringView(m_text, m_size).indexOf(QLatin1Char(m_wanted), from);
            return found < 0 ? m_size : found;
        }
    }

    const Unit *m_text;
    qint64 m_size;
    char m_wanted;
    qint64 m_next = -1;
};

/// Some units of a text taken at once: their widths come from a table, in a loop without branches.
struct PlainBlock {
    static constexpr qint64 size = 8;

    /// Of the units from `text` on, by AdvanceTable::units().
    PlainBlock(const char16_t *text, const quint16 *known)
    {
        for (qint64 i = 0; i < size; ++i) {
            const int unit = known[text[i]];
            m_carries |= unit + 1;
            width += unit;
            narrowest = qMin(narrowest, unit);
            widest = qMax(widest, unit);
        }
    }
    /// They are plain characters all.
    bool isPlain() const { return m_carries <= AdvanceTable::unknown; }

    int width = 0;
    int narrowest = AdvanceTable::unknown;
    int widest = 0;

private:
    int m_carries = 0; ///< above the largest width where one was unknown
};

/// Widths of a leaf's units in order: a character's width is that of its first unit, its others have none.
template <typename Unit> class UnitWidths {
public:
    UnitWidths(const Unit *text, qint64 size, const TextLayout &layout)
        : m_text(text)
        , m_size(size)
        , m_layout(layout)
        , m_known(layout.knownWidths())
    {
    }

    /// Begins with a character's first unit and never goes back. TAB and LF are not asked for.
    int at(qint64 i)
    {
        if constexpr (sizeof(Unit) == 1) {
            return m_layout.width(m_text[i]);
        } else {
            if (isInside(i))
                return i == m_begin ? m_width : 0;
            const quint16 width = m_known[m_text[i]];
            const bool isPlain = width != AdvanceTable::unknown
                && (i + 1 == m_size || m_known[m_text[i + 1]] != AdvanceTable::unknown
                    || m_text[i + 1] == u'\n' || m_text[i + 1] == u'\t');
            return isPlain ? width : readCharacter(i);
        }
    }
    /// Whether the unit belongs to the last character that was not plain.
    bool isInside(qint64 i) const { return i < m_end; }

private:
    int readCharacter(qint64 i)
    {
        const TextLayout::Character character = m_layout.character(m_text, m_size, i);
        m_begin = i;
        m_end = character.end;
        return m_width = character.width;
    }

    const Unit *m_text;
    qint64 m_size;
    const TextLayout &m_layout;
    const quint16 *m_known;
    qint64 m_begin = 0; ///< the last character that was not plain
    qint64 m_end = 0;
    int m_width = 0;
};

/// Walks the row ends of one leaf, wrapped or not.
template <typename Unit> class RowScan {
public:
    enum class Event { None, Break, LineEnd };

    /// Begins at unit `begin`, a character's first one, x being `x` there; `even` as in the leaf's summary.
    RowScan(const Unit *text, qint64 size, const TextLayout &layout, int even, qint64 begin, Subpixels x)
        : m_text(text)
        , m_size(size)
        , m_layout(layout)
        , m_even(even)
        , m_position(begin)
        , m_x(x)
        , m_lineEnd(text, size, '\n')
        , m_tab(text, size, '\t')
        , m_widths(text, size, layout)
    {
    }

    /// Goes to the start of the next row, or to the end of the leaf.
    Event next()
    {
        while (m_position < m_size) {
            const Event event = step();
            if (event != Event::None)
                return event;
        }
        return Event::None;
    }
    /// The unit with which the row just found begins.
    qint64 position() const { return m_position; }
    Subpixels x() const { return m_x; }

private:
    Event step()
    {
        if (!m_layout.wraps())
            m_position = m_lineEnd.at(m_position);
        if (m_position == m_size)
            return Event::None;
        if constexpr (sizeof(Unit) == 2) {
            const bool isPlain = m_even <= 0 && !m_widths.isInside(m_position);
            if (isPlain && takePlain() == Event::Break)
                return Event::Break;
        }
        if (m_text[m_position] == '\n') {
            ++m_position;
            m_x = 0;
            return Event::LineEnd;
        }
        if (m_text[m_position] == '\t')
            return take(Reach::nextStop(m_x, m_layout.tabStop()));
        return m_even > 0 ? stepEven() : take(m_x + m_widths.at(m_position));
    }
    /// Goes on to the first unit that is not plain or is followed by one, unless a break comes before.
    Event takePlain()
    {
        const quint16 *known = m_layout.knownWidths();
        const Subpixels limit = m_layout.limit();
        const qint64 last = m_size - 1;
        qint64 position = m_position;
        Subpixels x = m_x;
        for (; position + PlainBlock::size < last; position += PlainBlock::size) {
            const PlainBlock block(m_text + position, known);
            const bool isLastPlain = known[m_text[position + PlainBlock::size]] != AdvanceTable::unknown;
            if (!block.isPlain() || !isLastPlain || x + block.width > limit)
                break;
            x += block.width;
        }
        for (int width = known[m_text[position]]; position < last && width != AdvanceTable::unknown;
             ++position) {
            const int next = known[m_text[position + 1]];
            if (next == AdvanceTable::unknown)
                break;
            if (x + width > limit && x > 0 && width > 0) {
                m_position = position;
                return breakHere();
            }
            x += width;
            width = next;
        }
        m_position = position;
        m_x = x;
        return Event::None;
    }
    Event take(Subpixels after)
    {
        if (m_x > 0 && after > m_x && after > m_layout.limit())
            return breakHere();
        m_x = after;
        ++m_position;
        return Event::None;
    }
    Event stepEven()
    {
        const qint64 count = qMin(m_lineEnd.at(m_position), m_tab.at(m_position)) - m_position;
        const qint64 room = m_x == 0 ? qMax<qint64>(1, m_layout.limit() / m_even)
                                     : qMax<qint64>(0, m_layout.limit() - m_x) / m_even;
        m_position += qMin(room, count);
        if (count > room)
            return breakHere();
        m_x += count * m_even;
        return Event::None;
    }
    Event breakHere()
    {
        m_x = 0;
        return Event::Break;
    }

    const Unit *m_text;
    qint64 m_size;
    const TextLayout &m_layout;
    int m_even;
    qint64 m_position;
    Subpixels m_x;
    NextUnit<Unit> m_lineEnd;
    NextUnit<Unit> m_tab;
    UnitWidths<Unit> m_widths;
};

/// Calls `function(scan)` with a RowScan over the leaf.
template <typename Function>
decltype(auto) scanRows(
    const TextTree &leaf, const TextLayout &layout, qint64 begin, Subpixels x, Function &&function)
{
    return leafOf(leaf).visit([&](const auto *text) {
        RowScan scan(text, leaf.units(), layout, leaf.summary.even, begin, x);
        return function(scan);
    });
}

/// Everything the tree wants to know of a leaf.
TextSummary summaryOf(const TextLeaf &leaf, const TextLayout &layout);

/// The first of a leaf's units `from`..`to`, none of them an LF, behind which x is more than `target`, or
/// `to`; `x` becomes that before it.
qint64 unitAcross(
    const TextTree &leaf, const TextLayout &layout, qint64 from, qint64 to, Subpixels &x, Subpixels target);

/// LFs before unit `to`.
qint64 lineEndsBefore(const TextLeaf &leaf, qint64 to);
/// The unit behind LF number `count` (from 1), which there must be.
qint64 behindLineEnd(const TextLeaf &leaf, qint64 count);
