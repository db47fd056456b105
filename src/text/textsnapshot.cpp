#include "text/textsnapshot.h"

#include "text/leafchunk.h"

#include <unordered_map>

namespace {

/// A node in its text. Nodes are named by plain pointers here: the snapshot holds them.
struct PlacedNode {
    const TextNode *node = nullptr;
    Offset start;
    qint64 units = 0;

    Offset end() const { return start + units; }
    bool isLeaf() const { return node->height == 0; }
    bool isInside(TextRange range) const { return start >= range.start && end() <= range.end; }
    bool isOutside(TextRange range) const { return end() <= range.start || start >= range.end; }
};

PlacedNode rootOf(const TextSnapshot &text)
{
    return { text.root(), {}, text.length() };
}

template <typename Visit> void forEachChild(const PlacedNode &inner, Visit &&visit)
{
    Offset start = inner.start;
    for (const TextTree &child : static_cast<const TextInner &>(*inner.node)) {
        visit(PlacedNode{ child.node.get(), start, child.units() });
        start += child.units();
    }
}

/// Which nodes the sources have, and where.
class SharedNodes {
public:
    explicit SharedNodes(std::initializer_list<TextExtract> sources)
    {
        int number = 0;
        for (const TextExtract &source : sources) {
            if (source.text.root())
                add(source, number, rootOf(source.text));
            ++number;
        }
    }

    std::optional<TextPart> find(const PlacedNode &node) const
    {
        const auto found = m_places.find(node.node);
        if (found == m_places.end())
            return std::nullopt;
        return TextPart{ found->second.source, found->second.offset, node.units };
    }

private:
    struct Place {
        int source;
        Offset offset;
    };

    void add(const TextExtract &source, int number, const PlacedNode &node)
    {
        if (node.isOutside(source.range))
            return;
        if (node.isInside(source.range))
            m_places.try_emplace(node.node, Place{ number, node.start });
        if (!node.isLeaf())
            forEachChild(node, [&](const PlacedNode &child) { add(source, number, child); });
    }

    std::unordered_map<const TextNode *, Place> m_places;
};

class PartList {
public:
    PartList(TextRange range, const SharedNodes &shared)
        : m_range(range)
        , m_shared(shared)
    {
    }

    void add(const PlacedNode &node)
    {
        if (node.isOutside(m_range))
            return;
        if (const auto shared = node.isInside(m_range) ? m_shared.find(node) : std::nullopt)
            return append(*shared);
        if (!node.isLeaf())
            return forEachChild(node, [this](const PlacedNode &child) { add(child); });
        const Offset start = qMax(node.start, m_range.start);
        append({ TextPart::ownText, start, qMin(node.end(), m_range.end) - start });
    }

    std::vector<TextPart> parts;

private:
    void append(const TextPart &part)
    {
        if (!parts.empty() && parts.back().source == part.source
            && parts.back().offset + parts.back().length == part.offset)
            parts.back().length += part.length;
        else
            parts.push_back(part);
    }

    const TextRange m_range;
    const SharedNodes &m_shared;
};

struct PlacedLeaf {
    const TextLeaf &leaf;
    Offset start;
};

PlacedLeaf leafAt(const TextSnapshot &text, Offset offset)
{
    PlacedNode at = rootOf(text);
    while (!at.isLeaf()) {
        PlacedNode next;
        forEachChild(at, [&](const PlacedNode &child) {
            if (offset >= child.start && offset < child.end())
                next = child;
        });
        at = next;
    }
    return { static_cast<const TextLeaf &>(*at.node), at.start };
}

} // namespace

TextSnapshot::TextSnapshot(const TextStore &store)
    : TextSnapshot(store.piece({}, store.length()), endSpellingOf(store))
{
}

TextSnapshot::TextSnapshot(TextPiece text, std::optional<QByteArray> endSpelling)
    : m_text(std::move(text))
    , m_length(m_text.length())
    , m_endSpelling(std::move(endSpelling))
{
}

std::optional<QByteArray> endSpellingOf(const TextStore &store)
{
    const auto spelling = store.spelledChunkAt(store.end()).spelling;
    return spelling ? std::optional(spelling->toByteArray()) : std::nullopt;
}

char16_t TextSnapshot::at(Offset offset) const
{
    const PlacedLeaf place = leafAt(*this, offset);
    return place.leaf.at(offset - place.start);
}

TextChunk TextSnapshot::chunkAt(Offset offset) const
{
    const PlacedLeaf place = leafAt(*this, offset);
    return chunkOf(place.leaf, offset, place.start);
}

TextChunk TextSnapshot::chunkBefore(Offset end) const
{
    const PlacedLeaf place = leafAt(*this, end - 1);
    TextChunk chunk = chunkOf(place.leaf, place.start, place.start);
    chunk.truncate(end - place.start);
    return chunk;
}

TextChunk TextSnapshot::spelledChunkAt(Offset offset) const
{
    Q_ASSERT(offset >= Offset() && offset <= end());
    if (offset == end())
        return endChunk(offset, m_endSpelling);
    const PlacedLeaf place = leafAt(*this, offset);
    return spelledChunkOf(place.leaf, offset, place.start);
}

std::vector<TextPart> partsOf(const TextExtract &extract, std::initializer_list<TextExtract> sources)
{
    const SharedNodes shared(sources);
    PartList list(extract.range, shared);
    if (extract.text.root())
        list.add(rootOf(extract.text));
    return std::move(list.parts);
}
