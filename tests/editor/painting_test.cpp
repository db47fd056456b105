#include "app/settings.h"
#include "editor/ctlediter.h"
#include "platform/fontmeasure.h"
#include "platform/lcfont.h"
#include "platform/rowcanvas.h"

#include <QApplication>
#include <QGlyphRun>
#include <QInputMethodEvent>
#include <QPainter>
#include <QTest>
#include <QTextCharFormat>

#include <cmath>
#include <set>

namespace {

constexpr QRgb markGrey = qRgb(160, 160, 160);
constexpr QRgb spaceGrey = qRgb(80, 80, 80);
constexpr QRgb untouched = qRgb(255, 0, 255);

/// Settings that show nothing but the text, black on white.
void plainSettings()
{
    AppSettings &settings = appSettings();
    settings = AppSettings();
    settings.ShowKAI = settings.ShowTAB = settings.ShowZEN = settings.ShowEOF = 0;
    settings.RowNo = settings.ActiveHLine = 0;
    settings.WrapMode = 0;
}

/// An editor whose rows can be painted one by one.
class Editor : public ctlEditer {
public:
    explicit Editor(const QString &text)
        : ctlEditer(nullptr)
    {
        resize(640, 480);
        setText(text);
    }

    using QMultiLineEdit::fontMeasure;

    int device(qreal logical) const { return qRound(logical * devicePixelRatioF()); }
    int stroke(qreal logical) const { return qMax(1, device(logical)); }
    int height() const { return device(rowHeight()); }
    /// Device pixel at which a column of plain text stands, by the font's advances alone.
    int columnX(qint64 row, int column) const
    {
        const QString text = textLine(row);
        const AdvanceTable &advances = fontMeasure()->advances();
        const int tabWidth = defaultTabStop() * device(fontMeasure()->xWidth());
        int x = text.isEmpty() ? 0 : -device(fontMeasure()->leftBearing(text[0].unicode()));
        for (int i = 0; i < column; ++i)
            x = text[i] == u'\t' ? (x / tabWidth + 1) * tabWidth
                                 : x + int(advances.advance(text[i].unicode()) / 64);
        return device(hMargin()) + x;
    }
    /// One row, or the part of it between two logical places, as it is shown at the top of the view.
    QImage painted(qint64 row, int from = 0, int to = 640)
    {
        QImage image(QSize(device(640), height()), QImage::Format_RGB32);
        image.setDevicePixelRatio(devicePixelRatioF());
        image.fill(untouched);
        paintInto(image, row, from, to);
        return image;
    }
    void paintInto(QImage &image, qint64 row, int from, int to)
    {
        QPainter painter(&image);
        const QRectF cell(-xOffset(), 0, cellWidth(), rowHeight());
        paintCell(painter, row, cell, QRect(from, 0, to - from, qCeil(rowHeight())));
    }
    void showFocused()
    {
        show();
        activateWindow();
        setFocus();
        QTRY_VERIFY(hasFocus());
    }
};

using Pixels = std::set<std::pair<int, int>>;

Pixels pixelsOf(const QImage &image, QRgb color)
{
    Pixels found;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixel(x, y) == color)
                found.emplace(x, y);
        }
    }
    return found;
}

Pixels differing(const QImage &a, const QImage &b)
{
    Pixels found;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            if (a.pixel(x, y) != b.pixel(x, y))
                found.emplace(x, y);
        }
    }
    return found;
}

void add(Pixels &pixels, int left, int top, int width, int height)
{
    for (int y = top; y < top + height; ++y) {
        for (int x = left; x < left + width; ++x)
            pixels.emplace(x, y);
    }
}

Pixels rectangle(int left, int top, int width, int height)
{
    Pixels pixels;
    add(pixels, left, top, width, height);
    return pixels;
}

QRgb highlight(const QWidget &widget)
{
    return widget.palette().color(QPalette::Highlight).rgb();
}

