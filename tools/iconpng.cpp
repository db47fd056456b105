// iconpng SVG PNG SIZE: draws a picture as many pixels wide and high, for desktops that want it so.

#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <cstdio>
#include <cstdlib>

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    const QStringList words = QCoreApplication::arguments();
    const int size = words.value(3).toInt();
    QSvgRenderer picture(words.value(1));
    if (!picture.isValid() || size <= 0) {
        std::fputs("iconpng SVG PNG SIZE\n", stderr);
        return EXIT_FAILURE;
    }
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    picture.render(&painter);
    painter.end();
    return image.save(words.value(2), "PNG") ? EXIT_SUCCESS : EXIT_FAILURE;
}
