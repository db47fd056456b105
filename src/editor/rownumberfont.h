#pragma once

#include "rows/fontmeasure.h"

#include <QSize>

#include <memory>

/// The font that row numbers are drawn in: of the size asked for, or smaller where its digits would be cut.
class RowNumberFont {
public:
    /// Chooses the largest font up to `pointSize` in which a number of as many digits as there is room for in
    /// the margin stands whole in `room` device pixels. Costs nothing when all is as it was.
    void fit(int pointSize, qreal scale, const QSize &room);

    const FontMeasure &measure() const { return *m_measure; }
    /// Device pixels from the top of the highest digit to the base line, and from there to its lowest pixel.
    int digitHeight() const { return m_digitHeight; }
    int digitDepth() const { return m_digitDepth; }

private:
    void use(int pointSize, int size, qreal scale);
    bool fits(const QSize &room) const;

    std::shared_ptr<const FontMeasure> m_measure;
    int m_digitHeight = 0;
    int m_digitDepth = 0;
    int m_numberWidth = 0; ///< device pixels to the right end of the last digit
    int m_pointSize = 0; ///< what it was chosen for
    QSize m_room;
};

/// Digits that a row number has room for.
inline constexpr int rowNumberDigits = 4;
