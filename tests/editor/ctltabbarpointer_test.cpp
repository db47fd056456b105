#include "tests/editor/showntabbar.h"
#include "tests/testprogram.h"

#include <QSignalSpy>
#include <QTimer>
#include <QWheelEvent>

#include <algorithm>

/// What mouse, wheel, pen and finger do on the tabs.
class CtlTabBarPointerTest : public QObject, private ShownTabBar {
    Q_OBJECT

private slots:
    void init() { QVERIFY(show()); }
    void cleanup() { remove(); }

    void clickTellsOnce();
    void rightClickTellsNothing();
    void wheelChangesNothing();
    void wheelScrollsTabsWithoutRoom();
    void scrollsToAPixel();
    void draggingMovesATab();
    void dragEndsWhereTabsAreChosen();
    void middleButtonAsksToClose();
    void rightButtonAsksForTheMenu();
    void heldTabAsksForTheMenu();
    void movedTabAsksForNoMenu();
    void mouseDoesNothingMoreWhereItIsOff();
    void focusStaysWithTheEditor();

private:
    void turnWheel(int angle) const;
    void drag(int from, int to) const;
    void moveTo(QPoint place) const;
};

void CtlTabBarPointerTest::clickTellsOnce()
{
    const Editors editors{ addTab(), addTab() };
    QSignalSpy spy(m_bar, &ctlTabBar::currentChanged);
    QTest::mouseClick(m_bar, Qt::LeftButton, {}, middleOf(1));
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy[0][0].value<ctlEditer *>(), editors[1]);
    QTest::mouseClick(m_bar, Qt::LeftButton, {}, middleOf(1));
    QCOMPARE(spy.count(), 2);
    QCOMPARE(spy[1][0].value<ctlEditer *>(), editors[1]);
    QTest::mouseClick(m_bar, Qt::LeftButton, {}, QPoint(m_bar->width() - 2, 5));
    QCOMPARE(spy.count(), 2);
}

void CtlTabBarPointerTest::rightClickTellsNothing()
{
    addTab();
    addTab();
    QSignalSpy spy(m_bar, &ctlTabBar::currentChanged);
    QTest::mouseClick(m_bar, Qt::RightButton, {}, middleOf(0));
    QTest::mouseClick(m_bar, Qt::MiddleButton, {}, middleOf(1));
    QCOMPARE(spy.count(), 0);
}

void CtlTabBarPointerTest::wheelChangesNothing()
{
    ctlEditer *editor = addTab();
    addTab();
    QSignalSpy spy(m_bar, &ctlTabBar::currentChanged);
    turnWheel(-240);
    QCOMPARE(spy.count(), 0);
    QCOMPARE(m_bar->editorOf(m_bar->currentTab()), editor);
}

void CtlTabBarPointerTest::turnWheel(int angle) const
{
    const QPointF place = middleOf(0);
    QWheelEvent event(
        place, m_bar->mapToGlobal(place), {}, QPoint(0, angle), Qt::NoButton, {}, Qt::NoScrollPhase, false);
    QApplication::sendEvent(m_bar, &event);
}

void CtlTabBarPointerTest::wheelScrollsTabsWithoutRoom()
{
    m_bar->resize(200, 30);
    ctlEditer *const first = addTab();
    for (int i = 0; i < 9; ++i)
        addTab();
    QCOMPARE(m_bar->tabAt(QPoint(5, 10)), 0);
    turnWheel(-60);
    QCOMPARE(m_bar->tabAt(QPoint(5, 10)), 0); // half a notch
    turnWheel(-60);
    const int scrolled = m_bar->tabRect(0).left();
    QVERIFY(scrolled < 0);
    turnWheel(-240);
    QVERIFY(m_bar->tabRect(0).left() < scrolled);
    turnWheel(120 * 20); // to the start and no further
    QVERIFY(m_bar->tabRect(0).left() >= 0);
    QCOMPARE(m_bar->editorOf(m_bar->currentTab()), first);
}