/// 1 to 21, as the Web Content Accessibility Guidelines 2 measure it.
double contrast(const QColor &a, const QColor &b)
{
    const auto luminance = [](const QColor &color) {
        const QColor linear = QColor::fromRgbF(float(std::pow(color.redF(), 2.2)),
            float(std::pow(color.greenF(), 2.2)), float(std::pow(color.blueF(), 2.2)));
        return 0.2126 * linear.redF() + 0.7152 * linear.greenF() + 0.0722 * linear.blueF();
    };
    return (qMax(luminance(a), luminance(b)) + 0.05) / (qMin(luminance(a), luminance(b)) + 0.05);
}

} // namespace

class PaintingTest : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { registerLcFont(); }
    void init();
    void missingRowIsNotPainted();
    void textStandsBehindTheMargin_data();
    void textStandsBehindTheMargin();
    void partsMakeTheWhole_data();
    void partsMakeTheWhole();
    void rowNumbers_data();
    void rowNumbers();
    void rowNumberColours_data();
    void rowNumberColours();
    void ruleBesideTheNumbers_data();
    void ruleBesideTheNumbers();
    void selection_data();
    void selection();
    void selectedTextIsRedrawn();
    void hookedArrow();
    void lineEndMarks_data();
    void lineEndMarks();
    void endOfFile();
    void tabArrow();
    void tabArrowIsOff();
    void fullWidthSpaceBox();
    void cursorOnEveryBackground_data();
    void cursorOnEveryBackground();
    void noCursorWithoutFocus();
    void activeLine_data();
    void activeLine();
    void composedText();
    void pictureNeverShrinks();
    void rowsJoinWithoutSeams();
    void otherScalesAreFilledToo();
};

void PaintingTest::init()
{
    plainSettings();
    setVga(false);
    QMultiLineEdit::setDefaultTabStop(4);
}

void PaintingTest::missingRowIsNotPainted()
{
    Editor editor(QStringLiteral("only row"));
    QCOMPARE(
        pixelsOf(editor.painted(1), untouched).size(), std::size_t(editor.device(640) * editor.height()));
    QVERIFY(pixelsOf(editor.painted(0), untouched).empty());
}

void PaintingTest::textStandsBehindTheMargin_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("rowNo");
    for (const char *text : { "l", "j", "W", "\u3042", "|" }) {
        for (const int rowNo : { 0, 1, 2 })
            QTest::addRow("%s with row numbers %d", text, rowNo) << QString::fromUtf8(text) << rowNo;
    }
}

void PaintingTest::textStandsBehindTheMargin()
{
    QFETCH(QString, text);
    QFETCH(int, rowNo);
    appSettings().RowNo = rowNo;
    Editor editor(QStringLiteral("\n") + text);
    QCOMPARE(editor.hMargin(), rowNo == 0 ? 2 : rowNo == 1 ? 25 : 36);
    appSettings().RowNo = 0; // the numbers' rule would be found first
    const QImage image = editor.painted(1);
    int first = 0;
    while (pixelsOf(image.copy(first, 0, 1, image.height()), qRgb(255, 255, 255)).size()
        == std::size_t(image.height()))
        ++first;
    QVERIFY(std::abs(first - editor.device(editor.hMargin())) <= 1);
}

void PaintingTest::partsMakeTheWhole_data()
{
    QTest::addColumn<int>("split");
    for (const int split : { 1, 10, 25, 26, 40, 57, 113, 255, 639 })
        QTest::addRow("split at %d", split) << split;
}

void PaintingTest::partsMakeTheWhole()
{
    QFETCH(int, split);
    appSettings() = AppSettings();
    Editor editor(QStringLiteral("\tab\u3000\u6f22l \u0627\u0644\u0633 e\u0301 ") + QChar(0xdc80)
        + QStringLiteral(" end\nnext"));
    editor.showFocused();
    editor.setCursorPosition(0, 3);
    editor.setCursorPosition(0, 8, true);
    const QImage whole = editor.painted(0);
    QImage parts = editor.painted(0, 0, split);
    editor.paintInto(parts, 0, split, 640);
    QCOMPARE(differing(whole, parts).size(), 0U);
    QVERIFY(pixelsOf(whole, untouched).empty());
}

