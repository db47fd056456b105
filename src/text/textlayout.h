#pragma once

#include "text/textstore.h"

/// How x moves over a text without LF, whatever x it is entered with: a TAB forgets what was before it
/// but for the tab stop it reaches, so two widths say it all, and texts compose in O(1).
struct Reach {
    static constexpr Subpixels noTab = -1;

    Subpixels before = 0; ///< width up to the first TAB, or of the whole text
    Subpixels after = noTab; ///< width behind the stop that the first TAB reaches

    static Subpixels nextStop(Subpixels x, Subpixels tabStop) { return (x / tabStop + 1) * tabStop; }
    bool hasTab() const { return after != noTab; }
    Subpixels from(Subpixels x, Subpixels tabStop) const
    {
        return hasTab() ? nextStop(x + before, tabStop) + after : x + before;
    }
    void add(Subpixels width) { (hasTab() ? after : before) += width; }
    void addTab(Subpixels tabStop) { after = hasTab() ? nextStop(after, tabStop) : 0; }
    Reach then(const Reach &next, Subpixels tabStop) const
    {
        return hasTab() ? Reach{ before, next.from(after, tabStop) }
                        : Reach{ before + next.before, next.after };
    }
};

/// What wrapping does to a text that is entered with a given x.
struct RowFlow {
    qint64 breaks = 0; ///< rows that end in the text by wrapping
    Subpixels exit = 0; ///< x behind the text
};

/// All that is remembered of a text, so that nobody has to look at it again.
///
/// "Head" is the text before the first LF, or the whole text if there is none: what happens there depends on
/// the x with which the text is entered. Behind the first LF nothing does.
///
/// A text has one for each leaf, which is most of what it takes beside its units: so what is within a wrapped
/// row is held in 32 bits, see LayoutRule.
struct TextSummary {
    static constexpr int anyWidth = -1; ///< nothing but TAB and LF

    qint64 units = 0;
    qint64 lineEnds = 0; ///< LFs
    Reach head;
    Subpixels tail = 0; ///< unwrapped x at the end, if there is an LF
    Subpixels widest = 0; ///< of the unwrapped lines that begin and end in the text
    qint64 breaks = 0; ///< rows that end by wrapping behind the first LF
    qint32 tailFill = 0; ///< wrapped x at the end, if there is an LF
    int widestUnit = 0; ///< the widest advance; the tab stop if there is a TAB
    /// The one advance (> 0) of all units but TAB and LF, each a character of its own; 0 if they differ.
    int even = anyWidth;
    /// The last answer for the head: wrapped x at its start, and what came of it. -1: none yet.
    mutable qint32 askedFill = -1;
    mutable qint32 answeredExit = 0;
    mutable quint32 answeredBreaks = 0;
};

/// What a tree is built by: a layout rule made ready for loops over text, and the sizes of nodes.
class TextLayout {
public:
    TextLayout(const LayoutRule &rule, const NodeSizes &sizes);
    /// The same layout with the same widths in another table: what was measured by one was measured by both.
    TextLayout(const TextLayout &other, const AdvanceTable &advances);

    const LayoutRule &rule() const { return m_rule; }
    const AdvanceTable &advances() const { return *m_advances; }
    const NodeSizes &sizes() const { return m_sizes; }
    bool wraps() const { return m_rule.limit > 0; }
    Subpixels limit() const { return m_rule.limit; }
    Subpixels tabStop() const { return m_rule.tabStop; }
    /// Told apart from every other layout there was: which layout a tree was measured by.
    quint64 stamp() const { return m_stamp; }
    /// The one width (> 0) of U+0020..U+007E, 0 if they differ.
    int asciiWidth() const { return m_asciiWidth; }

    /// Whether whole characters without LF end within the limit wherever their TABs come to stand. No:
    /// perhaps they do as well, where there are joined ones among them.
    bool isWithinLimit(QStringView text) const;

    int width(uchar character) const { return m_latin1[character]; }
    int width(char16_t unit) const { return m_advances->advance(unit); }
    /// As AdvanceTable::units().
    const quint16 *knownWidths() const { return m_advances->units(); }
    struct Character {
        qint64 end = 0; ///< the unit behind it
        int width = 0; ///< all of it
    };
    /// What begins at unit `i` of a text of `size` units, as far as it lies in it; no TAB or LF.
    Character character(const char16_t *text, qint64 size, qint64 i) const;

private:
    LayoutRule m_rule;
    NodeSizes m_sizes;
    const AdvanceTable *m_advances; ///< the rule's, or one in which everything is 1 pixel wide
    quint64 m_stamp;
    int m_asciiWidth = 0;
    std::array<quint16, 256> m_latin1;
};
