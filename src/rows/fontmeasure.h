#pragma once

#include "rows/charclass.h"
#include "text/advancetable.h"

#include <QFont>
#include <QRawFont>

#include <memory>

class ShapedRun;

/// One font at one device scale: the width and the glyph of every character, and the measures that rows are
/// drawn by.
///
/// Shared: editors with the same font and scale use one. Lengths are logical pixels; they are whole device
/// pixels, so that text drawn at them is as crisp as the toolkit's own. In a fixed-pitch font every character
/// takes whole cells: full width is exactly twice half width, whatever font a missing character comes from.
///
/// Cost: a character is looked up once, when it is first measured or drawn; nothing but U+0000..U+00FF is
/// measured ahead.
class FontMeasure {
public:
    static std::shared_ptr<const FontMeasure> forFont(const QFont &font, qreal devicePixelRatio);
    ~FontMeasure();
    FontMeasure(const FontMeasure &) = delete;
    FontMeasure &operator=(const FontMeasure &) = delete;

    const QFont &font() const;
    qreal devicePixelRatio() const;
    const AdvanceTable &advances() const;
    /// From the top of a row to the base line, and the whole height: the font's own measures, or more where
    /// its accented capitals and descenders need more.
    qreal ascent() const;
    qreal height() const;
    /// Width of "x".
    qreal xWidth() const;
    /// Space between a character's origin and its leftmost pixel; below 0 where it reaches to the left.
    qreal leftBearing(char32_t codePoint) const;

    qreal toPixels(Subpixels width) const;
    /// The largest whole number of device pixels not above `pixels`.
    Subpixels toSubpixels(qreal pixels) const;

    /// How a row draws one character that stands for itself.
    struct Glyph {
        CharClass charClass = CharClass::Plain;
        bool isShown = true; ///< some font has it; otherwise a hex box stands for it
        quint16 font = 0; ///< index for rawFont()
        qint16 offset = 0; ///< device pixels from the character's left edge to the glyph's origin
        quint32 index = 0;
    };
    /// Valid until the next call.
    const Glyph &glyph(char32_t codePoint) const;
    /// That of its glyph; costs nothing to speak of where that is not known yet.
    CharClass charClass(char32_t codePoint) const;
    /// Whether a font was asked for its glyph; for tests.
    bool hasGlyph(char32_t codePoint) const;
    /// The fonts that glyphs come from, at their size in device pixels.
    const QRawFont &rawFont(int index) const;
    /// The font whose size counts device pixels.
    const QFont &deviceFont() const;
    /// Text shaped by the toolkit; the last ones are remembered.
    std::shared_ptr<const ShapedRun> shaped(const QString &text) const;

private:
    FontMeasure(const QFont &font, qreal devicePixelRatio);
    struct Private;
    std::unique_ptr<Private> d;
};
