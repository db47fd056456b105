#include "tests/testprogram.h"
#include "tests/widget/viewparts.h"

#include <QApplication>
#include <QWheelEvent>

using namespace Qt::StringLiterals;

/// What moves a view over its text.
class ViewScrollerTest : public QObject {
    Q_OBJECT

private slots:
    void rowsComeIntoView_data();
    void rowsComeIntoView();
    void oneRowOfAPageStays();
    void columnsComeIntoViewWithSomeReserve();
    void barsShowTheViewAndMoveIt();
    void partsOfAWheelsTurnAddUp();
    void otherWayRoundThePartsAreForgotten();
    void shiftTurnsTheWheelSideways();
};

namespace {

QString manyLines()
{
    return u"x\n"_s.repeated(999);
}

void turnWheelOver(ViewParts &parts, int eighths, Qt::KeyboardModifiers held = Qt::NoModifier)
{
    const QWheelEvent event({}, {}, {}, { 0, eighths }, Qt::NoButton, held, Qt::NoScrollPhase, false);
    parts.scroller.wheel(event);
}

} // namespace

void ViewScrollerTest::rowsComeIntoView_data()
{
    QTest::addColumn<qint64>("fromTop"); // rows
    QTest::addColumn<qint64>("pages"); // besides
    QTest::addColumn<qint64>("topMoves");
    QTest::addColumn<bool>("toMiddle");
    QTest::newRow("the first one stays") << 0LL << 0LL << 0LL << false;
    QTest::newRow("the last one stays") << -1LL << 1LL << 0LL << false;
    QTest::newRow("one below") << 0LL << 1LL << 1LL << false;
    QTest::newRow("one above") << -1LL << 0LL << -1LL << false;
    QTest::newRow("a page below") << -1LL << 2LL << 0LL << false;
    QTest::newRow("far below") << 0LL << 2LL << 0LL << true;
    QTest::newRow("far above") << -1LL << -1LL << 0LL << true;
}

void ViewScrollerTest::rowsComeIntoView()
{
    QFETCH(qint64, fromTop);
    QFETCH(qint64, pages);
    QFETCH(qint64, topMoves);
    QFETCH(bool, toMiddle);
    ViewParts parts(manyLines());
    const RowIndex top(500);
    const qint64 page = parts.view.visibleRows();
    QVERIFY(page > 2);
    parts.scroller.setTop(top);
    const RowIndex row = top + fromTop + pages * page;
    parts.scroller.showRow(row);
    if (toMiddle)
        QCOMPARE(parts.view.top(), row - page / 2);
    else if (pages == 2)
        QCOMPARE(parts.view.top(), row - page + 1);
    else
        QCOMPARE(parts.view.top(), top + topMoves);
}

void ViewScrollerTest::oneRowOfAPageStays()
{
    ViewParts parts(manyLines());
    const qint64 page = parts.view.visibleRows();
    QCOMPARE(parts.scroller.rowsOfPage(), page - 1);
    parts.scroller.turnPage(2);
    QCOMPARE(parts.view.top(), RowIndex(2 * (page - 1)));
    parts.scroller.turnPage(-1);
    QCOMPARE(parts.view.top(), RowIndex(page - 1));
    parts.scroller.turnPage(-5);
    QCOMPARE(parts.view.top(), RowIndex(0));
}

void ViewScrollerTest::columnsComeIntoViewWithSomeReserve()
{
    ViewParts parts(u"x"_s.repeated(1000));
    const int width = parts.view.width();
    parts.scroller.showX(width / 2, cursorWidth);
    QCOMPARE(parts.view.left(), 0);
    parts.scroller.showX(1000, cursorWidth);
    const qint64 right = parts.view.left();
    QCOMPARE(right, parts.format.margin() + 1000 + cursorWidth - width + scrollReserve(width));
    parts.scroller.showX(1000 - width / 2.0, cursorWidth);
    QCOMPARE(parts.view.left(), right);
    parts.scroller.showX(400, cursorWidth);
    QCOMPARE(parts.view.left(), 400 - scrollReserve(width));
}

void ViewScrollerTest::barsShowTheViewAndMoveIt()
{
    ViewParts parts(manyLines());
    connect(&parts.verticalBar, &QAbstractSlider::valueChanged, &parts.editor,
        [&parts] { parts.scroller.followVerticalBar(); });
    QCOMPARE(RowIndex(parts.verticalBar.maximum()), parts.view.lastTop());
    parts.scroller.setTop(RowIndex(7));
    QCOMPARE(parts.verticalBar.value(), 7);
    QCOMPARE(parts.view.top(), RowIndex(7));
    parts.verticalBar.setValue(30);
    QCOMPARE(parts.view.top(), RowIndex(30));
    parts.document.setText(TextStore(parts.format.layoutRule()));
    QCOMPARE(parts.verticalBar.maximum(), 0);
    QCOMPARE(parts.view.top(), RowIndex(0));
}

void ViewScrollerTest::partsOfAWheelsTurnAddUp()
{
    QApplication::setWheelScrollLines(3);
    ViewParts parts(manyLines());
    parts.scroller.setTop(RowIndex(100));
    turnWheelOver(parts, -120);
    QCOMPARE(parts.view.top(), RowIndex(103));
    for (int i = 0; i < 3; ++i)
        turnWheelOver(parts, -10);
    QCOMPARE(parts.view.top(), RowIndex(103));
    turnWheelOver(parts, -10);
    QCOMPARE(parts.view.top(), RowIndex(104));
}

void ViewScrollerTest::otherWayRoundThePartsAreForgotten()
{
    QApplication::setWheelScrollLines(3);
    ViewParts parts(manyLines());
    parts.scroller.setTop(RowIndex(100));
    turnWheelOver(parts, -30);
    turnWheelOver(parts, 30);
    QCOMPARE(parts.view.top(), RowIndex(100));
    turnWheelOver(parts, 10);
    QCOMPARE(parts.view.top(), RowIndex(99));
}

void ViewScrollerTest::shiftTurnsTheWheelSideways()
{
    ViewParts parts(u"x"_s.repeated(1000) + manyLines());
    turnWheelOver(parts, -120, Qt::ShiftModifier);
    QCOMPARE(parts.view.top(), RowIndex(0));
    QVERIFY(parts.view.left() > 0);
    turnWheelOver(parts, 120, Qt::ShiftModifier);
    QCOMPARE(parts.view.left(), 0);
}

REGISTER_TEST(runWindowTest<ViewScrollerTest>)
#include "viewscroller_test.moc"
