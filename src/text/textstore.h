#pragma once

#include "text/advancetable.h"
#include "text/nodesizes.h"
#include "text/textnoderef.h"
#include "text/units.h"

#include <QByteArray>
#include <QDeadlineTimer>
#include <QString>
#include <QStringView>

#include <memory>
#include <optional>

/// How wide text is and where a row ends.
struct LayoutRule {
    /// Of a tab stop and of a row that is wrapped: sixteen million pixels, so that every x in such a row has
    /// room in 32 bits.
    static constexpr Subpixels widest = Subpixels{ 1 } << 30;

    /// Not owned; must outlive every store that uses it. Null: every character is 1 pixel wide, a surrogate
    /// pair or a letter with its combining marks as well.
    const AdvanceTable *advances = nullptr;
    /// Distance between tab stops, > 0, up to `widest`: a TAB reaches to the next multiple of it, counted
    /// from the row's start.
    Subpixels tabStop = 8 * subpixelsPerPixel;
    /// A row takes no character that would end beyond this width (but always at least one), up to `widest`;
    /// 0: rows are not wrapped. A character as people see it stays on one row, with its combining marks,
    /// vowel signs and what else graphemes.h tells; only one of more than a thousand units, or as many
    /// letters of flags in a row, may be parted (but no surrogate pair is). It is as wide as its parts
    /// together, a flag as wide as one letter, joined emoji as the first of them.
    Subpixels limit = 0;
    friend bool operator==(const LayoutRule &, const LayoutRule &) = default;
};

/// Neighbouring units of a leaf as they lie in memory: one of the two views is set. Valid until the next
/// change of the store.
struct TextChunk {
    Offset offset; ///< of the first unit in the whole text
    QByteArrayView latin1; ///< set where the store keeps one byte a unit (U+0000..U+00FF)
    QStringView utf16; ///< set elsewhere
    /// The bytes that the chunk, one unit then, was read from, where its code would write others. Without a
    /// unit: what stood behind the whole text. See Spellings.
    std::optional<QByteArrayView> spelling = std::nullopt;
    bool isLatin1() const { return utf16.isNull(); }
    qint64 size() const { return isLatin1() ? latin1.size() : utf16.size(); }
    void truncate(qint64 size)
    {
        if (isLatin1())
            latin1.truncate(size);
        else
            utf16.truncate(size);
    }
};

struct TextChange;
struct TextTree;
class LayoutChange;
class LayoutCopy;
class LeafMemory;
class TextLayout;
class TextPiece;

/// Text of one document, cut into lines by LF and into display rows by a layout rule.
///
/// A B+ tree: leaves hold up to a few thousand units, one byte a unit where all are below 256; inner nodes
/// sum units, line ends and row ends and keep the widest row. Every conversion is one descent.
///
/// Units: offsets, columns and lengths are UTF-16 units; rows, lines and columns count from 0.
/// Cost: edits and conversions O(log n), whatever the length of a line, wrapped or not; the same row or
/// offset again, and the next row, nothing to speak of. An edit near the one before, and a question for the
/// text near it, is a matter of moving a few units: what it does to rows and lines is worked out when they
/// are asked for. Threads: the last answers are kept, so that even questions are for one thread at a time.
/// Errors: a position outside the text is the caller's bug and asserted; nothing here talks to the user.
class TextStore {
public:
    /// One display row. `end()` is the offset of its LF when `endsLine`, else of the next row's first unit.
    struct Row {
        Offset start;
        qint64 length = 0; ///< units of the row, its LF not counted
        /// The row is the last one of its logical line (true for the last row of the text).
        bool endsLine = false;
        Offset end() const { return start + length; }
    };
    /// Builds a store's content from blocks in order, for loading: no second copy, no edit cost.
    class Builder;

    TextStore();
    explicit TextStore(const LayoutRule &rule, const NodeSizes &sizes = {});
    TextStore(TextStore &&) noexcept;
    TextStore &operator=(TextStore &&) noexcept;
    ~TextStore();

