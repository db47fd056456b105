#include "tests/testprogram.h"
#include "tests/widget/drawntext.h"
#include "tests/widget/keyboardasked.h"
#include "tests/widget/rows.h"
#include "tests/widget/twofields.h"

#include <QApplication>
#include <QMenu>
#include <QPointingDevice>
#include <QStyleHints>

using namespace Qt::StringLiterals;

/// What fingers select in a real window, the handles of it, and the keyboard on the screen.
class SelectionHandlesTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_window.reset(); }
    void aDoubleTapShowsThem();
    void heldStillShowsThem();
    void oneTapShowsNone();
    void eachMovesItsEnd();
    void oneMayPassTheOther();
    void theyNeverMeet();
    void theyGoWithTheSelection();
    void theyGoWithTheText();
    void theyStayInTheEditor();
    void theKeyboardGoesWithTheFocus();

private:
    QWidget *handle(const QString &name) const { return m_edit->findChild<QWidget *>(name); }
    QWidget *first() const { return handle(u"selectionBegin"_s); }
    QWidget *second() const { return handle(u"selectionEnd"_s); }
    bool areShown() const { return first() && first()->isVisible() && second()->isVisible(); }
    /// In the middle of a character, in the viewport.
    QPoint at(qint64 row, qint64 column) const
    {
        const QRectF cell = m_edit->cellRect(RowIndex(row));
        const auto x = m_edit->store().xAt({ RowIndex(row), column }) / subpixelsPerPixel;
        return { int(cell.x()) + m_edit->hMargin() + int(x) + 2, int(cell.center().y()) };
    }
    static QPointingDevice *screen()
    {
        static QPointingDevice *const device = QTest::createTouchDevice();
        return device;
    }
    void tap(QPoint point) const
    {
        QWidget *const view = m_edit->viewport();
        QTest::touchEvent(view, screen()).press(0, point, view);
        QTest::touchEvent(view, screen()).release(0, point, view);
    }
    void doubleTap(QPoint point) const
    {
        tap(point);
        tap(point);
    }
    /// By its middle, as far as it is from one point of the viewport to another.
    static void drag(QWidget *handle, QPoint way)
    {
        const QPoint from = handle->rect().center();
        const QPoint to = handle->mapTo(handle->window(), from) + way;
        QWidget *const window = handle->window();
        QTest::touchEvent(handle, screen()).press(0, from, handle);
        QTest::touchEvent(window, screen()).move(0, to, window);
        QTest::touchEvent(window, screen()).release(0, to, window);
    }

    std::unique_ptr<TwoFields> m_window;
    QMultiLineEdit *m_edit = nullptr;
};

void SelectionHandlesTest::init()
{
    QApplication::styleHints()->setMousePressAndHoldInterval(60);
    m_window = std::make_unique<TwoFields>();
    m_edit = m_window->edit;
    QVERIFY(m_window->open());
    DrawnText::load(*m_edit, u"|one two three\nfour five six"_s);
}

void SelectionHandlesTest::aDoubleTapShowsThem()
{
    doubleTap(at(0, 5));
    QCOMPARE(DrawnText::draw(*m_edit), u"one [two| three\nfour five six"_s);
    QVERIFY(areShown());
    // Below their ends, their tips at them.
    const QPoint below = m_edit->viewport()->mapTo(m_edit, at(1, 0));
    QVERIFY(first()->y() < below.y() && first()->geometry().bottom() > below.y());
    QCOMPARE(first()->y(), second()->y());
    QVERIFY(first()->geometry().right() < second()->x());
}

void SelectionHandlesTest::heldStillShowsThem()
{
    QWidget *const view = m_edit->viewport();
    QTest::touchEvent(view, screen()).press(0, at(0, 5), view);
    QTRY_VERIFY(areShown());
    QCOMPARE(DrawnText::draw(*m_edit), u"one [two| three\nfour five six"_s);
    QVERIFY(!QApplication::activePopupWidget());
    QTest::touchEvent(view, screen()).release(0, at(0, 5), view);
    QVERIFY(qobject_cast<QMenu *>(QApplication::activePopupWidget()));
    QApplication::activePopupWidget()->close();
    QVERIFY(areShown());
}

void SelectionHandlesTest::oneTapShowsNone()
{
    tap(at(0, 5));
    QVERIFY(!first());
}

void SelectionHandlesTest::eachMovesItsEnd()
{
    doubleTap(at(0, 5));
    drag(second(), at(1, 4) - at(0, 7));
    QCOMPARE(DrawnText::draw(*m_edit), u"one [two three\nfour| five six"_s);
    drag(first(), at(0, 0) - at(0, 4));
    QCOMPARE(DrawnText::draw(*m_edit), u"|one two three\nfour] five six"_s);
    QVERIFY(areShown());
}

void SelectionHandlesTest::oneMayPassTheOther()
{
    doubleTap(at(0, 5));
    drag(first(), at(0, 10) - at(0, 4));
    QCOMPARE(DrawnText::draw(*m_edit), u"one two[ th|ree\nfour five six"_s);
    QVERIFY(first()->x() < second()->x());
}

void SelectionHandlesTest::theyNeverMeet()
{
    doubleTap(at(0, 5));
    drag(first(), at(0, 7) - at(0, 4));
    QVERIFY(m_edit->hasMarkedText());
    QVERIFY(areShown());
}

void SelectionHandlesTest::theyGoWithTheSelection()
{
    doubleTap(at(0, 5));
    QVERIFY(areShown());
    QTest::keyClicks(m_edit, u"x"_s);
    QTRY_VERIFY(!areShown());
    doubleTap(at(1, 1));
    QVERIFY(areShown());
    m_edit->setCursorPosition(0, 0);
    QTRY_VERIFY(!areShown());
}

void SelectionHandlesTest::theyGoWithTheText()
{
    DrawnText::load(*m_edit, u"|one two\n"_s + u"line\n"_s.repeated(100));
    doubleTap(at(2, 1));
    const int before = first()->y();
    m_edit->setTopRow(RowIndex(1));
    QTRY_VERIFY(first()->y() < before);
    m_edit->setTopRow(RowIndex(50));
    QTRY_VERIFY(!first()->isVisible() && !second()->isVisible());
    m_edit->setTopRow(RowIndex(1));
    QTRY_VERIFY(areShown());
}

void SelectionHandlesTest::theyStayInTheEditor()
{
    DrawnText::load(*m_edit, u"|"_s + u"line\n"_s.repeated(100));
    const int lastRow = m_edit->viewport()->height() / int(m_edit->cellHeight()) - 1;
    doubleTap(at(lastRow, 1));
    QVERIFY(areShown());
    QVERIFY(m_edit->rect().contains(second()->geometry()));
}

void SelectionHandlesTest::theKeyboardGoesWithTheFocus()
{
    const KeyboardAsked keyboard;
    tap(at(0, 1));
    QCOMPARE(keyboard.times, 1);
    QCOMPARE(keyboard.timesGone, 0);
    m_window->other->setFocus();
    QCOMPARE(keyboard.timesGone, 1);
}

REGISTER_TEST(runWindowTest<SelectionHandlesTest>)
#include "selectionhandles_test.moc"
