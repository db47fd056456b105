#include "document/textdocument.h"
#include "rows/rowlayout.h"
#include "tests/testprogram.h"
#include "tests/widget/drawntext.h"
#include "tests/widget/rows.h"
#include "text/cursorstops.h"

#include <QGuiApplication>
#include <QScrollBar>
#include <QSignalSpy>
#include <QStyleHints>
#include <QWheelEvent>

using namespace Qt::StringLiterals;

namespace {

/// Tells which rows are painted.
class PaintedEdit : public QMultiLineEdit {
public:
    QList<qint64> painted;
    using QMultiLineEdit::fontMeasure;

    /// Lets what is asked for be painted, and forgets it.
    QList<qint64> takePainted()
    {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
        std::ranges::sort(painted);
        return std::exchange(painted, {});
    }

protected:
    void paintCell(QPainter &target, RowIndex row, const QRectF &cell, const QRect &update) override
    {
        painted.append(row.value());
        QMultiLineEdit::paintCell(target, row, cell, update);
    }
};

/// Whether the cursor's line is to be seen: nothing else is dark from top to bottom.
bool showsCursor(QMultiLineEdit &edit)
{
    const QImage image = edit.viewport()->grab(edit.cursorRect()).toImage();
    for (int x = 0; x < image.width(); ++x) {
        int dark = 0;
        for (int y = 0; y < image.height(); ++y)
            dark += qGray(image.pixel(x, y)) < 64 ? 1 : 0;
        if (dark >= image.height() - 2)
            return true;
    }
    return false;
}

QList<qint64> rows(qint64 first, qint64 last)
{
    QList<qint64> result;
    while (first <= last)
        result.append(first++);
    return result;
}

QString numbered(int count)
{
    QString text;
    for (int line = 0; line < count; ++line)
        text += QString::number(line) + u'\n';
    return text;
}

void turnWheel(QMultiLineEdit &edit, QPoint angle, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    const QPointF at(10, 10);
    QWheelEvent event(at, edit.viewport()->mapToGlobal(at), QPoint(), angle, Qt::NoButton, modifiers,
        Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(edit.viewport(), &event);
}

} // namespace

/// What is seen of the text: offsets, scroll bars, wheel, repaints and the blinking cursor.
class QMultiLineEditViewTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void topRowIsClamped();
    void offsetsInPixels();
    void scrollBarScrolls();
    void textThatFitsHasNoRange();
    void wheelTurnsRows();
    void partsOfANotchAddUp();
    void wheelWithShiftGoesToTheSide();
    void cursorIsMadeVisible_data();
    void cursorIsMadeVisible();
    void longRowsAreScrolledToTheCursor();
    void cursorIsDrawnWhereItIsHit();
    void keysRepaintOnlyTheirRows_data();
    void keysRepaintOnlyTheirRows();
    void wrappedRowsAreRepaintedToTheLinesEnd();
    void scrollingKeepsWhatIsPainted();
    void cursorBlinks();
    void cursorIsSteadyWithoutARate();
    void fontChangeKeepsTheTopLine();
    void selectionChangeRepaintsItsDifference();
    void resizedInTheMiddleOfAnEdit();

private:
    std::unique_ptr<PaintedEdit> m_edit;
    int m_flashTime = 0;
};

void QMultiLineEditViewTest::init()
{
    m_flashTime = QGuiApplication::styleHints()->cursorFlashTime();
    QGuiApplication::styleHints()->setCursorFlashTime(0);
    m_edit = std::make_unique<PaintedEdit>();
    m_edit->resize(300, 300);
    m_edit->show();
    QVERIFY(QTest::qWaitForWindowActive(m_edit.get()));
    m_edit->setFocus();
    QTRY_VERIFY(m_edit->hasFocus());
}

void QMultiLineEditViewTest::cleanup()
{
    m_edit.reset();
    QGuiApplication::styleHints()->setCursorFlashTime(m_flashTime);
}