void PaintingTest::rowNumbers_data()
{
    QTest::addColumn<int>("wrapMode");
    QTest::addColumn<int>("rowNo");
    QTest::addColumn<bool>("vga");
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("expected");
    for (const int rowNo : { 1, 2 }) {
        for (const bool vga : { false, true }) {
            const auto name = [&](const char *what) {
                return QStringLiteral("%1, size %2%3")
                    .arg(QLatin1String(what))
                    .arg(rowNo)
                    .arg(vga ? QStringLiteral(", VGA") : QString())
                    .toUtf8();
            };
            QTest::newRow(name("first row")) << 0 << rowNo << vga << 0 << QStringLiteral("   1");
            QTest::newRow(name("second row")) << 0 << rowNo << vga << 1 << QStringLiteral("   2");
            QTest::newRow(name("9999")) << 0 << rowNo << vga << 9998 << QStringLiteral("9999");
            QTest::newRow(name("10000 shows its last digits"))
                << 0 << rowNo << vga << 9999 << QStringLiteral("0000");
            QTest::newRow(name("12345 shows its last digits"))
                << 0 << rowNo << vga << 12344 << QStringLiteral("2345");
        }
    }
    QTest::newRow("first row of a wrapped line") << 2 << 1 << false << 0 << QStringLiteral("   1");
    QTest::newRow("second row of a wrapped line") << 2 << 1 << false << 1 << QString();
    QTest::newRow("third row of a wrapped line") << 2 << 1 << false << 2 << QString();
    QTest::newRow("line behind a wrapped line") << 2 << 1 << false << 3 << QStringLiteral("   2");
}

void PaintingTest::rowNumbers()
{
    QFETCH(int, wrapMode);
    QFETCH(int, rowNo);
    QFETCH(bool, vga);
    QFETCH(int, row);
    QFETCH(QString, expected);
    appSettings().WrapMode = wrapMode;
    appSettings().WrapLen = 4;
    appSettings().RowNo = rowNo;
    setVga(vga);
    Editor editor(wrapMode == 0 ? QString(13000, u'\n') : QStringLiteral("          \n  "));

    const int sizes[2][2] = { { 3, 5 }, { 6, 16 } };
    const auto measure = FontMeasure::forFont(lcFont(sizes[rowNo - 1][vga]), editor.devicePixelRatioF());
    QImage reference = editor.painted(row);
    QPainter painter(&reference);
    painter.setWorldTransform(painter.deviceTransform().inverted(), true);
    const int ruleLeft = editor.device(editor.hMargin() - 3);
    painter.fillRect(0, 0, ruleLeft, editor.height(), Qt::white);
    int x = editor.device(1);
    const int gap = 3; // the text's font is of 18 points
    const int baseline =
        editor.device(editor.rowHeight() - measure->height() - gap) + editor.device(measure->ascent());
    painter.setPen(Qt::black);
    for (const QChar digit : expected) {
        const FontMeasure::Glyph glyph = measure->glyph(digit.unicode());
        QGlyphRun run;
        run.setRawFont(measure->rawFont(glyph.font));
        run.setGlyphIndexes({ glyph.index });
        run.setPositions({ QPointF(0, 0) });
        painter.drawGlyphRun(QPointF(x, baseline), run);
        x += measure->advances().advance(digit.unicode()) / 64;
    }
    painter.end();
    const QRect numbers(0, 0, ruleLeft, editor.height());
    const QImage found = editor.painted(row).copy(numbers);
    QCOMPARE(differing(found, reference.copy(numbers)).size(), 0U);
    QCOMPARE(pixelsOf(found, qRgb(255, 255, 255)).size() < std::size_t(ruleLeft * editor.height()),
        !expected.isEmpty());
}

