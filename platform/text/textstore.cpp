#include "platform/text/textstore.h"

#include "platform/text/rowflow.h"
#include "platform/text/rowlookup.h"
#include "platform/text/treebuilder.h"

class TextStore::Private {
public:
    explicit Private(const LayoutRule &rule)
        : layout(rule)
    {
    }

    bool isInside(qint64 offset, qint64 length = 0) const
    {
        return offset >= 0 && length >= 0 && length <= tree.units() - offset;
    }
    qint64 rowStart(qint64 row) const;
    Row rowAt(qint64 row, qint64 rowCount) const;
    RowCol rowColAt(qint64 offset) const;
    void put(qint64 offset, qint64 removed, TextTree &&inserted);

    /// The last answers. Whoever paints asks for the same row again and again, and then for the next one;
    /// whoever edits, for the cursor's place.
    struct Answers {
        qint64 row = -1;
        Row rowPlace;
        qint64 offset = -1;
        RowCol offsetPlace;
    };
    mutable Answers last; ///< reset by every change of layout or tree
    TextLayout layout;
    TextTree tree;
};

/// Offset at which a row begins.
qint64 TextStore::Private::rowStart(qint64 row) const
{
    if (row == 0)
        return 0;
    if (row == last.row)
        return last.rowPlace.start;
    if (row - 1 == last.row)
        return last.rowPlace.start + last.rowPlace.length + (last.rowPlace.endsLine ? 1 : 0);
    return rowEnd(tree, layout, row - 1).next;
}

TextStore::Row TextStore::Private::rowAt(qint64 row, qint64 rowCount) const
{
    const qint64 start = rowStart(row);
    if (row == rowCount - 1)
        return { start, tree.units() - start, true };
    const RowEnd end = rowEnd(tree, layout, row, start);
    return { start, end.next - start - (end.isLineEnd ? 1 : 0), end.isLineEnd };
}

RowCol TextStore::Private::rowColAt(qint64 offset) const
{
    const qint64 row = layout.wraps() ? rowsBefore(tree, layout, offset) : linesBefore(tree, offset);
    return { row, offset - rowStart(row) };
}

/// Replaces any stretch by any tree.
void TextStore::Private::put(qint64 offset, qint64 removed, TextTree &&inserted)
{
    auto [before, rest] = split(std::move(tree), offset, layout);
    TextTree behind = split(std::move(rest), removed, layout).second;
    TextTree start = concatenate(std::move(before), std::move(inserted), layout);
    tree = concatenate(std::move(start), std::move(behind), layout);
}

TextStore::TextStore()
    : TextStore(LayoutRule{})
{
}

TextStore::TextStore(const LayoutRule &rule)
    : d(std::make_unique<Private>(rule))
{
}

TextStore::TextStore(TextStore &&) noexcept = default;
TextStore &TextStore::operator=(TextStore &&) noexcept = default;
TextStore::~TextStore() = default;

qint64 TextStore::length() const
{
    return d->tree.units();
}
qint64 TextStore::lineCount() const
{
    return d->tree.summary.lineEnds + 1;
}

qint64 TextStore::rowCount() const
{
    if (!d->layout.wraps() || d->tree.isEmpty())
        return lineCount();
    return lineCount() + flow(d->tree, d->layout, 0).breaks;
}

Subpixels TextStore::widestRow() const
{
    const TextSummary &summary = d->tree.summary;
    Subpixels widest = summary.head.from(0, d->layout.tabStop());
    if (summary.lineEnds > 0)
        widest = qMax(widest, qMax(summary.widest, summary.tail));
    return d->layout.wraps() ? qMin(widest, qMax<Subpixels>(d->layout.limit(), summary.widestUnit)) : widest;
}

const LayoutRule &TextStore::layoutRule() const
{
    return d->layout.rule();
}

void TextStore::setLayoutRule(const LayoutRule &rule)
{
    d->last = {};
    d->layout = TextLayout(rule);
    layOut(d->tree, d->layout);
}

char16_t TextStore::at(qint64 offset) const
{
    Q_ASSERT(d->isInside(offset, 1));
    qint64 start = 0;
    const TextLeaf &leaf = leafAt(d->tree, offset, start);
    return leaf.at(offset - start);
}

QString TextStore::text(qint64 offset, qint64 length) const
{
    Q_ASSERT(d->isInside(offset, length));
    QString text(length, Qt::Uninitialized);
    copyUnits(d->tree, offset, length, reinterpret_cast<char16_t *>(text.data()));
    return text;
}

TextChunk TextStore::chunkAt(qint64 offset) const
{
    Q_ASSERT(d->isInside(offset, 1));
    qint64 start = 0;
    const TextLeaf &leaf = leafAt(d->tree, offset, start);
    if (leaf.wide)
        return { offset, {}, leaf.utf16().sliced(offset - start) };
    return { offset, leaf.latin1().sliced(offset - start), {} };
}

