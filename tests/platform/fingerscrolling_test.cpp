#include "platform/fingerscrolling.h"

#include "tests/testprogram.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHeaderView>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QScroller>
#include <QSignalSpy>
#include <QTimer>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

constexpr int rows = 200;

QStringList names()
{
    QStringList result;
    for (int row = 0; row < rows; ++row)
        result << QString::number(row);
    return result;
}

/// Of many boxes to check, one below the other.
class LongForm : public QScrollArea {
public:
    LongForm()
    {
        auto *const content = new QWidget;
        auto *const layout = new QVBoxLayout(content);
        for (int row = 0; row < rows; ++row)
            layout->addWidget(new QCheckBox(QString::number(row)));
        setWidget(content);
        resize(200, 200);
    }

    int checked() const
    {
        int count = 0;
        for (const QCheckBox *const box : findChildren<QCheckBox *>())
            count += box->isChecked() ? 1 : 0;
        return count;
    }
};

} // namespace

/// What a finger does in what scrolls, and what the mouse does there.
class FingerScrollingTest : public QObject {
    Q_OBJECT

private slots:
    void dragScrollsAListAndChoosesNothing();
    void dragAsideChoosesNothing();
    void tapChooses();
    void secondTapIsADoubleClick();
    void tapStopsWhatStillMoves();
    void dragScrollsAFormAndChecksNothing();
    void tapChecks();
    void formWithoutMoreIsLeftAlone();
    void innerListScrollsFirst();
    void formScrollsAroundAListWithoutMore();
    void listOfAChoiceScrolls();
    void tapOpensAChoiceInAForm();
    void tapOpensAMenuInAForm();
    void titlesAndBarsAreDragged();
    void mouseChoosesAsEver();
    void tapMayRemoveWhatItTouches();

private:
    void drag(QWidget *on, QPoint from, QPoint to)
    {
        QWidget *const window = on->window();
        const QPoint end = on->mapTo(window, to);
        moveFinger(window, on->mapTo(window, from), end);
        QTest::touchEvent(window, m_screen.get()).release(0, end, window);
    }
    /// Leaves it there.
    void moveFinger(QWidget *window, QPoint from, QPoint to)
    {
        const QPoint step = (to - from) / 10;
        QTest::touchEvent(window, m_screen.get()).press(0, from, window);
        for (int i = 1; i <= 10; ++i)
            QTest::touchEvent(window, m_screen.get()).move(0, from + i * step, window);
    }
    /// The finger goes only when that has shown.
    void dragUp(QWidget *on, const QAbstractScrollArea &scrolled, QPoint from = { 50, 150 })
    {
        QWidget *const window = on->window();
        const QPoint start = on->mapTo(window, from);
        const QPoint end = start - QPoint(0, 100);
        const int before = scrolled.verticalScrollBar()->value();
        moveFinger(window, start, end);
        QTRY_VERIFY(scrolled.verticalScrollBar()->value() > before);
        QTest::touchEvent(window, m_screen.get()).release(0, end, window);
    }
    void tap(QWidget *on, QPoint at)
    {
        QTest::touchEvent(on, m_screen.get()).press(0, at, on);
        QTest::touchEvent(on, m_screen.get()).release(0, at, on);
    }
    static void show(QWidget &widget, QSize size = { 200, 200 })
    {
        widget.resize(size);
        widget.show();
        QVERIFY(QTest::qWaitForWindowExposed(&widget));
    }
    static void stop(const QAbstractScrollArea &area) { QScroller::scroller(area.viewport())->stop(); }

    const std::unique_ptr<QPointingDevice> m_screen{ QTest::createTouchDevice() };
    const FingerScrolling m_fingers{ qApp };
};

void FingerScrollingTest::dragScrollsAListAndChoosesNothing()
{
    QListWidget list;
    list.addItems(names());
    list.setCurrentRow(1);
    show(list);
    const QSignalSpy chosen(&list, &QListWidget::itemSelectionChanged);
    const QSignalSpy clicked(&list, &QListWidget::itemClicked);
    dragUp(list.viewport(), list);
    QVERIFY2(list.visualItemRect(list.item(4)).top() > -100, "as far as the finger went, not so many rows");
    stop(list);
    QCOMPARE(list.currentRow(), 1);
    QCOMPARE(chosen.size(), 0);
    QCOMPARE(clicked.size(), 0);
}