void PaintingTest::rowNumberColours_data()
{
    QTest::addColumn<int>("rowNoColor");
    QTest::addColumn<QColor>("expected");
    QTest::newRow("the text's colour") << 0 << QColor(Qt::blue);
    QTest::newRow("red") << 6 << QColor(Qt::red);
    QTest::newRow("unknown index") << 99 << QColor(Qt::white);
}

void PaintingTest::rowNumberColours()
{
    QFETCH(int, rowNoColor);
    QFETCH(QColor, expected);
    appSettings().RowNo = 2;
    appSettings().ForeColor = 8;
    appSettings().BackColor = 11;
    appSettings().RowNoColor = rowNoColor;
    Editor editor(QStringLiteral(" "));
    const int rule = editor.device(editor.hMargin() - 3);
    QCOMPARE(QColor(editor.painted(0).pixel(rule, 0)), expected);
}

void PaintingTest::ruleBesideTheNumbers_data()
{
    QTest::addColumn<int>("rowNo");
    QTest::addColumn<int>("row");
    for (const int rowNo : { 1, 2 }) {
        QTest::addRow("size %d, numbered row", rowNo) << rowNo << 0;
        QTest::addRow("size %d, continued row", rowNo) << rowNo << 1;
    }
}

void PaintingTest::ruleBesideTheNumbers()
{
    QFETCH(int, rowNo);
    QFETCH(int, row);
    appSettings().RowNo = rowNo;
    appSettings().RowNoColor = 6;
    appSettings().WrapMode = 2;
    appSettings().WrapLen = 4;
    Editor editor(QStringLiteral("          "));
    const int left = editor.device(editor.hMargin() - 3);
    const QImage image = editor.painted(row).copy(left - 1, 0, editor.device(640) - left, editor.height());
    QCOMPARE(pixelsOf(image, qRgb(255, 0, 0)), rectangle(1, 0, editor.stroke(1), editor.height()));
}

void PaintingTest::selection_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("showLineEnds");
    QTest::addColumn<RowCol>("from");
    QTest::addColumn<RowCol>("to");
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("begin"); // column, -1 where nothing is marked
    QTest::addColumn<int>("end");
    QTest::addColumn<bool>("widened");
    const QString text = QStringLiteral("      \n      \n\n      ");
    const auto addRow = [&](const char *name, int marks, RowCol from, RowCol to, int row, int begin, int end,
                            bool widened) {
        QTest::newRow(name) << text << marks << from << to << row << begin << end << widened;
    };
    addRow("inside a row", 1, { 0, 2 }, { 0, 4 }, 0, 2, 4, false);
    addRow("from the row's start", 1, { 0, 0 }, { 0, 4 }, 0, 0, 4, false);
    addRow("to the row's end", 1, { 0, 2 }, { 0, 6 }, 0, 2, 6, false);
    addRow("row above", 1, { 1, 0 }, { 1, 4 }, 0, -1, -1, false);
    addRow("row below", 1, { 0, 0 }, { 0, 4 }, 1, -1, -1, false);
    addRow("over the line end, with marks", 1, { 0, 2 }, { 1, 3 }, 0, 2, 6, true);
    addRow("over the line end, without marks", 0, { 0, 2 }, { 1, 3 }, 0, 2, 6, false);
    addRow("the line end alone", 1, { 0, 6 }, { 1, 3 }, 0, 6, 6, true);
    addRow("last row of a selection", 1, { 0, 2 }, { 1, 3 }, 1, 0, 3, false);
    addRow("last row, nothing of it", 1, { 0, 2 }, { 1, 0 }, 1, -1, -1, false);
    addRow("row in between", 1, { 0, 2 }, { 3, 3 }, 1, 0, 6, true);
    addRow("empty row in between, with marks", 1, { 0, 2 }, { 3, 3 }, 2, 0, 0, true);
    addRow("empty row in between, without marks", 0, { 0, 2 }, { 3, 3 }, 2, 0, 0, false);
    addRow("marked backwards", 1, { 1, 3 }, { 0, 2 }, 0, 2, 6, true);
}

