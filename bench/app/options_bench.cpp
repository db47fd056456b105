// Options given to many open documents, and the counts of the properties box.
//
//     cmake --preset bench && cmake --build --preset bench --target options_bench
//     QT_QPA_PLATFORM=offscreen build/bench/options_bench

#include "app/frmmain.h"
#include "bench/app/ownfolders.h"
#include "document/textcounts.h"
#include "editor/ctlediter.h"
#include "editor/ctltabbar.h"
#include "settings/settings.h"
#include "text/textstore.h"

#include <QApplication>

#include <benchmark/benchmark.h>

namespace {

constexpr qint64 gibi = 1 << 30;

QString japaneseLine()
{
    return QStringLiteral("いろはにほへと ちりぬるを わかよたれそ つねならむ うゐのおくやま けふこえて\n");
}

QString englishLine()
{
    return QStringLiteral("the quick brown fox jumps over the lazy dog, and\tthe dog says nothing\n");
}

TextStore storeOf(const QString &line, qint64 units)
{
    TextStore::Builder builder{ LayoutRule{} };
    for (qint64 built = 0; built < units; built += line.size())
        builder.append(line);
    return builder.finish();
}

/// A window with that many documents of that many lines, each somewhere in its middle.
void openDocuments(frmMain &window, qint64 documents, int lines)
{
    window.showMaximized();
    const QString text = (englishLine() + japaneseLine()).repeated(lines / 2);
    for (qint64 i = 0; i < documents; ++i) {
        window.slotCmdFileNew();
        window.currentEditor()->setText(text);
        window.currentEditor()->setCursorPosition(lines / 2, 3);
        window.currentEditor()->setEdited(false);
    }
    QCoreApplication::processEvents();
}

/// Turns everything that rows depend on to and fro.
void changeSettings()
{
    AppSettings &settings = appSettings();
    const bool isWrapped = settings.WrapMode == 2;
    settings.FontSize = isWrapped ? 18 : 14;
    settings.WrapMode = isWrapped ? 0 : 2;
    settings.WrapLen = 40;
    settings.TabLen = isWrapped ? 4 : 8;
    settings.RowNo = isWrapped ? 1 : 2;
}

template <typename Then> void applyOptionsAnd(benchmark::State &state, Then then)
{
    frmMain window;
    openDocuments(window, state.range(0), int(state.range(1)));
    for (auto _ : state) {
        changeSettings();
        window.applySettings();
        QCoreApplication::processEvents();
        then(window);
    }
    window.confirmCloseAll(true);
}

/// Until the shown document is painted.
void applyOptions(benchmark::State &state)
{
    applyOptionsAnd(state, [](const frmMain &) {});
}

/// Also until every document has been laid out, as closing the window asks for.
void applyOptionsAndAskForEveryRow(benchmark::State &state)
{
    applyOptionsAnd(state, [](const frmMain &window) {
        for (const ctlEditer *editor : window.tabBar()->editors())
            benchmark::DoNotOptimize(editor->numLines());
    });
}

void countProperties(benchmark::State &state, const QString &line, qint64 units)
{
    const TextStore text = storeOf(line, units);
    for (auto _ : state) {
        const TextCounts counts = countText(text);
        benchmark::DoNotOptimize(fileSize(counts, CharCode::Utf8, ReturnCode::Lf));
    }
}

} // namespace

BENCHMARK(applyOptions)
    ->ArgNames({ "documents", "lines" })
    ->Args({ 1, 300 })
    ->Args({ 200, 300 })
    ->Args({ 200, 10000 })
    ->Unit(benchmark::kMillisecond);
BENCHMARK(applyOptionsAndAskForEveryRow)
    ->ArgNames({ "documents", "lines" })
    ->Args({ 200, 300 })
    ->Args({ 200, 10000 })
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(countProperties, english_1GiB, englishLine(), gibi)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(countProperties, japanese_1GiB_of_UTF8, japaneseLine(), gibi / 3)
    ->Unit(benchmark::kMillisecond);

int main(int argc, char **argv)
{
    const OwnFolders folders;
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
