#include "platform/screenscale.h"
#include "tests/testprogram.h"

#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

class ScreenScaleTest : public QObject {
    Q_OBJECT
private slots:
    void scaleFitsTheScreen_data()
    {
        QTest::addColumn<double>("wanted");
        QTest::addColumn<QSize>("screen");
        QTest::addColumn<QSize>("window");
        QTest::addColumn<double>("scale");
        QTest::newRow("room for all") << 1.5 << QSize(1280, 800) << QSize(240, 270) << 1.5;
        QTest::newRow("as wide as the screen") << 1.5 << QSize(240, 320) << QSize(240, 270) << 1.0;
        QTest::newRow("wider than the screen") << 1.5 << QSize(120, 320) << QSize(240, 270) << 0.5;
        QTest::newRow("a little too wide") << 1.5 << QSize(300, 800) << QSize(240, 270) << 1.25;
        QTest::newRow("as high as the screen below a title bar")
            << 1.5 << QSize(800, 294) << QSize(240, 270) << 1.0;
        QTest::newRow("higher than the screen") << 1.5 << QSize(800, 159) << QSize(240, 270) << 0.5;
        QTest::newRow("never larger than asked for") << 0.75 << QSize(1280, 800) << QSize(240, 270) << 0.75;
        QTest::newRow("unknown screen") << 1.5 << QSize() << QSize(240, 270) << 1.5;
        QTest::newRow("unknown window") << 1.5 << QSize(240, 320) << QSize() << 1.5;
    }

    void scaleFitsTheScreen()
    {
        QFETCH(double, wanted);
        QFETCH(QSize, screen);
        QFETCH(QSize, window);
        QTEST(scaleThatFits(wanted, screen, window), "scale");
    }

    void staysPaintable()
    {
        QVERIFY(platformPixelScale(QSize(10000, 10000)) >= 1);
        QVERIFY(platformPixelScale(QSize(240, 270)) >= 1);
    }

    void fitsTheScreenThatIsThere()
    {
        if (qgetenv("QT_QPA_PLATFORM") == "offscreen") {
            QCOMPARE(platformPixelScale(QSize(240, 270)), 1.0);
            return;
        }
        const QByteArray screen = qEnvironmentVariable("MARLOPAD_TEST_SCREEN", u"1280x800"_s).toLatin1();
        const QList<QByteArray> sides = screen.split('x');
        const double own = qEnvironmentVariable("MARLOPAD_TEST_SCALE", u"1"_s).toDouble();
        const QSize size = QSizeF(sides[0].toInt() / own, sides[1].toInt() / own).toSize();
        const double scale = scaleThatFits(4.0 / 3, size, QSize(240, 270));
        QCOMPARE(platformPixelScale(QSize(240, 270)), std::max(1.0, scale));
    }

    void density_data()
    {
        QTest::addColumn<QByteArray>("resources");
        QTest::addColumn<double>("density"); // 0: none
        QTest::newRow("nothing") << QByteArray() << 0.0;
        QTest::newRow("tab") << QByteArray("Xft.dpi:\t120\n") << 120.0;
        QTest::newRow("among others")
            << QByteArray("*foo:\tbar\nXft.antialias:\t1\nXft.dpi: 192\nXft.x:\t1\n") << 192.0;
        QTest::newRow("last line without end") << QByteArray("Xft.dpi:96") << 96.0;
        QTest::newRow("fraction") << QByteArray("Xft.dpi:\t110.5\n") << 110.5;
        QTest::newRow("other key") << QByteArray("MyXft.dpi:\t120\n") << 0.0;
        QTest::newRow("word") << QByteArray("Xft.dpi:\tmuch\n") << 0.0;
        QTest::newRow("zero") << QByteArray("Xft.dpi:\t0\n") << 0.0;
        QTest::newRow("negative") << QByteArray("Xft.dpi:\t-96\n") << 0.0;
        QTest::newRow("absurd") << QByteArray("Xft.dpi:\t1e9\n") << 0.0;
        QTest::newRow("not a number") << QByteArray("Xft.dpi:\tnan\n") << 0.0;
    }

    void density()
    {
        QFETCH(QByteArray, resources);
        QFETCH(double, density);
        QCOMPARE(densityFromResources(resources).value_or(0), density);
    }

    void fitsTheFrameBuffer_data()
    {
        QTest::addColumn<QByteArray>("platform");
        QTest::addColumn<double>("scale");
        QTest::newRow("of the handheld") << QByteArray("linuxfb:size=240x320") << 1.0;
        QTest::newRow("a little larger") << QByteArray("linuxfb:fb=/dev/null:size=300x400") << 1.25;
        QTest::newRow("with room for all") << QByteArray("linuxfb:size=480x640") << 4.0 / 3;
        QTest::newRow("of a size that nobody knows") << QByteArray("linuxfb:fb=/dev/null") << 4.0 / 3;
    }

    void fitsTheFrameBuffer()
    {
        QFETCH(QByteArray, platform);
        const QByteArray own = qgetenv("QT_QPA_PLATFORM");
        qputenv("QT_QPA_PLATFORM", platform);
        QTEST(platformPixelScale(QSize(240, 270)), "scale");
        qputenv("QT_QPA_PLATFORM", own);
    }

    void scale_data()
    {
        QTest::addColumn<QByteArray>("platform");
        QTest::addColumn<QByteArray>("session");
        QTest::addColumn<QByteArray>("desktop");
        QTest::addColumn<double>("scale");
        QTest::newRow("offscreen") << QByteArray("offscreen") << QByteArray() << QByteArray() << 1.0;
        QTest::newRow("offscreen with options")
            << QByteArray("offscreen:a=b") << QByteArray() << QByteArray() << 1.0;
        QTest::newRow("minimal") << QByteArray("minimal") << QByteArray() << QByteArray() << 1.0;
        QTest::newRow("frame buffer")
            << QByteArray("linuxfb:fb=/dev/fb0") << QByteArray() << QByteArray() << 4.0 / 3;
        QTest::newRow("Wayland asked for")
            << QByteArray("wayland;xcb") << QByteArray() << QByteArray() << 4.0 / 3;
        QTest::newRow("Wayland session")
            << QByteArray() << QByteArray("wayland") << QByteArray("KDE") << 4.0 / 3;
        QTest::newRow("no X server to ask") << QByteArray() << QByteArray("x11") << QByteArray() << 4.0 / 3;
        QTest::newRow("GNOME's X server")
            << QByteArray() << QByteArray("wayland") << QByteArray("ubuntu:GNOME") << 4.0 / 3;
    }

    void scale()
    {
        QFETCH(QByteArray, platform);
        QFETCH(QByteArray, session);
        QFETCH(QByteArray, desktop);
        QFETCH(double, scale);
        const QByteArray own = qgetenv("QT_QPA_PLATFORM");
        qputenv("QT_QPA_PLATFORM", platform);
        qputenv("XDG_SESSION_TYPE", session);
        qputenv("XDG_CURRENT_DESKTOP", desktop);
        QCOMPARE(platformPixelScale(), scale);
        qputenv("QT_QPA_PLATFORM", own);
    }
};

REGISTER_TEST(runCoreTest<ScreenScaleTest>)
#include "screenscale_test.moc"