static qint64 wholeRows(const QMultiLineEdit &edit)
{
    return qint64(edit.viewport()->height() / edit.rowHeight());
}

void QMultiLineEditViewTest::topRowIsClamped()
{
    m_edit->setText(numbered(100));
    m_edit->setTopRow(RowIndex(50));
    QCOMPARE(m_edit->topRow(), RowIndex(50));
    m_edit->setTopRow(RowIndex(1000));
    QCOMPARE(m_edit->topRow(), RowIndex(101 - wholeRows(*m_edit)));
    m_edit->setTopRow(RowIndex(-3));
    QCOMPARE(m_edit->topRow(), RowIndex(0));
    m_edit->setText(u"short"_s);
    m_edit->setTopRow(RowIndex(5));
    QCOMPARE(m_edit->topRow(), RowIndex(0));
    QVERIFY(!m_edit->verticalScrollBar()->isVisible());
}

void QMultiLineEditViewTest::offsetsInPixels()
{
    m_edit->setText(numbered(100) + u"x"_s.repeated(500));
    m_edit->setYOffset(7 * m_edit->cellHeight());
    QCOMPARE(m_edit->topRow(), RowIndex(7));
    QCOMPARE(m_edit->yOffset(), 7 * m_edit->cellHeight());
    m_edit->setYOffset(7 * m_edit->cellHeight() + 1);
    QCOMPARE(m_edit->topRow(), RowIndex(7));
    m_edit->setYOffset(-100);
    QCOMPARE(m_edit->yOffset(), 0);
    m_edit->setYOffset(std::numeric_limits<int>::max());
    QCOMPARE(m_edit->topRow(), RowIndex(101 - wholeRows(*m_edit)));

    m_edit->setXOffset(33);
    QCOMPARE(m_edit->xOffset(), 33);
    QCOMPARE(m_edit->cellRect(m_edit->topRow()).topLeft(), QPointF(-33, 0));
    m_edit->setXOffset(-1);
    QCOMPARE(m_edit->xOffset(), 0);
    m_edit->setXOffset(1 << 30);
    QCOMPARE(m_edit->xOffset(), m_edit->cellWidth() - m_edit->viewport()->width());
}

/// However little room is left behind it.
void QMultiLineEditViewTest::textThatFitsHasNoRange()
{
    const QScrollBar &bar = *m_edit->horizontalScrollBar();
    m_edit->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    const QString row = u"x"_s.repeated(200);
    const int width = qCeil(200 * m_edit->fontMeasure()->xWidth());
    m_edit->setText(row);
    const int around = m_edit->width() - m_edit->viewport()->width();
    for (int room = 30; room >= -30; --room) {
        m_edit->resize(m_edit->hMargin() + width + around + room, m_edit->height());
        const bool fits = room >= 0;
        if (fits || room < -3) { // the cursor behind the text may be cut by a pixel
            QVERIFY2((bar.maximum() == 0) == fits, QByteArray::number(room).constData());
            QTRY_COMPARE(bar.isVisible(), !fits);
        }
        QTest::keyClick(m_edit.get(), Qt::Key_End);
        QVERIFY2((m_edit->xOffset() == 0) == (bar.maximum() == 0), QByteArray::number(room).constData());
    }
}

void QMultiLineEditViewTest::scrollBarScrolls()
{
    m_edit->setText(numbered(100));
    QScrollBar *const bar = m_edit->verticalScrollBar();
    QCOMPARE(bar->maximum(), int(101 - wholeRows(*m_edit)));
    QCOMPARE(bar->pageStep(), int(wholeRows(*m_edit)));
    bar->setValue(13);
    QCOMPARE(m_edit->topRow(), RowIndex(13));
    bar->triggerAction(QAbstractSlider::SliderSingleStepAdd);
    QCOMPARE(m_edit->topRow(), RowIndex(14));
    bar->triggerAction(QAbstractSlider::SliderPageStepAdd);
    QCOMPARE(m_edit->topRow(), RowIndex(14 + wholeRows(*m_edit)));
    m_edit->setTopRow(RowIndex(3));
    QCOMPARE(bar->value(), 3);
}