void FingerScrollingTest::dragAsideChoosesNothing()
{
    QListWidget list;
    list.addItems(names());
    show(list);
    drag(list.viewport(), QPoint(10, 100), QPoint(150, 100));
    QVERIFY(list.selectedItems().isEmpty());
    QCOMPARE(list.verticalScrollBar()->value(), 0);
}

void FingerScrollingTest::tapChooses()
{
    QListWidget list;
    list.addItems(names());
    show(list);
    const QSignalSpy clicked(&list, &QListWidget::itemClicked);
    const QListWidgetItem *const third = list.item(2);
    tap(list.viewport(), list.visualItemRect(third).center());
    QVERIFY(third->isSelected());
    QCOMPARE(clicked.size(), 1);
}

void FingerScrollingTest::secondTapIsADoubleClick()
{
    QListWidget list;
    list.addItems(names());
    show(list);
    const QSignalSpy activated(&list, &QListWidget::itemDoubleClicked);
    const QPoint at = list.visualItemRect(list.item(5)).center(); // not where another test has tapped
    tap(list.viewport(), at);
    tap(list.viewport(), at);
    QCOMPARE(activated.size(), 1);
}

void FingerScrollingTest::tapStopsWhatStillMoves()
{
    QListWidget list;
    list.addItems(names());
    show(list);
    QScroller *const scroller = QScroller::scroller(list.viewport());
    dragUp(list.viewport(), list);
    scroller->scrollTo(QPointF(0, 1000), 100000);
    QCOMPARE(scroller->state(), QScroller::Scrolling);
    tap(list.viewport(), QPoint(50, 100));
    QVERIFY(list.selectedItems().isEmpty());
}

void FingerScrollingTest::dragScrollsAFormAndChecksNothing()
{
    LongForm form;
    show(form);
    QWidget *const box = form.findChildren<QCheckBox *>().at(6);
    dragUp(box, form, QPoint(10, 5));
    QCOMPARE(form.checked(), 0);
    stop(form);
}

void FingerScrollingTest::tapChecks()
{
    LongForm form;
    show(form);
    auto *const box = form.findChildren<QCheckBox *>().at(2);
    tap(box, QPoint(10, box->height() / 2));
    QVERIFY(box->isChecked());
    QCOMPARE(form.checked(), 1);
}

/// What it touches hears of the finger at once there.
void FingerScrollingTest::formWithoutMoreIsLeftAlone()
{
    QScrollArea form;
    auto *const box = new QCheckBox(u"box"_s);
    form.setWidget(box);
    show(form);
    QTest::touchEvent(box, m_screen.get()).press(0, box->rect().center(), box);
    QVERIFY(box->isDown());
    QTest::touchEvent(box, m_screen.get()).release(0, box->rect().center(), box);
    QVERIFY(box->isChecked());
}

void FingerScrollingTest::innerListScrollsFirst()
{
    LongForm form;
    QListWidget list(form.widget());
    list.addItems(names());
    list.setGeometry(0, 0, 150, 190);
    show(form);
    dragUp(list.viewport(), list);
    QCOMPARE(form.verticalScrollBar()->value(), 0);
    stop(list);
}

void FingerScrollingTest::formScrollsAroundAListWithoutMore()
{
    LongForm form;
    QListWidget list(form.widget());
    list.addItem(u"one"_s);
    list.setGeometry(0, 0, 150, 190);
    show(form);
    dragUp(list.viewport(), form);
    stop(form);
}

