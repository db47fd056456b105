#include "app/flatmenubar.h"

#include "tests/testprogram.h"

#include <QImage>
#include <QMenu>
#include <QStyleFactory>

#include <memory>

using namespace Qt::StringLiterals;

/// The menu bar as it paints itself over a red tool bar.
class FlatMenuBarTest : public QObject {
    Q_OBJECT

private slots:
    void init();

    void isNotTakenAwayByTheDesktop();
    void showsWhatIsBehindIt();
    void textsStandInTheMiddle();
    void chosenItemsAreFilledToTheEdges();
    void itemsThatCannotBeChosenArePaler();

private:
    QImage picture() { return m_holder->grab().toImage(); }
    /// The rows of an item in which something is drawn.
    QList<int> drawnRows(const QAction &item);
    static bool isBackground(QRgb pixel) { return pixel == qRgb(255, 0, 0); }

    std::unique_ptr<QWidget> m_holder;
    FlatMenuBar *m_bar = nullptr;
};

void FlatMenuBarTest::init()
{
    QApplication::setStyle(QStyleFactory::create(u"Fusion"_s));
    m_holder = std::make_unique<QWidget>();
    m_holder->setPalette([] {
        QPalette palette;
        palette.setColor(QPalette::Window, Qt::red);
        palette.setColor(QPalette::WindowText, Qt::black);
        palette.setColor(QPalette::Disabled, QPalette::WindowText, Qt::darkRed);
        palette.setColor(QPalette::Highlight, Qt::blue);
        return palette;
    }());
    m_holder->resize(200, 60);
    m_bar = new FlatMenuBar(m_holder.get());
    m_bar->addMenu(u"&File"_s);
    m_bar->addMenu(u"&Edit"_s);
    m_bar->resize(200, 60);
    m_holder->show();
}

QList<int> FlatMenuBarTest::drawnRows(const QAction &item)
{
    const QImage image = picture();
    const QRect place = m_bar->actionGeometry(const_cast<QAction *>(&item));
    QList<int> rows;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = place.left(); x <= place.right(); ++x) {
            if (!isBackground(image.pixel(x, y))) {
                rows << y;
                break;
            }
        }
    }
    return rows;
}

void FlatMenuBarTest::isNotTakenAwayByTheDesktop()
{
    QVERIFY(!m_bar->isNativeMenuBar());
}

/// No panel and no edge are painted, at no side.
void FlatMenuBarTest::showsWhatIsBehindIt()
{
    const QImage image = picture();
    const QRect first = m_bar->actionGeometry(m_bar->actions().first());
    for (int x = 0; x < image.width(); ++x)
        QVERIFY(isBackground(image.pixel(x, 0)) && isBackground(image.pixel(x, image.height() - 1)));
    for (int y = 0; y < image.height(); ++y)
        QVERIFY(isBackground(image.pixel(first.left(), y)) && isBackground(image.pixel(199, y)));
}

void FlatMenuBarTest::textsStandInTheMiddle()
{
    for (const QAction *const item : m_bar->actions()) {
        const QList<int> rows = drawnRows(*item);
        QVERIFY(!rows.isEmpty());
        const int middle = (rows.first() + rows.last()) / 2;
        QVERIFY2(qAbs(middle - 30) <= 4, qPrintable(QString::number(middle)));
    }
}

void FlatMenuBarTest::chosenItemsAreFilledToTheEdges()
{
    m_bar->setActiveAction(m_bar->actions().at(1));
    const QList<int> rows = drawnRows(*m_bar->actions().at(1));
    QCOMPARE(rows.first(), 0);
    QCOMPARE(rows.last(), 59);
    QVERIFY(drawnRows(*m_bar->actions().at(0)).first() > 0);
}

void FlatMenuBarTest::itemsThatCannotBeChosenArePaler()
{
    const QImage enabled = picture();
    m_bar->actions().first()->setEnabled(false);
    QVERIFY(picture() != enabled);
}

REGISTER_TEST(runWindowTest<FlatMenuBarTest>)
#include "flatmenubar_test.moc"
