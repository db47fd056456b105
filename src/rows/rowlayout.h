#pragma once

#include "rows/fontmeasure.h"
#include "text/textstore.h"

#include <QColor>
#include <QPointF>
#include <QString>

#include <vector>

class QPainter;

/// Text that is shown in a row and is no part of the document: what an input method is composing.
struct InsertedText {
    qint64 column = 0; ///< where in the row it is shown
    QString text;
};

/// Where the characters of one display row stand: the one place that drawing, cursor, hit test and selection
/// ask.
///
/// A character is placed by its advance; a run of combining marks, Arabic, Indic scripts or emoji
/// sequences is shaped by the toolkit and takes the width that comes out. The row's base direction is left to
/// right. The row starts left of 0 by the left bearing of its first character, up to its first TAB.
///
/// Only the part of the row between `left` and `right` (logical pixels from the row's start) is looked at,
/// and shaping is done in segments of a few thousand units that begin where the store has them: a row of 100
/// million characters costs what the window shows of it, and a column stands at the same place whatever part
/// is looked at. Columns count the inserted text too. Valid until the next change of the store.
class RowLayout {
public:
    RowLayout(const TextStore &store, RowIndex row, const FontMeasure &measure, qreal left, qreal right,
        const InsertedText &inserted = {});
    ~RowLayout();
    RowLayout(RowLayout &&) noexcept;

    RowIndex row() const;
    qint64 length() const;
    bool endsLine() const;
    /// The columns that are looked at: characters outside are not drawn.
    qint64 firstColumn() const;
    qint64 lastColumn() const;
    char16_t at(qint64 column) const;

    /// Where the cursor stands before a column, from the row's start; any column 0..length(), also outside
    /// left..right.
    qreal x(qint64 column) const;
    /// Right end of the characters firstColumn()..lastColumn() - 1, from the row's start.
    qreal rightEdge() const;
    /// The cursor place nearest to `x`.
    qint64 cursorAt(qreal x) const;
    /// Whether the cursor may stand before a column: not inside a surrogate pair or a combined character.
    bool isCursorStop(qint64 column) const;
    /// The extents that the visible ones of the characters begin..end - 1 cover, in ascending order; more
    /// than one where the direction changes.
    struct Span {
        qreal left = 0;
        qreal right = 0;
    };
    std::vector<Span> spans(qint64 begin, qint64 end) const;

    /// Draws the visible characters with the row's start at `origin` (baseline at origin.y() + ascent).
    /// The painter's scale is 1, for device pixels, or the measure's device pixel ratio.
    void draw(QPainter &painter, QPointF origin, const QColor &color) const;

private:
    struct Private;
    std::unique_ptr<Private> d;
};

/// How far left of the margin a cursor may show, logical pixels.
inline constexpr qreal cursorOverhang = 2;
/// Where a cursor that stands at `x` of a row is shown, logical pixels from the row's start. That is `x`, but
/// for a row that starts so far left that its cursor would stand among the row numbers or out of sight.
qreal shownCursorX(qreal x);