void QMultiLineEditViewTest::wheelTurnsRows()
{
    m_edit->setText(numbered(100));
    const int lines = QGuiApplication::styleHints()->wheelScrollLines();
    turnWheel(*m_edit, { 0, -120 });
    QCOMPARE(m_edit->topRow(), RowIndex(lines));
    turnWheel(*m_edit, { 0, -240 });
    QCOMPARE(m_edit->topRow(), RowIndex(3 * lines));
    turnWheel(*m_edit, { 0, 120 });
    QCOMPARE(m_edit->topRow(), RowIndex(2 * lines));
    turnWheel(*m_edit, { 0, 12000 });
    QCOMPARE(m_edit->topRow(), RowIndex(0));
}

void QMultiLineEditViewTest::partsOfANotchAddUp()
{
    m_edit->setText(numbered(100));
    const int lines = QGuiApplication::styleHints()->wheelScrollLines();
    for (int turned = 0; turned < 120; turned += 8)
        turnWheel(*m_edit, { 0, -8 });
    QCOMPARE(m_edit->topRow(), RowIndex(lines));
    turnWheel(*m_edit, { 0, -1 });
    QCOMPARE(m_edit->topRow(), RowIndex(lines));
    turnWheel(*m_edit, { 0, 120 });
    QCOMPARE(m_edit->topRow(), RowIndex(0));
}

void QMultiLineEditViewTest::wheelWithShiftGoesToTheSide()
{
    m_edit->setText(numbered(100) + u"x"_s.repeated(500));
    turnWheel(*m_edit, { 0, -120 }, Qt::ShiftModifier);
    QCOMPARE(m_edit->topRow(), RowIndex(0));
    const qint64 shifted = m_edit->xOffset();
    QVERIFY(shifted > 0);
    turnWheel(*m_edit, { -120, 0 });
    QCOMPARE(m_edit->xOffset(), 2 * shifted);
    turnWheel(*m_edit, { 360, 0 });
    QCOMPARE(m_edit->xOffset(), 0);
}

void QMultiLineEditViewTest::cursorIsMadeVisible_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>(
        "to"); ///< counted from the last row that is seen whole, or from the top when below 0
    QTest::addColumn<int>("moved");
    QTest::newRow("seen already") << 40 << 0 << 0;
    QTest::newRow("one below") << 40 << 1 << 1;
    QTest::newRow("five below") << 40 << 5 << 5;
    QTest::newRow("one above") << 40 << -1 << -1;
    QTest::newRow("five above") << 40 << -5 << -5;
}

void QMultiLineEditViewTest::cursorIsMadeVisible()
{
    QFETCH(int, from);
    QFETCH(int, to);
    m_edit->setText(numbered(1000));
    m_edit->setTopRow(RowIndex(from));
    m_edit->setCursorPosition(to < 0 ? from + to : from + wholeRows(*m_edit) - 1 + to, 0);
    QTEST(int(m_edit->topRow() - RowIndex(from)), "moved");

    // A place far away comes to the middle, with what is around it.
    m_edit->setCursorPosition(700, 0);
    QCOMPARE(m_edit->topRow(), RowIndex(700 - wholeRows(*m_edit) / 2));
}

void QMultiLineEditViewTest::longRowsAreScrolledToTheCursor()
{
    m_edit->setText(u"x"_s.repeated(1000));
    const QRect view = m_edit->viewport()->rect();
    DrawnText::press(*m_edit, u"End"_s);
    QVERIFY(m_edit->xOffset() > 0);
    QVERIFY(view.contains(m_edit->cursorRect()));
    DrawnText::press(*m_edit, u"Left*100"_s);
    QVERIFY(view.contains(m_edit->cursorRect().center()));
    DrawnText::press(*m_edit, u"Home"_s);
    QCOMPARE(m_edit->xOffset(), 0);

    // Typing at the edge moves the view now and then, not with every key.
    DrawnText::press(*m_edit, u"End"_s);
    QSignalSpy scrolled(m_edit->horizontalScrollBar(), &QScrollBar::valueChanged);
    DrawnText::press(*m_edit, u"'xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx'"_s);
    QVERIFY(scrolled.size() < 10);
    QVERIFY(view.contains(m_edit->cursorRect()));
}

