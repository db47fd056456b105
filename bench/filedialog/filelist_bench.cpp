#include "bench/app/turns.h"
#include "filedialog/ctlfilelistview.h"
#include "platform/toolkitstart.h"

#include <QApplication>
#include <QByteArray>
#include <QHeaderView>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <optional>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr int fileCount = 100'000;

/// One application and one folder of 100,000 files for all benchmarks.
class Fixture {
public:
    Fixture()
    {
        loadFileIcons();
        const QByteArray base = m_folder.path().toUtf8() + "/Report ";
        for (int n = 0; n < fileCount; ++n) {
            const QByteArray name = base + QByteArray::number(n * 7919LL % 1'000'003) + " of the year.txt";
            const int file = ::open(name.constData(), O_CREAT | O_WRONLY | O_CLOEXEC, 0644);
            (void)!::ftruncate(file, n * 37LL % 5'000'000);
            const timespec times[] = { { n * 613LL, 0 }, { n * 613LL, 0 } };
            ::futimens(file, times);
            ::close(file);
        }
    }

    QString path() const { return m_folder.path() + u'/'; }

private:
    const bool m_isPrepared =
        (prepareEventLoop(), true); // as the program; another one says nothing of its turns
    int m_argc = 1;
    char m_name[6] = "bench";
    char *m_argv[2] = { m_name, nullptr };
    QApplication m_application{ m_argc, m_argv };
    QTemporaryDir m_folder;
};

Fixture &fixture()
{
    static auto *const instance = new Fixture; // outlives the application's own clean-up
    return *instance;
}

/// Kilobytes of memory in use.
double residentKilobytes()
{
    long pages = 0;
    if (std::FILE *file = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(file, "%*d %ld", &pages) != 1)
            pages = 0;
        std::fclose(file);
    }
    return double(pages) * double(::sysconf(_SC_PAGESIZE)) / 1024;
}

/// A list in a window, to which things are done from the event loop.
class Shown {
public:
    Shown()
    {
        m_list->resize(210, 130);
        m_list->show();
        QApplication::processEvents();
        m_turns.emplace();
    }

    /// Until the list has all rows, in their order and on the screen.
    template <class Work> void make(const Work &work)
    {
        QMetaObject::invokeMethod(qApp, work, Qt::QueuedConnection);
        QApplication::processEvents();
        while (m_list && (m_list->isFilling() || m_list->isSorting()))
            QApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QApplication::processEvents();
    }
    void showFolder()
    {
        make([this] { m_list->showFolder(fixture().path()); });
    }
    void forgetTurns() { m_turns.emplace(); }
    /// How long the event loop was kept, at most.
    void noteTurns(benchmark::State &state)
    {
        m_turns->note();
        const auto raise = [&state](const char *counter, double to) {
            state.counters[counter] = std::max(to, double(state.counters[counter]));
        };
        raise("longest_turn_ms", m_turns->longest());
        raise("longest_work_ms", m_turns->longestWork());
    }

    ctlFileListView &list() { return *m_list; }
    void close() { m_list.reset(); }

private:
    std::unique_ptr<ctlFileListView> m_list = std::make_unique<ctlFileListView>();
    std::optional<Turns> m_turns;
};

void showFolder(benchmark::State &state)
{
    fixture();
    Shown shown;
    const double before = residentKilobytes();
    for (auto _ : state)
        shown.showFolder();
    shown.noteTurns(state);
    state.counters["rows"] = shown.list().rows().rowCount();
    state.counters["list_MB"] = (residentKilobytes() - before) / 1024;
    state.counters["process_MB"] = residentKilobytes() / 1024;
}
BENCHMARK(showFolder)->Unit(benchmark::kMillisecond)->Iterations(5);

void sortByColumn(benchmark::State &state)
{
    fixture();
    Shown shown;
    shown.showFolder();
    shown.forgetTurns();
    Qt::SortOrder order = Qt::DescendingOrder;
    for (auto _ : state) {
        shown.make([&] { shown.list().header()->setSortIndicator(int(state.range(0)), order); });
        order = order == Qt::AscendingOrder ? Qt::DescendingOrder : Qt::AscendingOrder;
    }
    shown.noteTurns(state);
}
BENCHMARK(sortByColumn)->DenseRange(0, 2)->Unit(benchmark::kMillisecond)->Iterations(6);

/// No row begins with all of what is typed.
void typeAhead(benchmark::State &state)
{
    fixture();
    Shown shown;
    shown.showFolder();
    shown.forgetTurns();
    for (auto _ : state)
        shown.make([&] { shown.list().keyboardSearch(QStringLiteral("report x")); });
    shown.noteTurns(state);
}
BENCHMARK(typeAhead)->Unit(benchmark::kMillisecond)->Iterations(6);

void leaveFolder(benchmark::State &state)
{
    fixture();
    const QTemporaryDir other;
    Shown shown;
    for (auto _ : state) {
        state.PauseTiming();
        shown.showFolder();
        shown.forgetTurns();
        state.ResumeTiming();
        shown.make([&] { shown.list().showFolder(other.path()); });
        shown.noteTurns(state);
    }
}
BENCHMARK(leaveFolder)->Unit(benchmark::kMillisecond)->Iterations(6);

void closeList(benchmark::State &state)
{
    fixture();
    for (auto _ : state) {
        state.PauseTiming();
        Shown shown;
        shown.showFolder();
        shown.forgetTurns();
        state.ResumeTiming();
        shown.make([&] { shown.close(); });
        shown.noteTurns(state);
    }
}
BENCHMARK(closeList)->Unit(benchmark::kMillisecond)->Iterations(6);

} // namespace
