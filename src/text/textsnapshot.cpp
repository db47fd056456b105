#include "text/textsnapshot.h"

#include "text/leafchunk.h"

#include <unordered_map>

namespace {

/// A node in its text. Nodes are named by plain pointers here: the snapshot holds them.
struct PlacedNode {
    const TextNode *node = nullptr;
    qint64 start = 0;
    qint64 units = 0;

    qint64 end() const { return start + units; }
    bool isLeaf() const { return node->height == 0; }
    bool isInside(const TextExtract &extract) const { return start >= extract.begin && end() <= extract.end; }
    bool isOutside(const TextExtract &extract) const
    {
        return end() <= extract.begin || start >= extract.end;
    }
};

PlacedNode rootOf(const TextSnapshot &text)
{
    return { text.root(), 0, text.length() };
}

template <typename Visit> void forEachChild(const PlacedNode &inner, Visit &&visit)
{
    qint64 start = inner.start;
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
        qint64 offset;
    };

    void add(const TextExtract &source, int number, const PlacedNode &node)
    {
        if (node.isOutside(source))
            return;
        if (node.isInside(source))
            m_places.try_emplace(node.node, Place{ number, node.start });
        if (!node.isLeaf())
            forEachChild(node, [&](const PlacedNode &child) { add(source, number, child); });
    }

    std::unordered_map<const TextNode *, Place> m_places;
};

class PartList {
public:
    PartList(const TextExtract &extract, const SharedNodes &shared)
        : m_extract(extract)
        , m_shared(shared)
    {
    }

    void add(const PlacedNode &node)
    {
        if (node.isOutside(m_extract))
            return;
        if (const auto shared = node.isInside(m_extract) ? m_shared.find(node) : std::nullopt)
            return append(*shared);
        if (!node.isLeaf())
            return forEachChild(node, [this](const PlacedNode &child) { add(child); });
        const qint64 begin = qMax(node.start, m_extract.begin);
        append({ TextPart::ownText, begin, qMin(node.end(), m_extract.end) - begin });
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

    const TextExtract &m_extract;
    const SharedNodes &m_shared;
};

} // namespace

TextSnapshot::TextSnapshot(const TextStore &store)
    : m_text(store.piece(0, store.length()))
    , m_length(store.length())
{
    if (const auto spelling = store.spelledChunkAt(m_length).spelling)
        m_endSpelling = spelling->toByteArray();
}

TextChunk TextSnapshot::spelledChunkAt(qint64 offset) const
{
    Q_ASSERT(offset >= 0 && offset <= m_length);
    if (offset == m_length)
        return endChunk(offset, m_endSpelling);
    PlacedNode at = rootOf(*this);
    while (!at.isLeaf()) {
        PlacedNode next;
        forEachChild(at, [&](const PlacedNode &child) {
            if (offset >= child.start && offset < child.end())
                next = child;
        });
        at = next;
    }
    return spelledChunkOf(static_cast<const TextLeaf &>(*at.node), offset, at.start);
}

std::vector<TextPart> partsOf(const TextExtract &extract, std::initializer_list<TextExtract> sources)
{
    const SharedNodes shared(sources);
    PartList list(extract, shared);
    if (extract.text.root())
        list.add(rootOf(extract.text));
    return std::move(list.parts);
}
