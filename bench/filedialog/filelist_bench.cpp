#include "bench/app/turns.h"
#include "filedialog/ctlfilelistview.h"

#include <QApplication>
#include <QByteArray>
#include <QHeaderView>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <cstdio>

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

/// Until all rows are there, in their order and on the screen.
void finish(const ctlFileListView &list)
{
    while (list.isFilling() || list.isSorting())
        QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    QApplication::processEvents();
}

/// How long the event loop was kept, at most.
class LongestTurn {
public:
    void note(benchmark::State &state) { state.counters["longest_turn_ms"] = m_turns.longest(); }

private:
    Turns m_turns;
};

void show(ctlFileListView &list)
{
    list.resize(210, 130);
    list.show();
    QApplication::processEvents();
}

void showFolder(benchmark::State &state)
{
    const QString path = fixture().path();
    ctlFileListView list;
    show(list);
    const double before = residentKilobytes();
    LongestTurn longest;
    for (auto _ : state) {
        QMetaObject::invokeMethod(
            &list, [&] { list.showFolder(path); }, Qt::QueuedConnection);
        QApplication::processEvents();
        finish(list);
    }
    longest.note(state);
    state.counters["rows"] = list.topLevelItemCount();
    state.counters["list_MB"] = (residentKilobytes() - before) / 1024;
    state.counters["process_MB"] = residentKilobytes() / 1024;
}
BENCHMARK(showFolder)->Unit(benchmark::kMillisecond)->Iterations(5);

void sortByColumn(benchmark::State &state)
{
    const QString path = fixture().path();
    ctlFileListView list;
    show(list);
    list.showFolder(path);
    finish(list);
    Qt::SortOrder order = Qt::DescendingOrder;
    LongestTurn longest;
    for (auto _ : state) {
        const auto sort = [&] { list.header()->setSortIndicator(int(state.range(0)), order); };
        QMetaObject::invokeMethod(&list, sort, Qt::QueuedConnection);
        QApplication::processEvents();
        finish(list);
        order = order == Qt::AscendingOrder ? Qt::DescendingOrder : Qt::AscendingOrder;
    }
    longest.note(state);
}
BENCHMARK(sortByColumn)->DenseRange(0, 2)->Unit(benchmark::kMillisecond)->Iterations(6);

} // namespace
