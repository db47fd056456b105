#pragma once

#include "tests/app/testwindow.h"
#include "tests/files/pipe.h"
#include "tests/jobs/steppedrunner.h"

#include <QPointer>

#include <vector>

/// A window in which a job can be begun, beside a document that is edited.
class JobScene {
public:
    /// What a job is to the document it is about.
    enum class Kind { Load, Reload, Save, Search, Count, Layout, Edit, Follow, Restore, Input, InputAgain };

    /// What a document has.
    enum class Content {
        NoDocument,
        Empty,
        Small,
        Text,
        TextAsShiftJis,
        Utf16, ///< the text's bytes in UTF-16, read byte by byte
        Edited, ///< the text with an "x" in front
        Replaced,
        Indented,
        Pasted, ///< the text before the small one
        Long,
        Followed, ///< a small one
        FollowedOn, ///< that, and the text behind it
        Come, ///< as much of the text as has come
    };

    struct Job {
        const char *name;
        Kind kind;
        void (JobScene::*begin)(); ///< its document is the current one then
        int steps;
        Content done, stopped, failed; ///< what its document has then
        int boxesOfBegin = 0;
        int boxesOfEnd = 0; ///< when it is done
        const char *file = "a.txt"; ///< that it reads or writes
        void (*prepare)(const TestFiles &files) = nullptr; ///< before there is a window
    };
    /// All that can be done behind the window.
    static const std::vector<Job> &jobs();

    explicit JobScene(const Job &job);

    QString fullName(const QString &name) const { return files.folder() + name; }
    /// Into the focus, as soon as it takes keys.
    void press(Qt::Key key);
    /// Opens the search panel with the text, in the document that is shown, to which its keys come back.
    void prepareSearch(const QString &text, bool replaces = false);
    /// Opens a.txt and waits for all of it.
    void openWhole(const QByteArray &text);
    /// One step of what is under way.
    bool step() { return inputRunner.step() || runner.step(); }
    /// The same; the pipe brings more, or ends, where all that it has brought was read.
    bool bringAndStep();
    /// Also of what is begun when the end of another one is told, and all turns of the event loop that
    /// follow. A pipe brings the rest, and ends.
    void makeAllSteps();
    /// Whether the job goes on in the document.
    bool isUnderWay(const Job &job, const ctlEditer &editor) const;

    /// Of several steps of each job; "first" is far before its end, and "last" far behind its start.
    static const QByteArray &text();
    static inline const QByteArray smallText = "old\n";
    /// `come`: bytes of the text.
    static QString textOf(Content content, qint64 come = 0);

    TestFiles files;
    SteppedRunner &runner = *new SteppedRunner;
    SteppedRunner &inputRunner = *new SteppedRunner;
    Pipe pipe;
    std::weak_ptr<const OpenFd> input; ///< the program's end of it, while that reads
    QByteArray incoming = text(); ///< what the pipe brings
    qint64 brought = 0; ///< bytes of that by now
    TestWindow window;
    QPointer<ctlEditer> other; ///< other.txt, "typed other"; saved in one go
    qreal rowHeight = 0; ///< of the old layout

private:
    void bring();
    void appendToFile(const QByteArray &bytes) const;
    void load();
    void loadIntoFreshDocument();
    void loadUtf16();
    void reload();
    void reopen();
    void readAsUtf16();
    void save();
    void saveAs();
    void searchForward();
    void searchBackward();
    void replaceNext();
    void count();
    void layOut();
    void indentBlock();
    void paste();
    void follow();
    static void leaveBehind(const TestFiles &files);
    void restore();
    void readInput();
    void readInputAgain();
};
