#include "rows/glyphcache.h"

#include "rows/hexbox.h"
#include "rows/lcfont.h"
#include "tests/testprogram.h"

using namespace Qt::StringLiterals;

namespace {

QFont fixedPitchFont()
{
    QFont font = lcFont(18);
    font.setPixelSize(18);
    return font;
}

/// Which knows no Japanese.
QFont proportionalFont()
{
    QFont font(u"DejaVu Sans"_s);
    font.setPixelSize(18);
    return font;
}

} // namespace

/// The glyphs and widths of characters, in one font and those that help it out.
class GlyphCacheTest : public QObject {
    Q_OBJECT

private slots:
    void fixedPitchMeansWholeCells_data();
    void fixedPitchMeansWholeCells();
    void aBoxLiesOverNoNeighbour();
    void whatJoinsItsNeighbourTakesNoRoom();
    void ideographsAreOneWidth_data();
    void ideographsAreOneWidth();
    void anotherFontHelpsOut();
    void aNarrowerGlyphStandsInTheMiddle();
    void nothingReachesOutOfARow();
    void bearingsAreThoseOfDrawnGlyphs();
    void classesAreKnownWithoutGlyphs();
};

void GlyphCacheTest::fixedPitchMeansWholeCells_data()
{
    QTest::addColumn<uint>("character");
    QTest::addColumn<int>("cells");
    QTest::newRow("x") << uint(U'x') << 1;
    QTest::newRow("W") << uint(U'W') << 1;
    QTest::newRow("half-width kana") << uint(U'\uff76') << 1;
    QTest::newRow("kanji") << uint(U'\u6f22') << 2;
    QTest::newRow("full-width space") << uint(U'\u3000') << 2;
}

void GlyphCacheTest::fixedPitchMeansWholeCells()
{
    QFETCH(uint, character);
    QFETCH(int, cells);
    GlyphCache glyphs(fixedPitchFont());
    QVERIFY(glyphs.cell() > 0);
    QCOMPARE(glyphs.advance(character), cells * glyphs.cell());
}

void GlyphCacheTest::aBoxLiesOverNoNeighbour()
{
    GlyphCache fixed(fixedPitchFont());
    GlyphCache proportional(proportionalFont());
    for (const char32_t character : { U'\x1b', U'\x85', char32_t(0xdc80), U'\U0010fffe' }) {
        QVERIFY(!fixed.glyph(character).isShown);
        QCOMPARE(fixed.advance(character) % fixed.cell(), 0);
        QVERIFY(fixed.advance(character) > hexBoxSize(character, fixed.height()).width());
        QCOMPARE(proportional.advance(character), hexBoxSize(character, proportional.height()).width() + 1);
    }
}

void GlyphCacheTest::whatJoinsItsNeighbourTakesNoRoom()
{
    GlyphCache glyphs(fixedPitchFont());
    for (const char32_t character : { U'\u0301', U'\u3099', U'\u200d', U'\ufe0f', U'\u1161' })
        QCOMPARE(glyphs.advance(character), 0);
}

void GlyphCacheTest::ideographsAreOneWidth_data()
{
    QTest::addColumn<uint>("character");
    QTest::addColumn<uint>("first");
    QTest::newRow("common kanji") << uint(U'\u8a9e') << uint(U'\u4e00');
    QTest::newRow("one that no font may have") << uint(U'\u9fff') << uint(U'\u4e00');
    QTest::newRow("last of the third plane") << uint(U'\U0003134a') << uint(U'\u4e00');
}

/// Whether a font has it or not: texts of millions of them are measured by one look.
void GlyphCacheTest::ideographsAreOneWidth()
{
    QFETCH(uint, character);
    QFETCH(uint, first);
    for (const QFont &font : { fixedPitchFont(), proportionalFont() }) {
        GlyphCache glyphs(font);
        QCOMPARE(glyphs.advance(character), glyphs.advance(first));
    }
}

