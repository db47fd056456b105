// Opening, saving and indenting whole documents, in bytes of the file a second. Runs without a screen.
#include "codec/charcode.h"
#include "editor/ctlediter.h"
#include "settings/settings.h"

#include <QApplication>
#include <QFile>
#include <QKeyEvent>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <chrono>

namespace {

constexpr qsizetype megabyte = 1 << 20;

struct Kind {
    const char *unit; ///< repeated to fill the file
    CharCode code;
};
const Kind kinds[] = {
    { "2026-11-21 03:08:52 host program[4711]: a line of a log, as long as they usually are\n",
        CharCode::Utf8 },
    { "日本語の文章 and some ASCII text between, 全部で一行。\r\n", CharCode::Utf8 },
    { "\x93\xfa\x96\x7b\x8c\xea\x82\xcc\x95\xb6\x8f\xcd and some ASCII text between\r\n",
        CharCode::ShiftJis },
    { "one line without an end ", CharCode::Utf8 },
};

/// A file of `size` bytes about, made once for all runs.
class Sample {
public:
    Sample(const Kind &kind, qsizetype size)
    {
        const QByteArray unit(kind.unit);
        const QByteArray block = unit.repeated(megabyte / unit.size());
        QFile file(path() + name());
        if (!file.open(QIODevice::WriteOnly))
            return;
        while (file.size() < size)
            file.write(block);
        m_size = file.size();
    }
    QString path() const { return m_dir.path() + u'/'; }
    static QString name() { return QStringLiteral("document.txt"); }
    qint64 size() const { return m_size; }

private:
    QTemporaryDir m_dir;
    qint64 m_size = 0;
};

void load(benchmark::State &state)
{
    const Kind &kind = kinds[state.range(0)];
    const Sample sample(kind, state.range(1) * megabyte);
    for (auto run : state) {
        ctlEditer editor(nullptr);
        editor.loadFile(sample.path(), sample.name(), int(kind.code));
        benchmark::DoNotOptimize(editor.numLines());
    }
    state.SetBytesProcessed(state.iterations() * sample.size());
}
BENCHMARK(load)->ArgsProduct({ { 0, 1, 2, 3 }, { 100 } })->Args({ 0, 1024 })->Unit(benchmark::kMillisecond);

void save(benchmark::State &state)
{
    const Kind &kind = kinds[state.range(0)];
    const Sample sample(kind, state.range(1) * megabyte);
    ctlEditer editor(nullptr);
    editor.loadFile(sample.path(), sample.name(), int(kind.code));
    for (auto run : state)
        benchmark::DoNotOptimize(editor.saveFile(sample.path(), sample.name()));
    state.SetBytesProcessed(state.iterations() * sample.size());
}
BENCHMARK(save)->ArgsProduct({ { 0, 1, 2, 3 }, { 100 } })->Unit(benchmark::kMillisecond);

void press(ctlEditer &editor, Qt::Key key, Qt::KeyboardModifiers modifiers = {})
{
    QKeyEvent event(QEvent::KeyPress, key, modifiers);
    QApplication::sendEvent(&editor, &event);
}

enum BlockStep { Indent, UndoIt, RedoIt, Unindent, UndoThat, BlockSteps };

/// Indenting a selected block of a million lines, undoing and redoing it, unindenting it and undoing that:
/// one of the steps is measured, unwrapped or wrapped into two rows a line.
void millionLines(benchmark::State &state)
{
    appSettings().WrapMode = state.range(1) ? 2 : 0;
    appSettings().WrapLen = 30;
    ctlEditer editor(nullptr);
    editor.setText(QStringLiteral("    int value = 42; // a line of a program\n").repeated(1000000));
    for (auto run : state) {
        for (int step = Indent; step < BlockSteps; ++step) {
            if (step == Indent || step == Unindent)
                editor.selectAll();
            const auto start = std::chrono::steady_clock::now();
            if (step == Indent)
                press(editor, Qt::Key_Tab);
            else if (step == Unindent)
                press(editor, Qt::Key_Backtab, Qt::ShiftModifier);
            else if (step == RedoIt)
                editor.redo();
            else
                editor.undo();
            const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
            if (step == state.range(0))
                state.SetIterationTime(taken.count());
        }
        editor.undo();
    }
    appSettings() = AppSettings();
}
BENCHMARK(millionLines)
    ->ArgNames({ "step", "wrapped" })
    ->ArgsProduct({ { Indent, UndoIt, RedoIt, Unindent, UndoThat }, { 0, 1 } })
    ->Iterations(3)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