void CtlTabBarPointerTest::scrollsToAPixel()
{
    m_bar->resize(200, 30);
    for (int i = 0; i < 9; ++i)
        addTab();
    const int none = m_bar->scrolled();
    for (const int pixels : { 50, 51, 7 }) {
        m_bar->scrollTo(pixels);
        QCOMPARE(m_bar->scrolled(), pixels);
        QCOMPARE(m_bar->tabRect(0).left(), -pixels);
    }
    m_bar->scrollTo(-100);
    QCOMPARE(m_bar->scrolled(), none);
    m_bar->scrollTo(10000);
    const int last = m_bar->tabRect(8).right();
    QVERIFY2(last > 100 && last < 200, qPrintable(QString::number(last)));
    turnWheel(-120);
    QCOMPARE(m_bar->tabRect(8).right(), last); // as far as the wheel goes
}

void CtlTabBarPointerTest::drag(int from, int to) const
{
    const QPoint start = middleOf(from);
    const QPoint end = middleOf(to);
    QTest::mousePress(m_bar, Qt::LeftButton, {}, start);
    for (int step = 1; step <= 10; ++step)
        moveTo(start + (end - start) * step / 10);
    QTest::mouseRelease(m_bar, Qt::LeftButton, {}, end);
}

/// With the left button down.
void CtlTabBarPointerTest::moveTo(QPoint place) const
{
    QMouseEvent move(QEvent::MouseMove, place, m_bar->mapToGlobal(place), Qt::NoButton, Qt::LeftButton, {});
    QApplication::sendEvent(m_bar, &move);
}

void CtlTabBarPointerTest::draggingMovesATab()
{
    const Editors editors{ addTab(), addTab(), addTab() };
    const QList<int> ids{ m_bar->idOf(editors[0]), m_bar->idOf(editors[1]), m_bar->idOf(editors[2]) };
    QSignalSpy spy(m_bar, &ctlTabBar::currentChanged);
    drag(0, 2);
    QCOMPARE(m_bar->editors(), Editors({ editors[1], editors[2], editors[0] }));
    QCOMPARE(m_bar->editorOf(m_bar->currentTab()), editors[0]);
    for (int i = 0; i < 3; ++i)
        QCOMPARE(m_bar->idOf(editors[i]), ids[i]);
    QCOMPARE(spy.count(), 1); // of the press
}

void CtlTabBarPointerTest::dragEndsWhereTabsAreChosen()
{
    const Editors editors{ addTab(), addTab(), addTab() };
    QSignalSpy spy(m_bar, &ctlTabBar::currentChanged);
    const auto chosen = [&] { return spy.isEmpty() ? nullptr : spy.takeLast()[0].value<ctlEditer *>(); };
    const auto beginDrag = [this] {
        QTest::mousePress(m_bar, Qt::LeftButton, {}, middleOf(0));
        moveTo((middleOf(0) + middleOf(1)) / 2);
    };
    beginDrag();
    m_bar->setCurrentTab(editors[2]);
    QCOMPARE(chosen(), editors[2]);
    QCOMPARE(m_bar->currentTab(), m_bar->idOf(editors[2]));
    const Editors before = m_bar->editors();
    moveTo(middleOf(2)); // the button is still down
    QTest::mouseRelease(m_bar, Qt::LeftButton, {}, middleOf(2));
    QCOMPARE(m_bar->editors(), before);

    beginDrag();
    m_bar->removeTab(before[0]);
    QCOMPARE(chosen(), before[1]);
    QCOMPARE(m_bar->currentTab(), m_bar->idOf(before[1]));
    QTest::mouseRelease(m_bar, Qt::LeftButton, {}, middleOf(0));
}

void CtlTabBarPointerTest::middleButtonAsksToClose()
{
    const Editors editors{ addTab(), addTab() };
    QSignalSpy spy(m_bar, &ctlTabBar::closeWanted);
    QTest::mouseClick(m_bar, Qt::MiddleButton, {}, middleOf(1));
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy[0][0].value<ctlEditer *>(), editors[1]);
    QTest::mousePress(m_bar, Qt::MiddleButton, {}, middleOf(0));
    QTest::mouseRelease(m_bar, Qt::MiddleButton, {}, middleOf(1));
    QTest::mouseClick(m_bar, Qt::MiddleButton, {}, QPoint(m_bar->width() - 2, 5));
    QTest::mouseClick(m_bar, Qt::LeftButton, {}, middleOf(0));
    QCOMPARE(spy.count(), 1);
    QCOMPARE(m_bar->count(), 2); // who closes it is asked first
}

