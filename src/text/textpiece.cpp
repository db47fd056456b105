#include "text/textstore.h"
#include "text/treebuilder.h"

namespace {

/// Pieces are joined without a store at hand. What is measured by this layout is measured again by the store
/// that the piece is put into; what a store has measured stays as it is.
const TextLayout &looseLayout()
{
    static const TextLayout layout{ LayoutRule{} };
    return layout;
}

qint64 memoryOf(const TextNode &node)
{
    if (node.height == 0) {
        const auto &leaf = static_cast<const TextLeaf &>(node);
        return qint64(sizeof(TextLeaf)) + (qint64(leaf.capacity) << (leaf.wide ? 1 : 0))
            + (leaf.spellings ? leaf.spellings->memory() : 0);
    }
    qint64 bytes = sizeof(TextInner);
    for (const TextTree &child : static_cast<const TextInner &>(node))
        bytes += memoryOf(*child.node.get());
    return bytes;
}

} // namespace

TextPiece::TextPiece(QStringView text)
{
    if (text.size() > TextLeaf::maxSize())
        m_root = treeOf(text, looseLayout()).node;
    else if (!text.isEmpty())
        m_root = TextLeaf::fromText(text);
}

TextPiece::TextPiece(TextNodeRef root)
    : m_root(std::move(root))
{
}

TextTree TextPiece::tree() const
{
    return looseTreeUnder(m_root, looseLayout());
}

bool TextPiece::isPlainText() const
{
    return !m_root || (m_root.get()->height == 0 && !static_cast<const TextLeaf &>(*m_root.get()).spellings);
}

qint64 TextPiece::length() const
{
    if (!m_root)
        return 0;
    if (m_root.get()->height == 0)
        return static_cast<const TextLeaf *>(m_root.get())->size;
    qint64 length = 0;
    for (const TextTree &child : static_cast<const TextInner &>(*m_root.get()))
        length += child.units();
    return length;
}

QString TextPiece::text(qint64 offset, qint64 length) const
{
    Q_ASSERT(offset >= 0 && length >= 0 && offset + length <= this->length());
    QString text(length, Qt::Uninitialized);
    if (length > 0)
        copyUnits(tree(), offset, length, reinterpret_cast<char16_t *>(text.data()));
    return text;
}

qint64 TextPiece::memory() const
{
    return qint64(sizeof(TextPiece)) + (m_root ? memoryOf(*m_root.get()) : 0);
}

void TextPiece::append(TextPiece &&other)
{
    TextTree left = looseTreeUnder(std::exchange(m_root, {}), looseLayout());
    TextTree right = looseTreeUnder(std::exchange(other.m_root, {}), looseLayout());
    m_root = concatenate(std::move(left), std::move(right), looseLayout()).node;
}

void TextPiece::prepend(TextPiece &&other)
{
    other.append(std::move(*this));
    *this = std::move(other);
}
