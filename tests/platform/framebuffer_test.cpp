#include "platform/framebuffer.h"
#include "tests/testprogram.h"

#include <QTest>

/// How large a frame buffer is, without one: the device itself is tried by tools/platforms.
class FrameBufferTest : public QObject {
    Q_OBJECT
private slots:
    void size_data()
    {
        QTest::addColumn<QByteArray>("platform");
        QTest::addColumn<QSize>("size");
        QTest::newRow("given") << QByteArray("linuxfb:size=240x320") << QSize(240, 320);
        QTest::newRow("given behind others")
            << QByteArray("linuxfb:fb=/dev/null:nographicsmodeswitch:size=480x640:mmsize=60x80")
            << QSize(480, 640);
        QTest::newRow("one number") << QByteArray("linuxfb:fb=/dev/null:size=240") << QSize();
        QTest::newRow("words") << QByteArray("linuxfb:fb=/dev/null:size=AxB") << QSize();
        QTest::newRow("no such device") << QByteArray("linuxfb:fb=/dev/nosuchdevice") << QSize();
        QTest::newRow("another device") << QByteArray("linuxfb:fb=/dev/null") << QSize();
    }

    void size()
    {
        QFETCH(QByteArray, platform);
        QFETCH(QSize, size);
        QCOMPARE(frameBufferSize(platform).isEmpty(), size.isEmpty());
        if (!size.isEmpty())
            QCOMPARE(frameBufferSize(platform), size);
    }
};

REGISTER_TEST(runPlainTest<FrameBufferTest>)
#include "framebuffer_test.moc"
