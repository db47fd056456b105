#include "platform/text/openleaf.h"

#include "platform/text/leaflayout.h"

#include <algorithm>

namespace {

using LeafText = QVarLengthArray<char16_t, 8192>;

LeafText editedText(const TextLeaf &leaf, qint64 offset, qint64 removed, QStringView inserted)
{
    LeafText text(leaf.size - removed + inserted.size());
    leaf.copyTo(text.data(), 0, offset);
    std::copy_n(inserted.utf16(), inserted.size(), text.data() + offset);
    leaf.copyTo(text.data() + offset + inserted.size(), offset + removed, leaf.size - offset - removed);
    return text;
}

/// Whether no surrogate pair gets cut at a leaf's ends.
bool keepsPairs(const TextLeaf &leaf, qint64 offset, qint64 removed, QStringView inserted)
{
    const qint64 size = leaf.size - removed + inserted.size();
    const auto unitOfResult = [&](qint64 i) {
        if (i < offset)
            return leaf.at(i);
        i -= offset;
        return i < inserted.size() ? inserted[i].unicode() : leaf.at(offset + removed + i - inserted.size());
    };
    return !QChar::isLowSurrogate(unitOfResult(0)) && !QChar::isHighSurrogate(unitOfResult(size - 1));
}

/// Room for a leaf that is being typed into.
qint64 roomFor(qint64 size)
{
    return qMin<qint64>(TextLeaf::maxSize(), size + size / 8 + 16);
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

void rebuildLeaf(TextTree &tree, qint64 offset, qint64 removed, QStringView inserted)
{
    const LeafText text = editedText(leafOf(tree), offset, removed, inserted);
    tree.node = TextLeaf::fromText(QStringView(text.data(), text.size()), roomFor(text.size()));
}

void editLeaf(TextTree &tree, qint64 offset, qint64 removed, QStringView inserted)
{
    if (!fitsInPlace(tree, offset, removed, inserted))
        return rebuildLeaf(tree, offset, removed, inserted);
    TextLeaf &leaf = leafOf(tree);
    if (leaf.wide)
        replaceUnits(leaf.units(), leaf.size, offset, removed, inserted);
    else
        replaceUnits(leaf.bytes(), leaf.size, offset, removed, inserted);
    leaf.size += qint32(inserted.size() - removed);
}

/// Measures the leaf at `offset` and sums up all above it.
void sumUpPath(TextTree &tree, qint64 offset, const TextLayout &layout)
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

void OpenLeaf::open(TextTree &tree, qint64 offset)
{
    qint64 inLeaf = offset;
    m_leaf = &tree;
    m_parent = nullptr;
    while (!m_leaf->isLeaf()) {
        detach(*m_leaf);
        m_parent = &innerOf(*m_leaf);
        m_parent->forgetTable();
        m_leaf = &childAt(*m_leaf, inLeaf);
    }
    m_start = offset - inLeaf;
}

bool OpenLeaf::replace(
    TextTree &tree, qint64 offset, qint64 removed, QStringView inserted, const TextLayout &layout)
{
    if (!holds(offset, offset + removed)) {
        close(tree, layout);
        if (!tree.isEmpty())
            open(tree, offset);
    }
    if (!holds(offset, offset + removed) || !edit(offset - m_start, removed, inserted, layout)) {
        close(tree, layout);
        return false;
    }
    m_growth += inserted.size() - removed;
    return true;
}

/// False if the leaf would become too small, or too large and its parent has no room for another.
bool OpenLeaf::edit(qint64 offset, qint64 removed, QStringView inserted, const TextLayout &layout)
{
    const qint64 size = leaf().size - removed + inserted.size();
    if (size < (m_parent ? TextLeaf::minSize() : 1)
        || (m_parent && !keepsPairs(leaf(), offset, removed, inserted)))
        return false;
    if (size > TextLeaf::maxSize())
        return divide(offset, removed, inserted, layout);
    editLeaf(*m_leaf, offset, removed, inserted);
    return true;
}

/// Makes two leaves of the open one. The first of them is open then.
bool OpenLeaf::divide(qint64 offset, qint64 removed, QStringView inserted, const TextLayout &layout)
{
    const qint64 size = leaf().size - removed + inserted.size();
    if (!m_parent || m_parent->count == TextInner::maxCount() || size > 2 * TextLeaf::maxSize() - 2)
        return false;
    const LeafText text = editedText(leaf(), offset, removed, inserted);
    const QStringView view(text.data(), text.size());
    const qsizetype half = view.size() / 2;
    const qsizetype middle = isPair(text[half - 1], text[half]) ? half + 1 : half;
    std::move_backward(m_leaf + 1, m_parent->end(), m_parent->end() + 1);
    ++m_parent->count;
    m_leaf[0].node = TextLeaf::fromText(view.first(middle), roomFor(middle));
    m_leaf[1] = leafTree(TextLeaf::fromText(view.sliced(middle)), layout);
    return true;
}

void OpenLeaf::close(TextTree &tree, const TextLayout &layout)
{
    if (!m_leaf)
        return;
    m_leaf = nullptr;
    m_growth = 0;
    sumUpPath(tree, m_start, layout);
}
