#pragma once

#include "text/spellings.h"
#include "text/textlayout.h"
#include "text/textnoderef.h"

#include <QVarLengthArray>

#include <memory>
#include <vector>

class LeafMemory;

/// Text on its way into a leaf.
struct LeafText {
    QVarLengthArray<char16_t, 8192> units;
    Spellings spellings;
    explicit LeafText(qint64 size)
        : units(size)
    {
    }
    QStringView view() const { return { units.data(), units.size() }; }
};

/// A part of a text: one byte a unit, or two when `wide`. The units follow the object in memory, of which a
/// gigabyte of text has a quarter of a million.
struct TextLeaf : TextNode {
    const bool wide;
    const bool isInLeafMemory; ///< else in the heap
    qint32 size = 0; ///< units in use
    const qint32 capacity; ///< units there is room for
    std::unique_ptr<const Spellings> spellings; ///< null: there are none

    /// In the heap, or in such a memory where it is given one and that has room.
    static TextLeaf *create(bool wide, qint64 capacity, LeafMemory *memory = nullptr);
    static void destroy(TextLeaf *leaf);
    /// As narrow as the text allows.
    static TextNodeRef fromText(QStringView text) { return fromText(text, text.size()); }
    static TextNodeRef fromText(QStringView text, qint64 capacity, LeafMemory *memory = nullptr);
    static TextNodeRef fromText(QByteArrayView latin1, LeafMemory *memory = nullptr);
    /// Units `from`..`to` of a text.
    static TextNodeRef fromText(const LeafText &text, qint64 from, qint64 to, qint64 capacity);

    uchar *bytes() { return reinterpret_cast<uchar *>(this + 1); }
    const uchar *bytes() const { return reinterpret_cast<const uchar *>(this + 1); }
    char16_t *units() { return reinterpret_cast<char16_t *>(this + 1); }
    const char16_t *units() const { return reinterpret_cast<const char16_t *>(this + 1); }
    QByteArrayView latin1() const { return { bytes(), size }; }
    QStringView utf16() const { return { units(), size }; }
    char16_t at(qint64 i) const { return wide ? units()[i] : bytes()[i]; }
    /// Copies units `from`..`from + count` to `to`, widened.
    void copyTo(char16_t *to, qint64 from, qint64 count) const;
    TextNodeRef part(qint64 from, qint64 count) const;
    void setSpellings(Spellings &&some);
    /// That the heap has given for it and its units.
    qint64 heapBytes() const { return isInLeafMemory ? 0 : qint64(bytesFor(wide, capacity)); }

    /// Calls `function(text)` with the units as uchar or as char16_t.
    template <typename Function> decltype(auto) visit(Function &&function) const
    {
        return wide ? function(units()) : function(bytes());
    }

private:
    static size_t bytesFor(bool wide, qint64 capacity)
    {
        return sizeof(TextLeaf) + size_t(capacity << (wide ? 1 : 0));
    }
    TextLeaf(bool isWide, bool isInMemory, qint32 room)
        : TextNode(0)
        , wide(isWide)
        , isInLeafMemory(isInMemory)
        , capacity(room)
    {
    }
};

/// A tree, or an inner node's child: the root node and what is known of its text. No node: no text.
struct TextTree {
    TextNodeRef node;
    TextSummary summary;

    qint64 units() const { return summary.units; }
    /// The offset behind its last unit.
    Offset end() const { return Offset(summary.units); }
    bool isEmpty() const { return !node; }
    int height() const { return node.get()->height; }
    bool isLeaf() const { return height() == 0; }
};

using TextTrees = QVarLengthArray<TextTree, 8>;

struct RowTable;

/// A node whose children are one level lower.
struct TextInner : TextNode {
    static constexpr int arraySize = NodeSizes().children;

    qint32 count = 0;
    enum class TableState : quint8 {
        Unasked, ///< nobody has asked for rows since the text changed
        Asked, ///< somebody has: the next one gets a table
        Tried ///< `table` is what can be had
    };
    TableState tableState = TableState::Unasked;
    TextInner *beforeInBin = nullptr; ///< see NodeBin
    quint64 stamp; ///< layout by which the children's summaries were made
    std::unique_ptr<RowTable> table;
    std::array<TextTree, arraySize> children;

    TextInner(qint32 nodeHeight, quint64 layoutStamp);
    ~TextInner();
    TextInner(const TextInner &) = delete;
    TextInner &operator=(const TextInner &) = delete;

    TextTree *begin() { return children.data(); }
    TextTree *end() { return children.data() + count; }
    const TextTree *begin() const { return children.data(); }
    const TextTree *end() const { return children.data() + count; }
    /// To be called when a child has changed.
    void forgetTable();
};

inline TextLeaf &leafOf(const TextTree &tree)
{
    return static_cast<TextLeaf &>(*tree.node.get());
}
inline TextInner &innerOf(const TextTree &tree)
{
    return static_cast<TextInner &>(*tree.node.get());
}
