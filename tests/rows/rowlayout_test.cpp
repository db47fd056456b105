#include "rows/hexbox.h"
#include "rows/lcfont.h"
#include "rows/rowlayout.h"
#include "tests/rows/screenscales.h"
#include "tests/seeds.h"
#include "tests/testprogram.h"
#include "text/cursorstops.h"

#include <QImage>
#include <QPainter>
#include <QRandomGenerator>
#include <QTest>

#include <cmath>

namespace {

constexpr qreal everything = 1e6;

/// A text in a store that is laid out by a font.
class Text {
public:
    explicit Text(const QString &text, qreal scale = 1, int tabCharacters = 4)
        : measure(FontMeasure::forFont(lcFont(18), scale))
        , store(LayoutRule{ .advances = &measure->advances(),
              .tabStop = measure->toSubpixels(tabCharacters * measure->xWidth()),
              .limit = 0 })
    {
        store.replace(Offset(0), 0, text);
    }
    RowLayout row(qint64 index = 0, qreal left = 0, qreal right = everything) const
    {
        return { store, RowIndex(index), *measure, left, right };
    }
    QImage drawn(const RowLayout &layout, qreal x, int width = 300) const
    {
        const qreal scale = measure->devicePixelRatio();
        QImage image(QSize(width, int(measure->height() + 1)) * scale, QImage::Format_RGB32);
        image.setDevicePixelRatio(scale);
        image.fill(Qt::white);
        QPainter painter(&image);
        layout.draw(painter, QPointF(-x, 0), Qt::black);
        return image;
    }

    std::shared_ptr<const FontMeasure> measure;
    TextStore store;
};

/// The cursor stop behind a column of a text that is one row.
qint64 stopBehind(const TextStore &store, qint64 column)
{
    return nextCursorStop(store, Offset(column)).value();
}

/// First and last column with ink; -1 where there is none.
std::pair<int, int> ink(const QImage &image)
{
    std::pair found(-1, -1);
    for (int x = 0; x < image.width(); ++x) {
        for (int y = 0; y < image.height(); ++y) {
            if (image.pixel(x, y) == qRgb(255, 255, 255))
                continue;
            found = { found.first < 0 ? x : found.first, x };
            break;
        }
    }
    return found;
}

const QStringList &alphabet()
{
    static const QStringList all = {
        QStringLiteral("a"),
        QStringLiteral("l"),
        QStringLiteral("j"),
        QStringLiteral(" "),
        QStringLiteral("\t"),
        QStringLiteral("7"),
        QStringLiteral("."),
        QStringLiteral("\u00e9"),
        QStringLiteral("\u3042"),
        QStringLiteral("\u6f22"),
        QStringLiteral("\u3000"),
        QStringLiteral("\U00020b9f"),
        QStringLiteral("e\u0301"),
        QStringLiteral("\u304b\u3099"),
        QStringLiteral("\u0301"),
        QStringLiteral("\u0627"),
        QStringLiteral("\u0644\u0627"),
        QStringLiteral("\u05d0"),
        QStringLiteral("\u0e01\u0e33"),
        QStringLiteral("\u0915\u093f"),
        QStringLiteral("\U0001f468\u200d\U0001f469"),
        QStringLiteral("\U0001f44d\U0001f3fd"),
        QStringLiteral("\U0001f1ef\U0001f1f5"),
        QString(QChar(0xdc80)),
        QString(QChar(0xfeff)),
        QString(QChar(1)),
        QString(QChar(0xd83d)),
    };
    return all;
}

QString randomText(quint32 seed, int parts)
{
    QRandomGenerator random(seed);
    QString text;
    for (int i = 0; i < parts; ++i)
        text += alphabet().at(random.bounded(int(alphabet().size())));
    return text;
}

void addTexts(int count, int parts)
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<qreal>("scale");
    const quint32 first = seedOr(1);
    for (quint32 seed = first; seed < first + quint32(count); ++seed) {
        const qreal scale = scales[seed % std::size(scales)];
        QTest::addRow("seed %u at scale %g", seed, scale) << randomText(seed, parts) << scale;
    }
}

} // namespace