void PaintingTest::selection()
{
    QFETCH(QString, text);
    QFETCH(int, showLineEnds);
    QFETCH(RowCol, from);
    QFETCH(RowCol, to);
    QFETCH(int, row);
    QFETCH(int, begin);
    QFETCH(int, end);
    QFETCH(bool, widened);
    appSettings().ShowKAI = showLineEnds;
    Editor editor(text);
    editor.setCursorPosition(from.row, from.column);
    editor.setCursorPosition(to.row, to.column, true);
    Pixels expected;
    if (begin >= 0) {
        const int one = editor.device(1);
        const int left = qMax(0, editor.columnX(row, begin) - (begin == 0 ? 2 * one : one));
        int right = editor.columnX(row, end) - one;
        if (widened)
            right += editor.device(2 + editor.fontMeasure()->xWidth());
        expected = rectangle(left, 0, right - left, editor.height());
    }
    Pixels found = pixelsOf(editor.painted(row), highlight(editor));
    for (const auto &pixel : pixelsOf(editor.painted(row), markGrey)) {
        if (expected.contains(pixel))
            found.insert(pixel);
    }
    QCOMPARE(found, expected);
}

void PaintingTest::selectedTextIsRedrawn()
{
    Editor editor(QStringLiteral("WWWW"));
    const QImage plain = editor.painted(0);
    editor.setCursorPosition(0, 1);
    editor.setCursorPosition(0, 3, true);
    const QImage marked = editor.painted(0);
    const QRgb color = editor.palette().color(QPalette::HighlightedText).rgb();
    const int left = editor.columnX(0, 1) - editor.device(1);
    const int right = editor.columnX(0, 3) - editor.device(1);
    for (const auto &[x, y] : differing(plain, marked))
        QVERIFY(x >= left && x < right);
    for (const auto &[x, y] : pixelsOf(plain, qRgb(0, 0, 0)))
        QCOMPARE(marked.pixel(x, y), x >= left && x < right ? color : qRgb(0, 0, 0));
}

void PaintingTest::hookedArrow()
{
    appSettings().ShowKAI = 1;
    Editor editor(QStringLiteral("   \n"));
    const qreal h = editor.rowHeight();
    const int half = int(editor.fontMeasure()->xWidth() / 2);
    const int x = editor.columnX(0, 3);
    Pixels expected;
    const auto addRect = [&](qreal left, qreal top, qreal width, qreal height) {
        const int l = editor.device(left);
        const int t = editor.device(top);
        add(expected, x + l, t, qMax(1, editor.device(left + width) - l),
            qMax(1, editor.device(top + height) - t));
    };
    addRect(half + 2, 5, 2, h - 10);
    addRect(1, h - 7, half + 2, 2);
    addRect(2, h - 8, 1, 4);
    addRect(3, h - 9, 1, 6);
    QCOMPARE(pixelsOf(editor.painted(0), markGrey), expected);
}

void PaintingTest::lineEndMarks_data()
{
    QTest::addColumn<int>("showLineEnds");
    QTest::addColumn<int>("row");
    QTest::addColumn<bool>("expected");
    QTest::newRow("line") << 1 << 0 << true;
    QTest::newRow("marks off") << 0 << 0 << false;
    QTest::newRow("wrapped row") << 1 << 1 << false;
    QTest::newRow("end of a wrapped line") << 1 << 2 << true;
    QTest::newRow("last row") << 1 << 3 << false;
}

void PaintingTest::lineEndMarks()
{
    QFETCH(int, showLineEnds);
    QFETCH(int, row);
    QFETCH(bool, expected);
    appSettings().WrapMode = 2;
    appSettings().WrapLen = 8;
    appSettings().ShowKAI = showLineEnds;
    Editor editor(QStringLiteral("  \n           \n  "));
    QCOMPARE(editor.numLines(), 4);
    QCOMPARE(!pixelsOf(editor.painted(row), markGrey).empty(), expected);
}