    /// Units in the text.
    qint64 length() const;
    /// The offset behind the last one.
    Offset end() const { return Offset(length()); }
    /// Logical lines: LFs + 1.
    qint64 lineCount() const;
    /// Display rows, at least 1; equals lineCount() when rows are not wrapped.
    qint64 rowCount() const;
    /// Width of the widest row; exact, but where rows are wrapped it may be up to the limit, or the widest
    /// character if that is wider. Where lines that are laid out ahead are wrapped, it is theirs.
    Subpixels widestRow() const;

    const LayoutRule &layoutRule() const;
    /// For whoever builds trees that are to be laid out like this one.
    const TextLayout &layout() const;
    /// That of the line which holds an offset: one that is laid out ahead has another.
    const TextLayout &layoutAt(Offset offset) const;
    /// Lays the whole text out anew, also for a rule equal to the one before (its advances may have changed):
    /// O(n), the one operation that is.
    void setLayoutRule(const LayoutRule &rule);
    /// Goes on measuring for so long. True: all is measured, and the text is laid out anew; `change`, of
    /// nodes of this store's sizes, is not needed any more.
    bool setLayout(LayoutChange &change, QDeadlineTimer end);

    /// Lays lines out ahead of all others, by a layout that the text is on the way to, of nodes of the same
    /// sizes: from the start of one to the end of one, its LF not counted. Their rows are those that are
    /// asked for from now on, in place of others that were ahead before; edits in them go along. All else
    /// keeps its rows until the text is laid out anew, when no line is ahead any more. Costs what it costs to
    /// measure these lines; so does an edit across their first or last LF, and one may grow them beyond
    /// mostAhead, when they are ahead no more.
    void layOutAhead(TextRange lines, const TextLayout &layout);
    /// No line is ahead any more; nothing where none is.
    void dropAhead();
    std::optional<TextRange> linesAhead() const;
    /// Units that take no noticeable time to be laid out.
    static constexpr qint64 mostAhead = qint64{ 4 } << 20;

    char16_t at(Offset offset) const;
    QString text(Offset offset, qint64 length) const;
    QString text(TextRange range) const { return text(range.start, range.length()); }
    /// The whole text; a second copy, for small texts and tests.
    QString text() const { return text({}, length()); }
    /// The chunk that holds `offset` (< length()), beginning exactly at `offset` and at most one leaf long.
    TextChunk chunkAt(Offset offset) const;
    /// As chunkAt(), but in parts that are free of spellings or one unit with its spelling; at length() that
    /// of the end.
    TextChunk spelledChunkAt(Offset offset) const;
    /// The chunk that ends exactly at `end`, not at the text's start, at most one leaf long: for walking
    /// backwards.
    TextChunk chunkBefore(Offset end) const;

    /// Puts `inserted` in place of `removed` units at `offset`; positions behind it that were taken before
    /// are stale.
    void replace(Offset offset, qint64 removed, QStringView inserted);
    /// The same, and hands over the units that were there: O(log n).
    TextPiece exchange(Offset offset, qint64 removed, QStringView inserted);
    TextPiece exchange(Offset offset, qint64 removed, const TextPiece &inserted);
    /// The same text without cutting it out: O(log n) as well, the leaves are shared until one side changes.
    TextPiece piece(Offset offset, qint64 length) const;
    /// Puts a piece in, of nodes of this store's sizes: O(log n) if it comes from this store and the layout
    /// rule has not been set since, else its text is measured. The piece is not used up, nor is more than a
    /// leaf of its text copied.
    void insert(Offset offset, const TextPiece &piece);
    /// Puts another store, of nodes of the same sizes, behind this one, with what stood behind its text: what
    /// comes of a text that is built in parts, wherever it was cut. O(log n) if it was built by a copy of
    /// this one's layout, else its text is measured.
    void append(TextStore &&other);
    /// The store is only to be appended to another one, where it is measured anew.
    void forgetLayout();