void QMultiLineEditViewTest::cursorIsDrawnWhereItIsHit()
{
    m_edit->setText(
        u"plain text\n\ttab あいう\nfa\u0301ce \u0645\u0631\u062D\u0628\u0627 \U0001F468\u200D\U0001F469 end\n"_s
        + u"mmm"_s.repeated(100));
    for (const int offset : { 0, 40 }) {
        m_edit->setXOffset(offset);
        for (Offset at; at <= Offset(45); at = nextCursorStop(m_edit->store(), at)) {
            m_edit->setCursorPlace({ at });
            const QRect cursor = m_edit->cursorRect();
            if (m_edit->viewport()->rect().contains(cursor))
                QCOMPARE(m_edit->offsetAt(cursor.center()), at);
        }
    }
    QCOMPARE(m_edit->offsetAt({ 0, 10'000 }), m_edit->store().lineStart(LineIndex(3)));
    m_edit->setXOffset(0);
    QCOMPARE(m_edit->offsetAt({ -50, -50 }), Offset(0));
    QCOMPARE(m_edit->offsetAt({ 290, 2 }), Offset(10));
}

void QMultiLineEditViewTest::keysRepaintOnlyTheirRows_data()
{
    QTest::addColumn<QString>("keys");
    QTest::addColumn<QList<qint64>>("painted");
    const QList<qint64> toTheEnd = {};
    QTest::newRow("a character") << u"'x'"_s << QList<qint64>{ 5 };
    QTest::newRow("Backspace in a row") << u"Backspace"_s << QList<qint64>{ 5 };
    QTest::newRow("Right") << u"Right"_s << QList<qint64>{ 5 };
    QTest::newRow("Down") << u"Down"_s << QList<qint64>{ 5, 6 };
    QTest::newRow("Up") << u"Up"_s << QList<qint64>{ 4, 5 };
    QTest::newRow("Return") << u"Return"_s << toTheEnd;
    QTest::newRow("Del of a line end") << u"End Del"_s << toTheEnd;
    QTest::newRow("selecting down") << u"Shift+Down*3"_s << QList<qint64>{ 5, 6, 7, 8 };
}

void QMultiLineEditViewTest::keysRepaintOnlyTheirRows()
{
    QFETCH(QString, keys);
    QFETCH(QList<qint64>, painted);
    m_edit->setText(numbered(200).replace(u"\n"_s, u"abc\n"_s));
    m_edit->setCursorPosition(5, 2);
    m_edit->takePainted();
    DrawnText::press(*m_edit, keys);
    const QList<qint64> now = m_edit->takePainted();
    if (painted.isEmpty())
        painted = rows(5, qint64(m_edit->viewport()->height() / m_edit->rowHeight()));
    QCOMPARE(now, painted);
}

void QMultiLineEditViewTest::wrappedRowsAreRepaintedToTheLinesEnd()
{
    wrapAt(*m_edit, 10);
    m_edit->setText(u"xx\n"_s + u"x"_s.repeated(35) + u"\nxx\n"_s.repeated(50));
    m_edit->setCursorPosition(2, 5);
    m_edit->takePainted();
    DrawnText::press(*m_edit, u"'x'"_s);
    // The row before may have room for more now; the line's last row is the fourth.
    QCOMPARE(m_edit->takePainted(), rows(1, 4));
}

void QMultiLineEditViewTest::scrollingKeepsWhatIsPainted()
{
    m_edit->setText(numbered(200));
    m_edit->takePainted();
    m_edit->setTopRow(RowIndex(3));
    const QList<qint64> painted = m_edit->takePainted();
    QVERIFY2(!painted.contains(5), "rows in the middle were painted anew");
    QVERIFY(painted.contains(m_edit->topRow().value() + wholeRows(*m_edit)));
    QVERIFY(painted.size() <= 6);
}

void QMultiLineEditViewTest::cursorBlinks()
{
    m_edit->setText(numbered(50));
    m_edit->setCursorPosition(4, 0);
    QGuiApplication::styleHints()->setCursorFlashTime(40);
    m_edit->takePainted();
    QTRY_VERIFY(!showsCursor(*m_edit));
    QTRY_VERIFY(showsCursor(*m_edit));
    QTRY_VERIFY(!showsCursor(*m_edit));
    const QList<qint64> painted = m_edit->takePainted();
    QVERIFY(painted.contains(4));
    QCOMPARE(painted.count(4), painted.size());

    DrawnText::press(*m_edit, u"Tab"_s);
    QVERIFY(showsCursor(*m_edit));
    m_edit->clearFocus();
    QTRY_VERIFY(!m_edit->hasFocus());
    QVERIFY(!hasTimers(*m_edit));
    m_edit->setFocus();
    QVERIFY(showsCursor(*m_edit));
}

void QMultiLineEditViewTest::cursorIsSteadyWithoutARate()
{
    m_edit->setText(numbered(50));
    DrawnText::press(*m_edit, u"'x' Left"_s);
    QVERIFY(showsCursor(*m_edit));
    QVERIFY(!hasTimers(*m_edit));
}

void QMultiLineEditViewTest::fontChangeKeepsTheTopLine()
{
    m_edit->setWordWrap(QMultiLineEdit::FixedPixelWidth);
    m_edit->setWrapColumnOrWidth(m_edit->viewport()->width());
    m_edit->setText(u"x"_s.repeated(20'000) + u'\n' + numbered(200));
    const RowIndex row = rowOfLine(m_edit->store(), LineIndex(50));
    m_edit->setTopRow(row);
    m_edit->setCursorPosition({ row + 2, 1 });
    const Offset cursor = m_edit->cursorOffset();
    QFont font = m_edit->font();
    font.setPointSizeF(font.pointSizeF() * 2);
    const qreal height = m_edit->rowHeight();
    m_edit->setFont(font);
    QVERIFY(m_edit->rowHeight() > height);
    QCOMPARE(lineOfRow(m_edit->store(), m_edit->topRow()), LineIndex(50));
    QCOMPARE(m_edit->cursorOffset(), cursor);
}

void QMultiLineEditViewTest::selectionChangeRepaintsItsDifference()
{
    m_edit->setText(numbered(200));
    m_edit->setCursorPosition(2, 0);
    m_edit->setCursorPosition(6, 0, true);
    m_edit->takePainted();
    m_edit->setCursorPosition(8, 0, true);
    QCOMPARE(m_edit->takePainted(), rows(6, 8));
    m_edit->deselect();
    QCOMPARE(m_edit->takePainted(), rows(2, 8));
}

/// Whoever hears of a change may take room for something else; the cursor stands behind the text then.
void QMultiLineEditViewTest::resizedInTheMiddleOfAnEdit()
{
    QWidget window;
    window.resize(400, 400);
    QMultiLineEdit edit(&window);
    edit.resize(300, 300);
    edit.setText(u"line\n"_s.repeated(100));
    window.show();
    edit.selectAll();
    connect(&edit.document(), &TextDocument::changed, &edit, [&edit] { edit.resize(300, 200); });
    edit.insert(u"short\n"_s.repeated(50));
    QCOMPARE(edit.height(), 200);
    QCOMPARE(edit.cursorOffset(), edit.store().end());
    QVERIFY(edit.viewport()->rect().contains(edit.cursorRect()));
    QCOMPARE(edit.verticalScrollBar()->maximum(), 51 - wholeRows(edit));
}

REGISTER_TEST(runWindowTest<QMultiLineEditViewTest>)
#include "qmultilineeditview_test.moc"