void PaintingTest::endOfFile()
{
    appSettings().ShowKAI = 1;
    Editor editor(QStringLiteral("  \n  "));
    QVERIFY(pixelsOf(editor.painted(1), markGrey).empty());
    const QImage without = editor.painted(1);
    appSettings().ShowEOF = 1;
    const QImage with = editor.painted(1);
    QVERIFY(differing(with, without).size() > 20);
    QVERIFY(!pixelsOf(editor.painted(0), markGrey).empty());

    // The base line: the lowest pixel of a text without descenders but "[" and "]".
    const int x = editor.columnX(1, 2);
    const int width = 5 * editor.device(editor.fontMeasure()->xWidth());
    for (const auto &[px, py] : differing(with, without))
        QVERIFY(px >= x && px < x + width);
    Pixels letters;
    const int cell = width / 5;
    for (const auto &pixel : differing(with, without)) {
        if (pixel.first >= x + cell && pixel.first < x + 4 * cell)
            letters.insert(pixel);
    }
    int lowest = 0;
    for (const auto &pixel : letters)
        lowest = qMax(lowest, pixel.second);
    QVERIFY(std::abs(lowest + 1 - editor.device(editor.rowHeight() - 2)) <= 1);
}

void PaintingTest::tabArrow()
{
    appSettings().ShowTAB = 1;
    Editor editor(QStringLiteral(" \t\n"));
    const QImage image = editor.painted(0);
    const Pixels found = pixelsOf(image, markGrey);
    const int x = editor.columnX(0, 1);
    const int middle = int(editor.rowHeight() / 2);
    const int stroke = editor.stroke(1);
    QVERIFY(found.contains({ x + editor.device(6), editor.device(middle) }));
    QVERIFY(found.contains({ x + editor.device(1), editor.device(middle - 2) }));
    QVERIFY(found.contains({ x + editor.device(1), editor.device(middle + 2) }));
    for (const auto &[px, py] : found) {
        QVERIFY(px >= x + editor.device(1) - stroke && px <= x + editor.device(6) + stroke);
        QVERIFY(std::abs(py - editor.device(middle)) <= editor.device(2) + stroke);
    }
    if (editor.devicePixelRatioF() == 1) {
        Pixels expected;
        for (const int side : { -1, 1 }) {
            QImage line(image.size(), QImage::Format_RGB32);
            line.fill(Qt::white);
            QPainter painter(&line);
            painter.setPen(QColor(markGrey));
            painter.drawLine(x + 1, middle + 2 * side, x + 6, middle);
            painter.end();
            expected.merge(pixelsOf(line, markGrey));
        }
        QCOMPARE(found, expected);
    }
}

void PaintingTest::tabArrowIsOff()
{
    Editor editor(QStringLiteral(" \t\u3000"));
    QVERIFY(pixelsOf(editor.painted(0), markGrey).empty());
    QVERIFY(pixelsOf(editor.painted(0), spaceGrey).empty());
}

void PaintingTest::fullWidthSpaceBox()
{
    appSettings().ShowZEN = 1;
    Editor editor(QStringLiteral(" \u3000 "));
    const Pixels found = pixelsOf(editor.painted(0), spaceGrey);
    const int x = editor.columnX(0, 1);
    const int left = x + editor.device(3);
    const int top = editor.device(4);
    const int right = x + editor.device(3 + 2 * editor.fontMeasure()->xWidth() - 6);
    const int bottom = top + editor.device(4 + editor.rowHeight() - 7) - editor.device(4);
    const int stroke = editor.stroke(1);
    QVERIFY(found.size() > 20U);
    for (const auto &[px, py] : found) {
        QVERIFY(px >= left && px < right && py >= top && py < bottom);
        const bool isInside =
            px >= left + stroke && px < right - stroke && py >= top + stroke && py < bottom - stroke;
        QVERIFY(!isInside);
    }
    const auto isDot = [&](int px, int py) { return found.contains({ px, py }); };
    for (int px = left; px + 2 * stroke <= right - stroke; px += 2 * stroke) {
        QVERIFY(isDot(px, top) && isDot(px, bottom - 1));
        QVERIFY(stroke > 1 || !isDot(px + 1, top));
    }
    for (int py = top; py + 2 * stroke <= bottom - stroke; py += 2 * stroke)
        QVERIFY(isDot(left, py) && isDot(right - 1, py));
}

