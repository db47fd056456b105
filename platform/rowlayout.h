#pragma once

#include "platform/fontmeasure.h"
#include "platform/text/textstore.h"

#include <QColor>

class QPainter;

/// Where the characters of one display row stand: the one place that drawing, cursor, hit test and selection
/// ask.
///
/// Most rows are placed by one advance per character; a row with combining marks, Arabic, Indic scripts,
/// surrogate pairs or emoji sequences is shaped by the toolkit. Only the part of the row between `left` and
/// `right` (logical pixels from the row's start) is looked at, so a row of 100 million characters costs what
/// the window shows of it. Valid until the next change of the store.
class RowLayout {
public:
    RowLayout(const TextStore &store, qint64 row, const FontMeasure &measure, qreal left, qreal right);
    ~RowLayout();
    RowLayout(RowLayout &&) noexcept;

    qint64 row() const;
    qint64 length() const;
    bool endsLine() const;
    /// The columns that are looked at: characters outside are not drawn.
    qint64 firstColumn() const;
    qint64 lastColumn() const;
    char16_t at(qint64 column) const;

    /// Left edge of a column's character, from the row's start; any column 0..length(), also outside
    /// left..right.
    qreal x(qint64 column) const;
    /// The cursor place nearest to `x`.
    qint64 cursorAt(qreal x) const;
    /// Whether the cursor may stand before a column: not inside a surrogate pair or a combined character.
    bool isCursorStop(qint64 column) const;

    /// Draws the visible characters with the row's start at `origin` (baseline at origin.y() + ascent).
    void draw(QPainter &painter, QPointF origin, const QColor &color) const;

private:
    struct Private;
    std::unique_ptr<Private> d;
};

/// The next and the previous place the cursor may stand at in a whole text; stays at the ends. Looks at no
/// more than the characters around `offset`.
qint64 nextCursorStop(const TextStore &store, qint64 offset);
qint64 previousCursorStop(const TextStore &store, qint64 offset);
