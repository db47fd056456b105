#include "tests/editor/paintedrow.h"
#include "tests/testprogram.h"

#include <QInputMethodEvent>
#include <QScreen>
#include <QWheelEvent>

namespace {

constexpr int windowWidth = 300;

/// Wraps at its own width.
class WrappedEditor : public Editor {
public:
    explicit WrappedEditor(int width = windowWidth)
        : Editor({})
    {
        resize(width, 200);
        appSettings().WrapMode = 1;
        applyWrapMode();
        setText(QString(3000, u'x') + u'\n' + QString(1000, QChar(0x6f22)) + QStringLiteral("\nshort"));
    }

    void compose(const QString &text, int cursor)
    {
        QInputMethodEvent event(text, { { QInputMethodEvent::Cursor, cursor, 1, {} } });
        QApplication::sendEvent(this, &event);
    }
    void turnWheel(QPoint angle, Qt::KeyboardModifiers modifiers)
    {
        const QPointF middle = viewport()->rect().center();
        QWheelEvent event(middle, viewport()->mapToGlobal(middle), {}, angle, Qt::NoButton, modifiers,
            Qt::NoScrollPhase, false);
        QApplication::sendEvent(viewport(), &event);
    }
    /// What stands on the screen when all that was asked for is painted.
    QImage shown()
    {
        QEvent paintNow(QEvent::UpdateRequest);
        QApplication::sendEvent(this, &paintNow);
        return screen()->grabWindow(winId()).toImage();
    }
    bool isShownAsPaintedAnew()
    {
        const QImage found = shown();
        updateView();
        return found == shown();
    }
    bool showsCursor()
    {
        const QImage with = viewport()->grab().toImage();
        clearFocus();
        const QImage without = viewport()->grab().toImage();
        setFocus();
        return with != without;
    }
};

} // namespace

/// Moving to the side of a view whose rows are wrapped at its width.
class SidewaysTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { registerLcFont(); }
    void init() { plainSettings(); }
    void staysAtFullRows_data();
    void staysAtFullRows();
    void staysUnderTheWheel();
    void composedTextIsSeenWithoutMoving_data();
    void composedTextIsSeenWithoutMoving();
    void narrowWindowFollowsTheCursor();
};

void SidewaysTest::staysAtFullRows_data()
{
    QTest::addColumn<int>("width");
    // Every rest that can be left beside whole characters.
    for (int width = windowWidth; width < windowWidth + 20; ++width)
        QTest::addRow("%d pixels", width) << width;
}

void SidewaysTest::staysAtFullRows()
{
    QFETCH(int, width);
    WrappedEditor editor(width);
    editor.showFocused();
    for (const qint64 row : { qint64(0), editor.numLines() - 3 }) {
        editor.setCursorPosition(row, 0);
        QTest::keyClick(&editor, Qt::Key_End);
        QVERIFY(editor.cursorPosition().column > 9);
        QCOMPARE(editor.xOffset(), 0);
        QVERIFY(editor.showsCursor());
        QTest::keyClick(&editor, Qt::Key_Insert);
        QVERIFY(editor.showsCursor());
        QTest::keyClick(&editor, Qt::Key_Insert);
        for (int i = 0; i < 3; ++i) {
            QTest::keyClick(&editor, Qt::Key_Y);
            QCOMPARE(editor.xOffset(), 0);
        }
    }
    QCOMPARE(editor.cellWidth(), editor.viewport()->width());
}

void SidewaysTest::staysUnderTheWheel()
{
    WrappedEditor editor;
    editor.showFocused();
    editor.turnWheel({ 0, -240 }, Qt::ShiftModifier);
    QCOMPARE(editor.xOffset(), 0);
    editor.turnWheel({ -240, 0 }, {});
    QCOMPARE(editor.xOffset(), 0);
    editor.setXOffset(50);
    QCOMPARE(editor.xOffset(), 0);
}

void SidewaysTest::composedTextIsSeenWithoutMoving_data()
{
    QTest::addColumn<int>("length");
    QTest::addColumn<int>("cursor");
    QTest::newRow("one character") << 1 << 1;
    QTest::newRow("a word") << 6 << 6;
    QTest::newRow("a word, the cursor in it") << 6 << 2;
    QTest::newRow("more than the view is wide") << 100 << 100;
    QTest::newRow("more than the view is wide, the cursor before it") << 100 << 0;
}

void SidewaysTest::composedTextIsSeenWithoutMoving()
{
    QFETCH(int, length);
    QFETCH(int, cursor);
    WrappedEditor editor;
    editor.showFocused();
    QTest::keyClick(&editor, Qt::Key_End);
    editor.shown();
    const Offset before = editor.cursorOffset();
    editor.compose(QString(length, QChar(0x304b)), cursor);
    QCOMPARE(editor.xOffset(), 0);
    QCOMPARE(editor.cellRect(RowIndex(1)).left(), 0);
    QVERIFY(editor.cellRect(RowIndex(0)).left() < 0);
    const QRect view = editor.viewport()->rect();
    QVERIFY(view.contains(editor.cursorRect()));
    const QRectF told = editor.inputMethodQuery(Qt::ImCursorRectangle).toRectF();
    QCOMPARE(told.toAlignedRect(), editor.cursorRect().translated(editor.viewport()->pos()));
    QVERIFY(editor.showsCursor());
    QCOMPARE(editor.offsetAt(editor.cursorRect().center()), before);

    QVERIFY(editor.isShownAsPaintedAnew());

    editor.compose({}, 0);
    QVERIFY(editor.isShownAsPaintedAnew());
    QCOMPARE(editor.cellRect(RowIndex(0)).left(), 0);
    QCOMPARE(editor.cursorOffset(), before);
}

void SidewaysTest::narrowWindowFollowsTheCursor()
{
    WrappedEditor editor;
    editor.showFocused();
    editor.resize(windowWidth / 2, editor.size().height());
    QTest::keyClick(&editor, Qt::Key_End);
    QVERIFY(editor.xOffset() > 0);
    QVERIFY(editor.viewport()->rect().contains(editor.cursorRect()));
    QTest::keyClick(&editor, Qt::Key_Home);
    QCOMPARE(editor.xOffset(), 0);
    QTest::keyClick(&editor, Qt::Key_End);
    editor.compose(QString(6, QChar(0x304b)), 6);
    QVERIFY(editor.viewport()->rect().contains(editor.cursorRect()));
    editor.compose({}, 0);
    editor.resize(windowWidth, editor.size().height());
    QCOMPARE(editor.xOffset(), 0);
}

REGISTER_TEST(runPaintingTest<SidewaysTest>)
#include "sideways_test.moc"