    Row row(RowIndex row) const;
    RowIndex lastRow() const { return RowIndex(rowCount() - 1); }
    /// Row that holds `offset`; the offset at which a row begins belongs to that row, not to the end of the
    /// one above.
    RowCol rowColAt(Offset offset) const;
    RowCol rowColAt(CursorPlace place) const;
    /// `position.column` may be 0..length of the row, which end means the row's own.
    CursorPlace placeAt(RowCol position) const;
    LineIndex lineAt(Offset offset) const;
    LineIndex lastLine() const { return LineIndex(lineCount() - 1); }
    Offset lineStart(LineIndex line) const;
    /// Behind the line's last unit, its LF not counted.
    Offset lineEnd(LineIndex line) const;

    /// Distance from the row's start to `position`, tabs expanded; O(log n) also in a row of 100 million
    /// units.
    Subpixels xAt(RowCol position) const;
    /// The column whose character covers `x` (its left edge is at or before x): 0..length of the row.
    qint64 columnAt(RowIndex row, Subpixels x) const;

    /// Asserts every invariant of the tree; for tests.
    void checkInvariants() const;

private:
    explicit TextStore(const TextLayout &layout);
    template <typename Function> void editAhead(const TextChange &change, const Function &edit);

    class Private;
    std::unique_ptr<Private> d;
    friend class Builder;
};

/// Row on which a logical line begins.
RowIndex rowOfLine(const TextStore &store, LineIndex line);
/// Logical line that a row is part of: the count of rows above it that end a line.
LineIndex lineOfRow(const TextStore &store, RowIndex row);

/// Text cut out of a store or shared with it, with its spellings, as compact as the store keeps it. Like
/// stores, pieces of one text all belong to one thread.
class TextPiece {
public:
    TextPiece() = default;
    /// From a string, e.g. typed text; `sizes` are those of the store that it goes to.
    explicit TextPiece(QStringView text, const NodeSizes &sizes = {});
    qint64 length() const;
    QString text() const { return text({}, length()); }
    bool isEmpty() const { return !m_root; }
    /// A part of it; the cost is the part's length.
    QString text(Offset offset, qint64 length) const;
    /// The same without copying it: O(log n).
    TextPiece part(Offset offset, qint64 length) const;
    /// Puts another piece, of nodes of the same sizes, behind or before this one: O(log n).
    void append(TextPiece &&other);
    void prepend(TextPiece &&other);

    /// Goes on measuring it for so long by the layout that its store is on the way to; whether all is
    /// measured. See LayoutChange.
    bool measure(LayoutChange &change, QDeadlineTimer end) const;
    /// The store has that layout now.
    void setLayout(const LayoutChange &change);

    /// A store of that layout measures nothing when the piece is put in.
    bool isMeasuredBy(const TextLayout &layout) const;

    /// For whoever reads the nodes themselves; null for an empty piece.
    const TextNode *root() const { return m_root.get(); }

private:
    TextPiece(TextNodeRef root, const NodeSizes &sizes);
    TextTree tree() const;
    /// As good as a string: not worth a node of its own in a store, and spelled as usual.
    bool isPlainText() const;

    TextNodeRef m_root;
    NodeSizes m_sizes;
    friend class TextStore;
};

class TextStore::Builder {
public:
    /// The rule the text is laid out by while it is built, so that loading walks it once.
    explicit Builder(const LayoutRule &rule, const NodeSizes &sizes = {});
    Builder(Builder &&) noexcept;
    ~Builder();
    /// For a text that is appended to the store of which the layout is, built in any thread. The finished
    /// store must be gone or appended before `layout` is.
    /// Leaves are made in `memory`, if there is one, until the store is finished.
    explicit Builder(const LayoutCopy &layout, LeafMemory *memory = nullptr);
    /// Each byte one character U+0000..U+00FF.
    void append(QByteArrayView latin1);
    void append(QStringView text);
    /// Tells the bytes that the unit appended next was read from; at the end of the text, what stood there.
    void spell(QByteArrayView bytes);
    /// The finished store; the builder is empty afterwards.
    TextStore finish();

private:
    class Private;
    std::unique_ptr<Private> d;
};