void CtlTabBarPointerTest::rightButtonAsksForTheMenu()
{
    const Editors editors{ addTab(), addTab() };
    QSignalSpy spy(m_bar, &ctlTabBar::menuWanted);
    const auto ask = [this](QPoint place) {
        QContextMenuEvent event(QContextMenuEvent::Mouse, place, m_bar->mapToGlobal(place));
        QApplication::sendEvent(m_bar, &event);
    };
    ask(middleOf(1));
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy[0][0].value<ctlEditer *>(), editors[1]);
    QCOMPARE(spy[0][1].toPoint(), m_bar->mapToGlobal(middleOf(1)));
    ask(QPoint(m_bar->width() - 2, 5));
    QCOMPARE(spy.count(), 1);
}

void CtlTabBarPointerTest::heldTabAsksForTheMenu()
{
    const Editors editors{ addTab(), addTab(), addTab() };
    QSignalSpy spy(m_bar, &ctlTabBar::menuWanted);
    QTest::mousePress(m_bar, Qt::LeftButton, {}, middleOf(1));
    QCOMPARE(spy.count(), 0);
    QTRY_COMPARE(spy.count(), 1);
    QCOMPARE(spy[0][0].value<ctlEditer *>(), editors[1]);
    QCOMPARE(spy[0][1].toPoint(), m_bar->mapToGlobal(middleOf(1)));
    // The menu has the release; a pointer that moves on drags nothing.
    QMouseEvent move(
        QEvent::MouseMove, middleOf(2), m_bar->mapToGlobal(middleOf(2)), Qt::NoButton, Qt::LeftButton, {});
    QApplication::sendEvent(m_bar, &move);
    QCOMPARE(m_bar->editors(), editors);
}

void CtlTabBarPointerTest::movedTabAsksForNoMenu()
{
    addTab();
    addTab();
    const auto isAwaited = [this] {
        const QList<QTimer *> timers = m_bar->findChildren<QTimer *>(Qt::FindDirectChildrenOnly);
        return std::any_of(timers.begin(), timers.end(), [](const QTimer *each) { return each->isActive(); });
    };
    QTest::mousePress(m_bar, Qt::LeftButton, {}, middleOf(0));
    QVERIFY(isAwaited());
    QTest::mouseRelease(m_bar, Qt::LeftButton, {}, middleOf(0));
    QVERIFY(!isAwaited());
    QTest::mousePress(m_bar, Qt::LeftButton, {}, middleOf(0));
    QMouseEvent move(
        QEvent::MouseMove, middleOf(1), m_bar->mapToGlobal(middleOf(1)), Qt::NoButton, Qt::LeftButton, {});
    QApplication::sendEvent(m_bar, &move);
    QVERIFY(!isAwaited());
    QTest::mouseRelease(m_bar, Qt::LeftButton, {}, middleOf(1));
    QTest::mousePress(m_bar, Qt::RightButton, {}, middleOf(0));
    QVERIFY(!isAwaited());
    QTest::mouseRelease(m_bar, Qt::RightButton, {}, middleOf(0));
}

void CtlTabBarPointerTest::mouseDoesNothingMoreWhereItIsOff()
{
    m_bar->resize(200, 30);
    const Editors editors{ addTab(), addTab(), addTab(), addTab(), addTab() };
    moreSettings().TabsByMouse = 0;
    m_bar->applySettings();
    QSignalSpy spy(m_bar, &ctlTabBar::closeWanted);
    QTest::mouseClick(m_bar, Qt::MiddleButton, {}, middleOf(0));
    QCOMPARE(spy.count(), 0);
    drag(0, 1);
    QCOMPARE(m_bar->editors(), editors);
    const int left = m_bar->tabRect(0).left();
    turnWheel(-240);
    QCOMPARE(m_bar->tabRect(0).left(), left);
    moreSettings() = {};
}

void CtlTabBarPointerTest::focusStaysWithTheEditor()
{
    ctlEditer *editor = addTab();
    addTab();
    editor->show();
    editor->setFocus();
    QTest::mouseClick(m_bar, Qt::LeftButton, {}, middleOf(1));
    QCOMPARE(QApplication::focusWidget(), editor);
    QCOMPARE(m_bar->focusPolicy(), Qt::NoFocus);
}

REGISTER_TEST(runWindowTest<CtlTabBarPointerTest>)
#include "ctltabbarpointer_test.moc"
