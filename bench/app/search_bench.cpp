// Searching and replacing in large documents. Beside the figures of `sed` and `grep -F`: bench/search.sh.
//
//     cmake --preset bench && cmake --build --preset bench --target search_bench
//     QT_QPA_PLATFORM=offscreen build/bench/search_bench

#include "app/replacerun.h"
#include "app/searchrequest.h"

#include "editor/ctlediter.h"
#include "platform/qpeapplication.h"
#include "platform/toolkitstart.h"
#include "search/frmreplaceprogress.h"
#include "text/textsearch.h"

#include <QApplication>

#include <benchmark/benchmark.h>

namespace {

constexpr qint64 mebi = 1 << 20;

enum Lines { OneLine, ManyLines };
enum Wrapping { Unwrapped, Wrapped };
enum Script { English, Japanese };

/// Lines of about 40 units, one in which the word to be replaced stands.
QString textLine(Script script, bool hit, Lines lines)
{
    QString line = script == English
        ? QStringLiteral("the quick brown fox jumps over the ")
        : QStringLiteral("いろはにほへと ちりぬるを わかよたれそ つねならむ うゐのおくやま");
    line += !hit ? QStringLiteral("lazy") : script == English ? QStringLiteral("hare") : QStringLiteral("兎");
    return line + (lines == ManyLines ? u'\n' : u' ');
}

TextStore storeOf(Script script, Lines lines, qint64 units, qint64 hits, const LayoutRule &rule)
{
    TextStore::Builder builder(rule);
    const QString plain = textLine(script, false, lines);
    const QString hit = textLine(script, true, lines);
    const qint64 count = units / plain.size();
    for (qint64 line = 0, done = 0; line < count; ++line) {
        const bool isHit = done * count < hits * line;
        done += isHit;
        builder.append(isHit ? hit : plain);
    }
    return builder.finish();
}

QString wordOf(Script script)
{
    return script == English ? QStringLiteral("hare") : QStringLiteral("兎");
}

LayoutRule ruleOf(Wrapping wrapping)
{
    return { nullptr, 8 * subpixelsPerPixel, wrapping == Wrapped ? 100 * subpixelsPerPixel : 0 };
}

/// The whole text is searched in vain.
void searchInVain(benchmark::State &state, Script script, Lines lines, Wrapping wrapping, qint64 units,
    Qt::CaseSensitivity cs)
{
    const TextStore store = storeOf(script, lines, units, 0, ruleOf(wrapping));
    const TextPattern pattern(wordOf(script), cs);
    for (auto _ : state) {
        benchmark::DoNotOptimize(findHit(store, pattern, SearchDirection::Forward, {}));
        state.PauseTiming();
        if (findHit(store, pattern, SearchDirection::Forward, {}))
            state.SkipWithError("there is a hit");
        state.ResumeTiming();
    }
    state.SetBytesProcessed(state.iterations() * store.length() * (script == English ? 1 : 2));
}

void searchBackInVain(benchmark::State &state, Lines lines, Wrapping wrapping, Qt::CaseSensitivity cs)
{
    const TextStore store = storeOf(English, lines, 100 * mebi, 0, ruleOf(wrapping));
    const TextPattern pattern(wordOf(English), cs);
    const CursorPlace end{ store.end() };
    for (auto _ : state)
        benchmark::DoNotOptimize(findHit(store, pattern, SearchDirection::Backward, end));
    state.SetBytesProcessed(state.iterations() * store.length());
}

/// The only hit is the last word of the text.
void searchFar(benchmark::State &state, Lines lines, Wrapping wrapping)
{
    TextStore store = storeOf(English, lines, 100 * mebi, 0, ruleOf(wrapping));
    store.replace(store.end(), 0, wordOf(English));
    const TextPattern pattern(wordOf(English), Qt::CaseSensitive);
    for (auto _ : state) {
        const auto hit = findHit(store, pattern, SearchDirection::Forward, {});
        benchmark::DoNotOptimize(hit);
        benchmark::DoNotOptimize(store.rowColAt(hit->begin));
        if (hit->end.offset != store.end())
            state.SkipWithError("that is another hit");
    }
    state.SetBytesProcessed(state.iterations() * store.length());
}

/// Nothing is found, though many places begin like the text that is looked for.
void searchAlike(benchmark::State &state, const char *text, Qt::CaseSensitivity cs)
{
    const TextStore store = storeOf(English, OneLine, 100 * mebi, 0, ruleOf(Wrapped));
    const TextPattern pattern(QString::fromLatin1(text), cs);
    for (auto _ : state)
        benchmark::DoNotOptimize(findHit(store, pattern, SearchDirection::Forward, {}));
    state.SetBytesProcessed(state.iterations() * store.length());
}

/// The whole of a replace-all, with its panel and its events.
void replaceAll(benchmark::State &state, Script script, Lines lines, Wrapping wrapping, qint64 units,
    qint64 hits, bool speedUp)
{
    qint64 count = 0;
    for (auto _ : state) {
        state.PauseTiming();
        QWidget window;
        window.resize(800, 600);
        ctlEditer editor(&window);
        editor.setGeometry(window.rect());
        editor.setWrapColumnOrWidth(editor.viewport()->width());
        editor.setWordWrap(wrapping == Wrapped ? QMultiLineEdit::FixedPixelWidth : QMultiLineEdit::NoWrap);
        window.show();
        editor.setText(storeOf(script, lines, units, hits, editor.layoutRule()));
        QCoreApplication::processEvents();
        const SearchRequest request{ 1, 1, wordOf(script), QStringLiteral("tortoise") };
        auto progress = std::make_unique<frmReplaceProgress>(&window);
        if (speedUp)
            progress->slotClickHiSpeed();
        state.ResumeTiming();
        count = ReplaceRun(editor, request, *progress).run();
        state.PauseTiming();
        progress.reset();
        state.ResumeTiming();
    }
    state.counters["hits"] = double(count);
}

/// Undoing everything after a million replacements, and redoing it.
void undoAll(benchmark::State &state)
{
    QWidget window;
    ctlEditer editor(&window);
    editor.setText(storeOf(English, ManyLines, 40 * mebi, 1000000, editor.layoutRule()));
    frmReplaceProgress progress(&window);
    const SearchRequest request{ 1, 1, wordOf(English), QStringLiteral("tortoise") };
    ReplaceRun(editor, request, progress).run();
    for (auto _ : state) {
        while (editor.undoAvailable())
            editor.undo();
        while (editor.redoAvailable())
            editor.redo();
    }
}

} // namespace

