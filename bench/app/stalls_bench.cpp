// What takes long over the text of a window: until it is done, and how long the event loop was kept
// meanwhile.
//
//     cmake --preset bench && cmake --build --preset bench --target stalls_bench
//     QT_QPA_PLATFORM=offscreen FILE=/var/tmp/marlopad-data/log-1g.txt build/bench/stalls_bench

#include "app/frmmain.h"
#include "app/replacerun.h"
#include "app/searchrequest.h"
#include "bench/app/ownfolders.h"
#include "bench/app/turns.h"
#include "editor/ctlediter.h"
#include "platform/toolkitstart.h"
#include "search/frmreplaceprogress.h"
#include "search/frmsearchdialog.h"
#include "settings/settings.h"

#include <QApplication>
#include <QClipboard>
#include <QDropEvent>
#include <QFileInfo>
#include <QKeyEvent>
#include <QMimeData>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>
#include <functional>

namespace {

constexpr qint64 millionLines = 1000000;

class Window : public frmMain {
public:
    explicit Window(const QString &file)
    {
        resize(1280, 800);
        show();
        openDocument(file, 0);
        while (editor().document().isHeld())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        // Whatever looks through the text when there is nothing else to do.
        while (QCoreApplication::eventDispatcher()->processEvents(QEventLoop::AllEvents)) { }
    }

    ctlEditer &editor() const { return *currentEditor(); }
    const TextStore &text() const { return editor().store(); }

    /// Makes it from the event loop, until it is done.
    void measure(const char *name, const std::function<void()> &work, const std::function<bool()> &isDone)
    {
        Turns turns;
        QElapsedTimer clock;
        clock.start();
        bool isBegun = false;
        QTimer::singleShot(0, this, [&] {
            work();
            isBegun = true;
        });
        while (!isBegun || !isDone())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        const double whole = msOf(clock);
        // What it leaves to be painted and written belongs to it.
        QTimer::singleShot(0, this, [] {});
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        turns.note();
        std::printf("| %s | %.1f | %.1f | %.0f |\n", name, turns.longest(), turns.longestWork(), whole);
        std::fflush(stdout);
    }
    void measure(const char *name, const std::function<void()> &work)
    {
        measure(name, work, [] { return true; });
    }

    void search(const QString &wanted)
    {
        slotCmdViewSearch();
        auto *const panel = findChild<frmSearchDialog *>();
        panel->findText = wanted;
        panel->caseSensitive = true;
        panel->hide();
        slotEtcSearchNext();
    }

    void selectLines(qint64 lines)
    {
        editor().setCursorPosition(0, 0);
        editor().extendSelection({ text().lineStart(LineIndex(qMin(lines, text().lineCount() - 1))) });
    }

    void indent(Qt::KeyboardModifiers modifiers)
    {
        QKeyEvent tab(QEvent::KeyPress, Qt::Key_Tab, modifiers);
        QCoreApplication::sendEvent(&editor(), &tab);
    }

