#include "text/treebuilder.h"

#include "text/rowflow.h"

#include <algorithm>
#include <utility>

namespace {

/// Units behind a leaf's end that are waited for: whether a character goes on there is seen from one code
/// point.
constexpr qint64 aheadOfCut = 2;

} // namespace

void TreeBuilder::append(QByteArrayView latin1)
{
    const qint64 full = m_layout.sizes().leafUnits;
    while (!latin1.isEmpty()) {
        if (pending() == 0 && latin1.size() >= full && !isAnySpelled()) {
            addLeaf(TextLeaf::fromText(latin1.first(full), m_memory));
            latin1 = latin1.sliced(full);
            continue;
        }
        const qint64 count = qMin<qint64>(latin1.size(), room());
        if (m_wide)
            m_units.append(QLatin1StringView(latin1.first(count)));
        else
            m_bytes.append(latin1.first(count));
        latin1 = latin1.sliced(count);
        if (room() == 0)
            flush();
    }
}

void TreeBuilder::append(QStringView text)
{
    const qint64 full = m_layout.sizes().leafUnits;
    while (!text.isEmpty()) {
        widen();
        if (m_units.isEmpty() && text.size() >= room() && !isAnySpelled()) {
            const qint64 cut = cutPlace(text, full, m_layout.sizes());
            addLeaf(TextLeaf::fromText(text.first(cut), cut, m_memory));
            text = text.sliced(cut);
            continue;
        }
        qint64 count = qMin<qint64>(text.size(), room());
        m_units.append(text.first(count));
        if (room() == 0) {
            flush();
            count -= giveBack(count);
        }
        text = text.sliced(count);
    }
}

void TreeBuilder::spell(QByteArrayView bytes)
{
    m_spellings.append(pending(), bytes);
}

std::optional<QByteArray> TreeBuilder::lastSpelling() const
{
    const qsizetype last = m_spellings.count() - 1;
    if (last < 0 || m_spellings.place(last) < pending())
        return std::nullopt;
    return QByteArray(m_spellings.bytes(last).toByteArray());
}

/// Units that are still to come before a leaf is made of what is pending.
qint64 TreeBuilder::room() const
{
    return m_layout.sizes().leafUnits + (m_wide ? aheadOfCut : 0) - pending();
}

/// From here on what is pending is held as UTF-16.
void TreeBuilder::widen()
{
    if (m_wide)
        return;
    m_wide = true;
    m_units.append(QLatin1StringView(m_bytes));
    m_bytes.resize(0);
}

/// Makes a leaf of what is pending, but for what may belong to a character that goes on behind it.
void TreeBuilder::flush()
{
    if (!m_wide) {
        addPendingLeaf(TextLeaf::fromText(QByteArrayView(m_bytes), m_memory));
        m_bytes.resize(0);
        return;
    }
    const qint64 full = m_layout.sizes().leafUnits;
    const qint64 cut = m_units.size() > full ? cutPlace(m_units, full, m_layout.sizes()) : m_units.size();
    addPendingLeaf(TextLeaf::fromText(QStringView(m_units).first(cut), cut, m_memory));
    m_units.remove(0, cut);
    narrow();
}

/// Holds what is pending in bytes again if that is possible.
void TreeBuilder::narrow()
{
    m_wide = std::any_of(m_units.cbegin(), m_units.cend(), [](QChar unit) { return unit.unicode() > 0xff; });
    if (m_wide)
        return;
    m_bytes = m_units.toLatin1();
    m_units.resize(0);
}

/// Forgets what a leaf has left over, to be read again: whole leaves are made of the text without a detour.
/// Nothing if it is not all of the last `count` units. Returns how many units it was.
qint64 TreeBuilder::giveBack(qint64 count)
{
    const qint64 left = pending();
    if (left > count)
        return 0;
    m_units.resize(0);
    m_bytes.resize(0);
    m_wide = false;
    return left;
}

void TreeBuilder::addPendingLeaf(TextNodeRef leaf)
{
    if (isAnySpelled()) {
        auto &text = static_cast<TextLeaf &>(*leaf.get());
        text.setSpellings(m_spellings.part(0, text.size));
        m_spellings = m_spellings.edited(0, text.size, 0);
    }
    addLeaf(std::move(leaf));
}

void TreeBuilder::addLeaf(TextNodeRef leaf)
{
    TextTree next = leafTree(std::move(leaf), m_layout);
    if (!m_last.isEmpty() && joinsAcross(m_last, next))
        next = concatenate(std::exchange(m_last, {}), std::move(next), m_layout);
    if (!m_last.isEmpty())
        add(std::move(m_last), 0);
    m_last = takeLastLeaf(std::move(next));
}

/// Adds all leaves of a small tree but the last one.
TextTree TreeBuilder::takeLastLeaf(TextTree &&tree)
{
    if (tree.isLeaf())
        return std::move(tree);
    TextInner &node = innerOf(tree);
    for (TextTree *leaf = node.begin(); leaf + 1 != node.end(); ++leaf)
        add(std::move(*leaf), 0);
    return std::move(node.end()[-1]);
}

void TreeBuilder::add(TextTree &&tree, size_t height)
{
    if (m_levels.size() <= height)
        m_levels.resize(height + 1);
    m_levels[height].append(std::move(tree));
    if (m_levels[height].size() < m_layout.sizes().children)
        return;
    TextTree parent = parentOf(std::move(m_levels[height]), m_layout);
    m_levels[height].clear();
    prepareTable(parent, m_layout);
    add(std::move(parent), height + 1);
}

TextTree TreeBuilder::finish()
{
    while (pending() > 0)
        flush();
    TextTree result;
    while (!m_levels.empty()) {
        if (!m_levels.back().isEmpty())
            result = concatenate(std::move(result), parentOf(std::move(m_levels.back()), m_layout), m_layout);
        m_levels.pop_back();
    }
    result = concatenate(std::move(result), std::move(m_last), m_layout);
    m_last = {};
    return result;
}

TextTree treeOf(QStringView text, const TextLayout &layout)
{
    TreeBuilder builder(layout);
    builder.append(text);
    return builder.finish();
}
