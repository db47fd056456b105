#include "platform/resource.h"
#include "tests/testprogram.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

struct Kind {
    const char *folder;
    QStringList names;
    int size;
};

const QList<Kind> &kinds()
{
    static const QList<Kind> all = {
        { "corvex/menu/",
            u"about close copy copy_d cut cut_d favor2 folder folder_cf folder_sd folderdoc folderopen "
            u"fullscreen "
            "help home multisel2 new past property qtopia qtstart recent redo redo_d reload rename replace "
            "root "
            "save search srchbefo srchnext undo undo_d upper user"_s.split(u' '),
            16 },
        { "corvex/tree/",
            u"folder1 folder2 folderroot1 folderhome1 folderuser1 folderdoc1 folderqt1 folderqtstart1 "
            u"foldercf1 "
            "foldersd1 folderpen1 folderbin1 foldermnt1"_s.split(u' '),
            20 },
        { "corvex/tree/", u"mark_link mark_lock mark_exec"_s.split(u' '), 7 },
        { "corvex/list/", u"filetext filepic filemusic filemovie filescript fileipk fileetc"_s.split(u' '),
            20 },
        { "corvex/", { u"replace_to"_s }, 16 },
        { "", { u"marlopad"_s }, 64 },
    };
    return all;
}

QStringList allNames()
{
    QStringList names;
    for (const Kind &kind : kinds()) {
        for (const QString &name : kind.names)
            names << QLatin1String(kind.folder) + name;
    }
    return names;
}

QImage onBackground(const QString &name, QColor background)
{
    const QPixmap pixmap = Resource::loadPixmap(name);
    QImage image(pixmap.size(), QImage::Format_RGB32);
    image.fill(background);
    QPainter(&image).drawImage(0, 0, pixmap.toImage());
    return image;
}

// Share of the pixels, in percent, that stand out from the background.
int visibleShare(const QString &name, QColor background)
{
    const QImage image = onBackground(name, background);
    int visible = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            visible += qAbs(qGray(image.pixel(x, y)) - qGray(background.rgb())) >= 60;
    }
    return 100 * visible / (image.width() * image.height());
}

} // namespace

