#include "text/textstore.h"

#include "text/layoutchange.h"
#include "text/layoutcopy.h"
#include "text/leafchunk.h"
#include "text/linesahead.h"
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
    void setLayout(const LayoutChange &change);
    void replace(Offset offset, qint64 removed, QStringView inserted);
    qint64 unitsOfLeaf(Offset offset, qint64 length) const;
    void put(Offset offset, qint64 removed, TextTree &&inserted);

    // The rows of its own layout, which lines ahead take the place of some of.
    qint64 ownRowCount() const;
    Subpixels ownWidestRow() const;
    Row ownRow(RowIndex row) const;
    RowCol ownRowColAt(Offset offset) const;

    /// For questions about rows; null where there is none.
    const LinesAhead *linesAhead() const;

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
    std::unique_ptr<LinesAhead> ahead; ///< null: all rows are those of its own layout
    std::optional<QByteArray> endSpelling; ///< what the file had behind the last unit; not part of the text
    bool isSpelledWhenEmpty = false; ///< there was no unit, and so it goes with none

private:
    Offset rowStart(RowIndex row) const;
    Row rowAt(RowIndex row) const;
    RowCol rowColAt(Offset offset) const;

    mutable TextTree m_tree;
    mutable OpenLeaf m_open;
};

qint64 TextStore::Private::ownRowCount() const
{
    const qint64 lines = tree().summary.lineEnds + 1;
    return layout.wraps() && !tree().isEmpty() ? lines + flow(tree(), layout, 0).breaks : lines;
}

Subpixels TextStore::Private::ownWidestRow() const
{
    const TextSummary &summary = tree().summary;
    Subpixels widest = summary.head.from(0, layout.tabStop());
    if (summary.lineEnds > 0)
        widest = qMax(widest, qMax(summary.widest, summary.tail));
    return layout.wraps() ? qMin(widest, qMax<Subpixels>(layout.limit(), summary.widestUnit)) : widest;
}

TextStore::Row TextStore::Private::ownRow(RowIndex row) const
{
    if (row != last.row) {
        last.rowPlace = rowAt(row);
        last.row = row;
    }
    return last.rowPlace;
}

RowCol TextStore::Private::ownRowColAt(Offset offset) const
{
    if (tree().isEmpty())
        return {};
    if (offset != last.offset) {
        last.offsetPlace = rowColAt(offset);
        last.offset = offset;
    }
    return last.offsetPlace;
}

const LinesAhead *TextStore::Private::linesAhead() const
{
    if (ahead && !ahead->isPlaced())
        ahead->place(ownRowColAt(ahead->range().start).row, ownRowColAt(ahead->range().end).row);
    return ahead.get();
}

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

TextStore::Row TextStore::Private::rowAt(RowIndex row) const
{
    const Offset start = rowStart(row);
    if (row == RowIndex(ownRowCount() - 1))
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
    ahead.reset();
    layout = TextLayout(rule, layout.sizes());
    layOut(m_tree, layout);
}

/// Which has measured all of the text.
void TextStore::Private::setLayout(const LayoutChange &change)
{
    setTree(change.twinOf(tree()));
    last = {};
    ahead.reset();
    layout = change.layout();
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
    const LinesAhead *ahead = d->linesAhead();
    return d->ownRowCount() + (ahead ? ahead->growth() : 0);
}

Subpixels TextStore::widestRow() const
{
    if (!d->ahead)
        return d->ownWidestRow();
    const TextStore &lines = d->ahead->lines();
    return lines.layout().wraps() ? lines.widestRow() : qMax(lines.widestRow(), d->ownWidestRow());
}

const LayoutRule &TextStore::layoutRule() const
{
    return d->layout.rule();
}

const TextLayout &TextStore::layout() const
{
    return d->layout;
}

const TextLayout &TextStore::layoutAt(Offset offset) const
{
    return d->ahead && d->ahead->holds(offset) ? d->ahead->lines().layout() : layout();
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
    d->setLayout(change);
    return true;
}

void TextStore::layOutAhead(TextRange lines, const TextLayout &layout)
{
    Q_ASSERT(layout.sizes() == d->layout.sizes());
    Q_ASSERT(lineStart(lineAt(lines.start)) == lines.start && lineEnd(lineAt(lines.end)) == lines.end);
    TextStore text(layout);
    text.insert({}, piece(lines.start, lines.length()));
    d->ahead = std::make_unique<LinesAhead>(lines.start, std::move(text));
}

