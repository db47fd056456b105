#include "tests/testprogram.h"
#include "widget/viewscrollbar.h"

#include <QApplication>
#include <QPaintEvent>
#include <QProxyStyle>
#include <QRandomGenerator>
#include <QScreen>
#include <QSignalSpy>
#include <QStyleFactory>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

constexpr int length = 400;

/// A scroll bar that tells what of it is painted.
class Bar : public ViewScrollBar {
public:
    explicit Bar(Qt::Orientation orientation, const QString &style = u"fusion"_s)
        : ViewScrollBar(orientation)
        , m_style(QStyleFactory::create(style))
    {
        setStyle(m_style.get());
        const int width = sizeHint().width();
        const int height = sizeHint().height();
        resize(orientation == Qt::Vertical ? QSize(width, length) : QSize(length, height));
        setPageStep(100);
        setRange(0, 1000);
    }

    bool appear()
    {
        show();
        return QTest::qWaitForWindowExposed(this);
    }
    QImage shown()
    {
        QEvent paintNow(QEvent::UpdateRequest);
        QApplication::sendEvent(this, &paintNow);
        return screen()->grabWindow(winId()).toImage();
    }
    QRegion takePainted()
    {
        shown();
        return std::exchange(m_painted, {});
    }

protected:
    void paintEvent(QPaintEvent *event) override
    {
        m_painted += event->region();
        ViewScrollBar::paintEvent(event);
    }

private:
    std::unique_ptr<QStyle> m_style;
    QRegion m_painted;
};

int area(const QRegion &region)
{
    int sum = 0;
    for (const QRect &rect : region)
        sum += rect.width() * rect.height();
    return sum;
}

} // namespace

class ViewScrollBarTest : public QObject {
    Q_OBJECT
private slots:
    void sliderThatStaysIsNotPainted();
    void changeThatIsTakenBackIsNotPainted();
    void onlyEndsOfTheSliderArePainted();
    void looksAsPaintedAnew_data();
    void looksAsPaintedAnew();
    void unknownStylePaintsAll();
    void rangeIsToldWhenTheBarComesOrGoes();
    void shorterRangeTakesTheValueAlong();
};

void ViewScrollBarTest::sliderThatStaysIsNotPainted()
{
    Bar bar(Qt::Vertical);
    bar.setRange(0, 1000000);
    QVERIFY(bar.appear());
    QVERIFY(!bar.takePainted().isEmpty());
    bar.setValue(1);
    bar.setLast(1000001);
    QCOMPARE(bar.takePainted(), QRegion());
}

void ViewScrollBarTest::changeThatIsTakenBackIsNotPainted()
{
    Bar bar(Qt::Vertical);
    QVERIFY(bar.appear());
    bar.takePainted();
    {
        const ViewScrollBar::OneChange change(bar);
        bar.setValue(500);
        bar.setValue(0);
    }
    QCOMPARE(bar.takePainted(), QRegion());
    {
        const ViewScrollBar::OneChange change(bar);
        bar.setValue(500);
    }
    QVERIFY(!bar.takePainted().isEmpty());
}

void ViewScrollBarTest::onlyEndsOfTheSliderArePainted()
{
    Bar bar(Qt::Vertical);
    bar.setPageStep(5000);
    QVERIFY(bar.appear());
    const int all = area(bar.takePainted());
    QCOMPARE(all, bar.width() * bar.height());
    bar.setValue(200);
    const int painted = area(bar.takePainted());
    QVERIFY2(painted > 0 && painted < all / 3, qPrintable(QString::number(painted)));
}

void ViewScrollBarTest::looksAsPaintedAnew_data()
{
    QTest::addColumn<QString>("style");
    QTest::addColumn<Qt::Orientation>("orientation");
    for (const QString &style : { u"fusion"_s, u"windows"_s }) {
        QTest::addRow("%s, vertical", qPrintable(style)) << style << Qt::Vertical;
        QTest::addRow("%s, horizontal", qPrintable(style)) << style << Qt::Horizontal;
    }
}

void ViewScrollBarTest::looksAsPaintedAnew()
{
    QFETCH(QString, style);
    QFETCH(Qt::Orientation, orientation);
    Bar bar(orientation, style);
    QVERIFY(bar.appear());
    bar.shown();
    QRandomGenerator random(7);
    for (int step = 0; step < 100; ++step) {
        if (random.bounded(3) == 0)
            bar.setLast(random.bounded(4) == 0 ? 0 : random.bounded(2000));
        bar.setPageStep(random.bounded(1, 300));
        bar.setValue(random.bounded(2000));
        const QImage found = bar.shown();
        bar.update();
        QVERIFY2(found == bar.shown(), qPrintable(QString::number(step)));
    }
}

void ViewScrollBarTest::unknownStylePaintsAll()
{
    Bar bar(Qt::Vertical);
    QProxyStyle style(u"fusion"_s);
    bar.setStyle(&style);
    QVERIFY(bar.appear());
    bar.takePainted();
    bar.setValue(1);
    QCOMPARE(bar.takePainted(), QRegion(bar.rect()));
    bar.hide();
    bar.setStyle(nullptr);
}

void ViewScrollBarTest::rangeIsToldWhenTheBarComesOrGoes()
{
    ViewScrollBar bar(Qt::Vertical);
    bar.setLast(0);
    const QSignalSpy told(&bar, &QScrollBar::rangeChanged);
    bar.setLast(5);
    QCOMPARE(told.count(), 1);
    bar.setLast(6);
    bar.setLast(3);
    QCOMPARE(bar.maximum(), 3);
    QCOMPARE(told.count(), 1);
    bar.setLast(0);
    QCOMPARE(told.count(), 2);
}

void ViewScrollBarTest::shorterRangeTakesTheValueAlong()
{
    ViewScrollBar bar(Qt::Vertical);
    bar.setLast(10);
    bar.setValue(8);
    const QSignalSpy moved(&bar, &QScrollBar::valueChanged);
    bar.setLast(4);
    QCOMPARE(bar.value(), 4);
    QCOMPARE(moved.count(), 1);
    bar.setLast(6);
    QCOMPARE(bar.value(), 4);
    QCOMPARE(moved.count(), 1);
}

REGISTER_TEST(runWindowTest<ViewScrollBarTest>)
#include "viewscrollbar_test.moc"
