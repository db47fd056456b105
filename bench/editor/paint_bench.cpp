// Painting of rows as the screen shows them: 1280x800, 40 rows of mixed Japanese, shaped text and signs.

#include "editor/ctlediter.h"
#include "rows/lcfont.h"
#include "settings/settings.h"

#include <QApplication>
#include <QPainter>

#include <benchmark/benchmark.h>

namespace {

constexpr QSize view(1280, 800);

class Editor : public ctlEditer {
public:
    explicit Editor(const QString &text)
        : ctlEditer(nullptr)
        , m_image(view, QImage::Format_RGB32)
    {
        resize(view);
        setText(text);
        show();
    }
    void paintRows(qint64 count)
    {
        QPainter painter(&m_image);
        for (RowIndex row = topRow(); row < topRow() + count; ++row) {
            const QRectF cell = cellRect(row);
            paintCell(painter, row, cell, cell.toAlignedRect() & m_image.rect());
        }
    }

private:
    QImage m_image;
};

QString mixedText(int lines)
{
    const QString line =
        QStringLiteral("%1\tThe quick brown fox 吾輩は猫である。名前はまだ無い。　どこで生れたかとんと"
                       "見当がつかぬ。 jumps over the lazy dog ﾊﾝｶｸ ABCabc\n");
    QString text;
    for (int i = 0; i < lines; ++i)
        text += line.arg(i);
    return text;
}

QString shapedText(int lines)
{
    QString text;
    for (int i = 0; i < lines; ++i)
        text += QStringLiteral("%1 السلام عليكم ورحمة الله ").arg(i).repeated(3)
            + QStringLiteral("か\u3099き e\u0301\n");
    return text;
}

void paintScreen(benchmark::State &state, const QString &text)
{
    Editor editor(text);
    const qint64 rows = view.height() / editor.cellHeight();
    for (auto _ : state)
        editor.paintRows(rows);
}

void screenOfMixedText(benchmark::State &state)
{
    paintScreen(state, mixedText(1000));
}

void screenOfShapedText(benchmark::State &state)
{
    paintScreen(state, shapedText(1000));
}

void screenOfHexBoxes(benchmark::State &state)
{
    paintScreen(state, (QString(70, QChar(0xdc80)) + u'\n').repeated(1000));
}

void oneRow(benchmark::State &state)
{
    Editor editor(mixedText(1000));
    for (auto _ : state)
        editor.paintRows(1);
}

void oneRowOfOneLongLine(benchmark::State &state)
{
    Editor editor(QStringLiteral("abcdefg hijklmn 0123456789 ").repeated(400000));
    editor.setXOffset(40000000);
    for (auto _ : state)
        editor.paintRows(1);
}

} // namespace

BENCHMARK(screenOfMixedText)->Unit(benchmark::kMillisecond);
BENCHMARK(screenOfShapedText)->Unit(benchmark::kMillisecond);
BENCHMARK(screenOfHexBoxes)->Unit(benchmark::kMillisecond);
BENCHMARK(oneRow)->Unit(benchmark::kMicrosecond);
BENCHMARK(oneRowOfOneLongLine)->Unit(benchmark::kMicrosecond);

int main(int argc, char **argv)
{
    qputenv("QT_FONT_DPI", "72");
    QApplication application(argc, argv);
    registerLcFont();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