class RowLayoutTest : public QObject {
    Q_OBJECT
private slots:
    void charactersFollowTheirAdvances();
    void tabsReachTheirStops_data();
    void tabsReachTheirStops();
    void rowStartsAtItsFirstPixel_data();
    void rowStartsAtItsFirstPixel();
    void inkStaysWithItsColumn_data();
    void inkStaysWithItsColumn();
    void stops_data();
    void stops();
    void everyStopIsFoundAgain_data() { addTexts(60, 40); }
    void everyStopIsFoundAgain();
    void stopsAreTheTextsOwn_data() { addTexts(60, 40); }
    void stopsAreTheTextsOwn();
    void placesDoNotDependOnTheWindow_data() { addTexts(10, 4000); }
    void placesDoNotDependOnTheWindow();
    void spansCoverWhatIsSelected_data() { addTexts(40, 30); }
    void spansCoverWhatIsSelected();
    void spansOfRightToLeftText();
    void insertedTextIsPartOfTheRow_data() { addTexts(20, 20); }
    void insertedTextIsPartOfTheRow();
    void farColumnsAreDrawnAsNearOnes();
    void escapedBytesShowTheirValue();
    void hexBoxesAreDrawn_data();
    void hexBoxesAreDrawn();
    void emptyRow();
    void longCombinedCharacter();
    void letterWithItsMarkIsDrawnAsOne();
    void fontsAreAskedForWhatShows();
};

void RowLayoutTest::charactersFollowTheirAdvances()
{
    for (const qreal scale : scales) {
        const Text text(QStringLiteral("Mab\u6f22c\U00020b9fd"), scale);
        const RowLayout row = text.row();
        const qreal bearing = text.measure->leftBearing(U'M');
        for (qint64 column = 0; column <= row.length(); ++column) {
            const qreal stored =
                text.measure->toPixels(text.store.xAt({ .row = RowIndex(0), .column = column }));
            if (row.isCursorStop(column))
                QCOMPARE(row.x(column), stored - bearing);
            const qreal device = row.x(column) * scale;
            QVERIFY(std::abs(device - std::round(device)) < 1e-6);
        }
    }
}

void RowLayoutTest::tabsReachTheirStops_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("stop");
    QTest::newRow("at the start") << QStringLiteral("\tx") << 1;
    QTest::newRow("after one character") << QStringLiteral("l\tx") << 1;
    QTest::newRow("after three characters") << QStringLiteral("lll\tx") << 1;
    QTest::newRow("after a full tab width") << QStringLiteral("llll\tx") << 2;
    QTest::newRow("two tabs") << QStringLiteral("l\t\tx") << 2;
    QTest::newRow("full width") << QStringLiteral("\u6f22\u6f22\tx") << 2;
}

void RowLayoutTest::tabsReachTheirStops()
{
    QFETCH(QString, text);
    QFETCH(int, stop);
    const Text laidOut(text);
    const RowLayout row = laidOut.row();
    QCOMPARE(row.x(row.length() - 1), 4 * stop * laidOut.measure->xWidth());
}

void RowLayoutTest::rowStartsAtItsFirstPixel_data()
{
    QTest::addColumn<QString>("text");
    for (const char *text : { "l", "j", "W", "\u3042", "\u6f22", "|", "1" })
        QTest::newRow(text) << QString::fromUtf8(text);
}

void RowLayoutTest::rowStartsAtItsFirstPixel()
{
    QFETCH(QString, text);
    const Text laidOut(text);
    constexpr int margin = 20;
    const int first = ink(laidOut.drawn(laidOut.row(), laidOut.row().x(0) - margin)).first;
    QVERIFY(std::abs(first - margin - laidOut.measure->leftBearing(text[0].unicode())) <= 1);
    QVERIFY(std::abs(ink(laidOut.drawn(laidOut.row(), -margin)).first - margin) <= 1);
}

void RowLayoutTest::inkStaysWithItsColumn_data()
{
    QTest::addColumn<QString>("filler");
    QTest::addColumn<qreal>("scale");
    for (const qreal scale : scales) {
        QTest::addRow("half width at %g", scale) << QStringLiteral(" ") << scale;
        QTest::addRow("full width at %g", scale) << QStringLiteral("\u3000") << scale;
        QTest::addRow("tab at %g", scale) << QStringLiteral("\t") << scale;
    }
}

void RowLayoutTest::inkStaysWithItsColumn()
{
    QFETCH(QString, filler);
    QFETCH(qreal, scale);
    for (int before = 0; before < 8; ++before) {
        const Text text(filler.repeated(before) + u'H' + filler, scale);
        const RowLayout row = text.row();
        const auto [first, last] = ink(text.drawn(row, -10, 1000));
        QVERIFY(first >= std::floor((10 + row.x(before)) * scale));
        QVERIFY(last <= std::ceil((10 + row.x(before + 1)) * scale));
    }
}