    /// As another program would.
    void drop(const QString &text)
    {
        QMimeData dropped;
        dropped.setText(text);
        const QPoint place(20, 20);
        QDragEnterEvent enter(place, Qt::CopyAction, &dropped, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(currentEditor()->viewport(), &enter);
        QDropEvent drop(place, Qt::CopyAction, &dropped, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(currentEditor()->viewport(), &drop);
    }

    void replaceAll(const QString &wanted, bool speedsUp)
    {
        const ReplaceGuard guard;
        editor().setCursorPosition(0, 0);
        frmReplaceProgress progress(this);
        if (speedsUp)
            progress.slotClickHiSpeed();
        const SearchRequest request{ 1, true, wanted, QStringLiteral("tortoise") };
        ReplaceRun(editor(), request, progress).run();
    }
};

/// 60 MB of some thousand different characters.
QString textNeverMet()
{
    QString line;
    for (char16_t unit = 0x4E00; unit < 0x6000; ++unit)
        line += QChar(unit);
    line += u'\n';
    return line.repeated(6500);
}

/// What a command leaves to later turns is done by then.
std::function<bool()> aSecondLater()
{
    QElapsedTimer clock;
    clock.start();
    QTimer::singleShot(1200, [] {}); // wakes the event loop
    return [clock] { return clock.hasExpired(1000); };
}

/// To what a box asks, if there is one.
void agree()
{
    if (const QWidget *const box = QApplication::activeModalWidget())
        box->findChildren<QPushButton *>().first()->click();
}

/// Whether there was one.
bool closeBox()
{
    QWidget *const box = QApplication::activeModalWidget();
    return box && box->close();
}

} // namespace

int main(int argc, char **argv)
{
    const OwnFolders folders;
    prepareEventLoop(); // as the program; another one says nothing of its turns
    QApplication application(argc, argv);
    const QString file = qEnvironmentVariable("FILE");
    const QString wanted = qEnvironmentVariable("WORD", QStringLiteral("worker-01"));
    if (!QFileInfo(file).isReadable()) {
        std::fprintf(stderr, "FILE=… with many lines that hold WORD=…\n");
        return 1;
    }
    Window window(file);
    ctlEditer &editor = window.editor();
    std::printf("| %lld MB | longest turn, ms | processor, ms | whole, ms |\n|---|---|---|---|\n",
        QFileInfo(file).size() / 1000000);
    editor.setCursorPlace({ window.text().end() });
    editor.insert(QStringLiteral("nightingale"));
    editor.setCursorPosition(0, 0);
    window.measure(
        "find the last word", [&] { window.search(QStringLiteral("nightingale")); },
        [&] { return editor.hasMarkedText(); });
    window.measure(
        "find the first line from the end",
        [&] {
            const QString first = window.text().text({}, 40).section(QLatin1Char('\n'), 0, 0);
            window.search(first);
            editor.setCursorPlace({ window.text().end() });
            window.slotEtcSearchBefo();
        },
        [&] { return editor.hasMarkedText(); });
    QTimer closing;
    bool isShown = false;
    closing.callOnTimeout([&] { isShown = closeBox() || isShown; });
    closing.start(10);
    window.measure(
        "properties", [&] { window.slotCmdFileProp(); }, [&] { return isShown; });
    closing.stop();
    window.measure("select all", [&] { editor.selectAll(); });
    window.measure("copy", [&] { editor.QMultiLineEdit::copy(); });
    const auto isFree = [&] { return !std::as_const(editor).document().isHeld(); };
    window.measure(
        "paste it at the end",
        [&] {
            editor.setCursorPlace({ window.text().end() });
            editor.paste();
        },
        isFree);
    window.measure("undo that", [&] { editor.undo(); });
    window.measure("type, so that it cannot be redone", [&] { editor.insert(QStringLiteral("x")); });
    window.measure(
        "paste it into another tab",
        [&] {
            window.slotCmdFileNew();
            window.currentEditor()->paste();
        },
        [&] { return !std::as_const(*window.currentEditor()).document().isHeld(); });
    window.measure(
        "close that",
        [&] {
            window.currentEditor()->setEdited(false);
            window.slotCmdFileCloseTab();
        },
        aSecondLater());
    const auto isCurrentFree = [&] { return !std::as_const(*window.currentEditor()).document().isHeld(); };
    const QString neverMet = textNeverMet();
    window.measure(
        "paste characters that were never met",
        [&] {
            QApplication::clipboard()->setText(neverMet);
            window.slotCmdFileNew();
            window.currentEditor()->paste();
        },
        isCurrentFree);
    window.measure(
        "drop them", [&] { window.drop(neverMet); }, isCurrentFree);
    window.currentEditor()->setEdited(false);
    window.slotCmdFileCloseTab();
    window.measure("select all, and delete", [&] {
        editor.selectAll();
        editor.insert(QString());
    });
    window.measure("undo that", [&] { editor.undo(); });
    editor.selectAll();
    editor.QMultiLineEdit::copy();
    window.measure("its bytes for another program",
        [] { QApplication::clipboard()->mimeData()->data(QStringLiteral("text/plain")); });
    window.selectLines(millionLines);
    window.measure(
        "indent a million lines", [&] { window.indent(Qt::NoModifier); }, isFree);
    window.measure("undo that", [&] { editor.undo(); });
    window.measure("redo that", [&] { editor.redo(); });
    window.selectLines(millionLines);
    window.measure(
        "take the indent back", [&] { window.indent(Qt::ShiftModifier); }, isFree);
    window.measure("replace all", [&] { window.replaceAll(wanted, false); });
    window.measure("undo the last of it", [&] { editor.undo(); });
    const auto undoMore = [&] {
        if (!editor.history().canUndo())
            return true;
        QTimer::singleShot(0, &editor, [&editor] { editor.undo(); });
        return false;
    };
    window.measure(
        "undo all of it, a step a turn", [] {}, undoMore);
    window.measure("replace all, sped up", [&] { window.replaceAll(wanted, true); });
    window.measure(
        "undo all of it again", [] {}, undoMore);
    window.measure("a font that is larger", [&] {
        ++appSettings().FontSize;
        window.applySettings();
        window.repaint();
    });
    window.measure(
        "the new layout", [] {}, [&] { return editor.store().layoutRule() == editor.layoutRule(); });
    const QTemporaryDir saved(QFileInfo(file).path() + QStringLiteral("/saved-"));
    window.measure(
        "save as",
        [&] { window.slotCmdFileSave(&editor, saved.path() + u'/', QStringLiteral("copy"), 0, 0); }, isFree);
    QTimer agreeing;
    agreeing.callOnTimeout(agree);
    agreeing.start(10);
    window.measure(
        "reload", [&] { window.slotCmdFileReload(); }, isFree);
    agreeing.stop();
    editor.setCursorPlace({ window.text().end() });
    editor.insert(QStringLiteral("nightingale"));
    window.measure(
        "a smaller font, and a search meanwhile",
        [&] {
            --appSettings().FontSize;
            window.applySettings();
            window.repaint();
            editor.setCursorPosition(0, 0);
            window.search(QStringLiteral("nightingale"));
        },
        [&] { return editor.hasMarkedText(); });
    window.measure(
        "the new layout", [] {}, [&] { return editor.store().layoutRule() == editor.layoutRule(); });
    window.measure("resize it, wrapped", [&] {
        appSettings().WrapMode = 1;
        window.applySettings();
        window.resize(900, 700);
        window.repaint();
    });
    window.measure(
        "the new layout", [] {}, [&] { return editor.store().layoutRule() == editor.layoutRule(); });
    editor.setEdited(false);
    window.measure(
        "close", [&] { window.confirmCloseAll(false); }, aSecondLater());
    return 0;
}