void GlyphCacheTest::anotherFontHelpsOut()
{
    GlyphCache glyphs(proportionalFont());
    const FontMeasure::Glyph own = glyphs.glyph(U'a');
    const FontMeasure::Glyph kanji = glyphs.glyph(U'\u6f22');
    QCOMPARE(int(own.font), 0);
    QVERIFY(kanji.isShown && kanji.font > 0 && kanji.index > 0);
    QCOMPARE(glyphs.rawFont(kanji.font).glyphIndexesForString(u"漢"_s).value(0), kanji.index);
    // The next one of the script comes from the same font, whatever was looked up in between.
    glyphs.glyph(U'\u0416');
    QCOMPARE(glyphs.glyph(U'\u8a9e').font, kanji.font);
    QCOMPARE(glyphs.glyph(U'\u6f22').index, kanji.index);
}

void GlyphCacheTest::aNarrowerGlyphStandsInTheMiddle()
{
    GlyphCache glyphs(fixedPitchFont());
    QCOMPARE(int(glyphs.glyph(U'i').offset), 0);
    int found = 0;
    for (char32_t character = 0x2030; character < 0x2400; ++character) {
        const FontMeasure::Glyph glyph = glyphs.glyph(character);
        if (!glyph.isShown || glyph.font == 0 || glyph.charClass != CharClass::Plain)
            continue;
        QPointF natural;
        QVERIFY(glyphs.rawFont(glyph.font).advancesForGlyphIndexes(&glyph.index, &natural, 1));
        const qreal room = qMax(0.0, glyphs.advance(character) - natural.x());
        QCOMPARE(int(glyph.offset), qFloor(room / 2));
        found += glyph.offset > 0;
    }
    QVERIFY(found > 0);
}

void GlyphCacheTest::nothingReachesOutOfARow()
{
    for (const QFont &font : { fixedPitchFont(), proportionalFont() }) {
        GlyphCache glyphs(font);
        for (const char32_t character : { U'|', U'\u00c5', U'g', U'j', U'_' }) {
            const FontMeasure::Glyph glyph = glyphs.glyph(character);
            const QRectF ink = glyphs.rawFont(glyph.font).boundingRect(glyph.index);
            QVERIFY(-ink.top() <= glyphs.ascent() + 0.5);
            QVERIFY(ink.bottom() <= glyphs.height() - glyphs.ascent() + 0.5);
        }
    }
}

void GlyphCacheTest::bearingsAreThoseOfDrawnGlyphs()
{
    GlyphCache glyphs(proportionalFont());
    const FontMeasure::Glyph glyph = glyphs.glyph(U'j');
    const QRectF ink = glyphs.rawFont(glyph.font).boundingRect(glyph.index);
    QVERIFY(ink.left() < -0.5);
    QCOMPARE(glyphs.leftBearing(U'j'), qRound(ink.left()));
    QCOMPARE(glyphs.leftBearing(U'\x1b'), 0);
    QCOMPARE(glyphs.leftBearing(U'\u05d0'), 0); // which is shaped with its neighbours
    QCOMPARE(glyphs.leftBearing(U'j'), qRound(ink.left()));
}

void GlyphCacheTest::classesAreKnownWithoutGlyphs()
{
    GlyphCache glyphs(fixedPitchFont());
    for (const char32_t codePoint :
        { U'a', U'\t', U'\u0301', U'\u05d0', U'\u0915', U'\u6f22', char32_t(0xdc80), U'\U0001f1eb' }) {
        const CharClass found = glyphs.charClass(codePoint);
        QVERIFY(!glyphs.hasGlyph(codePoint));
        QCOMPARE(glyphs.glyph(codePoint).charClass, found);
        QVERIFY(glyphs.hasGlyph(codePoint));
        QCOMPARE(glyphs.charClass(codePoint), found);
    }
}

REGISTER_TEST(runWindowTest<GlyphCacheTest>)
#include "glyphcache_test.moc"
