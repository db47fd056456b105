#include "text/textstore.h"

#include "text/layoutchange.h"
#include "text/layoutcopy.h"
#include "text/leafchunk.h"
#include "text/openleaf.h"
#include "text/rowflow.h"
#include "text/rowlookup.h"
#include "text/treebuilder.h"

class TextStore::Private {
public:
    explicit Private(const TextLayout &ownLayout)
        : layout(ownLayout)
    {
    }

    /// What can be asked without closing the leaf that is being edited.
    qint64 length() const { return m_tree.units() + m_open.growth(); }
    Offset end() const { return Offset(length()); }
    bool isInside(Offset offset, qint64 length = 0) const
    {
        return offset >= Offset() && length >= 0 && length <= end() - offset;
    }
    const TextLeaf &leafAt(Offset offset, qint64 length, Offset &start) const;
    void copyTo(char16_t *to, Offset offset, qint64 length) const;

    const TextTree &tree() const
    {
        m_open.close(m_tree, layout);
        return m_tree;
    }
    void setTree(TextTree &&tree) { m_tree = std::move(tree); }
    void setLayout(const LayoutRule &rule);
    void replace(Offset offset, qint64 removed, QStringView inserted);
    qint64 unitsOfLeaf(Offset offset, qint64 length) const;
    void put(Offset offset, qint64 removed, TextTree &&inserted);

    Offset rowStart(RowIndex row) const;
    Row rowAt(RowIndex row, qint64 rowCount) const;
    RowCol rowColAt(Offset offset) const;

    /// The last answers. Whoever paints asks for the same row again and again, and then for the next one;
    /// whoever edits, for the cursor's place.
    struct Answers {
        std::optional<RowIndex> row;
        Row rowPlace;
        std::optional<Offset> offset;
        RowCol offsetPlace;
    };
    mutable Answers last; ///< reset by every change of layout or tree
    TextLayout layout;
    std::optional<QByteArray> endSpelling; ///< what the file had behind the last unit; not part of the text
    bool isSpelledWhenEmpty = false; ///< there was no unit, and so it goes with none

private:
    mutable TextTree m_tree;
    mutable OpenLeaf m_open;
};

Offset TextStore::Private::rowStart(RowIndex row) const
{
    if (row == RowIndex())
        return {};
    if (row == last.row)
        return last.rowPlace.start;
    if (row - 1 == last.row)
        return last.rowPlace.end() + (last.rowPlace.endsLine ? 1 : 0);
    return rowEnd(tree(), layout, row - 1).next;
}

TextStore::Row TextStore::Private::rowAt(RowIndex row, qint64 rowCount) const
{
    const Offset start = rowStart(row);
    if (row == RowIndex(rowCount - 1))
        return { start, end() - start, true };
    const RowEnd found = rowEnd(tree(), layout, row, start);
    return { start, found.next - start - (found.isLineEnd ? 1 : 0), found.isLineEnd };
}

RowCol TextStore::Private::rowColAt(Offset offset) const
{
    const RowIndex row =
        layout.wraps() ? ::rowAt(tree(), layout, offset) : RowIndex(::lineAt(tree(), offset).value());
    return { row, offset - rowStart(row) };
}

/// The leaf that holds unit `offset` and, if it is the one being edited, the `length` units from there.
const TextLeaf &TextStore::Private::leafAt(Offset offset, qint64 length, Offset &start) const
{
    if (!m_open.holds(offset, offset + length))
        return ::leafAt(tree(), offset, start);
    start = m_open.start();
    return m_open.leaf();
}

void TextStore::Private::copyTo(char16_t *to, Offset offset, qint64 length) const
{
    if (m_open.holds(offset, offset + length))
        m_open.leaf().copyTo(to, offset - m_open.start(), length);
    else
        copyUnits(tree(), offset, length, to);
}

void TextStore::Private::setLayout(const LayoutRule &rule)
{
    m_open.close(m_tree, layout);
    last = {};
    layout = TextLayout(rule, layout.sizes());
    layOut(m_tree, layout);
}