void TextStore::dropAhead()
{
    d->ahead.reset();
}

std::optional<TextRange> TextStore::linesAhead() const
{
    return d->ahead ? std::optional(d->ahead->range()) : std::nullopt;
}

/// The same edit of the lines ahead, for which `edit` is called with them and their offset, or what else it
/// does to them.
template <typename Function> void TextStore::editAhead(const TextChange &change, const Function &edit)
{
    if (!d->ahead)
        return;
    const TextRange before = d->ahead->range();
    const qint64 growth = change.inserted - change.removed;
    switch (d->ahead->find(change)) {
    case LinesAhead::Edit::Before:
        return d->ahead->moveBy(growth);
    case LinesAhead::Edit::Behind:
        return;
    case LinesAhead::Edit::Inside:
        if (before.length() + growth > mostAhead)
            return dropAhead();
        return d->ahead->edit([&](TextStore &lines) { edit(lines, Offset(change.offset - before.start)); });
    case LinesAhead::Edit::Across:
        break;
    }
    const Offset behind = qMax(before.end, change.offset + change.removed) + growth;
    const TextRange lines = { lineStart(lineAt(qMin(before.start, change.offset))), lineEnd(lineAt(behind)) };
    if (lines.length() > mostAhead)
        return dropAhead();
    layOutAhead(lines, d->ahead->lines().layout());
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
    editAhead({ offset, removed, inserted.size() },
        [&](TextStore &lines, Offset at) { lines.replace(at, removed, inserted); });
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
    editAhead({ offset, 0, piece.length() }, [&](TextStore &lines, Offset at) { lines.insert(at, piece); });
}

void TextStore::append(TextStore &&other)
{
    Q_ASSERT(other.d->layout.sizes() == d->layout.sizes());
    TextTree behind = other.d->tree();
    other.d->setTree({});
    d->endSpelling = std::exchange(other.d->endSpelling, {});
    if (!behind.isEmpty()) {
        const Offset seam = end();
        d->put(seam, 0, treeUnder(std::move(behind.node), d->layout));
        const qint64 added = end() - seam;
        editAhead(
            { seam, 0, added }, [&](TextStore &lines, Offset at) { lines.insert(at, piece(seam, added)); });
    }
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
    const LinesAhead *ahead = d->linesAhead();
    if (!ahead)
        return d->ownRow(row);
    return ahead->holds(row) ? ahead->row(row) : d->ownRow(ahead->ownRow(row));
}

RowCol TextStore::rowColAt(Offset offset) const
{
    Q_ASSERT(d->isInside(offset));
    const LinesAhead *ahead = d->linesAhead();
    if (ahead && ahead->holds(offset))
        return ahead->rowColAt(offset);
    const RowCol own = d->ownRowColAt(offset);
    return ahead ? RowCol{ ahead->shownRow(own.row), own.column } : own;
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
    if (const LinesAhead *ahead = d->linesAhead(); ahead && ahead->holds(position.row))
        return ahead->xAt(position);
    const Offset to = placeAt(position).offset;
    return d->tree().isEmpty() ? 0 : xAcross(d->tree(), d->layout, to - position.column, to, 0);
}

qint64 TextStore::columnAt(RowIndex row, Subpixels x) const
{
    if (const LinesAhead *ahead = d->linesAhead(); ahead && ahead->holds(row))
        return ahead->columnAt(row, x);
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
    if (!d->ahead)
        return;
    d->ahead->lines().checkInvariants();
    [[maybe_unused]] const TextRange lines = d->ahead->range();
    Q_ASSERT(text(lines) == d->ahead->lines().text());
    Q_ASSERT(lineStart(lineAt(lines.start)) == lines.start && lineEnd(lineAt(lines.end)) == lines.end);
}

static bool isAnyLineWrapped(const TextStore &store)
{
    return store.rowCount() != store.lineCount();
}

RowIndex rowOfLine(const TextStore &store, LineIndex line)
{
    return isAnyLineWrapped(store) ? store.rowColAt(store.lineStart(line)).row : RowIndex(line.value());
}

LineIndex lineOfRow(const TextStore &store, RowIndex row)
{
    Q_ASSERT(row >= RowIndex() && row <= store.lastRow());
    return isAnyLineWrapped(store) ? store.lineAt(store.row(row).start) : LineIndex(row.value());
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
