#include "tests/editor/paintedrow.h"
#include "tests/testprogram.h"

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
    void numbersAreWhole_data();
    void numbersAreWhole();
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

namespace {

/// Where something is drawn on white, from the topmost and the leftmost of it.
Pixels inkOf(const QImage &image)
{
    std::vector<QPoint> ink;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixel(x, y) != qRgb(255, 255, 255))
                ink.emplace_back(x, y);
        }
    }
    QPoint corner(image.width(), image.height());
    for (const QPoint &dot : ink)
        corner = QPoint(qMin(corner.x(), dot.x()), qMin(corner.y(), dot.y()));
    Pixels moved;
    for (const QPoint &dot : ink)
        moved.emplace(dot.x() - corner.x(), dot.y() - corner.y());
    return moved;
}

/// A number with room on all sides, in the numbers' font at one size.
QImage freeNumber(const QString &number, int size, qreal scale)
{
    QFont font = lcFont(size);
    font.setPointSize(size);
    const auto measure = FontMeasure::forFont(font, scale);
    QImage image(160, 60, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setPen(Qt::black);
    int x = 20;
    for (const QChar digit : number) {
        const FontMeasure::Glyph glyph = measure->glyph(digit.unicode());
        QGlyphRun run;
        run.setRawFont(measure->rawFont(glyph.font));
        run.setGlyphIndexes({ glyph.index });
        run.setPositions({ QPointF(glyph.offset, 0) });
        painter.drawGlyphRun(QPointF(x, 50), run);
        x += measure->advances().advance(digit.unicode()) / 64;
    }
    return image;
}

} // namespace

void RowNumberPaintingTest::numbersAreWhole_data()
{
    QTest::addColumn<int>("fontSize");
    QTest::addColumn<int>("rowNo");
    QTest::addColumn<bool>("vga");
    for (const int fontSize : { 1, 4, 6, 8, 9, 10, 12, 15, 18, 32, 100 }) {
        for (const int rowNo : { 1, 2 }) {
            for (const bool vga : { false, true })
                QTest::addRow("%d points, size %d%s", fontSize, rowNo, vga ? ", VGA" : "")
                    << fontSize << rowNo << vga;
        }
    }
}

void RowNumberPaintingTest::numbersAreWhole()
{
    QFETCH(int, fontSize);
    QFETCH(int, rowNo);
    QFETCH(bool, vga);
    appSettings().FontSize = fontSize;
    appSettings().RowNo = rowNo;
    setVga(vga);
    Editor editor(QString(9000, u'\n'));
    const QImage image = editor.painted(8887);
    const Pixels found = inkOf(image.copy(0, 0, editor.device(editor.hMargin() - 3), image.height()));
    QVERIFY(!found.empty());
    const int sizes[2][2] = { { 3, 5 }, { 6, 16 } };
    int size = lcFont(sizes[rowNo - 1][vga]).pointSize();
    while (size > 0 && found != inkOf(freeNumber(QStringLiteral("8888"), size, editor.devicePixelRatioF())))
        --size;
    QVERIFY2(size > 0, "cut");
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

REGISTER_TEST(runPaintingTest<RowNumberPaintingTest>)
#include "rownumberpainting_test.moc"