/// What is removed across the end of a leaf is removed from one and from the other, where it is little.
void TextStore::Private::replace(Offset offset, qint64 removed, QStringView inserted)
{
    last = {};
    if (m_open.replace(m_tree, offset, removed, inserted, layout))
        return;
    const qint64 removedHere =
        removed <= layout.sizes().fewestUnits() ? unitsOfLeaf(offset, removed) : removed;
    if (removedHere == removed)
        return put(offset, removed, treeOf(inserted, layout));
    replace(offset, removedHere, inserted);
    replace(offset + inserted.size(), removed - removedHere, {});
}

/// How many of the units `offset`..`offset + length` lie in the leaf of the first one.
qint64 TextStore::Private::unitsOfLeaf(Offset offset, qint64 length) const
{
    if (length == 0)
        return 0;
    Offset start;
    const TextLeaf &leaf = ::leafAt(tree(), offset, start);
    return qMin(length, start + leaf.size - offset);
}

/// Replaces any range by any tree.
void TextStore::Private::put(Offset offset, qint64 removed, TextTree &&inserted)
{
    m_open.close(m_tree, layout);
    last = {};
    auto [before, rest] = split(std::move(m_tree), offset, layout);
    TextTree behind = split(std::move(rest), Offset(removed), layout).second;
    TextTree start = concatenate(std::move(before), std::move(inserted), layout);
    m_tree = concatenate(std::move(start), std::move(behind), layout);
}

TextStore::TextStore()
    : TextStore(LayoutRule{})
{
}

TextStore::TextStore(const LayoutRule &rule, const NodeSizes &sizes)
    : TextStore(TextLayout(rule, sizes))
{
}

TextStore::TextStore(const TextLayout &layout)
    : d(std::make_unique<Private>(layout))
{
}

TextStore::TextStore(TextStore &&) noexcept = default;
TextStore &TextStore::operator=(TextStore &&) noexcept = default;
TextStore::~TextStore() = default;

qint64 TextStore::length() const
{
    return d->length();
}
qint64 TextStore::lineCount() const
{
    return d->tree().summary.lineEnds + 1;
}

qint64 TextStore::rowCount() const
{
    if (!d->layout.wraps() || d->tree().isEmpty())
        return lineCount();
    return lineCount() + flow(d->tree(), d->layout, 0).breaks;
}

Subpixels TextStore::widestRow() const
{
    const TextSummary &summary = d->tree().summary;
    Subpixels widest = summary.head.from(0, d->layout.tabStop());
    if (summary.lineEnds > 0)
        widest = qMax(widest, qMax(summary.widest, summary.tail));
    return d->layout.wraps() ? qMin(widest, qMax<Subpixels>(d->layout.limit(), summary.widestUnit)) : widest;
}

const LayoutRule &TextStore::layoutRule() const
{
    return d->layout.rule();
}

const TextLayout &TextStore::layout() const
{
    return d->layout;
}

void TextStore::setLayoutRule(const LayoutRule &rule)
{
    d->setLayout(rule);
}

bool TextStore::setLayout(LayoutChange &change, QDeadlineTimer end)
{
    Q_ASSERT(change.layout().sizes() == d->layout.sizes());
    if (!change.measure(d->tree(), end))
        return false;
    d->setTree(change.twinOf(d->tree()));
    d->layout = change.layout();
    d->last = {};
    return true;
}

char16_t TextStore::at(Offset offset) const
{
    Q_ASSERT(d->isInside(offset, 1));
    Offset start;
    const TextLeaf &leaf = d->leafAt(offset, 1, start);
    return leaf.at(offset - start);
}

QString TextStore::text(Offset offset, qint64 length) const
{
    Q_ASSERT(d->isInside(offset, length));
    QString text(length, Qt::Uninitialized);
    d->copyTo(reinterpret_cast<char16_t *>(text.data()), offset, length);
    return text;
}

