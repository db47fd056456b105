#pragma once

#include "editor/ctlediter.h"
#include "rows/fontmeasure.h"
#include "rows/lcfont.h"
#include "settings/settings.h"
#include "tests/screenclass.h"
#include "tests/waiting.h"
#include "tests/widget/rows.h"

#include <QApplication>
#include <QPainter>
#include <QTest>

#include <cmath>
#include <set>

/// Rows of an editor as pictures, and what is expected in them, in device pixels.
inline constexpr QRgb signGrey = qRgb(160, 160, 160);
inline constexpr QRgb spaceGrey = qRgb(80, 80, 80);
inline constexpr QRgb untouched = qRgb(255, 0, 255);

/// Settings that show nothing but the text, black on white.
inline void plainSettings()
{
    AppSettings &settings = appSettings();
    settings = AppSettings();
    settings.ShowKAI = settings.ShowTAB = settings.ShowZEN = settings.ShowEOF = 0;
    settings.RowNo = settings.ActiveHLine = 0;
    settings.WrapMode = 0;
    setVga(false);
    QMultiLineEdit::setDefaultTabStop(4);
}

/// An editor whose rows can be painted one by one.
class Editor : public ctlEditer {
public:
    explicit Editor(const QString &text)
        : ctlEditer(nullptr)
    {
        resize(640, 480);
        setText(text);
    }

    using QMultiLineEdit::fontMeasure;

    int device(qreal logical) const { return qRound(logical * devicePixelRatioF()); }
    int stroke(qreal logical) const { return qMax(1, device(logical)); }
    int height() const { return device(rowHeight()); }
    /// Device pixel at which a column of plain text stands, by the font's advances alone.
    int columnX(qint64 row, int column) const
    {
        const QString text = rowText(*this, row);
        const AdvanceTable &advances = fontMeasure()->advances();
        const int tabWidth = defaultTabStop() * device(fontMeasure()->xWidth());
        int x = text.isEmpty() ? 0 : -device(fontMeasure()->leftBearing(text[0].unicode()));
        for (int i = 0; i < column; ++i)
            x = text[i] == u'\t' ? (x / tabWidth + 1) * tabWidth
                                 : x + int(advances.advance(text[i].unicode()) / 64);
        return device(hMargin()) + x;
    }
    /// One row, or the part of it between two logical places, as it is shown at the top of the view.
    QImage painted(qint64 row, int from = 0, int to = 640)
    {
        QImage image(QSize(device(640), height()), QImage::Format_RGB32);
        image.setDevicePixelRatio(devicePixelRatioF());
        image.fill(untouched);
        paintInto(image, row, from, to);
        return image;
    }
    void paintInto(QImage &image, qint64 row, int from, int to)
    {
        QPainter painter(&image);
        const QRectF cell(qreal(-xOffset()), 0, qreal(cellWidth()), rowHeight());
        paintCell(painter, RowIndex(row), cell, QRect(from, 0, to - from, qCeil(rowHeight())));
    }
    void showFocused()
    {
        show();
        activateWindow();
        setFocus();
        QTRY_VERIFY(hasFocus());
    }
};

using Pixels = std::set<std::pair<int, int>>;

inline Pixels pixelsOf(const QImage &image, QRgb color)
{
    Pixels found;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixel(x, y) == color)
                found.emplace(x, y);
        }
    }
    return found;
}

inline Pixels differing(const QImage &a, const QImage &b)
{
    Pixels found;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            if (a.pixel(x, y) != b.pixel(x, y))
                found.emplace(x, y);
        }
    }
    return found;
}

inline void add(Pixels &pixels, int left, int top, int width, int height)
{
    for (int y = top; y < top + height; ++y) {
        for (int x = left; x < left + width; ++x)
            pixels.emplace(x, y);
    }
}

inline Pixels rectangle(int left, int top, int width, int height)
{
    Pixels pixels;
    add(pixels, left, top, width, height);
    return pixels;
}

inline QRgb highlight(const QWidget &widget)
{
    return widget.palette().color(QPalette::Highlight).rgb();
}

/// One point is one pixel, as in the program.
template <typename Test> int runPaintingTest(int argc, char **argv)
{
    qputenv("QT_FONT_DPI", "72");
    QApplication application(argc, argv);
    Test test;
    return QTest::qExec(&test, argc, argv);
}
