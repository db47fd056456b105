#include "rows/rowlayout.h"
#include "tests/editor/paintedrow.h"
#include "tests/testprogram.h"

/// The signs of line ends, tabs, full-width spaces and the end of the file.
class SignPaintingTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { registerLcFont(); }
    void init() { plainSettings(); }
    void hookedArrow();
    void lineEndSigns_data();
    void lineEndSigns();
    void endOfFile();
    void tabArrow();
    void tabArrowIsOff();
    void fullWidthSpaceBox();
    void fullWidthSpaceBoxAmongRightToLeftText();
};

void SignPaintingTest::hookedArrow()
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
    QCOMPARE(pixelsOf(editor.painted(0), signGrey), expected);
}

void SignPaintingTest::lineEndSigns_data()
{
    QTest::addColumn<int>("showLineEnds");
    QTest::addColumn<int>("row");
    QTest::addColumn<bool>("expected");
    QTest::newRow("line") << 1 << 0 << true;
    QTest::newRow("signs off") << 0 << 0 << false;
    QTest::newRow("wrapped row") << 1 << 1 << false;
    QTest::newRow("end of a wrapped line") << 1 << 2 << true;
    QTest::newRow("last row") << 1 << 3 << false;
}

void SignPaintingTest::lineEndSigns()
{
    QFETCH(int, showLineEnds);
    QFETCH(int, row);
    QFETCH(bool, expected);
    appSettings().WrapMode = 2;
    appSettings().WrapLen = 8;
    appSettings().ShowKAI = showLineEnds;
    Editor editor(QStringLiteral("  \n           \n  "));
    QCOMPARE(editor.numLines(), 4);
    QCOMPARE(!pixelsOf(editor.painted(row), signGrey).empty(), expected);
}

void SignPaintingTest::endOfFile()
{
    appSettings().ShowKAI = 1;
    Editor editor(QStringLiteral("  \n  "));
    QVERIFY(pixelsOf(editor.painted(1), signGrey).empty());
    const QImage without = editor.painted(1);
    appSettings().ShowEOF = 1;
    const QImage with = editor.painted(1);
    QVERIFY(differing(with, without).size() > 20);
    QVERIFY(!pixelsOf(editor.painted(0), signGrey).empty());

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

void SignPaintingTest::tabArrow()
{
    appSettings().ShowTAB = 1;
    Editor editor(QStringLiteral(" \t\n"));
    const QImage image = editor.painted(0);
    const Pixels found = pixelsOf(image, signGrey);
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
            painter.setPen(QColor(signGrey));
            painter.drawLine(x + 1, middle + 2 * side, x + 6, middle);
            painter.end();
            expected.merge(pixelsOf(line, signGrey));
        }
        QCOMPARE(found, expected);
    }
}

void SignPaintingTest::tabArrowIsOff()
{
    Editor editor(QStringLiteral(" \t\u3000"));
    QVERIFY(pixelsOf(editor.painted(0), signGrey).empty());
    QVERIFY(pixelsOf(editor.painted(0), spaceGrey).empty());
}

void SignPaintingTest::fullWidthSpaceBox()
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

void SignPaintingTest::fullWidthSpaceBoxAmongRightToLeftText()
{
    appSettings().ShowZEN = 1;
    appSettings().ForeColor = 6; // no pixel of red letters is grey
    Editor editor(QStringLiteral("x\u05d0\u3000\u05d1\u05d2x"));
    const RowLayout layout(editor.store(), RowIndex(0), *editor.fontMeasure(), 0, 640);
    const RowLayout::Span space = layout.spans(2, 3).front();
    QVERIFY(space.left < layout.x(2)); // where the cursor stands before it: to its right
    const int left = editor.device(editor.hMargin()) + editor.device(space.left);
    const int right = editor.device(editor.hMargin()) + editor.device(space.right);
    const Pixels found = pixelsOf(editor.painted(0), spaceGrey);
    QVERIFY(found.size() > 20U);
    for (const auto &[x, y] : found)
        QVERIFY(x >= left + editor.device(3) && x < right);
}

REGISTER_TEST(runPaintingTest<SignPaintingTest>)
#include "signpainting_test.moc"