TextChunk TextStore::chunkAt(Offset offset) const
{
    Q_ASSERT(d->isInside(offset, 1));
    Offset start;
    const TextLeaf &leaf = d->leafAt(offset, 1, start);
    return chunkOf(leaf, offset, start);
}

TextChunk TextStore::spelledChunkAt(Offset offset) const
{
    if (offset == end())
        return length() > 0 || d->isSpelledWhenEmpty ? endChunk(offset, d->endSpelling)
                                                     : endChunk(offset, {});
    Q_ASSERT(d->isInside(offset, 1));
    Offset start;
    const TextLeaf &leaf = d->leafAt(offset, 1, start);
    return spelledChunkOf(leaf, offset, start);
}

TextChunk TextStore::chunkBefore(Offset end) const
{
    Q_ASSERT(end > Offset() && end <= this->end());
    Offset start;
    const TextLeaf &leaf = d->leafAt(end - 1, 1, start);
    if (leaf.wide)
        return { start, {}, leaf.utf16().first(end - start) };
    return { start, leaf.latin1().first(end - start), {} };
}

void TextStore::replace(Offset offset, qint64 removed, QStringView inserted)
{
    Q_ASSERT(d->isInside(offset, removed));
    if (removed == 0 && inserted.isEmpty())
        return;
    d->replace(offset, removed, inserted);
}

TextPiece TextStore::exchange(Offset offset, qint64 removed, QStringView inserted)
{
    TextPiece taken = piece(offset, removed);
    replace(offset, removed, inserted);
    return taken;
}

TextPiece TextStore::exchange(Offset offset, qint64 removed, const TextPiece &inserted)
{
    if (inserted.isPlainText())
        return exchange(offset, removed, inserted.text());
    TextPiece taken = exchange(offset, removed, QStringView());
    insert(offset, inserted);
    return taken;
}

TextPiece TextStore::piece(Offset offset, qint64 length) const
{
    Q_ASSERT(d->isInside(offset, length));
    if (length == 0)
        return {};
    Offset start;
    if (const TextLeaf &leaf = d->leafAt(offset, length, start); offset + length <= start + leaf.size)
        return TextPiece(leaf.part(offset - start, length), d->layout.sizes());
    if (length <= d->layout.sizes().leafUnits) // to share it would take nodes above it
        return TextPiece(copyOf(d->tree(), offset, length), d->layout.sizes());
    TextTree shared = d->tree();
    auto [before, rest] = split(std::move(shared), offset, d->layout);
    return TextPiece(
        std::move(split(std::move(rest), Offset(length), d->layout).first.node), d->layout.sizes());
}

void TextStore::insert(Offset offset, const TextPiece &piece)
{
    Q_ASSERT(d->isInside(offset));
    if (piece.isPlainText())
        return replace(offset, 0, piece.text());
    Q_ASSERT(piece.m_sizes == d->layout.sizes());
    d->put(offset, 0, treeUnder(piece.m_root, d->layout));
}

void TextStore::append(TextStore &&other)
{
    Q_ASSERT(other.d->layout.sizes() == d->layout.sizes());
    TextTree behind = other.d->tree();
    other.d->setTree({});
    d->endSpelling = std::exchange(other.d->endSpelling, {});
    if (!behind.isEmpty())
        d->put(end(), 0, treeUnder(std::move(behind.node), d->layout));
    d->isSpelledWhenEmpty = length() == 0;
}

void TextStore::forgetLayout()
{
    TextTree tree = d->tree();
    d->setTree({});
    ::forgetLayout(tree);
    d->setTree(std::move(tree));
}

TextStore::Row TextStore::row(RowIndex row) const
{
    Q_ASSERT(row >= RowIndex() && row <= lastRow());
    if (row != d->last.row) {
        d->last.rowPlace = d->rowAt(row, rowCount());
        d->last.row = row;
    }
    return d->last.rowPlace;
}