void PaintingTest::cursorOnEveryBackground_data()
{
    QTest::addColumn<int>("background");
    QTest::addColumn<QColor>("expected");
    const std::set<int> dark{ 8, 12, 14, 16 }; // blue, dark red, dark blue, dark magenta
    QTest::newRow("black background, green text") << 1 << QColor(Qt::green);
    for (int index = 2; index <= 17; ++index)
        QTest::addRow("background %d", index)
            << index << QColor(dark.contains(index) ? Qt::white : Qt::black);
}

void PaintingTest::cursorOnEveryBackground()
{
    QFETCH(int, background);
    QFETCH(QColor, expected);
    appSettings().BackColor = background;
    appSettings().ForeColor = background == 1 ? 7 : 1;
    Editor editor(QStringLiteral("    \n"));
    const QImage without = editor.painted(0);
    editor.showFocused();
    editor.setCursorPosition(0, 2);
    const QImage with = editor.painted(0);
    const int width = editor.stroke(background == 1 ? 1 : 2);
    const int right = editor.columnX(0, 2);
    const int height = editor.device(editor.fontMeasure()->height() - 1);
    QCOMPARE(differing(with, without), rectangle(right - width, 0, width, height));
    const QColor base = ctlEditer::colorOfIndex(background);
    QCOMPARE(QColor(with.pixel(right - 1, 0)), expected);
    QCOMPARE(QColor(without.pixel(right - 1, 0)), base);
    QVERIFY(contrast(expected, base) >= 3);
}

void PaintingTest::noCursorWithoutFocus()
{
    Editor editor(QStringLiteral("    "));
    const QImage without = editor.painted(0);
    editor.showFocused();
    QVERIFY(!differing(editor.painted(0), without).empty());
    editor.clearFocus();
    QCOMPARE(differing(editor.painted(0), without).size(), 0U);
}

void PaintingTest::activeLine_data()
{
    QTest::addColumn<int>("rowNo");
    QTest::addColumn<int>("color");
    QTest::addColumn<int>("xOffset");
    QTest::newRow("no numbers") << 0 << 8 << 0;
    QTest::newRow("small numbers") << 1 << 8 << 0;
    QTest::newRow("large numbers") << 2 << 6 << 0;
    QTest::newRow("off") << 1 << 0 << 0;
    QTest::newRow("scrolled a little") << 2 << 6 << 10;
    QTest::newRow("scrolled past the margin") << 2 << 6 << 36;
    QTest::newRow("scrolled far") << 1 << 6 << 500;
}

void PaintingTest::activeLine()
{
    QFETCH(int, rowNo);
    QFETCH(int, color);
    QFETCH(int, xOffset);
    appSettings().RowNo = rowNo;
    appSettings().ActiveHLine = color;
    Editor editor(QString(500, u' ') + u'\n');
    editor.show();
    editor.setXOffset(xOffset);
    QCOMPARE(editor.xOffset(), xOffset);
    Pixels expected;
    if (color > 0) {
        const int shown = editor.hMargin() - xOffset;
        const int start = shown < 1 ? -2 : shown - 2;
        const int left = qMax(0, editor.device(-xOffset) + editor.device(start));
        const int stroke = editor.stroke(1);
        expected = rectangle(left, editor.height() - stroke, editor.device(640) - left, stroke);
    }
    const QRgb lineColor = color > 0 ? ctlEditer::colorOfIndex(color).rgb() : QColor(Qt::blue).rgb();
    QCOMPARE(pixelsOf(editor.painted(0), lineColor), expected);
    QVERIFY(pixelsOf(editor.painted(1), lineColor).empty());
}

