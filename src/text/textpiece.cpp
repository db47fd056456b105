#include "text/layoutchange.h"
#include "text/textstore.h"
#include "text/treebuilder.h"

namespace {

/// Pieces are joined without a store at hand. What is measured by this layout is measured again by the store
/// that the piece is put into; what a store has measured stays as it is.
TextLayout looseLayout(const NodeSizes &sizes)
{
    return TextLayout({}, sizes);
}

} // namespace

TextPiece::TextPiece(QStringView text, const NodeSizes &sizes)
    : m_sizes(sizes)
{
    if (text.size() > sizes.leafUnits)
        m_root = treeOf(text, looseLayout(sizes)).node;
    else if (!text.isEmpty())
        m_root = TextLeaf::fromText(text);
}

TextPiece::TextPiece(TextNodeRef root, const NodeSizes &sizes)
    : m_root(std::move(root))
    , m_sizes(sizes)
{
}

TextTree TextPiece::tree() const
{
    return looseTreeUnder(m_root, looseLayout(m_sizes));
}

bool TextPiece::isPlainText() const
{
    return !m_root || (m_root.get()->height == 0 && !static_cast<const TextLeaf &>(*m_root.get()).spellings);
}

bool TextPiece::isMeasuredBy(const TextLayout &layout) const
{
    return isPlainText()
        || (m_root.get()->height > 0
            && static_cast<const TextInner &>(*m_root.get()).stamp == layout.stamp());
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

QString TextPiece::text(Offset offset, qint64 length) const
{
    Q_ASSERT(offset >= Offset() && length >= 0 && offset + length <= Offset(this->length()));
    QString text(length, Qt::Uninitialized);
    if (length > 0)
        copyUnits(tree(), offset, length, reinterpret_cast<char16_t *>(text.data()));
    return text;
}

TextPiece TextPiece::part(Offset offset, qint64 length) const
{
    Q_ASSERT(offset >= Offset() && length >= 0 && offset + length <= Offset(this->length()));
    if (length == 0)
        return {};
    const TextLayout layout = looseLayout(m_sizes);
    auto [before, rest] = split(tree(), offset, layout);
    return TextPiece(std::move(split(std::move(rest), Offset(length), layout).first.node), m_sizes);
}

void TextPiece::append(TextPiece &&other)
{
    if (isEmpty())
        return void(*this = std::move(other));
    Q_ASSERT(other.isEmpty() || other.m_sizes == m_sizes);
    const TextLayout layout = looseLayout(m_sizes);
    TextTree left = looseTreeUnder(std::exchange(m_root, {}), layout);
    TextTree right = looseTreeUnder(std::exchange(other.m_root, {}), layout);
    m_root = concatenate(std::move(left), std::move(right), layout).node;
}

void TextPiece::prepend(TextPiece &&other)
{
    other.append(std::move(*this));
    *this = std::move(other);
}

bool TextPiece::measure(LayoutChange &change, QDeadlineTimer end) const
{
    return change.measure({ m_root, {} }, end);
}

void TextPiece::setLayout(const LayoutChange &change)
{
    if (m_root && m_root.get()->height > 0)
        m_root = change.twinOf({ m_root, {} }).node;
}