void RowLayoutTest::stops_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QList<qint64>>("expected");
    using Stops = QList<qint64>;
    const auto add = [](const char *name, const QString &text, const Stops &expected) {
        QTest::newRow(name) << text << expected;
    };
    add("letters", QStringLiteral("abc"), { 0, 1, 2, 3 });
    add("surrogate pair", QStringLiteral("a\U00020b9fb"), { 0, 1, 3, 4 });
    add("combining mark", QStringLiteral("e\u0301x"), { 0, 2, 3 });
    add("two combining marks", QStringLiteral("e\u0301\u0323x"), { 0, 3, 4 });
    add("mark at the start", QStringLiteral("\u0301x"), { 0, 1, 2 });
    add("mark after a tab", QStringLiteral("\t\u0301x"), { 0, 1, 2, 3 });
    add("dakuten", QStringLiteral("\u304b\u3099\u304d"), { 0, 2, 3 });
    add("family", QStringLiteral("\U0001f468\u200d\U0001f469\u200d\U0001f467x"), { 0, 8, 9 });
    add("skin tone", QStringLiteral("\U0001f44d\U0001f3fdx"), { 0, 4, 5 });
    add("two flags", QStringLiteral("\U0001f1ef\U0001f1f5\U0001f1eb\U0001f1f7"), { 0, 4, 8 });
    add("emoji style", QStringLiteral("\u2764\ufe0fx"), { 0, 2, 3 });
    add("keycap", QStringLiteral("1\ufe0f\u20e3x"), { 0, 3, 4 });
    add("Thai", QStringLiteral("\u0e01\u0e33x"), { 0, 2, 3 });
    add("Devanagari", QStringLiteral("\u0915\u093fx"), { 0, 2, 3 });
    add("emoji behind Thai", QStringLiteral("\u0e01\U0001f600x"), { 0, 1, 3, 4 });
    add("flag behind Devanagari", QStringLiteral("\u0915\U0001f1ef\U0001f1f5x"), { 0, 1, 5, 6 });
    add("escaped byte with a mark", QString(QChar(0xdc80)) + QChar(0x301) + u'x', { 0, 1, 2, 3 });
    add("Hangul from parts", QStringLiteral("\u1112\u1161\u11abx"), { 0, 3, 4 });
    add("Hebrew", QStringLiteral("\u05d0\u05d1"), { 0, 1, 2 });
    add("escaped bytes", QStringLiteral("a") + QChar(0xdc80) + QChar(0xdc81), { 0, 1, 2, 3 });
}

void RowLayoutTest::stops()
{
    QFETCH(QString, text);
    QFETCH(QList<qint64>, expected);
    const Text laidOut(text);
    const RowLayout row = laidOut.row();
    QList<qint64> found;
    for (qint64 column = 0; column <= row.length(); ++column) {
        if (row.isCursorStop(column))
            found.append(column);
    }
    QCOMPARE(found, expected);
}

void RowLayoutTest::everyStopIsFoundAgain()
{
    QFETCH(QString, text);
    QFETCH(qreal, scale);
    const Text laidOut(text, scale);
    const RowLayout row = laidOut.row();
    for (qint64 column = 0; column <= row.length(); ++column) {
        if (row.isCursorStop(column))
            QCOMPARE(row.cursorAt(row.x(column)), column);
        else
            QVERIFY(row.cursorAt(row.x(column)) < column);
    }
    QVERIFY(row.isCursorStop(row.cursorAt(-50)));
    QVERIFY(row.isCursorStop(row.cursorAt(everything)));
}

void RowLayoutTest::stopsAreTheTextsOwn()
{
    QFETCH(QString, text);
    const Text laidOut(text);
    const RowLayout row = laidOut.row();
    qint64 last = 0;
    for (qint64 column = 0; column < row.length(); column = stopBehind(laidOut.store, column)) {
        QVERIFY(row.isCursorStop(column));
        QVERIFY(column == 0 || previousCursorStop(laidOut.store, Offset(column)) == Offset(last));
        for (qint64 between = last + 1; between < column; ++between)
            QVERIFY(!row.isCursorStop(between));
        last = column;
    }
    QCOMPARE(stopBehind(laidOut.store, row.length()), row.length());
    QCOMPARE(previousCursorStop(laidOut.store, Offset(0)), Offset(0));
}

