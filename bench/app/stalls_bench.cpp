// What takes long over the text of a window: until it is done, and how long the event loop was kept
// meanwhile.
//
//     cmake --preset bench && cmake --build --preset bench --target stalls_bench
//     QT_QPA_PLATFORM=offscreen FILE=/var/tmp/marlopad-data/log-1g.txt build/bench/stalls_bench
//     … ONLY="replace" …                       what the name of a part begins with
//     … MANY=1500 …                            how many files are opened at once; 200

#include "app/frmmain.h"
#include "app/replacerun.h"
#include "app/searchrequest.h"
#include "bench/app/ownfolders.h"
#include "bench/app/turns.h"
#include "editor/ctlediter.h"
#include "platform/qpeapplication.h"
#include "platform/toolkitstart.h"
#include "search/frmreplaceprogress.h"
#include "search/frmsearchdialog.h"
#include "settings/settings.h"

#include <QApplication>
#include <QClipboard>
#include <QDropEvent>
#include <QFile>
#include <QFileInfo>
#include <QKeyEvent>
#include <QMimeData>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>
#include <functional>
#include <utility>

namespace {

constexpr qint64 millionLines = 1000000;

/// Of the text, which it is put to.
const QString endWord = QStringLiteral("nightingale");

class Window : public frmMain {
public:
    explicit Window(const QString &file)
    {
        resize(1280, 800);
        static_cast<QPEApplication *>(qApp)->showMainWidget(this, true);
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
        std::printf("| %s | %.1f | %.1f | %.2f | %.0f |\n", name, turns.longest(), turns.longestWork(),
            turns.median(), whole);
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

    bool isFree() const { return !std::as_const(editor()).document().isHeld(); }
    /// Shows what has become of the options, at once as far as that goes.
    void takeSettings()
    {
        applySettings();
        repaint();
    }
    bool isLaidOut() const { return !text().linesAhead(); }
    void closeTab()
    {
        editor().setEdited(false);
        slotCmdFileCloseTab();
    }
    void goToEnd() { editor().setCursorPlace({ text().end() }); }

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

/// Does something to each box that opens, while it lives.
class Boxes {
public:
    explicit Boxes(const std::function<void(QWidget &box)> &act)
    {
        m_looks.callOnTimeout([act] {
            if (QWidget *const box = QApplication::activeModalWidget())
                act(*box);
        });
        m_looks.start(10);
    }

private:
    QTimer m_looks;
};

class ClosingBoxes : Boxes {
public:
    ClosingBoxes()
        : Boxes([this](QWidget &box) { m_wereAny = box.close() || m_wereAny; })
    {
    }
    bool wereAny() const { return m_wereAny; }

private:
    bool m_wereAny = false;
};

class AgreeingToBoxes : Boxes {
public:
    AgreeingToBoxes()
        : Boxes([](const QWidget &box) { box.findChildren<QPushButton *>().first()->click(); })
    {
    }
};

void searchIt(Window &window)
{
    ctlEditer &editor = window.editor();
    const auto isFound = [&editor] { return editor.hasMarkedText(); };
    window.goToEnd();
    editor.insert(endWord);
    editor.setCursorPosition(0, 0);
    window.measure(
        "find the last word", [&] { window.search(endWord); }, isFound);
    window.measure(
        "find the first line from the end",
        [&] {
            const QString first = window.text().text({}, 40).section(QLatin1Char('\n'), 0, 0);
            window.search(first);
            window.goToEnd();
            window.slotEtcSearchBefo();
        },
        isFound);
}

void askForProperties(Window &window)
{
    ClosingBoxes closing;
    window.measure(
        "properties", [&] { window.slotCmdFileProp(); }, [&] { return closing.wereAny(); });
}

void copyAndPaste(Window &window)
{
    ctlEditer &editor = window.editor();
    const auto isFree = [&window] { return window.isFree(); };
    window.measure("select all", [&] { editor.selectAll(); });
    window.measure("copy", [&] { editor.QMultiLineEdit::copy(); });
    window.measure("its bytes for another program",
        [] { QApplication::clipboard()->mimeData()->data(QStringLiteral("text/plain")); });
    window.measure(
        "paste it at the end",
        [&] {
            window.goToEnd();
            editor.paste();
        },
        isFree);
    window.measure("undo that", [&] { editor.undo(); });
    window.measure("type, so that it cannot be redone", [&] { editor.insert(QStringLiteral("x")); });
    window.measure(
        "paste it into another tab",
        [&] {
            window.slotCmdFileNew();
            window.editor().paste();
        },
        isFree);
    window.measure(
        "close that", [&] { window.closeTab(); }, aSecondLater());
}

void pasteNewCharacters(Window &window)
{
    const QString neverMet = textNeverMet();
    const auto isFree = [&window] { return window.isFree(); };
    window.measure(
        "paste characters that were never met",
        [&] {
            QApplication::clipboard()->setText(neverMet);
            window.slotCmdFileNew();
            window.editor().paste();
        },
        isFree);
    window.measure(
        "drop them", [&] { window.drop(neverMet); }, isFree);
    window.closeTab();
}

void deleteAll(Window &window)
{
    window.measure("select all, and delete", [&] {
        window.editor().selectAll();
        window.editor().insert(QString());
    });
    window.measure("undo that", [&] { window.editor().undo(); });
}

void indentLines(Window &window)
{
    ctlEditer &editor = window.editor();
    const auto isFree = [&window] { return window.isFree(); };
    window.selectLines(millionLines);
    window.measure(
        "indent a million lines", [&] { window.indent(Qt::NoModifier); }, isFree);
    window.measure("undo that", [&] { editor.undo(); });
    window.measure("redo that", [&] { editor.redo(); });
    window.selectLines(millionLines);
    window.measure(
        "take the indent back", [&] { window.indent(Qt::ShiftModifier); }, isFree);
}

void replaceEach(Window &window)
{
    const QString wanted = qEnvironmentVariable("WORD", QStringLiteral("worker-01"));
    const auto undoMore = [&editor = window.editor()] {
        if (!editor.history().canUndo())
            return true;
        QTimer::singleShot(0, &editor, [&editor] { editor.undo(); });
        return false;
    };
    window.measure("replace all", [&] { window.replaceAll(wanted, false); });
    window.measure("undo the last of it", [&] { window.editor().undo(); });
    window.measure(
        "undo all of it, a step a turn", [] {}, undoMore);
    window.measure("replace all, sped up", [&] { window.replaceAll(wanted, true); });
    window.measure(
        "undo all of it again", [] {}, undoMore);
}

void changeLayout(Window &window)
{
    const auto isLaidOut = [&window] { return window.isLaidOut(); };
    const auto change = [&](const char *name, const std::function<void()> &make) {
        window.measure(
            name,
            [&] {
                make();
                window.takeSettings();
            },
            isLaidOut);
    };
    AppSettings &settings = appSettings();
    change("a font that is larger", [&] { ++settings.FontSize; });
    change("tabs that are wider", [&] { settings.TabLen *= 2; });
    change("wrap it", [&] { settings.WrapMode = 1; });
    change("a narrower window", [&] { window.resize(900, 700); });
    window.measure("go to its end", [&] {
        window.goToEnd();
        window.repaint();
    });
    change("a font that is larger, wrapped", [&] { ++settings.FontSize; });
    window.measure("to the start", [&] {
        window.editor().setCursorPosition(0, 0);
        window.repaint();
    });
    change("do not wrap it", [&] { settings.WrapMode = 0; });
    window.goToEnd();
    window.editor().insert(endWord);
    window.measure(
        "a smaller font, and a search meanwhile",
        [&] {
            --settings.FontSize;
            window.takeSettings();
            window.editor().setCursorPosition(0, 0);
            window.search(endWord);
        },
        [&] { return window.editor().hasMarkedText() && window.isLaidOut(); });
}

void saveAndReload(Window &window, const QString &folder)
{
    const auto isFree = [&window] { return window.isFree(); };
    const auto save = [&] {
        window.slotCmdFileSave(&window.editor(), folder + u'/', QStringLiteral("copy"), 0, 0);
    };
    window.measure("save as", save, isFree);
    {
        AgreeingToBoxes agreeing;
        window.measure(
            "reload", [&] { window.slotCmdFileReload(); }, isFree);
    }
    ClosingBoxes closing;
    window.editor().insert(QStringLiteral("x"));
    window.measure(
        "save, and properties meanwhile",
        [&] {
            save();
            window.slotCmdFileProp();
        },
        [&] { return window.isFree() && closing.wereAny(); });
}

void closeAll(Window &window)
{
    window.measure(
        "close",
        [&] {
            window.editor().setEdited(false);
            window.confirmCloseAll(false);
        },
        aSecondLater());
}

void openMany(Window &window, const QString &folder)
{
    const QByteArray content = QByteArrayLiteral("A line of a small file.\n").repeated(100);
    const int many = qEnvironmentVariable("MANY", QStringLiteral("200")).toInt();
    QStringList names;
    for (int i = 0; i < many; ++i) {
        QFile file(folder + QStringLiteral("/small %1.txt").arg(i));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("cannot write %s", qPrintable(file.fileName()));
        names += file.fileName();
    }
    window.measure(("open " + QByteArray::number(many) + " files").constData(),
        [&] {
            for (const QString &name : names)
                static_cast<QPEApplication *>(qApp)->request(name);
        },
        [&] { return !QPEApplication::hasRequests(); });
    window.measure(
        "close them", [&] { window.confirmCloseAll(false); }, aSecondLater());
}

} // namespace

int main(int argc, char **argv)
{
    const OwnFolders folders;
    prepareEventLoop(); // as the program; another one says nothing of its turns
    QPEApplication application(argc, argv);
    const QString file = qEnvironmentVariable("FILE");
    if (!QFileInfo(file).isReadable()) {
        std::fprintf(stderr, "FILE=… with many lines that hold WORD=…\n");
        return 1;
    }
    const QTemporaryDir folder(QFileInfo(file).path() + QStringLiteral("/saved-"));
    Window window(file);
    std::printf("| %lld MB | longest turn, ms | processor, ms | median turn, ms | whole, ms "
                "|\n|---|---|---|---|---|\n",
        QFileInfo(file).size() / 1000000);
    const std::pair<const char *, std::function<void()>> parts[] = {
        { "search", [&] { searchIt(window); } },
        { "properties", [&] { askForProperties(window); } },
        { "copy", [&] { copyAndPaste(window); } },
        { "new characters", [&] { pasteNewCharacters(window); } },
        { "delete", [&] { deleteAll(window); } },
        { "indent", [&] { indentLines(window); } },
        { "replace", [&] { replaceEach(window); } },
        { "layout", [&] { changeLayout(window); } },
        { "save", [&] { saveAndReload(window, folder.path()); } },
        { "close", [&] { closeAll(window); } },
        { "open", [&] { openMany(window, folder.path()); } },
    };
    const QByteArray only = qgetenv("ONLY");
    for (const auto &[name, measure] : parts) {
        if (QByteArrayView(name).startsWith(only))
            measure();
    }
    return 0;
}