class ResourceTest : public QObject {
    Q_OBJECT
private slots:
    void pixmap_hasItsSize_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("size");
        for (const Kind &kind : kinds()) {
            for (const QString &name : kind.names) {
                const QString full = QLatin1String(kind.folder) + name;
                QTest::addRow("%s", qPrintable(full)) << full << kind.size;
            }
        }
    }

    void pixmap_hasItsSize()
    {
        QFETCH(QString, name);
        QFETCH(int, size);
        const QPixmap pixmap = Resource::loadPixmap(name);
        QCOMPARE(pixmap.size(), QSize(size, size));
        QVERIFY(pixmap.hasAlpha());
    }

    void picture_standsOut_data()
    {
        QTest::addColumn<QString>("name");
        for (const QString &name : allNames())
            QTest::addRow("%s", qPrintable(name)) << name;
    }

    void picture_standsOut()
    {
        QFETCH(QString, name);
        QVERIFY(visibleShare(name, Qt::white) >= 10);
        QVERIFY(visibleShare(name, Qt::black) >= 10);
    }

    void pictures_areAllDifferent()
    {
        QHash<QByteArray, QString> seen;
        for (const QString &name : allNames()) {
            const QImage image = onBackground(name, Qt::white);
            const QByteArray bits(reinterpret_cast<const char *>(image.constBits()), image.sizeInBytes());
            QVERIFY2(!seen.contains(bits), qPrintable(name + u" is "_s + seen.value(bits)));
            seen.insert(bits, name);
        }
    }

    void disabledPictures_areGrey()
    {
        for (const char *name : { "undo_d", "redo_d", "cut_d", "copy_d" }) {
            const QImage image = onBackground(u"corvex/menu/"_s + QLatin1String(name), Qt::white);
            for (int i = 0; i < image.width() * image.height(); ++i) {
                const QRgb pixel = image.pixel(i % image.width(), i / image.width());
                QVERIFY2(qRed(pixel) == qGreen(pixel) && qGreen(pixel) == qBlue(pixel), name);
            }
        }
    }

    void unknownName_isEmpty_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("unknown") << u"corvex/menu/nothing"_s;
        QTest::newRow("empty") << QString();
        QTest::newRow("folder") << u"corvex/menu"_s;
    }

    void unknownName_isEmpty()
    {
        QFETCH(QString, name);
        QVERIFY(Resource::loadPixmap(name).isNull());
        QVERIFY(Resource::loadIcon(name).isNull());
        QVERIFY(Resource::loadIcon(name).pixmap(16).isNull());
    }

    void icon_hasTheDevicePixelsAskedFor_data()
    {
        QTest::addColumn<qreal>("scale");
        QTest::addColumn<int>("pixels");
        QTest::newRow("1") << 1.0 << 14;
        QTest::newRow("1.25") << 1.25 << 18;
        QTest::newRow("1.33") << 4.0 / 3 << 19;
        QTest::newRow("2") << 2.0 << 28;
    }

    void icon_hasTheDevicePixelsAskedFor()
    {
        QFETCH(qreal, scale);
        QFETCH(int, pixels);
        const QPixmap pixmap = Resource::loadIcon(u"corvex/list/filetext"_s).pixmap(QSize(14, 14), scale);
        QCOMPARE(pixmap.size(), QSize(pixels, pixels));
        QVERIFY(qAbs(pixmap.deviceIndependentSize().width() - 14) < 1);
    }

    void icon_paintsTheSameDevicePixels()
    {
        const QIcon icon = Resource::loadIcon(u"corvex/menu/save"_s);
        QImage painted(32, 32, QImage::Format_ARGB32_Premultiplied);
        painted.setDevicePixelRatio(2);
        painted.fill(Qt::transparent);
        QPainter painter(&painted);
        icon.paint(&painter, QRect(0, 0, 16, 16));
        painter.end();
        QImage expected = icon.pixmap(QSize(16, 16), 2.0).toImage().convertToFormat(painted.format());
        QCOMPARE(painted, expected);
    }

    void icon_disabled()
    {
        const auto image = [](const QIcon &icon, QIcon::Mode mode) {
            return icon.pixmap(QSize(16, 16), 1.0, mode).toImage();
        };
        const QIcon undo = Resource::loadIcon(u"corvex/menu/undo"_s, u"corvex/menu/undo_d"_s);
        QCOMPARE(image(undo, QIcon::Normal), Resource::loadPixmap(u"corvex/menu/undo"_s).toImage());
        QCOMPARE(image(undo, QIcon::Disabled), Resource::loadPixmap(u"corvex/menu/undo_d"_s).toImage());
        const QIcon help = Resource::loadIcon(u"corvex/menu/help"_s);
        QVERIFY(!image(help, QIcon::Disabled).isNull());
        QVERIFY(image(help, QIcon::Disabled) != image(help, QIcon::Normal));
    }

    void ownPicture_winsOverBuiltIn_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("suffix");
        QTest::addColumn<QSize>("size");
        QTest::newRow("drawing") << u"corvex/list/filetext"_s << u".svg"_s << QSize(24, 12);
        QTest::newRow("image") << u"corvex/list/filepic"_s << u".png"_s << QSize(24, 12);
        QTest::newRow("new name") << u"corvex/menu/own"_s << u".png"_s << QSize(24, 12);
        QTest::newRow("broken drawing") << u"corvex/menu/broken"_s << u".svg"_s << QSize();
        QTest::newRow("broken image") << u"corvex/menu/broken2"_s << u".png"_s << QSize();
    }

    void ownPicture_winsOverBuiltIn()
    {
        QFETCH(QString, name);
        QFETCH(QString, suffix);
        QFETCH(QSize, size);
        const QTemporaryDir folder;
        const QString fileName = folder.filePath(u"pics/"_s + name + suffix);
        QVERIFY(QDir().mkpath(QFileInfo(fileName).path()));
        QFile file(fileName);
        QVERIFY(file.open(QIODevice::WriteOnly));
        if (size.isEmpty()) {
            file.write("nothing that can be drawn");
            if (suffix == u".svg"_s)
                QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"Cannot read file"_s));
        } else if (suffix == u".svg"_s) {
            file.write("<svg xmlns='http://www.w3.org/2000/svg' width='24' height='12' viewBox='0 0 24 12'>"
                       "<rect width='24' height='12' fill='red'/></svg>");
        } else {
            QImage image(size, QImage::Format_RGB32);
            image.fill(Qt::red);
            QVERIFY(image.save(&file, "PNG"));
        }
        file.close();
        qputenv("QPEDIR", QFile::encodeName(folder.path()));
        const auto restore = qScopeGuard([] { qunsetenv("QPEDIR"); });
        const QPixmap pixmap = Resource::loadPixmap(name);
        QCOMPARE(pixmap.isNull(), size.isEmpty());
        if (!size.isEmpty()) {
            QCOMPARE(pixmap.size(), size);
            QCOMPARE(pixmap.toImage().pixelColor(5, 5), QColor(Qt::red));
            QCOMPARE(Resource::loadIcon(name).actualSize(QSize(48, 48)), QSize(48, 24));
        }
    }
};

REGISTER_TEST(runWindowTest<ResourceTest>)
#include "resource_test.moc"
