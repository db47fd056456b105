#pragma once

#include "text/texttree.h"

#include <optional>

/// Builds a tree from its text in order, bottom up and with full nodes.
class TreeBuilder {
public:
    /// `layout` is not owned, nor `memory`, where leaves are made in one.
    explicit TreeBuilder(const TextLayout &layout, LeafMemory *memory = nullptr)
        : m_layout(layout)
        , m_memory(memory)
    {
    }

    void append(QByteArrayView latin1);
    void append(QStringView text);
    /// The bytes that the unit appended next was read from.
    void spell(QByteArrayView bytes);
    /// Those told last, when no unit has followed them; to be asked behind finish().
    std::optional<QByteArray> lastSpelling() const;
    /// The finished tree; the builder is empty afterwards.
    TextTree finish();

private:
    qint64 pending() const { return m_wide ? m_units.size() : m_bytes.size(); }
    qint64 room() const;
    void flush();
    bool isAnySpelled() const { return !m_spellings.isEmpty(); }
    void addPendingLeaf(TextNodeRef leaf);
    void widen();
    void narrow();
    qint64 giveBack(qint64 count);
    void addLeaf(TextNodeRef leaf);
    TextTree takeLastLeaf(TextTree &&tree);
    void add(TextTree &&tree, size_t height);

    const TextLayout &m_layout;
    LeafMemory *const m_memory; ///< null: leaves are in the heap
    bool m_wide = false; ///< what does not fill a leaf yet is in m_units, else in m_bytes
    QByteArray m_bytes;
    QString m_units;
    Spellings m_spellings; ///< of what does not fill a leaf yet, and perhaps of the unit behind it
    TextTree m_last; ///< the newest leaf: it may turn out to be too small to stand alone
    std::vector<TextTrees> m_levels; ///< by height: nodes that have no parent yet
};

/// A tree over a text of any length.
TextTree treeOf(QStringView text, const TextLayout &layout);
