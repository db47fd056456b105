#pragma once

#include <QFont>

/// The font, or as little narrower as `fits(font)` asks for, but no narrower than `narrowest` per cent of its
/// usual width. It is tried out step by step: widths do not shrink in proportion, as the system may choose a
/// narrower face.
template <typename Fits> QFont narrowToFit(QFont font, int narrowest, Fits &&fits)
{
    constexpr int step = 5; // per cent
    for (int stretch = QFont::Unstretched - step; !fits(font) && stretch >= narrowest; stretch -= step)
        font.setStretch(stretch);
    return font;
}
