#pragma once

#include "platform/text/advancetable.h"

#include <QFont>

#include <memory>

/// One font at one device scale: the width of every character, and the measures that rows are drawn by.
///
/// Shared: editors with the same font and scale use one. Lengths are logical pixels; they are whole device
/// pixels, so that text drawn at them is as crisp as the toolkit's own.
class FontMeasure {
public:
    static std::shared_ptr<const FontMeasure> forFont(const QFont &font, qreal devicePixelRatio);
    virtual ~FontMeasure() = default;

    virtual const QFont &font() const = 0;
    virtual qreal devicePixelRatio() const = 0;
    virtual const AdvanceTable &advances() const = 0;
    virtual qreal ascent() const = 0;
    virtual qreal height() const = 0;
    /// Width of "x".
    virtual qreal xWidth() const = 0;
    /// Space between a character's origin and its leftmost pixel; below 0 where it reaches to the left.
    virtual qreal leftBearing(char32_t codePoint) const = 0;
};
