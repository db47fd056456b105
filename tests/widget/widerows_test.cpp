#include "tests/testprogram.h"
#include "tests/widget/drawntext.h"
#include "tests/widget/rows.h"

#include <QAccessible>
#include <QScrollBar>
#include <QScrollPrepareEvent>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 farthest = qint64(1) << 40; ///< logical pixels
constexpr int tabs = 1 << 20;

QImage pictureOf(QMultiLineEdit &edit)
{
    return edit.viewport()->grab().toImage();
}

} // namespace

/// A row of more pixels than an int can count: a million TABs, each a million pixels wide.
class WideRowsTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void cursorReachesTheEnd();
    void textAtTheEndIsPainted();
    void anyOffsetIsKept();
    void scrollBarReachesEverything();
    void scrollBarStepsAreShort();
    void fingersScrollIt();
    void placesOutsideStayOnTheirSide();

private:
    std::unique_ptr<QMultiLineEdit> m_edit;
    int m_tabStop = 0;
};

void WideRowsTest::init()
{
    m_tabStop = QMultiLineEdit::defaultTabStop();
    QMultiLineEdit::setDefaultTabStop(1 << 18);
    m_edit = std::make_unique<QMultiLineEdit>();
    m_edit->resize(300, 200);
    m_edit->setText(QString(tabs, u'\t') + u"end\nshort"_s);
    m_edit->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_edit.get()));
    QVERIFY(m_edit->cellWidth() > farthest);
}

void WideRowsTest::cleanup()
{
    m_edit.reset();
    QMultiLineEdit::setDefaultTabStop(m_tabStop);
}

void WideRowsTest::cursorReachesTheEnd()
{
    const QRect view = m_edit->viewport()->rect();
    DrawnText::press(*m_edit, u"End"_s);
    QVERIFY(m_edit->xOffset() > farthest);
    QVERIFY(view.contains(m_edit->cursorRect()));
    QCOMPARE(m_edit->offsetAt(m_edit->cursorRect().center()), Offset(tabs + 3));
    DrawnText::press(*m_edit, u"'x' Left*2"_s);
    QVERIFY(view.contains(m_edit->cursorRect()));
    QCOMPARE(m_edit->offsetAt(m_edit->cursorRect().center()), Offset(tabs + 2));
    QCOMPARE(rowText(*m_edit, 0).last(4), u"endx"_s);
    DrawnText::press(*m_edit, u"Down"_s);
    QCOMPARE(m_edit->xOffset(), 0);
}

void WideRowsTest::textAtTheEndIsPainted()
{
    m_edit->setXOffset(farthest / 2);
    const QImage nothing = pictureOf(*m_edit);
    m_edit->setCursorPosition(0, tabs);
    m_edit->clearFocus();
    QVERIFY(pictureOf(*m_edit) != nothing);
    m_edit->setCursorPosition(0, tabs + 3, true);
    const QRgb highlight = m_edit->palette().color(QPalette::Highlight).rgb();
    const QImage selected = pictureOf(*m_edit);
    QCOMPARE(selected.pixel(m_edit->cursorRect().left() - 3, 1), highlight);
}

void WideRowsTest::anyOffsetIsKept()
{
    for (const qint64 offset : { 0x7fffffffLL, 0x80000001LL, farthest - 12345, farthest }) {
        m_edit->setXOffset(offset);
        QCOMPARE(m_edit->xOffset(), offset);
        QCOMPARE(m_edit->cellRect(RowIndex(0)).left(), -qreal(offset));
    }
    m_edit->setXOffset(std::numeric_limits<qint64>::max());
    QCOMPARE(m_edit->xOffset(), m_edit->cellWidth() - m_edit->viewport()->width());
    m_edit->setText(u"short"_s);
    QCOMPARE(m_edit->xOffset(), 0);
}

void WideRowsTest::scrollBarReachesEverything()
{
    QScrollBar &bar = *m_edit->horizontalScrollBar();
    const qint64 last = m_edit->cellWidth() - m_edit->viewport()->width();
    bar.setValue(bar.maximum());
    QCOMPARE(m_edit->xOffset(), last);
    bar.setValue(bar.maximum() / 2);
    QVERIFY(qAbs(m_edit->xOffset() - last / 2) <= last / bar.maximum() + 1);
    m_edit->setXOffset(last / 4);
    QVERIFY(qAbs(bar.value() - bar.maximum() / 4) <= 1);
    bar.triggerAction(QAbstractSlider::SliderToMinimum);
    QCOMPARE(m_edit->xOffset(), 0);
    bar.triggerAction(QAbstractSlider::SliderToMaximum);
    QCOMPARE(m_edit->xOffset(), last);
}

/// Though each of the bar's values stands for more pixels than the view has.
void WideRowsTest::scrollBarStepsAreShort()
{
    const auto moved = [this](QAbstractSlider::SliderAction action) {
        const qint64 before = m_edit->xOffset();
        m_edit->horizontalScrollBar()->triggerAction(action);
        return m_edit->xOffset() - before;
    };
    m_edit->setXOffset(farthest / 3);
    const qint64 step = moved(QAbstractSlider::SliderSingleStepAdd);
    QVERIFY(step > 0 && step < m_edit->viewport()->width() / 4);
    QCOMPARE(moved(QAbstractSlider::SliderSingleStepSub), -step);
    QCOMPARE(moved(QAbstractSlider::SliderPageStepAdd), m_edit->viewport()->width());
    QCOMPARE(moved(QAbstractSlider::SliderPageStepSub), -m_edit->viewport()->width());
}

void WideRowsTest::fingersScrollIt()
{
    m_edit->setXOffset(farthest / 2);
    QScrollPrepareEvent prepare(QPointF(9, 9));
    QCoreApplication::sendEvent(m_edit->viewport(), &prepare);
    QCOMPARE(prepare.contentPos().x(), qreal(farthest) / 2);
    QCOMPARE(prepare.contentPosRange().right(), qreal(m_edit->cellWidth() - m_edit->viewport()->width()));
    QScrollEvent scroll(QPointF(qreal(farthest) - 77, 0), {}, QScrollEvent::ScrollUpdated);
    QCoreApplication::sendEvent(m_edit->viewport(), &scroll);
    QCOMPARE(m_edit->xOffset(), farthest - 77);
}

void WideRowsTest::placesOutsideStayOnTheirSide()
{
    const QRect view = m_edit->viewport()->rect();
    m_edit->setXOffset(farthest);
    QVERIFY(m_edit->cursorRect().right() < view.left());
    QVERIFY(m_edit->inputMethodQuery(Qt::ImCursorRectangle).toRectF().right() < view.left());
    m_edit->setCursorPosition(0, tabs + 3);
    m_edit->setXOffset(0);
    QVERIFY(m_edit->cursorRect().left() > view.right());
    QVERIFY(m_edit->inputMethodQuery(Qt::ImCursorRectangle).toRectF().left() > view.right());
    QAccessibleTextInterface &text = *QAccessible::queryAccessibleInterface(m_edit.get())->textInterface();
    QVERIFY(text.characterRect(tabs).left() > m_edit->viewport()->mapToGlobal(view.topRight()).x());
}

REGISTER_TEST(runWindowTest<WideRowsTest>)
#include "widerows_test.moc"
