#include "rows/fontmeasure.h"

#include "rows/glyphcache.h"
#include "rows/shapedrun.h"

#include <QCache>
#include <QCoreApplication>
#include <QFontInfo>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

/// Characters of shaped text that a font remembers, about a few screens full.
constexpr int shapedCharacters = 1 << 16;
constexpr std::size_t rememberedMeasures = 8;

QFont scaled(const QFont &font, qreal devicePixelRatio)
{
    QFont result = font;
    result.setPointSizeF(QFontInfo(font).pointSizeF() * devicePixelRatio);
    return result;
}

} // namespace

struct FontMeasure::Private {
    Private(const QFont &logicalFont, qreal ratio)
        : font(logicalFont)
        , scale(ratio)
        , deviceFont(scaled(logicalFont, ratio))
        , cache(deviceFont)
        , advances([this](char32_t codePoint) { return int(cache.advance(codePoint) * subpixelsPerPixel); })
    {
        shapedRuns.setMaxCost(shapedCharacters);
    }

    QFont font;
    qreal scale;
    QFont deviceFont;
    GlyphCache cache;
    AdvanceTable advances;
    QCache<QString, std::shared_ptr<const ShapedRun>> shapedRuns;
};

FontMeasure::FontMeasure(const QFont &font, qreal devicePixelRatio)
    : d(std::make_unique<Private>(font, devicePixelRatio))
{
}

FontMeasure::~FontMeasure() = default;

std::shared_ptr<const FontMeasure> FontMeasure::forFont(const QFont &font, qreal devicePixelRatio)
{
    Q_ASSERT(devicePixelRatio > 0);
    // The last ones used, the latest in front; whoever shows more of them at a time keeps them himself.
    static std::vector<std::shared_ptr<const FontMeasure>> measures;
    if (measures.empty())
        qAddPostRoutine([] { measures.clear(); });
    const auto known = std::find_if(measures.begin(), measures.end(), [&](const auto &measure) {
        return measure->devicePixelRatio() == devicePixelRatio && measure->font() == font;
    });
    if (known != measures.end()) {
        std::rotate(measures.begin(), known, known + 1);
    } else {
        measures.emplace(measures.begin(), new FontMeasure(font, devicePixelRatio));
        measures.resize(qMin(measures.size(), rememberedMeasures));
    }
    return measures.front();
}

const QFont &FontMeasure::font() const
{
    return d->font;
}

const QFont &FontMeasure::deviceFont() const
{
    return d->deviceFont;
}

qreal FontMeasure::devicePixelRatio() const
{
    return d->scale;
}

const AdvanceTable &FontMeasure::advances() const
{
    return d->advances;
}

qreal FontMeasure::ascent() const
{
    return d->cache.ascent() / d->scale;
}

qreal FontMeasure::height() const
{
    return d->cache.height() / d->scale;
}

qreal FontMeasure::xWidth() const
{
    return d->cache.cell() / d->scale;
}

qreal FontMeasure::leftBearing(char32_t codePoint) const
{
    return d->cache.leftBearing(codePoint) / d->scale;
}

qreal FontMeasure::toPixels(Subpixels width) const
{
    return qreal(width) / subpixelsPerPixel / d->scale;
}

Subpixels FontMeasure::toSubpixels(qreal pixels) const
{
    // A length that was whole device pixels must come back as that many, whatever the division by the scale
    // left behind.
    constexpr qreal tolerance = 1e-4;
    return Subpixels(std::floor(pixels * d->scale + tolerance)) * subpixelsPerPixel;
}

const FontMeasure::Glyph &FontMeasure::glyph(char32_t codePoint) const
{
    return d->cache.glyph(codePoint);
}

CharClass FontMeasure::charClass(char32_t codePoint) const
{
    return d->cache.charClass(codePoint);
}

bool FontMeasure::hasGlyph(char32_t codePoint) const
{
    return std::as_const(d->cache).hasGlyph(codePoint);
}

const QRawFont &FontMeasure::rawFont(int index) const
{
    return d->cache.rawFont(index);
}

std::shared_ptr<const ShapedRun> FontMeasure::shaped(const QString &text) const
{
    if (const auto *known = d->shapedRuns.object(text))
        return *known;
    auto made = std::make_shared<const ShapedRun>(text, d->deviceFont);
    d->shapedRuns.insert(text, new std::shared_ptr<const ShapedRun>(made), text.size());
    return made;
}
