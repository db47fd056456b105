#include "rows/rowlayout.h"
#include "tests/editor/paintedrow.h"
#include "tests/testprogram.h"

#include <QInputMethodEvent>
#include <QTextCharFormat>

namespace {

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

/// The cursor, its row's line, and text that is being composed at it.
class CursorPaintingTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { registerLcFont(); }
    void init() { plainSettings(); }
    void cursorOnEveryBackground_data();
    void cursorOnEveryBackground();
    void noCursorWithoutFocus();
    void cursorBeforeABracket_data();
    void cursorBeforeABracket();
    void cursorMovesToBeforeABracket();
    void overwriteCursor_data();
    void overwriteCursor();
    void overwriteCursorOnEveryBackground_data() { cursorOnEveryBackground_data(); }
    void overwriteCursorOnEveryBackground();
    void overwriteCursorComesAndGoes();
    void cursorFarToTheRight();
    void activeLine_data();
    void activeLine();
    void composedText();
};

void CursorPaintingTest::cursorOnEveryBackground_data()
{
    QTest::addColumn<int>("background");
    QTest::addColumn<QColor>("expected");
    const std::set<int> dark{ 8, 12, 14, 16 }; // blue, dark red, dark blue, dark magenta
    QTest::newRow("black background, green text") << 1 << QColor(Qt::green);
    for (int index = 2; index <= 17; ++index)
        QTest::addRow("background %d", index)
            << index << QColor(dark.contains(index) ? Qt::white : Qt::black);
}

void CursorPaintingTest::cursorOnEveryBackground()
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

void CursorPaintingTest::noCursorWithoutFocus()
{
    Editor editor(QStringLiteral("    "));
    const QImage without = editor.painted(0);
    editor.showFocused();
    QVERIFY(!differing(editor.painted(0), without).empty());
    editor.clearFocus();
    QCOMPARE(differing(editor.painted(0), without).size(), 0U);
}

void CursorPaintingTest::cursorBeforeABracket_data()
{
    QTest::addColumn<int>("rowNo");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isMoved");
    for (const int rowNo : { 0, 1, 2 }) {
        const auto row = [rowNo](const char *name, const QString &text, bool isMoved) {
            QTest::addRow("%s, row numbers %d", name, rowNo) << rowNo << text << isMoved;
        };
        row("corner bracket", QStringLiteral("\u300c\u6f22\u300d"), true);
        row("full-width parenthesis", QStringLiteral("\uff08\u6f22\uff09"), true);
        row("letter", QStringLiteral("x"), false);
        row("nothing", {}, false);
    }
}

/// The first character is drawn from the margin on whatever space it has on its left, and the cursor would
/// stand among the row numbers.
void CursorPaintingTest::cursorBeforeABracket()
{
    QFETCH(int, rowNo);
    QFETCH(QString, text);
    QFETCH(bool, isMoved);
    appSettings().RowNo = rowNo;
    Editor editor(text);
    const QImage without = editor.painted(0);
    editor.showFocused();
    const QImage with = editor.painted(0);
    const int scaledMargin = editor.device(editor.hMargin());
    const int described = editor.columnX(0, 0);
    QCOMPARE(described < scaledMargin - editor.device(1), isMoved);
    const int right = isMoved ? scaledMargin + editor.device(1) : described;
    const int left = qMax(0, right - editor.stroke(2));
    QCOMPARE(differing(with, without),
        rectangle(left, 0, right - left, editor.device(editor.fontMeasure()->height() - 1)));
    const QRectF inputMethod = editor.inputMethodQuery(Qt::ImCursorRectangle).toRectF();
    const qreal margin = editor.viewport()->x() + editor.hMargin();
    const QRectF anchor = editor.inputMethodQuery(Qt::ImAnchorRectangle).toRectF();
    QCOMPARE(anchor, inputMethod);
    if (isMoved)
        QCOMPARE(inputMethod.left(), margin);
    else
        QVERIFY(qAbs(inputMethod.left() - (margin - 1)) <= 1);
}

void CursorPaintingTest::overwriteCursor_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("column");
    QTest::addColumn<int>("end"); ///< column behind the character, -1 for the end of the row
    QTest::newRow("letter") << QStringLiteral("abc") << 1 << 2;
    QTest::newRow("full width") << QStringLiteral("a\u6f22b") << 1 << 2;
    QTest::newRow("tab") << QStringLiteral("a\tb") << 1 << 2;
    QTest::newRow("character beyond U+FFFF") << QStringLiteral("a\U00020000b") << 1 << 3;
    QTest::newRow("last character") << QStringLiteral("abc") << 2 << 3;
    QTest::newRow("end of the row") << QStringLiteral("abc") << 3 << -1;
    QTest::newRow("empty row") << QString() << 0 << -1;
}

