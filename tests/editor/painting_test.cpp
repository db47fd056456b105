#include "tests/editor/paintedrow.h"

#include "rows/rowpictures.h"
#include "tests/testprogram.h"

/// Rows of text and the selection in them.
class PaintingTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { registerLcFont(); }
    void init() { plainSettings(); }
    void missingRowIsNotPainted();
    void textStandsBehindTheMargin_data();
    void textStandsBehindTheMargin();
    void partsMakeTheWhole_data();
    void partsMakeTheWhole();
    void selection_data();
    void selection();
    void selectionOfAWrappedRowIsNotWidened();
    void selectedTextIsRedrawn();
    void pictureNeverShrinks();
    void rowsJoinWithoutSeams();
    void otherScalesAreFilledToo();
};

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

void PaintingTest::selection_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("showLineEnds");
    QTest::addColumn<RowCol>("from");
    QTest::addColumn<RowCol>("to");
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("begin"); // column, -1 where nothing is selected
    QTest::addColumn<int>("end");
    QTest::addColumn<bool>("widened");
    const QString text = QStringLiteral("      \n      \n\n      ");
    const auto rowCol = [](int row, int column) { return RowCol{ RowIndex(row), column }; };
    const auto addRow = [&](const char *name, int signs, RowCol from, RowCol to, int row, int begin, int end,
                            bool widened) {
        QTest::newRow(name) << text << signs << from << to << row << begin << end << widened;
    };
    addRow("inside a row", 1, rowCol(0, 2), rowCol(0, 4), 0, 2, 4, false);
    addRow("from the row's start", 1, rowCol(0, 0), rowCol(0, 4), 0, 0, 4, false);
    addRow("to the row's end", 1, rowCol(0, 2), rowCol(0, 6), 0, 2, 6, false);
    addRow("row above", 1, rowCol(1, 0), rowCol(1, 4), 0, -1, -1, false);
    addRow("row below", 1, rowCol(0, 0), rowCol(0, 4), 1, -1, -1, false);
    addRow("over the line end, with signs", 1, rowCol(0, 2), rowCol(1, 3), 0, 2, 6, true);
    addRow("over the line end, without signs", 0, rowCol(0, 2), rowCol(1, 3), 0, 2, 6, false);
    addRow("the line end alone", 1, rowCol(0, 6), rowCol(1, 3), 0, 6, 6, true);
    addRow("last row of a selection", 1, rowCol(0, 2), rowCol(1, 3), 1, 0, 3, false);
    addRow("last row, nothing of it", 1, rowCol(0, 2), rowCol(1, 0), 1, -1, -1, false);
    addRow("row in between", 1, rowCol(0, 2), rowCol(3, 3), 1, 0, 6, true);
    addRow("empty row in between, with signs", 1, rowCol(0, 2), rowCol(3, 3), 2, 0, 0, true);
    addRow("empty row in between, without signs", 0, rowCol(0, 2), rowCol(3, 3), 2, 0, 0, false);
    addRow("selected backwards", 1, rowCol(1, 3), rowCol(0, 2), 0, 2, 6, true);
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
    editor.setCursorPosition(from);
    editor.setCursorPosition(to, true);
    Pixels expected;
    if (begin >= 0) {
        const qreal scale = editor.devicePixelRatioF();
        const auto beyond = [scale](qreal width) { return int(std::ceil(width * scale - 1e-4)); };
        const int left = qMax(0, editor.columnX(row, begin) + beyond(begin == 0 ? -2 : -1));
        const int right =
            editor.columnX(row, end) + beyond(widened ? 1 + editor.fontMeasure()->xWidth() : -1);
        expected = rectangle(left, 0, right - left, editor.height());
    }
    Pixels found = pixelsOf(editor.painted(row), highlight(editor));
    for (const auto &pixel : pixelsOf(editor.painted(row), signGrey)) {
        if (expected.contains(pixel))
            found.insert(pixel);
    }
    QCOMPARE(found, expected);
}

void PaintingTest::selectionOfAWrappedRowIsNotWidened()
{
    appSettings().ShowKAI = 1;
    appSettings().WrapMode = 2;
    appSettings().WrapLen = 6;
    Editor editor(QStringLiteral("         \n"));
    QCOMPARE(editor.numLines(), 3);
    editor.selectAll();
    const auto right = [&editor](qint64 row) {
        int last = 0;
        for (const auto &[x, y] : pixelsOf(editor.painted(row), highlight(editor)))
            last = qMax(last, x + 1);
        return last;
    };
    const qreal scale = editor.devicePixelRatioF();
    const int width = editor.device(editor.fontMeasure()->xWidth());
    QCOMPARE(right(0), editor.columnX(0, 6) - int(scale));
    QCOMPARE(right(1), editor.columnX(1, 3) + width + qCeil(scale));
}

void PaintingTest::selectedTextIsRedrawn()
{
    Editor editor(QStringLiteral("WWWW"));
    const QImage plain = editor.painted(0);
    editor.setCursorPosition(0, 1);
    editor.setCursorPosition(0, 3, true);
    const QImage selected = editor.painted(0);
    const QRgb color = editor.palette().color(QPalette::HighlightedText).rgb();
    const int one = int(editor.devicePixelRatioF());
    const int left = editor.columnX(0, 1) - one;
    const int right = editor.columnX(0, 3) - one;
    for (const auto &[x, y] : differing(plain, selected))
        QVERIFY(x >= left && x < right);
    for (const auto &[x, y] : pixelsOf(plain, qRgb(0, 0, 0)))
        QCOMPARE(selected.pixel(x, y), x >= left && x < right ? color : qRgb(0, 0, 0));
}

void PaintingTest::pictureNeverShrinks()
{
    Editor editor(QStringLiteral("x"));
    editor.painted(0);
    const QSize full = RowPictures::size();
    QVERIFY(full.width() >= editor.device(640) && full.height() >= editor.height());
    editor.painted(0, 0, 10);
    QCOMPARE(RowPictures::size(), full);
    appSettings().FontSize = 60;
    Editor larger(QStringLiteral("x"));
    larger.painted(0);
    QVERIFY(RowPictures::size().height() >= larger.height());
    QCOMPARE(RowPictures::size().width(), full.width());
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

REGISTER_TEST(runPaintingTest<PaintingTest>)
#include "painting_test.moc"