TextChunk TextStore::chunkBefore(qint64 end) const
{
    Q_ASSERT(end > 0 && end <= length());
    qint64 start = 0;
    const TextLeaf &leaf = leafAt(d->tree, end - 1, start);
    if (leaf.wide)
        return { start, {}, leaf.utf16().first(end - start) };
    return { start, leaf.latin1().first(end - start), {} };
}

void TextStore::replace(qint64 offset, qint64 removed, QStringView inserted)
{
    Q_ASSERT(d->isInside(offset, removed));
    if (removed == 0 && inserted.isEmpty())
        return;
    d->last = {};
    if (!replaceInLeaf(d->tree, offset, removed, inserted, d->layout))
        d->put(offset, removed, treeOf(inserted, d->layout));
}

TextPiece TextStore::take(qint64 offset, qint64 length)
{
    TextPiece taken = piece(offset, length);
    replace(offset, length, {});
    return taken;
}

TextPiece TextStore::piece(qint64 offset, qint64 length) const
{
    Q_ASSERT(d->isInside(offset, length));
    if (length == 0)
        return {};
    qint64 start = 0;
    if (const TextLeaf &leaf = leafAt(d->tree, offset, start); offset + length <= start + leaf.size)
        return TextPiece(leafTree(leaf.part(offset - start, length), d->layout));
    TextTree shared = d->tree;
    auto [before, rest] = split(std::move(shared), offset, d->layout);
    return TextPiece(split(std::move(rest), length, d->layout).first);
}

void TextStore::insert(qint64 offset, const TextPiece &piece)
{
    Q_ASSERT(d->isInside(offset));
    d->last = {};
    if (piece.isSmall())
        replace(offset, 0, piece.text());
    else
        d->put(offset, 0, treeUnder(piece.m_root, d->layout));
}

TextStore::Row TextStore::row(qint64 row) const
{
    Q_ASSERT(row >= 0 && row < rowCount());
    if (row != d->last.row) {
        d->last.rowPlace = d->rowAt(row, rowCount());
        d->last.row = row;
    }
    return d->last.rowPlace;
}

RowCol TextStore::rowColAt(qint64 offset) const
{
    Q_ASSERT(d->isInside(offset));
    if (d->tree.isEmpty())
        return {};
    if (offset != d->last.offset) {
        d->last.offsetPlace = d->rowColAt(offset);
        d->last.offset = offset;
    }
    return d->last.offsetPlace;
}

qint64 TextStore::offsetAt(RowCol position) const
{
    Q_ASSERT(position.column >= 0 && position.column <= row(position.row).length);
    return d->rowStart(position.row) + position.column;
}

qint64 TextStore::lineAt(qint64 offset) const
{
    Q_ASSERT(d->isInside(offset));
    return d->tree.isEmpty() ? 0 : linesBefore(d->tree, offset);
}

LineCol TextStore::lineColAt(qint64 offset) const
{
    const qint64 line = lineAt(offset);
    return { line, offset - lineStart(line) };
}

qint64 TextStore::lineStart(qint64 line) const
{
    Q_ASSERT(line >= 0 && line < lineCount());
    return behindLine(d->tree, line);
}

qint64 TextStore::rowOfLine(qint64 line) const
{
    return d->layout.wraps() ? rowColAt(lineStart(line)).row : line;
}

qint64 TextStore::lineOfRow(qint64 row) const
{
    Q_ASSERT(row >= 0 && row < rowCount());
    return d->layout.wraps() ? lineAt(d->rowStart(row)) : row;
}

Subpixels TextStore::xAt(RowCol position) const
{
    const qint64 end = offsetAt(position);
    return d->tree.isEmpty() ? 0 : xAcross(d->tree, d->layout, end - position.column, end, 0);
}

qint64 TextStore::columnAt(qint64 row, Subpixels x) const
{
    const Row place = this->row(row);
    if (d->tree.isEmpty() || x < 0)
        return 0;
    return offsetAcross(d->tree, d->layout, place.start, place.start + place.length, x) - place.start;
}

void TextStore::checkInvariants() const
{
    checkTree(d->tree, d->layout);
}
void TextStore::setLeafCapacity(int units)
{
    setNodeSizes(units);
}

class TextStore::Builder::Private {
public:
    explicit Private(const LayoutRule &rule)
        : store(rule)
        , tree(store.d->layout)
    {
    }

    TextStore store;
    TreeBuilder tree;
};

TextStore::Builder::Builder(const LayoutRule &rule)
    : d(std::make_unique<Private>(rule))
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

TextStore TextStore::Builder::finish()
{
    const LayoutRule rule = d->store.layoutRule();
    d->store.d->tree = d->tree.finish();
    TextStore finished = std::move(d->store);
    d = std::make_unique<Private>(rule);
    return finished;
}
