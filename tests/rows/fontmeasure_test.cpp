#include "rows/fontmeasure.h"
#include "rows/hexbox.h"
#include "rows/lcfont.h"
#include "tests/rows/screenscales.h"
#include "tests/testprogram.h"

#include <QTest>

#include <cmath>

namespace {

bool isWhole(qreal value)
{
    return std::abs(value - std::round(value)) < 1e-6;
}

} // namespace

class FontMeasureTest : public QObject {
    Q_OBJECT
private slots:
    void widthsAreWholeDevicePixels_data();
    void widthsAreWholeDevicePixels();
    void fullWidthIsTwiceHalfWidth_data() { widthsAreWholeDevicePixels_data(); }
    void fullWidthIsTwiceHalfWidth();
    void pixelsConvertBothWays_data() { widthsAreWholeDevicePixels_data(); }
    void pixelsConvertBothWays();
    void rowsHoldTheirCharacters_data() { widthsAreWholeDevicePixels_data(); }
    void rowsHoldTheirCharacters();
    void proportionalFontsKeepTheirWidths();
    void classes_data();
    void classes();
    void whatNoFontShowsIsAHexBox();
    void boxesHaveTheirPlaces();
    void measuresAreShared();
};

void FontMeasureTest::widthsAreWholeDevicePixels_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<qreal>("scale");
    for (const int size : { 9, 10, 12, 18, 31 }) {
        for (const qreal scale : scales)
            QTest::addRow("%d points at scale %g", size, scale) << size << scale;
    }
}

void FontMeasureTest::widthsAreWholeDevicePixels()
{
    QFETCH(int, size);
    QFETCH(qreal, scale);
    const auto measure = FontMeasure::forFont(lcFont(size), scale);
    QVERIFY(measure->xWidth() > 0);
    QVERIFY(isWhole(measure->xWidth() * scale));
    QVERIFY(isWhole(measure->height() * scale));
    QVERIFY(isWhole(measure->ascent() * scale));
    for (const char32_t c : { U'a', U'W', U'\u3042', U'\u6f22', U'\U00020b9f', U'\ufeff', U'\u0416' }) {
        const int width = measure->advances().advanceOf(c);
        QVERIFY(width > 0);
        QCOMPARE(width % subpixelsPerPixel, 0);
        QVERIFY(isWhole(measure->leftBearing(c) * scale));
    }
}

void FontMeasureTest::fullWidthIsTwiceHalfWidth()
{
    QFETCH(int, size);
    QFETCH(qreal, scale);
    const auto measure = FontMeasure::forFont(lcFont(size), scale);
    const int half = measure->advances().advance(u'x');
    QCOMPARE(measure->toPixels(half), measure->xWidth());
    for (const char16_t c : { u'i', u'W', u'.', u' ' })
        QCOMPARE(measure->advances().advance(c), half);
    for (const char16_t c : { u'\u3042', u'\u30a2', u'\u3000', u'\u6f22', u'\uff21' })
        QCOMPARE(measure->advances().advance(c), 2 * half);
}

void FontMeasureTest::pixelsConvertBothWays()
{
    QFETCH(int, size);
    QFETCH(qreal, scale);
    const auto measure = FontMeasure::forFont(lcFont(size), scale);
    for (const qint64 pixels : { 0LL, 1LL, 7LL, 1000003LL, 900000000000LL }) {
        const Subpixels width = pixels * subpixelsPerPixel;
        QCOMPARE(measure->toSubpixels(measure->toPixels(width)), width);
    }
    const Subpixels one = subpixelsPerPixel;
    QCOMPARE(measure->toSubpixels(measure->toPixels(5 * one) - 0.1 / scale), 4 * one);
}

void FontMeasureTest::rowsHoldTheirCharacters()
{
    QFETCH(int, size);
    QFETCH(qreal, scale);
    const auto measure = FontMeasure::forFont(lcFont(size), scale);
    for (const char32_t c : { U'|', U'\u00c9', U'g', U'_', U'\u8a9e', U'j' }) {
        const FontMeasure::Glyph glyph = measure->glyph(c);
        const QRectF ink = measure->rawFont(glyph.font).boundingRect(glyph.index);
        QVERIFY(-ink.top() <= measure->ascent() * scale + 0.5);
        QVERIFY(ink.bottom() <= (measure->height() - measure->ascent()) * scale + 0.5);
    }
}

