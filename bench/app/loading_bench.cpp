// A file that is opened in a window: until its first rows are painted, until all of it is there, and how long
// the event loop was kept meanwhile.
//
//     cmake --preset bench && cmake --build --preset bench --target loading_bench
//     QT_QPA_PLATFORM=offscreen FILE=/var/tmp/marlopad-data/log-1g.txt build/bench/loading_bench

#include "app/frmmain.h"
#include "bench/app/ownfolders.h"
#include "bench/app/turns.h"
#include "editor/ctlediter.h"
#include "platform/toolkitstart.h"
#include "settings/settings.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTemporaryFile>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <utility>

namespace {

/// The file to be opened: the one in the environment, or a log of 100 MB.
QString fileToOpen()
{
    static QTemporaryFile made;
    const QString wanted = qEnvironmentVariable("FILE");
    if (!wanted.isEmpty())
        return wanted;
    if (made.isOpen() || !made.open())
        return made.fileName();
    const QByteArray block =
        QByteArray("2026-11-22 10:00:00 a line of a log, with some words\n").repeated(20000);
    for (int i = 0; i < 100; ++i)
        made.write(block);
    made.flush();
    return made.fileName();
}

/// Knows when a document's view has painted text.
class FirstRows : public QObject {
public:
    explicit FirstRows(const ctlEditer &editor)
        : m_editor(editor)
    {
        editor.viewport()->installEventFilter(this);
    }
    bool arePainted() const { return m_arePainted; }

protected:
    /// Before the view hears of it; it has painted when the event loop comes back.
    bool eventFilter(QObject *, QEvent *event) override
    {
        m_arePainted |= event->type() == QEvent::Paint && m_editor.document().store().length() > 0;
        return false;
    }

private:
    const ctlEditer &m_editor;
    bool m_arePainted = false;
};

/// Milliseconds.
struct Times {
    double first = 0;
    double whole = 0;
    double longestTurn = 0;
    double medianTurn = 0;
};

const TextDocument &documentOf(const frmMain &window)
{
    return std::as_const(*window.currentEditor()).document();
}

Times load(frmMain &window, const QString &file)
{
    Times times;
    Turns turns;
    QElapsedTimer clock;
    clock.start();
    window.setDocument(file);
    const FirstRows rows(*window.currentEditor());
    do {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        if (times.first == 0 && rows.arePainted())
            times.first = msOf(clock);
    } while (times.first == 0 || documentOf(window).isHeld());
    turns.note();
    times.whole = msOf(clock);
    times.longestTurn = turns.longest();
    times.medianTurn = turns.median();
    return times;
}

void openLarge(benchmark::State &state)
{
    static int argumentCount = 1;
    static char name[] = "loading_bench";
    static char *arguments[] = { name, nullptr };
    static const OwnFolders folders;
    prepareEventLoop(); // as the program; another one says nothing of its turns
    const QApplication application(
        argumentCount, arguments); // goes before what the library keeps until the exit
    const QString file = fileToOpen();
    Times sum;
    for (auto _ : state) {
        frmMain window;
        window.resize(1280, 800);
        window.show();
        QCoreApplication::processEvents();
        const Times times = load(window, file);
        state.SetIterationTime(times.whole / 1000);
        sum.first += times.first;
        sum.medianTurn += times.medianTurn;
        sum.longestTurn = std::max(sum.longestTurn, times.longestTurn);
        window.confirmCloseAll(false);
    }
    const auto iterations = double(state.iterations());
    state.counters["firstRows_ms"] = sum.first / iterations;
    state.counters["medianTurn_ms"] = sum.medianTurn / iterations;
    state.counters["longestTurn_ms"] = sum.longestTurn;
}
BENCHMARK(openLarge)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);

} // namespace
