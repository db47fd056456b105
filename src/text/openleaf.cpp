#include "text/openleaf.h"

#include "text/codepoint.h"
#include "text/graphemes.h"
#include "text/leaflayout.h"

#include <algorithm>
#include <utility>

namespace {

LeafText editedText(const TextLeaf &leaf, qint64 offset, qint64 removed, QStringView inserted)
{
    LeafText text(leaf.size - removed + inserted.size());
    char16_t *const units = text.units.data();
    leaf.copyTo(units, 0, offset);
    std::copy_n(inserted.utf16(), inserted.size(), units + offset);
    leaf.copyTo(units + offset + inserted.size(), offset + removed, leaf.size - offset - removed);
    if (leaf.spellings)
        text.spellings = leaf.spellings->edited(offset, removed, inserted.size());
    return text;
}

/// A leaf's text as an edit would leave it.
class EditedLeaf {
public:
    EditedLeaf(const TextLeaf &leaf, qint64 offset, qint64 removed, QStringView inserted)
        : m_leaf(leaf)
        , m_offset(offset)
        , m_removed(removed)
        , m_inserted(inserted)
    {
    }

    /// Whether no surrogate pair and no other character goes on across the leaf's ends.
    bool isWhole(char32_t before, char32_t behind) const
    {
        const qint64 last = size() - 1;
        if (QChar::isLowSurrogate(at(0)) || QChar::isHighSurrogate(at(last)))
            return false;
        const auto unit = [this](qint64 i) { return at(i); };
        const bool keepsStart = m_offset >= 2 && standsAlone(at(0));
        const bool keepsEnd = m_offset + m_removed + 2 <= m_leaf.size && standsAlone(at(last));
        return (keepsStart || !mayJoin(before, codePointFrom(0, size(), unit)))
            && (keepsEnd || !mayJoin(codePointUpTo(size(), unit), behind));
    }

private:
    qint64 size() const { return m_leaf.size - m_removed + m_inserted.size(); }
    char16_t at(qint64 i) const
    {
        if (i < m_offset)
            return m_leaf.at(i);
        i -= m_offset;
        return i < m_inserted.size() ? m_inserted[i].unicode()
                                     : m_leaf.at(m_offset + m_removed + i - m_inserted.size());
    }

    const TextLeaf &m_leaf;
    qint64 m_offset;
    qint64 m_removed;
    QStringView m_inserted;
};

/// Room for a leaf that is being typed into.
qint64 roomFor(qint64 size, const NodeSizes &sizes)
{
    return qMin<qint64>(sizes.leafUnits, size + size / 8 + 16);
}

bool needsWide(QStringView text)
{
    return std::any_of(text.begin(), text.end(), [](QChar unit) { return unit.unicode() > 0xff; });
}

/// Whether units of the width that the leaf has are right for the result.
bool keepsWidth(const TextLeaf &leaf, qint64 offset, qint64 removed, QStringView inserted)
{
    if (!leaf.wide)
        return !needsWide(inserted);
    return removed == 0 || needsWide(inserted) || needsWide(leaf.utf16().first(offset))
        || needsWide(leaf.utf16().sliced(offset + removed));
}

bool fitsInPlace(const TextTree &tree, qint64 offset, qint64 removed, QStringView inserted)
{
    const TextLeaf &leaf = leafOf(tree);
    return !tree.node.isShared() && leaf.size - removed + inserted.size() <= leaf.capacity
        && keepsWidth(leaf, offset, removed, inserted);
}

template <typename Unit>
void replaceUnits(Unit *text, qint64 size, qint64 offset, qint64 removed, QStringView inserted)
{
    memmove(text + offset + inserted.size(), text + offset + removed,
        size_t(size - offset - removed) * sizeof(Unit));
    std::transform(
        inserted.begin(), inserted.end(), text + offset, [](QChar unit) { return Unit(unit.unicode()); });
}

void rebuildLeaf(TextTree &tree, qint64 offset, qint64 removed, QStringView inserted, const NodeSizes &sizes)
{
    const LeafText text = editedText(leafOf(tree), offset, removed, inserted);
    const qint64 size = text.units.size();
    tree.node = TextLeaf::fromText(text, 0, size, roomFor(size, sizes));
}

void editLeaf(TextTree &tree, qint64 offset, qint64 removed, QStringView inserted, const NodeSizes &sizes)
{
    if (!fitsInPlace(tree, offset, removed, inserted))
        return rebuildLeaf(tree, offset, removed, inserted, sizes);
    TextLeaf &leaf = leafOf(tree);
    if (leaf.wide)
        replaceUnits(leaf.units(), leaf.size, offset, removed, inserted);
    else
        replaceUnits(leaf.bytes(), leaf.size, offset, removed, inserted);
    leaf.size += qint32(inserted.size() - removed);
    if (leaf.spellings)
        leaf.setSpellings(leaf.spellings->edited(offset, removed, inserted.size()));
}

/// Measures the leaf at `offset` and sums up all above it.
void sumUpPath(TextTree &tree, Offset offset, const TextLayout &layout)
{
    if (tree.isLeaf()) {
        tree.summary = summaryOf(leafOf(tree), layout);
        return;
    }
    TextTree &child = childAt(tree, offset);
    sumUpPath(child, offset, layout);
    summarise(tree, layout);
}

} // namespace

