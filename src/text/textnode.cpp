#include "text/textnode.h"

#include "text/leafmemory.h"
#include "text/nodebin.h"
#include "text/rowflow.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace {

bool isLatin1(QStringView text)
{
    char16_t all = 0;
    for (const QChar unit : text)
        all |= unit.unicode();
    return all < 0x100;
}

} // namespace

void TextNodeRef::destroy(TextNode *node)
{
    if (node->height == 0)
        TextLeaf::destroy(static_cast<TextLeaf *>(node));
    else
        NodeBin::take(static_cast<TextInner *>(node));
}

TextLeaf *TextLeaf::create(bool wide, qint64 capacity, LeafMemory *memory)
{
    const size_t size = bytesFor(wide, capacity);
    void *const own = memory ? memory->allocate(size) : nullptr;
    return new (own ? own : ::operator new(size)) TextLeaf(wide, own, qint32(capacity));
}

void TextLeaf::destroy(TextLeaf *leaf)
{
    const bool isInLeafMemory = leaf->isInLeafMemory;
    leaf->~TextLeaf();
    isInLeafMemory ? LeafMemory::free(leaf) : ::operator delete(leaf);
}

TextNodeRef TextLeaf::fromText(QStringView text, qint64 capacity, LeafMemory *memory)
{
    const bool wide = !isLatin1(text);
    TextLeaf *leaf = create(wide, capacity, memory);
    leaf->size = qint32(text.size());
    if (wide)
        std::copy_n(text.utf16(), text.size(), leaf->units());
    else
        std::transform(
            text.begin(), text.end(), leaf->bytes(), [](QChar unit) { return uchar(unit.unicode()); });
    return TextNodeRef(leaf);
}

TextNodeRef TextLeaf::fromText(QByteArrayView latin1, LeafMemory *memory)
{
    TextLeaf *leaf = create(false, latin1.size(), memory);
    leaf->size = qint32(latin1.size());
    memcpy(leaf->bytes(), latin1.data(), size_t(latin1.size()));
    return TextNodeRef(leaf);
}

TextNodeRef TextLeaf::fromText(const LeafText &text, qint64 from, qint64 to, qint64 capacity)
{
    TextNodeRef leaf = fromText(text.view().sliced(from, to - from), capacity);
    if (!text.spellings.isEmpty())
        static_cast<TextLeaf &>(*leaf.get()).setSpellings(text.spellings.part(from, to));
    return leaf;
}

void TextLeaf::copyTo(char16_t *to, qint64 from, qint64 count) const
{
    visit([=](const auto *text) { std::copy_n(text + from, count, to); });
}

TextNodeRef TextLeaf::part(qint64 from, qint64 count) const
{
    TextNodeRef leaf = wide ? fromText(utf16().sliced(from, count)) : fromText(latin1().sliced(from, count));
    if (spellings)
        static_cast<TextLeaf &>(*leaf.get()).setSpellings(spellings->part(from, from + count));
    return leaf;
}

void TextLeaf::setSpellings(Spellings &&some)
{
    spellings = some.isEmpty() ? nullptr : std::make_unique<const Spellings>(std::move(some));
}

TextInner::TextInner(qint32 nodeHeight, quint64 layoutStamp)
    : TextNode(nodeHeight)
    , stamp(layoutStamp)
{
}

TextInner::~TextInner() = default;

void TextInner::forgetTable()
{
    table.reset();
    tableState = TableState::Unasked;
}
