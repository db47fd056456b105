#include "app/windowsize.h"

#include "tests/app/testwindow.h"
#include "tests/testprogram.h"

#include <QScreen>

/// The size of the window from one run to the next.
class WindowSizeTest : public QObject {
    Q_OBJECT

private slots:
    void init()
    {
        resetSettings();
        m_window = std::make_unique<QWidget>();
        m_size = new WindowSize(m_window.get());
    }
    void cleanup() { m_window.reset(); }

    void firstRun();
    void hasTheLastSizeAgain();
    void maximisedOnesAreNotNoted();
    void oddSizes_data();
    void oddSizes();
    void mayBeOff();

private:
    static QSize noted() { return { moreSettings().WindowWidth, moreSettings().WindowHeight }; }
    static void note(const QSize &size)
    {
        moreSettings().WindowWidth = size.width();
        moreSettings().WindowHeight = size.height();
    }

    std::unique_ptr<QWidget> m_window;
    WindowSize *m_size = nullptr;
};

void WindowSizeTest::firstRun()
{
    m_size->restore();
    QCOMPARE(m_window->size(), QSize(640, 480).boundedTo(m_window->screen()->availableSize()));
    QCOMPARE(noted(), QSize(0, 0));
}

void WindowSizeTest::hasTheLastSizeAgain()
{
    m_window->show();
    m_window->resize(321, 234);
    QTRY_COMPARE(noted(), QSize(321, 234));
    QWidget next;
    (new WindowSize(&next))->restore();
    QCOMPARE(next.size(), QSize(321, 234));
}

void WindowSizeTest::maximisedOnesAreNotNoted()
{
    note({ 321, 234 });
    m_size->restore();
    m_window->showMaximized();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    QVERIFY(m_window->width() > 321);
    m_window->showFullScreen();
    settle();
    m_window->setWindowState(Qt::WindowNoState);
    m_window->resize(m_window->screen()->availableSize()); // told before the state is
    settle();
    QCOMPARE(noted(), QSize(321, 234));
}

void WindowSizeTest::oddSizes_data()
{
    QTest::addColumn<QSize>("noted");
    QTest::addColumn<QSize>("size");
    const QSize first = QSize(640, 480);
    const QSize screen = QGuiApplication::primaryScreen()->availableSize();
    QTest::newRow("negative") << QSize(-5, -7) << first;
    QTest::newRow("a dot") << QSize(1, 1) << first;
    QTest::newRow("no height") << QSize(300, 0) << first;
    QTest::newRow("larger than the screen") << QSize(2147483647, 2147483647) << screen;
}

void WindowSizeTest::oddSizes()
{
    QFETCH(QSize, noted);
    QFETCH(QSize, size);
    note(noted);
    m_size->restore();
    QCOMPARE(m_window->size(), size.boundedTo(m_window->screen()->availableSize()));
}

void WindowSizeTest::mayBeOff()
{
    note({ 321, 234 });
    moreSettings().KeepWindowSize = 0;
    m_size->restore();
    QVERIFY(m_window->size() != QSize(321, 234));
}

REGISTER_TEST(runWindowTest<WindowSizeTest>)
#include "windowsize_test.moc"