void FontMeasureTest::proportionalFontsKeepTheirWidths()
{
    const QFont font(QStringLiteral("DejaVu Sans"), 18);
    const auto measure = FontMeasure::forFont(font, 1);
    const QRawFont raw = QRawFont::fromFont(font);
    for (const QChar c : { QLatin1Char('i'), QLatin1Char('W'), QLatin1Char('x') }) {
        const qreal width = raw.advancesForGlyphIndexes(raw.glyphIndexesForString(c)).constFirst().x();
        QCOMPARE(measure->advances().advance(c.unicode()), qRound(width) * int(subpixelsPerPixel));
    }
}

void FontMeasureTest::classes_data()
{
    QTest::addColumn<uint>("codePoint");
    QTest::addColumn<CharClass>("expected");
    QTest::addColumn<bool>("hasWidth");
    const auto add = [](const char *name, char32_t codePoint, CharClass expected, bool hasWidth) {
        QTest::newRow(name) << uint(codePoint) << expected << hasWidth;
    };
    add("letter", U'a', CharClass::Plain, true);
    add("kanji", U'\u6f22', CharClass::Plain, true);
    add("supplementary kanji", U'\U00020b9f', CharClass::Plain, true);
    add("NUL", 0, CharClass::HexBox, true);
    add("escape", 0x1b, CharClass::HexBox, true);
    add("DEL", 0x7f, CharClass::HexBox, true);
    add("C1 control", 0x85, CharClass::HexBox, true);
    add("no-break space is none", 0xa0, CharClass::Plain, true);
    add("byte order mark", 0xfeff, CharClass::HexBox, true);
    add("zero width space", 0x200b, CharClass::HexBox, true);
    add("direction override", 0x202e, CharClass::HexBox, true);
    add("line separator", 0x2028, CharClass::HexBox, true);
    add("first escaped byte", 0xdc80, CharClass::HexBox, true);
    add("last escaped byte", 0xdcff, CharClass::HexBox, true);
    add("lone high surrogate", 0xd800, CharClass::HexBox, true);
    add("combining acute", 0x301, CharClass::Extend, false);
    add("combining dakuten", 0x3099, CharClass::Extend, false);
    add("zero width joiner", 0x200d, CharClass::Extend, false);
    add("variation selector", 0xfe0f, CharClass::Extend, false);
    add("skin tone", 0x1f3fd, CharClass::Extend, false);
    add("conjoining vowel", 0x1161, CharClass::Extend, false);
    add("Arabic letter", 0x627, CharClass::RightToLeft, true);
    add("Hebrew letter", 0x5d0, CharClass::RightToLeft, true);
    add("Arabic number sign", 0x600, CharClass::RightToLeft, true);
}

void FontMeasureTest::classes()
{
    QFETCH(uint, codePoint);
    QFETCH(CharClass, expected);
    QFETCH(bool, hasWidth);
    QCOMPARE(charClass(codePoint), expected);
    const auto measure = FontMeasure::forFont(lcFont(18), 1);
    QCOMPARE(measure->advances().advanceOf(codePoint) > 0, hasWidth);
}

void FontMeasureTest::whatNoFontShowsIsAHexBox()
{
    const auto measure = FontMeasure::forFont(lcFont(18), 1);
    constexpr char32_t unassigned = 0x0378;
    QCOMPARE(charClass(unassigned), CharClass::Plain);
    QVERIFY(!measure->glyph(unassigned).isShown);
    QVERIFY(!measure->glyph(0xfeff).isShown);
    QVERIFY(measure->glyph(U'a').isShown);
    QVERIFY(measure->advances().advanceOf(unassigned) > 0);
}

void FontMeasureTest::boxesHaveTheirPlaces()
{
    for (const qreal scale : scales) {
        for (int size = 1; size <= 60; ++size) {
            const auto measure = FontMeasure::forFont(lcFont(size), scale);
            const int height = qRound(measure->height() * scale);
            for (const char32_t codePoint : { U'\x80', char32_t(0xdc80), char32_t(0x378), U'\U0010fffe' }) {
                if (measure->glyph(codePoint).isShown)
                    continue;
                const auto place = int(measure->advances().advanceOf(codePoint) / subpixelsPerPixel);
                QVERIFY2(hexBoxSize(codePoint, height).width() <= place,
                    qPrintable(QStringLiteral("%1 at %2").arg(size).arg(scale)));
            }
        }
    }
}

void FontMeasureTest::measuresAreShared()
{
    const auto measure = FontMeasure::forFont(lcFont(18), 1.5);
    QCOMPARE(FontMeasure::forFont(lcFont(18), 1.5), measure);
    QVERIFY(FontMeasure::forFont(lcFont(18), 1) != measure);
    QVERIFY(FontMeasure::forFont(lcFont(17), 1.5) != measure);
    QCOMPARE(measure->devicePixelRatio(), 1.5);
}

REGISTER_TEST(runWindowTest<FontMeasureTest>)
#include "fontmeasure_test.moc"
