// The text store at its largest: loading, keys, look-ups, laying out anew, letting go.
//
//     cmake --preset bench && cmake --build --preset bench --target textstore_bench
//     build/bench/textstore_bench

#include "text/textstore.h"

#include <QString>

#include <benchmark/benchmark.h>

#include <fstream>
#include <random>
#include <unistd.h>

namespace {

constexpr qint64 mebi = 1 << 20;
constexpr Subpixels screenWidth = 1000 * subpixelsPerPixel;

/// A fixed-pitch font of 8 pixels: ASCII narrow, the rest twice as wide.
const AdvanceTable &fixedPitch()
{
    static const AdvanceTable table([](char32_t codePoint) { return codePoint < 0x80 ? 512 : 1024; });
    return table;
}

/// A font in which hardly two letters are equally wide.
const AdvanceTable &proportional()
{
    static const AdvanceTable table([](char32_t codePoint) { return int(300 + codePoint * 7919 % 400); });
    return table;
}

LayoutRule unwrapped(const AdvanceTable &table = fixedPitch())
{
    return { &table, 64 * 64, 0 };
}
LayoutRule wrapped(const AdvanceTable &table = fixedPitch())
{
    return { &table, 64 * 64, screenWidth };
}

/// A log of lines of about 100 characters, some with a TAB.
const QByteArray &logText()
{
    static const QByteArray text = [] {
        QByteArray log;
        for (int line = 0; log.size() < mebi; ++line) {
            log += "2024-11-05 12:34:56.789 host service[" + QByteArray::number(line * 7 % 9973)
                + "]: request " + QByteArray::number(line) + (line % 16 ? " served in " : "\tserved in ")
                + QByteArray::number(line * 31 % 997) + " ms from the cache of the day\n";
        }
        log.truncate(mebi - 1);
        return log + '\n';
    }();
    return text;
}

/// Kanji, Kana and ASCII mixed; with or without line ends.
QString mixedText(qint64 units, bool lines)
{
    std::mt19937 random(1);
    QString text;
    text.reserve(units);
    while (text.size() < units) {
        const auto run = random() % 12;
        for (unsigned i = 0; i < run; ++i)
            text += QChar(char16_t(random() % 4 ? 0x4e00 + random() % 4000 : 0x3042 + random() % 60));
        for (unsigned i = 0; i < random() % 5; ++i)
            text += QChar(char16_t('a' + random() % 26));
        if (lines && random() % 6 == 0)
            text += u'\n';
    }
    text.truncate(units);
    return text;
}

TextStore logStore(qint64 size, const LayoutRule &rule)
{
    TextStore::Builder builder(rule);
    for (qint64 done = 0; done < size; done += logText().size())
        builder.append(QByteArrayView(logText()));
    return builder.finish();
}

TextStore mixedStore(qint64 units, const LayoutRule &rule, bool lines)
{
    static const QString block = mixedText(mebi, true);
    static const QString blockOfOneLine = mixedText(mebi, false);
    TextStore::Builder builder(rule);
    for (qint64 done = 0; done < units; done += mebi)
        builder.append(QStringView(lines ? block : blockOfOneLine));
    return builder.finish();
}

qint64 residentBytes()
{
    qint64 total = 0;
    qint64 resident = 0;
    std::ifstream("/proc/self/statm") >> total >> resident;
    return resident * sysconf(_SC_PAGESIZE);
}

/// What building is measured against.
void copyGibibyte(benchmark::State &state)
{
    for (auto _ : state) {
        std::vector<std::unique_ptr<char[]>> blocks;
        for (int i = 0; i < 1024; ++i) {
            blocks.push_back(std::make_unique_for_overwrite<char[]>(mebi));
            std::copy(logText().begin(), logText().end(), blocks.back().get());
        }
        benchmark::DoNotOptimize(blocks.data());
    }
}
BENCHMARK(copyGibibyte)->Unit(benchmark::kMillisecond);

void buildLog(benchmark::State &state, const LayoutRule &rule)
{
    const qint64 before = residentBytes();
    for (auto _ : state) {
        const TextStore store = logStore(1024 * mebi, rule);
        state.counters["rest/size"] = double(residentBytes() - before) / double(store.length());
        state.PauseTiming();
        benchmark::DoNotOptimize(store.rowCount());
        state.ResumeTiming();
    }
}
BENCHMARK_CAPTURE(buildLog, unwrapped, unwrapped())->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(buildLog, wrapped, wrapped())->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(buildLog, proportional, unwrapped(proportional()))->Unit(benchmark::kMillisecond);

void buildMixed(benchmark::State &state, const LayoutRule &rule, bool lines)
{
    const qint64 before = residentBytes();
    for (auto _ : state) {
        const TextStore store = mixedStore(50 * mebi, rule, lines);
        state.counters["rest/size"] = double(residentBytes() - before) / double(2 * store.length());
    }
}
BENCHMARK_CAPTURE(buildMixed, unwrapped, unwrapped(), true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(buildMixed, wrapped, wrapped(), true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(buildMixed, one_line_unwrapped, unwrapped(), false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(buildMixed, one_line_wrapped, wrapped(), false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(buildMixed, one_line_proportional, wrapped(proportional()), false)
    ->Unit(benchmark::kMillisecond);

void letGo(benchmark::State &state)
{
    for (auto _ : state) {
        state.PauseTiming();
        auto store = std::make_unique<TextStore>(logStore(1024 * mebi, unwrapped()));
        state.ResumeTiming();
        store.reset();
    }
}
BENCHMARK(letGo)->Unit(benchmark::kMillisecond);

void setRule(benchmark::State &state, const LayoutRule &from, const LayoutRule &to)
{
    TextStore store = logStore(1024 * mebi, from);
    for (auto _ : state) {
        store.setLayoutRule(to);
        benchmark::DoNotOptimize(store.rowCount());
        state.PauseTiming();
        store.setLayoutRule(from);
        state.ResumeTiming();
    }
}
BENCHMARK_CAPTURE(setRule, wrap, unwrapped(), wrapped())->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(setRule, unwrap, wrapped(), unwrapped())->Unit(benchmark::kMillisecond);

/// A key and what a widget asks after it, at a place of the line.
void typeAt(benchmark::State &state, TextStore &&store, double place)
{
    Offset at(qint64(double(store.length()) * place));
    bool erase = false;
    for (auto _ : state) {
        store.replace(at, erase ? 1 : 0, erase ? QStringView() : QStringView(u"a"));
        erase = !erase;
        benchmark::DoNotOptimize(store.rowCount());
        const RowCol position = store.rowColAt(at);
        benchmark::DoNotOptimize(store.xAt(position));
        benchmark::DoNotOptimize(store.widestRow());
        if (state.range(0))
            at = Offset((at.value() + 7919 * 4096) % store.length());
    }
}

void typeInLog(benchmark::State &state, const LayoutRule &rule)
{
    typeAt(state, logStore(1024 * mebi, rule), 0.5);
}
BENCHMARK_CAPTURE(typeInLog, unwrapped, unwrapped())->Arg(0)->Arg(1);
BENCHMARK_CAPTURE(typeInLog, wrapped, wrapped())->Arg(0)->Arg(1);

void typeInLine(benchmark::State &state, const LayoutRule &rule, double place)
{
    typeAt(state, mixedStore(100 * mebi, rule, false), place);
}
BENCHMARK_CAPTURE(typeInLine, unwrapped_middle, unwrapped(), 0.5)->Arg(0)->Arg(1);
BENCHMARK_CAPTURE(typeInLine, wrapped_start, wrapped(), 0.0)->Arg(0);
BENCHMARK_CAPTURE(typeInLine, wrapped_middle, wrapped(), 0.5)->Arg(0)->Arg(1);
BENCHMARK_CAPTURE(typeInLine, proportional_start, wrapped(proportional()), 0.0)->Arg(0)->Arg(1);

/// A line of ASCII with hardly anything else: breaks shift all the way to the end.
void typeInAsciiLine(benchmark::State &state)
{
    TextStore::Builder builder(wrapped());
    QString block(10007, u'x');
    block[5000] = u'\u3042';
    for (int i = 0; i < 10000; ++i)
        builder.append(QStringView(block));
    typeAt(state, builder.finish(), 0.0);
}
BENCHMARK(typeInAsciiLine)->Arg(0)->Arg(1);

void lookUp(benchmark::State &state, TextStore &&store)
{
    std::mt19937_64 random(1);
    for (auto _ : state) {
        const Offset offset(qint64(random() % quint64(store.length())));
        const RowCol position = store.rowColAt(offset);
        benchmark::DoNotOptimize(store.xAt(position));
        benchmark::DoNotOptimize(store.columnAt(position.row, 3000));
        benchmark::DoNotOptimize(store.row(position.row));
    }
}
void lookUpLog(benchmark::State &state, const LayoutRule &rule)
{
    lookUp(state, logStore(1024 * mebi, rule));
}
BENCHMARK_CAPTURE(lookUpLog, unwrapped, unwrapped());
BENCHMARK_CAPTURE(lookUpLog, wrapped, wrapped());
void lookUpLine(benchmark::State &state, const LayoutRule &rule)
{
    lookUp(state, mixedStore(100 * mebi, rule, false));
}
BENCHMARK_CAPTURE(lookUpLine, unwrapped, unwrapped());
BENCHMARK_CAPTURE(lookUpLine, wrapped, wrapped());

/// A million replacements in order, as replacing all does.
void replaceMany(benchmark::State &state, TextStore &&store)
{
    Offset at;
    for (auto _ : state) {
        store.replace(at, 4, u"abcdefg");
        at = Offset((at.value() + 150) % (store.length() - 4));
    }
}
void replaceManyInLog(benchmark::State &state)
{
    replaceMany(state, logStore(150 * mebi, unwrapped()));
}
BENCHMARK(replaceManyInLog)->Iterations(1000000);
void replaceManyInMixed(benchmark::State &state)
{
    replaceMany(state, mixedStore(150 * mebi, unwrapped(), true));
}
BENCHMARK(replaceManyInMixed)->Iterations(1000000);

/// Half of it out and in again.
void takeAndInsert(benchmark::State &state)
{
    TextStore store = logStore(1024 * mebi, unwrapped());
    for (auto _ : state) {
        const TextPiece half = store.exchange(Offset(1000), 512 * mebi, QStringView());
        store.insert(Offset(1000), half);
    }
}
BENCHMARK(takeAndInsert);

} // namespace
