// Many documents at once: opening, switching, saving all, closing all, and the memory that is left then.
//
//     cmake --preset bench && cmake --build --preset bench --target tabs_bench
//     QT_QPA_PLATFORM=offscreen build/bench/tabs_bench

#include "app/frmmain.h"
#include "bench/app/ownfolders.h"
#include "editor/ctlediter.h"
#include "editor/ctltabbar.h"
#include "settings/settings.h"

#include <QApplication>
#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <memory>

namespace {

constexpr int documentCount = 200;

/// Of this process, in MiB.
double residentMemory()
{
    QFile file(QStringLiteral("/proc/self/status"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : file.readAll().split('\n')) {
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').first().toDouble() / 1024;
    }
    return 0;
}

/// What is due is done: events, painting, closed editors.
void settle()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
}

/// The window with that many files of `size` bytes in tabs.
class Documents {
public:
    explicit Documents(qint64 size)
    {
        const QByteArray line("日本語の text of a line, and a bit more of it\r\n");
        const QByteArray content = line.repeated(qMax<qint64>(1, size / line.size()));
        for (int i = 0; i < documentCount; ++i) {
            QFile file(nameOf(i));
            if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
                qFatal("cannot write %s", qPrintable(file.fileName()));
        }
        m_window.resize(1280, 800);
        m_window.show();
        settle();
    }
    ~Documents() { close(); }
    Q_DISABLE_COPY_MOVE(Documents)
    frmMain &window() { return m_window; }
    ctlTabBar &tabs() { return *m_window.tabBar(); }
    void open()
    {
        for (int i = 0; i < documentCount; ++i)
            m_window.openDocument(nameOf(i), 0);
        settle();
    }
    void edit()
    {
        for (ctlEditer *editor : tabs().editors())
            editor->insert(QStringLiteral("x"));
        settle();
    }
    void close()
    {
        m_window.confirmCloseAll(true);
        settle();
    }

private:
    QString nameOf(int i) const { return m_folder.filePath(QStringLiteral("document %1.txt").arg(i)); }

    QTemporaryDir m_folder;
    frmMain m_window;
};

void openAll(benchmark::State &state)
{
    Documents documents(state.range(0));
    for (auto _ : state) {
        documents.open();
        state.PauseTiming();
        documents.close();
        state.ResumeTiming();
    }
}

void switchTab(benchmark::State &state)
{
    Documents documents(state.range(0));
    documents.open();
    for (auto _ : state) {
        documents.window().slotCmdViewWinNext();
        settle();
    }
}

void typeIntoTab(benchmark::State &state)
{
    Documents documents(state.range(0));
    documents.open();
    for (auto _ : state) {
        documents.window().currentEditor()->insert(QStringLiteral("x"));
        documents.window().currentEditor()->undo();
        settle();
    }
}

void saveAll(benchmark::State &state)
{
    Documents documents(state.range(0));
    documents.open();
    for (auto _ : state) {
        state.PauseTiming();
        documents.edit();
        state.ResumeTiming();
        documents.window().slotCmdFileSaveAll();
        settle();
    }
}

void closeAll(benchmark::State &state)
{
    Documents documents(state.range(0));
    const double without = residentMemory();
    for (auto _ : state) {
        state.PauseTiming();
        documents.open();
        const double opened = residentMemory();
        state.ResumeTiming();
        documents.close();
        state.counters["MiB_open"] = opened;
        state.counters["MiB_closed"] = residentMemory();
    }
    state.counters["MiB_before"] = without;
}

/// One after the other, as their user would, each with a look at the next one.
void closeOneByOne(benchmark::State &state)
{
    Documents documents(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        documents.open();
        state.ResumeTiming();
        while (documents.tabs().count() > 0) {
            documents.window().slotCmdFileCloseTab();
            settle();
        }
    }
}

BENCHMARK(openAll)->Arg(1 << 10)->Iterations(3)->Unit(benchmark::kMillisecond);
BENCHMARK(switchTab)->Arg(1 << 10)->Unit(benchmark::kMillisecond);
BENCHMARK(typeIntoTab)->Arg(1 << 10)->Unit(benchmark::kMillisecond);
BENCHMARK(saveAll)->Arg(1 << 10)->Iterations(3)->Unit(benchmark::kMillisecond);
BENCHMARK(closeAll)->Arg(1 << 10)->Arg(1 << 20)->Iterations(3)->Unit(benchmark::kMillisecond);
BENCHMARK(closeOneByOne)->Arg(1 << 10)->Iterations(3)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    const OwnFolders folders;
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