RowCol TextStore::rowColAt(Offset offset) const
{
    Q_ASSERT(d->isInside(offset));
    if (d->tree().isEmpty())
        return {};
    if (offset != d->last.offset) {
        d->last.offsetPlace = d->rowColAt(offset);
        d->last.offset = offset;
    }
    return d->last.offsetPlace;
}

RowCol TextStore::rowColAt(CursorPlace place) const
{
    const RowCol position = rowColAt(place.offset);
    if (!place.atRowEnd || position.column > 0 || position.row == RowIndex())
        return position;
    const Row above = row(position.row - 1);
    return above.endsLine ? position : RowCol{ position.row - 1, above.length };
}

CursorPlace TextStore::placeAt(RowCol position) const
{
    const Row found = row(position.row);
    Q_ASSERT(position.column >= 0 && position.column <= found.length);
    return { found.start + position.column, position.column == found.length && !found.endsLine };
}

LineIndex TextStore::lineAt(Offset offset) const
{
    Q_ASSERT(d->isInside(offset));
    return d->tree().isEmpty() ? LineIndex() : ::lineAt(d->tree(), offset);
}

Offset TextStore::lineStart(LineIndex line) const
{
    Q_ASSERT(line >= LineIndex() && line <= lastLine());
    return ::lineStart(d->tree(), line);
}

Offset TextStore::lineEnd(LineIndex line) const
{
    return line < lastLine() ? lineStart(line + 1) - 1 : end();
}

Subpixels TextStore::xAt(RowCol position) const
{
    const Offset to = placeAt(position).offset;
    return d->tree().isEmpty() ? 0 : xAcross(d->tree(), d->layout, to - position.column, to, 0);
}

qint64 TextStore::columnAt(RowIndex row, Subpixels x) const
{
    const Row place = this->row(row);
    if (d->tree().isEmpty() || x < 0)
        return 0;
    return offsetAcross(d->tree(), d->layout, place.start, place.end(), x) - place.start;
}

void TextStore::checkInvariants() const
{
    [[maybe_unused]] const qint64 before = length();
    checkTree(d->tree(), d->layout);
    Q_ASSERT(length() == before);
}

RowIndex rowOfLine(const TextStore &store, LineIndex line)
{
    return store.layout().wraps() ? store.rowColAt(store.lineStart(line)).row : RowIndex(line.value());
}

LineIndex lineOfRow(const TextStore &store, RowIndex row)
{
    Q_ASSERT(row >= RowIndex() && row <= store.lastRow());
    return store.layout().wraps() ? store.lineAt(store.row(row).start) : LineIndex(row.value());
}

class TextStore::Builder::Private {
public:
    explicit Private(const TextLayout &layout, LeafMemory *memory = nullptr)
        : store(layout)
        , tree(store.d->layout, memory)
    {
    }

    TextStore store;
    TreeBuilder tree;
};

TextStore::Builder::Builder(const LayoutRule &rule, const NodeSizes &sizes)
    : d(std::make_unique<Private>(TextLayout(rule, sizes)))
{
}

TextStore::Builder::Builder(const LayoutCopy &layout, LeafMemory *memory)
    : d(std::make_unique<Private>(layout.layout(), memory))
{
}

TextStore::Builder::Builder(Builder &&) noexcept = default;
TextStore::Builder::~Builder() = default;
void TextStore::Builder::append(QByteArrayView latin1)
{
    d->tree.append(latin1);
}
void TextStore::Builder::append(QStringView text)
{
    d->tree.append(text);
}

void TextStore::Builder::spell(QByteArrayView bytes)
{
    d->tree.spell(bytes);
}

TextStore TextStore::Builder::finish()
{
    d->store.d->setTree(d->tree.finish());
    d->store.d->endSpelling = d->tree.lastSpelling();
    d->store.d->isSpelledWhenEmpty = d->store.length() == 0;
    TextStore finished = std::move(d->store);
    d = std::make_unique<Private>(finished.layout());
    return finished;
}
