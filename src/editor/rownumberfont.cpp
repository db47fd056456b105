#include "editor/rownumberfont.h"

#include "rows/lcfont.h"

#include <cmath>

namespace {

QFont fontOfSize(int pointSize, int size)
{
    QFont font = lcFont(pointSize);
    font.setPointSize(size);
    return font;
}

} // namespace

void RowNumberFont::fit(int pointSize, qreal scale, const QSize &room)
{
    const bool isSame =
        m_measure && m_pointSize == pointSize && m_room == room && m_measure->devicePixelRatio() == scale;
    if (isSame)
        return;
    m_pointSize = pointSize;
    m_room = room;
    int size = lcFont(pointSize).pointSize();
    use(pointSize, size, scale);
    while (size > 1 && !fits(room))
        use(pointSize, --size, scale);
}

void RowNumberFont::use(int pointSize, int size, qreal scale)
{
    m_measure = FontMeasure::forFont(fontOfSize(pointSize, size), scale);
    m_digitHeight = m_digitDepth = m_numberWidth = 0;
    for (char32_t digit = U'0'; digit <= U'9'; ++digit) {
        const FontMeasure::Glyph glyph = m_measure->glyph(digit);
        const QRectF ink = m_measure->rawFont(glyph.font).boundingRect(glyph.index);
        const auto advance = int(m_measure->advances().advanceOf(digit) / subpixelsPerPixel);
        const int before = (rowNumberDigits - 1) * advance + glyph.offset;
        m_digitHeight = qMax(m_digitHeight, int(std::ceil(-ink.top())));
        m_digitDepth = qMax(m_digitDepth, int(std::ceil(ink.bottom())));
        m_numberWidth = qMax(m_numberWidth, before + int(std::ceil(ink.right())));
    }
}

bool RowNumberFont::fits(const QSize &room) const
{
    return m_digitHeight + m_digitDepth <= room.height() && m_numberWidth <= room.width();
}