/// Looks for the leaf that holds `offset` and changes nothing.
void OpenLeaf::find(TextTree &tree, Offset offset)
{
    Offset inLeaf = offset;
    m_leaf = &tree;
    m_parent = nullptr;
    while (!m_leaf->isLeaf()) {
        m_parent = &innerOf(*m_leaf);
        m_leaf = &childAt(*m_leaf, inLeaf);
    }
    m_start = offset - inLeaf.value();
    const Offset end = m_start + leaf().size;
    m_before = m_start > Offset() ? codePointBefore(tree, m_start) : U'\n';
    m_behind = end < tree.end() ? codePointAt(tree, end) : U'\n';
}

/// Makes the path to the leaf the tree's own: what is known of it is about to be wrong.
void OpenLeaf::own(TextTree &tree)
{
    Offset inLeaf = m_start;
    m_leaf = &tree;
    while (!m_leaf->isLeaf()) {
        detach(*m_leaf);
        m_parent = &innerOf(*m_leaf);
        m_parent->forgetTable();
        m_leaf = &childAt(*m_leaf, inLeaf);
    }
    m_isOwned = true;
}

bool OpenLeaf::replace(
    TextTree &tree, Offset offset, qint64 removed, QStringView inserted, const TextLayout &layout)
{
    if (!holds(offset, offset + removed)) {
        close(tree, layout);
        if (!tree.isEmpty())
            find(tree, offset);
    }
    if (!holds(offset, offset + removed) || !canEdit(offset - m_start, removed, inserted, layout.sizes())) {
        close(tree, layout);
        return false;
    }
    if (!m_isOwned)
        own(tree);
    if (!edit(offset - m_start, removed, inserted, layout)) {
        close(tree, layout);
        return false;
    }
    m_growth += inserted.size() - removed;
    return true;
}

/// No if the leaf would become too small, or too large and its parent has no room for another.
bool OpenLeaf::canEdit(qint64 place, qint64 removed, QStringView inserted, const NodeSizes &sizes) const
{
    const qint64 size = leaf().size - removed + inserted.size();
    if (!m_parent)
        return size >= 1 && size <= sizes.leafUnits;
    const bool canDivide = m_parent->count < sizes.children && size <= 2 * sizes.leafUnits - 2;
    return size >= sizes.fewestUnits() && (size <= sizes.leafUnits || canDivide)
        && EditedLeaf(leaf(), place, removed, inserted).isWhole(m_before, m_behind);
}

bool OpenLeaf::edit(qint64 place, qint64 removed, QStringView inserted, const TextLayout &layout)
{
    if (leaf().size - removed + inserted.size() > layout.sizes().leafUnits)
        return divide(place, removed, inserted, layout);
    editLeaf(*m_leaf, place, removed, inserted, layout.sizes());
    return true;
}

/// Makes two leaves of the open one. The first of them is open then. False where no character ends near the
/// middle.
bool OpenLeaf::divide(qint64 place, qint64 removed, QStringView inserted, const TextLayout &layout)
{
    const LeafText text = editedText(leaf(), place, removed, inserted);
    const QStringView view = text.view();
    const qint64 middle = cutPlace(view, view.size() / 2, layout.sizes());
    if (view.size() - middle > layout.sizes().leafUnits)
        return false;
    m_behind = codePointAt(view, middle);
    std::move_backward(m_leaf + 1, m_parent->end(), m_parent->end() + 1);
    ++m_parent->count;
    m_leaf[0].node = TextLeaf::fromText(text, 0, middle, roomFor(middle, layout.sizes()));
    m_leaf[1] = leafTree(TextLeaf::fromText(text, middle, view.size(), view.size() - middle), layout);
    return true;
}

void OpenLeaf::close(TextTree &tree, const TextLayout &layout)
{
    m_leaf = nullptr;
    m_growth = 0;
    if (std::exchange(m_isOwned, false))
        sumUpPath(tree, m_start, layout);
}
