#pragma once

#include "text/units.h"

#include <QPixmap>

#include <vector>

/// The one off-screen picture that all editors draw their rows in, and the rows of a view that it still
/// holds.
///
/// It is made larger when a row needs it and never smaller. At a fractional scale, where the screen's own
/// content cannot be moved by whole rows, each slot of a view has a place of its own in it, so that a view
/// that goes on copies the rows that stay and draws those that are new. Only the view that has drawn last has
/// rows in it.
class RowPictures {
public:
    RowPictures() = default;
    ~RowPictures();
    Q_DISABLE_COPY_MOVE(RowPictures)

    /// Makes room for `slotCount` rows of a size in device pixels; for none, all rows are drawn at the same
    /// place and none is kept. Keeps what is there where nothing has changed.
    void setView(int slotCount, const QSize &row);
    bool keepsRows() const { return !m_places.empty(); }
    /// Device pixels from the picture's top to where a row is to be drawn; what was there is lost.
    int take(RowIndex row);
    int top(RowIndex row) const;
    /// The row has been drawn there over its whole width; behind `inkEnd` it shows nothing.
    void keep(RowIndex row, int inkEnd);
    bool has(RowIndex row) const;
    int inkEnd(RowIndex row) const { return placeOf(row).inkEnd; }
    /// The rows first..last, or all, look different now.
    void forget(RowIndex first, RowIndex last);
    void forget();

    /// The picture, of at least that size; what it held is lost when it is made larger.
    static QPixmap &picture(const QSize &needed);
    static QSize size();

private:
    /// What another one has there is lost.
    void hold();

    static constexpr RowIndex none{ -1 };
    struct Place {
        RowIndex row = none; ///< whose picture it holds
        int inkEnd = 0;
    };

    std::size_t indexOf(RowIndex row) const { return std::size_t(row.value() % qint64(m_places.size())); }
    const Place &placeOf(RowIndex row) const { return m_places[indexOf(row)]; }

    std::vector<Place> m_places;
    QSize m_rowSize;
    static RowPictures *s_holder; ///< whose rows the picture holds
};