void RowLayoutTest::placesDoNotDependOnTheWindow()
{
    QFETCH(QString, text);
    QFETCH(qreal, scale);
    const Text laidOut(text, scale);
    const RowLayout whole = laidOut.row();
    QRandomGenerator random(42);
    for (int i = 0; i < 12; ++i) {
        const qint64 column = random.bounded(whole.length() + 1);
        const qreal left = whole.x(random.bounded(whole.length() + 1));
        const RowLayout part = laidOut.row(0, left, left + 300);
        QCOMPARE(part.x(column), whole.x(column));
        QCOMPARE(part.isCursorStop(column), whole.isCursorStop(column));
        QVERIFY(part.lastColumn() - part.firstColumn() < 6000);
        const qint64 seen = part.cursorAt(left);
        QCOMPARE(part.x(seen), whole.x(whole.cursorAt(left)));
        QCOMPARE(part.at(qMin(column, whole.length() - 1)), text[qMin(column, whole.length() - 1)].unicode());
    }
}

void RowLayoutTest::spansCoverWhatIsSelected()
{
    QFETCH(QString, text);
    QFETCH(qreal, scale);
    const Text laidOut(text, scale);
    const RowLayout row = laidOut.row();
    qreal all = 0;
    for (qint64 column = 0; column < row.length(); column = stopBehind(laidOut.store, column)) {
        const auto spans = row.spans(column, stopBehind(laidOut.store, column));
        QCOMPARE(spans.size(), 1U);
        QVERIFY(spans[0].left < spans[0].right);
        all += spans[0].right - spans[0].left;
    }
    const auto spans = row.spans(0, row.length());
    QCOMPARE(spans.size(), 1U);
    QCOMPARE(spans[0].left, row.x(0));
    QCOMPARE(spans[0].right, row.x(row.length()));
    QVERIFY(std::abs(all - (spans[0].right - spans[0].left)) < 0.01);
    QVERIFY(row.spans(3, 3).empty());
}

void RowLayoutTest::spansOfRightToLeftText()
{
    const Text text(QStringLiteral("ab\u05d0\u05d1\u05d2cd"));
    const RowLayout row = text.row();
    // The first two Hebrew letters stand on the right of the third one.
    const auto spans = row.spans(1, 4);
    QCOMPARE(spans.size(), 2U);
    QCOMPARE(spans[0].left, row.x(1));
    QCOMPARE(spans[0].right, row.x(2));
    QCOMPARE(spans[1].left, row.x(4));
    QCOMPARE(spans[1].right, row.x(5));
    QVERIFY(row.x(3) > row.x(4));
    QVERIFY(row.x(4) > row.x(2));
}

void RowLayoutTest::insertedTextIsPartOfTheRow()
{
    QFETCH(QString, text);
    QFETCH(qreal, scale);
    const QString inserted = QStringLiteral("\u304b\u306ax\U00020b9f");
    const Text with(QStringLiteral("ab") + inserted + text, scale);
    const Text without(QStringLiteral("ab") + text, scale);
    const RowLayout expected = with.row();
    const RowLayout found(
        without.store, RowIndex(0), *without.measure, 0, everything, { .column = 2, .text = inserted });
    QCOMPARE(found.length(), expected.length());
    for (qint64 column = 0; column <= expected.length(); ++column) {
        QCOMPARE(found.x(column), expected.x(column));
        QCOMPARE(found.isCursorStop(column), expected.isCursorStop(column));
        if (column < expected.length())
            QCOMPARE(found.at(column), expected.at(column));
    }
    QCOMPARE(without.drawn(found, 0), with.drawn(expected, 0));
}

void RowLayoutTest::farColumnsAreDrawnAsNearOnes()
{
    const QString period = QStringLiteral("abc\u6f22\u5b57 xy");
    const Text near(period.repeated(100));
    const Text far(period.repeated(200000));
    const qreal width = near.row().x(period.size()) - near.row().x(0);
    const qreal shift = width * 150000;
    const QImage expected = near.drawn(near.row(0, width, width + 300), width);
    const RowLayout layout = far.row(0, width + shift, width + shift + 300);
    QCOMPARE(far.drawn(layout, width + shift), expected);
    QVERIFY(layout.lastColumn() - layout.firstColumn() < 3000);
    QCOMPARE(layout.cursorAt(width + shift), period.size() * 150001);
}

