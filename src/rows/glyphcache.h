#pragma once

#include "rows/fontmeasure.h"

#include <QHash>

#include <array>
#include <vector>

/// The fonts that show the characters of one font: itself, and for what it lacks the ones the toolkit falls
/// back to, each character looked up once.
class GlyphCache {
public:
    /// `deviceFont` counts its size in device pixels.
    explicit GlyphCache(const QFont &deviceFont);

    const FontMeasure::Glyph &glyph(char32_t codePoint)
    {
        if (codePoint < 0x10000) {
            const Page *page = m_pages[codePoint >> 8].get();
            if (page && page->known[codePoint & 0xff] == Known::Glyph)
                return page->glyphs[codePoint & 0xff];
        }
        return find(codePoint);
    }
    /// As its glyph says, for which no font is asked.
    CharClass charClass(char32_t codePoint)
    {
        if (codePoint < 0x10000) {
            const Page *page = m_pages[codePoint >> 8].get();
            if (page && page->known[codePoint & 0xff] != Known::Nothing)
                return page->glyphs[codePoint & 0xff].charClass;
        }
        return findClass(codePoint);
    }
    /// Whether it was looked up; for tests.
    bool hasGlyph(char32_t codePoint) const;
    /// Device pixels a character takes; 0 for one that takes no room of its own.
    int advance(char32_t codePoint);
    int leftBearing(char32_t codePoint);
    const QRawFont &rawFont(int index) const { return m_fonts[std::size_t(index)]; }
    /// Width of "x".
    int cell() const { return m_cell; }
    int ascent() const { return m_ascent; }
    int height() const { return m_height; }

private:
    enum class Known : quint8 { Nothing, Class, Glyph };
    struct Page {
        std::array<FontMeasure::Glyph, 256> glyphs{};
        std::array<Known, 256> known{};
    };
    Page &pageOf(char32_t codePoint);
    CharClass findClass(char32_t codePoint);
    const FontMeasure::Glyph &find(char32_t codePoint);
    FontMeasure::Glyph lookUp(char32_t codePoint);
    bool takeFromKnownFonts(char32_t codePoint, FontMeasure::Glyph &glyph);
    bool takeFromToolkit(char32_t codePoint, FontMeasure::Glyph &glyph);
    int fontIndex(const QRawFont &font);
    void measureHeight();
    qreal natural(const FontMeasure::Glyph &glyph) const;
    int rounded(qreal advance) const;
    int hexBoxAdvance(char32_t codePoint) const;

    QFont m_font;
    std::vector<QRawFont> m_fonts; ///< the first one is the font itself
    QHash<int, quint16> m_fontOfScript; ///< the fallback found last for a script
    std::array<std::unique_ptr<Page>, 256> m_pages;
    QHash<char32_t, FontMeasure::Glyph> m_supplementary;
    QHash<char32_t, int> m_bearings;
    qreal m_naturalCell = 1;
    int m_cell = 1;
    int m_ascent = 0;
    int m_height = 1;
    bool m_fixedPitch = false;
};
