#include "rows/glyphcache.h"

#include "rows/hexbox.h"

#include <QGlyphRun>
#include <QTextLayout>

#include <cmath>

namespace {

/// A character may be this much wider than its cells before it gets one more.
constexpr qreal cellTolerance = 0.25;
/// The widest character: what an AdvanceTable can hold.
constexpr int largestAdvance = 65534 / subpixelsPerPixel;

/// What reaches highest and lowest in fonts whose own ascent and descent are less than their characters need.
constexpr std::array tallCharacters = { U'|', U'\u00c5', U'\u00c9', U'g', U'j', U'_', U'\u8a9e' };

quint32 glyphIndex(const QRawFont &font, char32_t codePoint)
{
    const std::array<QChar, 2> units = { QChar(QChar::highSurrogate(codePoint)),
        QChar(QChar::lowSurrogate(codePoint)) };
    const QChar unit(char16_t(codePoint & 0xffff));
    const bool supplementary = QChar::requiresSurrogates(codePoint);
    std::array<quint32, 2> indexes = {};
    int count = int(indexes.size());
    font.glyphIndexesForChars(
        supplementary ? units.data() : &unit, supplementary ? 2 : 1, indexes.data(), &count);
    return count > 0 ? indexes[0] : 0;
}

} // namespace

GlyphCache::GlyphCache(const QFont &deviceFont)
    : m_font(deviceFont)
{
    m_fonts.push_back(QRawFont::fromFont(deviceFont));
    const auto width = [this](char32_t c) {
        return natural(FontMeasure::Glyph{ .index = glyphIndex(m_fonts[0], c) });
    };
    const qreal x = width(U'x');
    m_fixedPitch = x > 0 && x == width(U'i') && x == width(U'W') && x == width(U'.');
    m_naturalCell = qMax(x, 1.0);
    m_cell = qRound(m_naturalCell);
    measureHeight();
}

void GlyphCache::measureHeight()
{
    qreal top = -m_fonts[0].ascent();
    qreal bottom = m_fonts[0].descent();
    for (const char32_t codePoint : tallCharacters) {
        if (const quint32 index = glyphIndex(m_fonts[0], codePoint)) {
            const QRectF ink = m_fonts[0].boundingRect(index);
            top = qMin(top, ink.top());
            bottom = qMax(bottom, ink.bottom());
        }
    }
    m_ascent = qRound(-top);
    m_height = qMax(1, m_ascent + qRound(bottom));
}

qreal GlyphCache::natural(const FontMeasure::Glyph &glyph) const
{
    QPointF advance;
    return rawFont(glyph.font).advancesForGlyphIndexes(&glyph.index, &advance, 1) ? advance.x() : 0;
}

int GlyphCache::rounded(qreal advance) const
{
    if (!m_fixedPitch || advance <= 0)
        return qBound(0, qRound(advance), largestAdvance);
    const int cells = qMax(1, qCeil(advance / m_naturalCell - cellTolerance));
    return qMin(cells * m_cell, largestAdvance);
}

int GlyphCache::hexBoxAdvance(char32_t codePoint) const
{
    // Whole cells, and none too few: the box is not to lie over its neighbour.
    const int width = hexBoxSize(codePoint, m_height).width() + 1;
    const int cell = m_fixedPitch ? m_cell : 1;
    return qMin((width + cell - 1) / cell * cell, largestAdvance);
}

int GlyphCache::advance(char32_t codePoint)
{
    if (isIdeograph(codePoint)) {
        const char32_t first = codePoint >= 0xac00 && codePoint <= 0xd7a3 ? 0xac00 : 0x4e00;
        if (codePoint != first && glyph(first).isShown)
            return advance(first);
    }
    const FontMeasure::Glyph &found = glyph(codePoint);
    if (found.charClass == CharClass::Extend && isZeroWidth(codePoint))
        return 0;
    if (!found.isShown)
        return hexBoxAdvance(codePoint);
    return rounded(natural(found));
}