void FingerScrollingTest::listOfAChoiceScrolls()
{
    QComboBox choice;
    choice.addItems(names());
    show(choice, { 200, 30 });
    choice.showPopup();
    QAbstractItemView *const list = choice.view();
    QVERIFY(QTest::qWaitForWindowExposed(list->window()));
    dragUp(list->viewport(), *list, QPoint(50, list->viewport()->height() - 10));
    QVERIFY(list->isVisible());
    QCOMPARE(choice.currentIndex(), 0);
    stop(*list);
    const int row = list->indexAt(QPoint(50, 50)).row();
    QVERIFY(row > 1);
    tap(list->viewport(), QPoint(50, 50));
    QTRY_COMPARE(choice.currentIndex(), row);
    QVERIFY(!list->isVisible());
}

/// And a second one chooses.
void FingerScrollingTest::tapOpensAChoiceInAForm()
{
    LongForm form;
    QComboBox choice(form.widget());
    choice.addItems(names().first(5));
    show(form);
    tap(&choice, choice.rect().center());
    const QAbstractItemView *const list = choice.view();
    QTRY_VERIFY(list->isVisible());
    QVERIFY(QTest::qWaitForWindowExposed(list->window()));
    tap(list->viewport(), list->visualRect(list->model()->index(3, 0)).center());
    QTRY_COMPARE(choice.currentIndex(), 3);
    QTRY_VERIFY(!list->isVisible());
    tap(form.findChildren<QCheckBox *>().at(3), QPoint(10, 5));
    QCOMPARE(form.checked(), 1);
}

/// Which it waits for, and the finger is as free after that as before.
void FingerScrollingTest::tapOpensAMenuInAForm()
{
    LongForm form;
    QToolButton button(form.widget());
    QMenu menu;
    QAction *const chosen = menu.addAction(u"one"_s);
    const QSignalSpy triggered(chosen, &QAction::triggered);
    button.setMenu(&menu);
    button.setPopupMode(QToolButton::InstantPopup);
    button.resize(40, 20);
    show(form);
    connect(&menu, &QMenu::aboutToShow, this,
        [&] { QTimer::singleShot(0, &menu, [&] { tap(&menu, menu.actionGeometry(chosen).center()); }); });
    tap(&button, button.rect().center());
    QTRY_COMPARE(triggered.size(), 1);
    QTRY_VERIFY(!menu.isVisible());
    QVERIFY(!button.isDown());
    tap(form.findChildren<QCheckBox *>().at(3), QPoint(10, 5));
    QCOMPARE(form.checked(), 1);
}

void FingerScrollingTest::titlesAndBarsAreDragged()
{
    QTreeWidget list;
    list.setColumnCount(2);
    for (const QString &name : names())
        new QTreeWidgetItem(&list, { name, name });
    show(list, { 200, 200 });
    QWidget *const titles = list.header()->viewport();
    const int border = list.header()->sectionSize(0);
    drag(titles, QPoint(border - 1, 5), QPoint(border - 61, 5));
    QVERIFY(list.header()->sectionSize(0) < border - 40);
    QScrollBar *const bar = list.verticalScrollBar();
    drag(bar, QPoint(bar->width() / 2, bar->width() + 5), QPoint(bar->width() / 2, 150));
    QVERIFY(bar->value() > bar->maximum() / 4);
}

void FingerScrollingTest::mouseChoosesAsEver()
{
    QListWidget list;
    list.addItems(names());
    show(list);
    const auto at = [&list](int row) { return list.visualItemRect(list.item(row)).center(); };
    QTest::mousePress(list.viewport(), Qt::LeftButton, {}, at(1));
    QCOMPARE(list.currentRow(), 1);
    QTest::mouseMove(list.viewport(), at(3));
    QTest::mouseRelease(list.viewport(), Qt::LeftButton, {}, at(3));
    QCOMPARE(list.verticalScrollBar()->value(), 0);
}

void FingerScrollingTest::tapMayRemoveWhatItTouches()
{
    LongForm form;
    const QPointer<QPushButton> button = new QPushButton(u"Remove"_s, form.widget());
    connect(button, &QPushButton::pressed, button, [&button] { delete button; });
    show(form);
    tap(button, button->rect().center());
    QVERIFY(!button);
}

REGISTER_TEST(runWindowTest<FingerScrollingTest>)
#include "fingerscrolling_test.moc"
