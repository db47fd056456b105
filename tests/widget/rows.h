#pragma once

#include "rows/fontmeasure.h"
#include "widget/qmultilineedit.h"

#include <QTimer>

#include <algorithm>
#include <cmath>

/// Text of one row without its line end.
inline QString rowText(const QMultiLineEdit &edit, qint64 row)
{
    const TextStore::Row found = edit.store().row(RowIndex(row));
    return edit.store().text(found.start, found.length);
}

/// Wraps rows behind a number of columns of "x" in the present font.
inline void wrapAt(QMultiLineEdit &edit, qint64 columns)
{
    const qreal width = FontMeasure::forFont(edit.font(), edit.devicePixelRatioF())->xWidth();
    edit.setWrapColumnOrWidth(int(std::ceil(qreal(columns) * width)));
    edit.setWordWrap(QMultiLineEdit::FixedPixelWidth);
}

/// Puts text in wherever the cursor is.
inline void insertAt(QMultiLineEdit &edit, const QString &text, qint64 row, qint64 column)
{
    const Offset offset = edit.store().placeAt({ RowIndex(row), column }).offset;
    edit.replace({ offset, offset }, text);
}

/// Takes a row out, with its line end where it has one.
inline void removeRow(QMultiLineEdit &edit, qint64 row)
{
    const TextStore::Row gone = edit.store().row(RowIndex(row));
    const bool hasLineEnd = gone.endsLine && row + 1 < edit.numLines();
    edit.replace({ gone.start, gone.end() + (hasLineEnd ? 1 : 0) }, {});
}

/// Whether anything runs that wakes the editor up later.
inline bool hasTimers(const QMultiLineEdit &edit)
{
    return std::ranges::any_of(edit.findChildren<QTimer *>(), &QTimer::isActive);
}