void PaintingTest::composedText()
{
    Editor editor(QStringLiteral("    \n"));
    editor.showFocused();
    editor.setCursorPosition(0, 2);
    QTextCharFormat format;
    format.setBackground(Qt::yellow);
    QInputMethodEvent event(QStringLiteral("  "),
        { { QInputMethodEvent::TextFormat, 0, 1, format }, { QInputMethodEvent::Cursor, 2, 1, QVariant() } });
    QApplication::sendEvent(&editor, &event);
    const QImage image = editor.painted(0);
    const int left = editor.columnX(0, 2);
    const int cell = editor.device(editor.fontMeasure()->xWidth());
    const int stroke = editor.stroke(1);
    QCOMPARE(editor.text(), QStringLiteral("    \n"));
    Pixels clause = rectangle(left, 0, cell, editor.height());
    for (const auto &pixel : rectangle(left, editor.height() - 2 * stroke, cell, stroke))
        clause.erase(pixel);
    QCOMPARE(pixelsOf(image, QColor(Qt::yellow).rgb()), clause);
    Pixels black = rectangle(left, editor.height() - 2 * stroke, 2 * cell, stroke);
    const int cursorWidth = editor.stroke(2);
    const int cursorHeight = editor.device(editor.fontMeasure()->height() - 1);
    // Where the cursor crosses the underline the two colours combine.
    for (const auto &pixel : rectangle(left + 2 * cell - cursorWidth, 0, cursorWidth, cursorHeight)) {
        if (!black.erase(pixel))
            black.insert(pixel);
    }
    QCOMPARE(pixelsOf(image, qRgb(0, 0, 0)), black);
}

void PaintingTest::pictureNeverShrinks()
{
    Editor editor(QStringLiteral("x"));
    editor.painted(0);
    const QSize full = RowCanvas::pictureSize();
    QVERIFY(full.width() >= editor.device(640) && full.height() >= editor.height());
    editor.painted(0, 0, 10);
    QCOMPARE(RowCanvas::pictureSize(), full);
    appSettings().FontSize = 60;
    Editor larger(QStringLiteral("x"));
    larger.painted(0);
    QVERIFY(RowCanvas::pictureSize().height() >= larger.height());
    QCOMPARE(RowCanvas::pictureSize().width(), full.width());
}

void PaintingTest::rowsJoinWithoutSeams()
{
    appSettings().RowNo = 1;
    appSettings().RowNoColor = 6;
    Editor editor(QStringLiteral("        \n").repeated(40));
    editor.show();
    editor.selectAll();
    const QImage image = editor.grab().toImage();
    const QPoint corner = editor.viewport()->mapTo(&editor, QPoint());
    const int x = editor.device(corner.x() + editor.hMargin() + 20);
    const int rule = editor.device(corner.x()) + editor.device(editor.hMargin() - 3);
    const int top = editor.device(corner.y());
    const int bottom = editor.device(corner.y() + editor.viewport()->height()) - 1;
    for (int y = top; y < bottom; ++y) {
        QCOMPARE(image.pixel(x, y), highlight(editor));
        QCOMPARE(image.pixel(rule, y), qRgb(255, 0, 0));
    }
}

void PaintingTest::otherScalesAreFilledToo()
{
    Editor editor(QStringLiteral("WWWW"));
    QImage image(QSize(640, int(editor.rowHeight())) * 3, QImage::Format_RGB32);
    image.setDevicePixelRatio(3);
    image.fill(untouched);
    editor.paintInto(image, 0, 0, 640);
    QVERIFY(pixelsOf(image.copy(0, 0, image.width() - 3, image.height() - 3), untouched).empty());
    QVERIFY(!pixelsOf(image, qRgb(0, 0, 0)).empty());
}

// One point is one pixel, as in the program.
int main(int argc, char **argv)
{
    qputenv("QT_FONT_DPI", "72");
    QApplication application(argc, argv);
    PaintingTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "painting_test.moc"