#define MARLOPAD_BENCH(function, name, ...)                                                                  \
    BENCHMARK_CAPTURE(function, name, __VA_ARGS__)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime()

MARLOPAD_BENCH(
    searchInVain, log_1GiB_with_case, English, ManyLines, Unwrapped, 1024 * mebi, Qt::CaseSensitive);
MARLOPAD_BENCH(
    searchInVain, log_1GiB_without_case, English, ManyLines, Unwrapped, 1024 * mebi, Qt::CaseInsensitive);
MARLOPAD_BENCH(searchInVain, one_wrapped_line_100MiB_with_case, English, OneLine, Wrapped, 100 * mebi,
    Qt::CaseSensitive);
MARLOPAD_BENCH(searchInVain, one_wrapped_line_100MiB_without_case, English, OneLine, Wrapped, 100 * mebi,
    Qt::CaseInsensitive);
MARLOPAD_BENCH(searchInVain, japanese_100Mi_units_with_case, Japanese, ManyLines, Wrapped, 100 * mebi,
    Qt::CaseSensitive);
MARLOPAD_BENCH(searchInVain, japanese_100Mi_units_without_case, Japanese, ManyLines, Wrapped, 100 * mebi,
    Qt::CaseInsensitive);
MARLOPAD_BENCH(searchBackInVain, one_wrapped_line_with_case, OneLine, Wrapped, Qt::CaseSensitive);
MARLOPAD_BENCH(searchBackInVain, lines_without_case, ManyLines, Unwrapped, Qt::CaseInsensitive);

MARLOPAD_BENCH(searchFar, one_wrapped_line_100MiB, OneLine, Wrapped);
MARLOPAD_BENCH(searchFar, wrapped_lines_100MiB, ManyLines, Wrapped);
MARLOPAD_BENCH(searchAlike, frequent_letter_with_case, "ezzz", Qt::CaseSensitive);
MARLOPAD_BENCH(searchAlike, frequent_letter_without_case, "ezzz", Qt::CaseInsensitive);
MARLOPAD_BENCH(
    searchAlike, frequent_beginning_with_case, "the quick brown fox jumps over the lazx", Qt::CaseSensitive);
MARLOPAD_BENCH(searchAlike, frequent_beginning_without_case, "the quick brown fox jumps over the lazx",
    Qt::CaseInsensitive);

MARLOPAD_BENCH(replaceAll, lines_40MiB_0, English, ManyLines, Unwrapped, 40 * mebi, 0, false)->Iterations(1);
MARLOPAD_BENCH(replaceAll, lines_40MiB_1000000, English, ManyLines, Unwrapped, 40 * mebi, 1000000, false)
    ->Iterations(1);
MARLOPAD_BENCH(
    replaceAll, lines_40MiB_1000000_speeded_up, English, ManyLines, Unwrapped, 40 * mebi, 1000000, true)
    ->Iterations(1);
MARLOPAD_BENCH(
    replaceAll, lines_40MiB_1000000_wrapped, English, ManyLines, Wrapped, 40 * mebi, 1000000, false)
    ->Iterations(1);
MARLOPAD_BENCH(
    replaceAll, one_wrapped_line_100MiB_100000, English, OneLine, Wrapped, 100 * mebi, 100000, false)
    ->Iterations(1);
MARLOPAD_BENCH(replaceAll, one_line_40MiB_1000000, English, OneLine, Unwrapped, 40 * mebi, 1000000, false)
    ->Iterations(1);
MARLOPAD_BENCH(
    replaceAll, japanese_40Mi_units_1000000, Japanese, ManyLines, Unwrapped, 40 * mebi, 1000000, false)
    ->Iterations(1);
MARLOPAD_BENCH(replaceAll, one_wrapped_line_100MiB_100000_speeded_up, English, OneLine, Wrapped, 100 * mebi,
    100000, true)
    ->Iterations(1);
BENCHMARK(undoAll)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime();

int main(int argc, char **argv)
{
    prepareEventLoop();
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