int GlyphCache::leftBearing(char32_t codePoint)
{
    const auto known = m_bearings.constFind(codePoint);
    if (known != m_bearings.cend())
        return *known;
    const FontMeasure::Glyph &found = glyph(codePoint);
    const bool drawn = found.isShown && found.charClass != CharClass::RightToLeft;
    const int bearing =
        drawn ? qRound(rawFont(found.font).boundingRect(found.index).left()) + found.offset : 0;
    m_bearings.insert(codePoint, bearing);
    return bearing;
}

const FontMeasure::Glyph &GlyphCache::find(char32_t codePoint)
{
    if (codePoint >= 0x10000) {
        const auto known = m_supplementary.constFind(codePoint);
        return known != m_supplementary.cend() ? *known
                                               : *m_supplementary.insert(codePoint, lookUp(codePoint));
    }
    const FontMeasure::Glyph glyph = lookUp(codePoint);
    Page &page = pageOf(codePoint);
    const std::size_t at = codePoint & 0xff;
    page.known[at] = Known::Glyph;
    return page.glyphs[at] = glyph;
}

CharClass GlyphCache::findClass(char32_t codePoint)
{
    const CharClass found = ::charClass(codePoint);
    if (codePoint >= 0x10000)
        return found;
    Page &page = pageOf(codePoint);
    const std::size_t at = codePoint & 0xff;
    page.known[at] = Known::Class;
    return page.glyphs[at].charClass = found;
}

GlyphCache::Page &GlyphCache::pageOf(char32_t codePoint)
{
    std::unique_ptr<Page> &page = m_pages[codePoint >> 8];
    if (!page)
        page = std::make_unique<Page>();
    return *page;
}

bool GlyphCache::hasGlyph(char32_t codePoint) const
{
    if (codePoint >= 0x10000)
        return m_supplementary.contains(codePoint);
    const Page *const page = m_pages[codePoint >> 8].get();
    return page && page->known[codePoint & 0xff] == Known::Glyph;
}

FontMeasure::Glyph GlyphCache::lookUp(char32_t codePoint)
{
    FontMeasure::Glyph glyph;
    glyph.charClass = ::charClass(codePoint);
    if (glyph.charClass == CharClass::HexBox) {
        glyph.isShown = false;
        return glyph;
    }
    const bool found = takeFromKnownFonts(codePoint, glyph) || takeFromToolkit(codePoint, glyph);
    glyph.isShown = found && (glyph.charClass != CharClass::Plain || natural(glyph) > 0);
    if (m_fixedPitch && glyph.isShown && glyph.font > 0 && glyph.charClass == CharClass::Plain) {
        const qreal advance = natural(glyph);
        glyph.offset = qint16(qMax(0, qFloor((rounded(advance) - advance) / 2)));
    }
    return glyph;
}

bool GlyphCache::takeFromKnownFonts(char32_t codePoint, FontMeasure::Glyph &glyph)
{
    glyph.index = glyphIndex(m_fonts[0], codePoint);
    if (glyph.index)
        return true;
    const auto fallback = m_fontOfScript.constFind(QChar::script(codePoint));
    if (fallback == m_fontOfScript.cend())
        return false;
    glyph.font = *fallback;
    glyph.index = glyphIndex(rawFont(glyph.font), codePoint);
    return glyph.index;
}

bool GlyphCache::takeFromToolkit(char32_t codePoint, FontMeasure::Glyph &glyph)
{
    QTextLayout layout(QString::fromUcs4(&codePoint, 1), m_font);
    layout.beginLayout();
    layout.createLine();
    layout.endLayout();
    const QList<QGlyphRun> runs = layout.glyphRuns();
    if (runs.isEmpty() || runs[0].glyphIndexes().isEmpty() || !runs[0].glyphIndexes().at(0))
        return false;
    glyph.font = quint16(fontIndex(runs[0].rawFont()));
    glyph.index = runs[0].glyphIndexes().at(0);
    const int script = QChar::script(codePoint);
    if (script != QChar::Script_Common && script != QChar::Script_Inherited)
        m_fontOfScript.insert(script, glyph.font);
    return true;
}

int GlyphCache::fontIndex(const QRawFont &font)
{
    const auto known = std::find(m_fonts.begin(), m_fonts.end(), font);
    if (known != m_fonts.end())
        return int(known - m_fonts.begin());
    m_fonts.push_back(font);
    return int(m_fonts.size()) - 1;
}