void RowLayoutTest::escapedBytesShowTheirValue()
{
    const auto boxOf = [](char32_t c) {
        std::vector<QRect> rects;
        addHexBox(c, {}, 18, rects);
        return rects;
    };
    // Those of ISO-2022-JP, too, in which bytes below 80 may be undecodable.
    for (const char32_t escape : { 0xdc80U, 0xdcffU, 0xdd21U, 0xdd7eU, 0xde29U, 0xdf60U }) {
        QCOMPARE(hexBoxSize(escape, 18), hexBoxSize(escape & 0xff, 18));
        QVERIFY(boxOf(escape) == boxOf(escape & 0xff));
    }
}

void RowLayoutTest::hexBoxesAreDrawn_data()
{
    QTest::addColumn<QString>("character");
    QTest::addColumn<qreal>("scale");
    for (const char32_t c :
        { 0xdc80U, 0xdcffU, 0x0U, 0x1U, 0x1bU, 0x7fU, 0x85U, 0xfeffU, 0x200bU, 0x202eU, 0xd800U, 0x378U }) {
        for (const qreal scale : scales)
            QTest::addRow("U+%04X at scale %g", uint(c), scale) << QString(QChar(char16_t(c))) << scale;
    }
}

void RowLayoutTest::hexBoxesAreDrawn()
{
    QFETCH(QString, character);
    QFETCH(qreal, scale);
    const Text text(QStringLiteral("  ") + character + QStringLiteral("  "), scale);
    const RowLayout row = text.row();
    const QImage image = text.drawn(row, 0);
    const auto [first, last] = ink(image);
    QVERIFY(first >= 0);
    QVERIFY(first >= std::floor(row.x(2) * scale));
    QVERIFY(last < std::ceil(row.x(3) * scale));
    for (int x = first; x <= last; ++x) {
        for (int y = 0; y < image.height(); ++y)
            QVERIFY(image.pixel(x, y) == qRgb(255, 255, 255) || image.pixel(x, y) == qRgb(160, 160, 160));
    }
}

void RowLayoutTest::emptyRow()
{
    const Text text(QStringLiteral("\nx"));
    const RowLayout row = text.row();
    QCOMPARE(row.length(), 0);
    QVERIFY(row.endsLine());
    QCOMPARE(row.x(0), 0.0);
    QCOMPARE(row.cursorAt(77), 0);
    QVERIFY(row.isCursorStop(0));
    QVERIFY(row.spans(0, 1).empty());
    QCOMPARE(ink(text.drawn(row, 0)), std::pair(-1, -1));
}

void RowLayoutTest::longCombinedCharacter()
{
    const QString text = QStringLiteral("a") + QString(1000, QChar(0x301)) + QStringLiteral("b");
    const Text laidOut(text);
    QCOMPARE(stopBehind(laidOut.store, 0), 1001);
    QCOMPARE(previousCursorStop(laidOut.store, Offset(1001)), Offset(0));
    QVERIFY(!laidOut.row().isCursorStop(500));
    QVERIFY(laidOut.row().isCursorStop(1001));
}

/// The font has the accented letters but not the accents.
void RowLayoutTest::letterWithItsMarkIsDrawnAsOne()
{
    const Text typed(QStringLiteral("xe\u0301n\u0303x"));
    const Text one(QStringLiteral("x\u00e9\u00f1x"));
    QCOMPARE(typed.row().x(5), one.row().x(3));
    QCOMPARE(typed.row().x(3), one.row().x(2));
    QCOMPARE(typed.drawn(typed.row(), 0), one.drawn(one.row(), 0));
}

/// A font takes a twentieth of a second for some thousand glyphs.
void RowLayoutTest::fontsAreAskedForWhatShows()
{
    constexpr char16_t first = 0x3400, last = 0x3bff; // nobody else's
    QString ideographs;
    for (char16_t unit = first; unit <= last; ++unit)
        ideographs += QChar(unit);
    const Text text(ideographs);
    QVERIFY(text.row(0, 0, 100).lastColumn() < 100);
    QVERIFY(text.measure->hasGlyph(first));
    QVERIFY(!text.measure->hasGlyph(first + 100));
    QVERIFY(!text.measure->hasGlyph(last));
}

REGISTER_TEST(runWindowTest<RowLayoutTest>)
#include "rowlayout_test.moc"