void CursorPaintingTest::overwriteCursor()
{
    QFETCH(QString, text);
    QFETCH(int, column);
    QFETCH(int, end);
    Editor editor(text);
    const QImage without = editor.painted(0);
    editor.showFocused();
    editor.setCursorPosition(0, column);
    const QRect line = editor.cursorRect();
    editor.setOverwriteMode(true);
    QCOMPARE(editor.cursorRect(), line);
    const RowLayout layout(editor.store(), RowIndex(0), *editor.fontMeasure(), 0, 640);
    const auto deviceX = [&](qreal x) { return editor.device(editor.hMargin()) + editor.device(x); };
    const qreal x = layout.x(column);
    const int left = deviceX(x) - (end < 0 ? editor.stroke(2) : 0);
    const int right = end < 0 ? left + editor.device(editor.fontMeasure()->xWidth()) : deviceX(layout.x(end));
    QVERIFY(right - left > 2 * editor.stroke(2));
    QCOMPARE(differing(editor.painted(0), without),
        rectangle(left, 0, right - left, editor.device(editor.fontMeasure()->height() - 1)));
}

void CursorPaintingTest::overwriteCursorOnEveryBackground()
{
    QFETCH(int, background);
    QFETCH(QColor, expected);
    appSettings().BackColor = background;
    appSettings().ForeColor = background == 1 ? 7 : 1;
    Editor editor(QStringLiteral("    \n"));
    editor.showFocused();
    editor.setOverwriteMode(true);
    editor.setCursorPosition(0, 2);
    const QImage image = editor.painted(0);
    QCOMPARE(QColor(image.pixel(editor.columnX(0, 2), 0)), expected);
    QCOMPARE(QColor(image.pixel(editor.columnX(0, 3) - 1, 0)), expected);
    QCOMPARE(QColor(image.pixel(editor.columnX(0, 3), 0)), ctlEditer::colorOfIndex(background));
}

/// As the key, the focus and an input method have it.
void CursorPaintingTest::overwriteCursorComesAndGoes()
{
    Editor editor(QStringLiteral("abc"));
    const QImage without = editor.painted(0);
    editor.showFocused();
    const QImage line = editor.painted(0);
    QTest::keyClick(&editor, Qt::Key_Insert);
    const QImage block = editor.painted(0);
    QVERIFY(differing(block, without).size() > differing(line, without).size());
    editor.clearFocus();
    QCOMPARE(differing(editor.painted(0), without).size(), 0U);
    editor.setFocus();
    QCOMPARE(editor.painted(0), block);
    QInputMethodEvent composing(QStringLiteral("  "), {});
    QApplication::sendEvent(&editor, &composing);
    const QImage composed = editor.painted(0);
    editor.setOverwriteMode(false);
    QCOMPARE(editor.painted(0), composed);
    QInputMethodEvent ended;
    QApplication::sendEvent(&editor, &ended);
    QCOMPARE(editor.painted(0), line);
    editor.setOverwriteMode(true);
    QCOMPARE(editor.painted(0), block);
    QTest::keyClick(&editor, Qt::Key_Insert);
    QCOMPARE(editor.painted(0), line);
}

void CursorPaintingTest::cursorMovesToBeforeABracket()
{
    Editor editor(QStringLiteral("\n\u300c\u6f22\u300d\n\uff08\u6f22\uff09"));
    for (int row = 1; row <= 2; ++row) {
        QTest::keyClick(&editor, Qt::Key_Down);
        int line = -1;
        int column = -1;
        editor.getCursorPosition(&line, &column);
        QCOMPARE(line, row);
        QCOMPARE(column, 0);
    }
}

/// No pixel is lost on the way: 2^40 of them are more than a scale's tolerance forgives.
void CursorPaintingTest::cursorFarToTheRight()
{
    constexpr int tabs = 1 << 20;
    QMultiLineEdit::setDefaultTabStop(1 << 18);
    Editor editor(QString(tabs, u'\t') + QStringLiteral("    \n"));
    editor.showFocused();
    const qreal scale = editor.devicePixelRatioF();
    const qint64 tabStop = qint64(std::floor((1 << 18) * editor.fontMeasure()->xWidth() * scale + 1e-6));
    QVERIFY(tabs * tabStop >= 1LL << 40);
    editor.setXOffset(qint64(qreal(tabs) * qreal(tabStop) / scale) - 100);
    const QImage without = editor.painted(0);
    editor.setCursorPlace({ Offset(tabs) });
    const QImage with = editor.painted(0);
    const qint64 cursor =
        editor.device(editor.hMargin()) + tabs * tabStop - qRound64(qreal(editor.xOffset()) * scale);
    const int width = editor.stroke(2);
    const int height = editor.device(editor.fontMeasure()->height() - 1);
    QCOMPARE(differing(with, without), rectangle(int(cursor) - width, 0, width, height));
}

void CursorPaintingTest::activeLine_data()
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

void CursorPaintingTest::activeLine()
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

void CursorPaintingTest::composedText()
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

REGISTER_TEST(runPaintingTest<CursorPaintingTest>)
#include "cursorpainting_test.moc"
