#include "tests/editor/paintedrow.h"

#include <QGlyphRun>

/// The numbers beside the rows, and the rule between them and the text.
class RowNumberPaintingTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { registerLcFont(); }
    void init() { plainSettings(); }
    void rowNumbers_data();
    void rowNumbers();
    void numbersStandHigherInLargeFonts_data();
    void numbersStandHigherInLargeFonts();
    void rowNumberColours_data();
    void rowNumberColours();
    void ruleBesideTheNumbers_data();
    void ruleBesideTheNumbers();
};

void RowNumberPaintingTest::rowNumbers_data()
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
    for (const int mode : { 1, 2 }) {
        QTest::addRow("first row of a line, wrap mode %d", mode)
            << mode << 1 << false << 0 << QStringLiteral("   1");
        QTest::addRow("second row of a line, wrap mode %d", mode) << mode << 1 << false << 1 << QString();
        QTest::addRow("third row of a line, wrap mode %d", mode) << mode << 1 << false << 2 << QString();
        QTest::addRow("line behind a wrapped line, wrap mode %d", mode)
            << mode << 1 << false << 3 << QStringLiteral("   2");
    }
}

void RowNumberPaintingTest::rowNumbers()
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
    const QString wrapped(wrapMode == 1 ? 170 : 10, u' '); // nine pixels each, in an editor of 640
    Editor editor(wrapMode == 0 ? QString(13000, u'\n') : wrapped + QStringLiteral("\n  "));
    editor.show();
    QVERIFY(wrapMode == 0 || editor.numLines() == 4);

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

void RowNumberPaintingTest::numbersStandHigherInLargeFonts_data()
{
    QTest::addColumn<int>("fontSize");
    QTest::addColumn<int>("gap");
    QTest::newRow("14 points") << 14 << 2;
    QTest::newRow("15 points") << 15 << 3;
}

void RowNumberPaintingTest::numbersStandHigherInLargeFonts()
{
    QFETCH(int, fontSize);
    QFETCH(int, gap);
    appSettings().FontSize = fontSize;
    appSettings().RowNo = 2;
    Editor editor(QStringLiteral(" "));
    const auto measure = FontMeasure::forFont(lcFont(6), editor.devicePixelRatioF());
    const QImage numbers = editor.painted(0).copy(0, 0, editor.device(editor.hMargin() - 3), editor.height());
    int below = 0;
    while (pixelsOf(numbers.copy(0, numbers.height() - 1 - below, numbers.width(), 1), qRgb(255, 255, 255))
               .size()
        == std::size_t(numbers.width()))
        ++below;
    const int baseline =
        editor.device(editor.rowHeight() - measure->height() - gap) + editor.device(measure->ascent());
    QCOMPARE(numbers.height() - below, baseline);
}

void RowNumberPaintingTest::rowNumberColours_data()
{
    QTest::addColumn<int>("rowNoColor");
    QTest::addColumn<QColor>("expected");
    QTest::newRow("the text's colour") << 0 << QColor(Qt::blue);
    QTest::newRow("red") << 6 << QColor(Qt::red);
    QTest::newRow("unknown index") << 99 << QColor(Qt::white);
}

void RowNumberPaintingTest::rowNumberColours()
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

void RowNumberPaintingTest::ruleBesideTheNumbers_data()
{
    QTest::addColumn<int>("rowNo");
    QTest::addColumn<int>("row");
    for (const int rowNo : { 1, 2 }) {
        QTest::addRow("size %d, numbered row", rowNo) << rowNo << 0;
        QTest::addRow("size %d, continued row", rowNo) << rowNo << 1;
    }
}

void RowNumberPaintingTest::ruleBesideTheNumbers()
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

int main(int argc, char **argv)
{
    return runPaintingTest<RowNumberPaintingTest>(argc, argv);
}
#include "rownumberpainting_test.moc"
