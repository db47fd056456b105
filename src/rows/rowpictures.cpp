#include "rows/rowpictures.h"

#include <QCoreApplication>

namespace {

QPixmap &sharedPixmap()
{
    static QPixmap pixmap;
    return pixmap;
}

} // namespace

RowPictures *RowPictures::s_holder = nullptr;

RowPictures::~RowPictures()
{
    if (s_holder == this)
        s_holder = nullptr;
}

void RowPictures::hold()
{
    if (s_holder == this)
        return;
    s_holder = this;
    forget();
}

void RowPictures::setView(int slotCount, const QSize &row)
{
    hold();
    if (m_rowSize == row && int(m_places.size()) == slotCount)
        return;
    m_rowSize = row;
    m_places.assign(std::size_t(slotCount), Place());
    picture(QSize(row.width(), row.height() * qMax(1, slotCount)));
}

int RowPictures::take(RowIndex row)
{
    hold();
    if (!m_places.empty())
        m_places[indexOf(row)].row = none;
    return top(row);
}

int RowPictures::top(RowIndex row) const
{
    return m_places.empty() ? 0 : int(indexOf(row)) * m_rowSize.height();
}

void RowPictures::keep(RowIndex row, int inkEnd)
{
    if (!m_places.empty())
        m_places[indexOf(row)] = { .row = row, .inkEnd = inkEnd };
}

bool RowPictures::has(RowIndex row) const
{
    return s_holder == this && !m_places.empty() && placeOf(row).row == row;
}

void RowPictures::forget(RowIndex first, RowIndex last)
{
    for (Place &place : m_places) {
        if (first <= place.row && place.row <= last)
            place.row = none;
    }
}

void RowPictures::forget()
{
    for (Place &place : m_places)
        place.row = none;
}

QPixmap &RowPictures::picture(const QSize &needed)
{
    QPixmap &pixmap = sharedPixmap();
    if (pixmap.isNull())
        qAddPostRoutine([] { sharedPixmap() = QPixmap(); });
    if (pixmap.width() < needed.width() || pixmap.height() < needed.height()) {
        pixmap = QPixmap(pixmap.size().expandedTo(needed));
        if (s_holder)
            s_holder->forget();
    }
    return pixmap;
}

QSize RowPictures::size()
{
    return sharedPixmap().size();
}
