#pragma once

#include "app/arrivingfile.h"
#include "app/keptview.h"
#include "files/sharedfd.h"

#include <QCoreApplication>

#include <functional>
#include <map>
#include <memory>
#include <vector>

class DocumentArea;
class RecentPlaces;
struct WindowJobs;
class ctlEditer;
struct Utf16Form;

/// Where what is opened comes.
enum class OpenedIn {
    View, ///< it is current then, and has the keys
    Background, ///< its user is at other text, and stays there undisturbed
};

/// Opens and reloads files, as the user or another program wants it: the one place that reads a file into a
/// document.
///
/// A large file is read behind the window (ArrivingFile). If that is stopped, a tab that was made for it
/// goes, and a document that there was is as it was.
class DocumentLoader : public QObject {
    Q_DECLARE_TR_FUNCTIONS(frmMain)
public:
    /// Asks over `window`.
    DocumentLoader(QWidget &window, const WindowDialogs &dialogs, DocumentArea &documents,
        RecentPlaces &places, const WindowJobs &jobs);
    ~DocumentLoader() override;

    /// Opens a file, or switches to its tab when it is open already; asks before edits are thrown away.
    /// Without a code it is detected; a file that is open already stays as it is, and a notice offers to read
    /// it with the code. The path may be relative. The document that has the file, or will have it.
    ctlEditer *open(const QString &path, std::optional<CharCode> charCode, OpenedIn where = OpenedIn::View);
    /// Opens a file the user has chosen: in the document that was current then (or null), when nobody would
    /// miss that.
    void openChosen(ctlEditer *editor, const FileChoice &file);
    /// The same with one that was chosen outside of the window, in the document that is in view; in a tab of
    /// its own where that shall stay. The document that has the file, or will have it.
    ctlEditer *openChosen(const QString &path, std::optional<CharCode> charCode, OpenedIn where);
    /// Has the user choose the file.
    void askAndOpen();
    /// The same among the text files of a folder, which ends in "/".
    void askAndOpenIn(const QString &folder);
    /// Makes a document of a file that is not there yet, of the one in view when nobody would miss that; or
    /// switches to its tab. The document.
    ctlEditer *openNew(
        const QString &path, std::optional<CharCode> charCode, OpenedIn where = OpenedIn::View);
    /// Whether there is a document with the text.
    using Opened = std::function<void(bool isOpen)>;
    /// Opens a file's text as that of a document that was never saved, named so. There is no document when it
    /// cannot be read, which the user is told, or is stopped. Another code that all bytes fit is taken
    /// instead of the one given or detected, and UTF-16 is read as text. `opened` is called at the end, which
    /// may be at once; not at all where the document was closed before.
    void openUnsaved(const QString &path, const QString &name, std::optional<CharCode> charCode,
        const Opened &opened = {});
    /// The same with what comes from a pipe or the like, shown as it comes: the document is there at once.
    /// What has come when it ends, is stopped or cannot be read further is the text; of nothing it is a new
    /// document. So it is with what has come when the program ends at once. Where that fits another code it
    /// is read once more, as a reload is; stopped, or without the memory for that, the text stays as it is.
    void openInput(const SharedFd &input, std::optional<CharCode> charCode);
    /// Until it is read as it stays.
    bool isInputComing(const ctlEditer *editor) const;
    /// What has come by now is all. `then` is called when it is the text of a document that is to be saved
    /// like any other; with false where that was closed before.
    void endInput(const ctlEditer *editor, const std::function<void(bool isThere)> &then);
    /// The same as openUnsaved() with a document's file, read as the document was.
    void openFromDisk(const ctlEditer &editor, const QString &name, const Opened &opened = {});
    /// Reads a document's file again, as other programs have made it; asks before edits are thrown away.
    /// Cursor and view stay in their rows: those in which they are when the new text is there.
    void reload(ctlEditer *editor, CursorAtEnd atEnd = CursorAtEnd::StaysInRow);
    /// Asks whether to read the current document's file again, and does; nothing for one that has none.
    void askAndReload();
    /// Reads a document's file again with another code; asks before edits are thrown away.
    void reopen(ctlEditer *editor, CharCode charCode);
    /// The same as UTF-16 text. `read` is called when all of it was read, which may be at once; not at all
    /// where that is refused, stopped or fails.
    using Then = std::function<void()>;
    void reopenUtf16(ctlEditer *editor, Utf16Form form, const Then &read = {});

    /// Whether a file is so long that it is read behind the window.
    bool isLong(const QString &path) const;
    using Ended = std::function<void(ArrivingFile::End end)>;
    /// Reads a file behind the window, into a document that has nothing to lose, for whoever makes more of
    /// its text. The cursor goes nowhere, and the user is not told of a failure. `ended` is called when the
    /// document is held no more, as ArrivingFile::ended() tells; not at all where it was closed before. What
    /// is returned is there until then.
    const ArrivingFile &readBehind(ctlEditer *editor, const ArrivingFile::Source &source, const Ended &ended);

    /// Makes a document without text what it is now, whatever has come into it by then.
    std::function<void()> freshAgain(ctlEditer *editor);

    /// Stops the reading of a file whose text is to take the place of the document's; nothing else is
    /// stopped, nor what has come from a pipe.
    void stopReplacing(const ctlEditer *editor);
    /// Whether such a file is being read.
    bool isReplacing(const ctlEditer *editor) const;

    /// The document whose file is being read at once; null for none.
    const ctlEditer *loading() const { return m_loading; }

private:
    void askAndOpen(const FileChoice &start);
    void openAgain(ctlEditer *editor, const FileChoice &file, const QString &path, OpenedIn where);
    bool load(ctlEditer *editor, const FileChoice &file);
    void loadInto(ctlEditer *editor, const FileChoice &file, const Then &loaded = {});
    void loadAgain(ctlEditer *editor, const Then &loaded = {});
    bool isLarge(const FileChoice &file) const;
    void openBehind(ctlEditer *editor, const FileChoice &file);
    void show(ctlEditer *editor, OpenedIn where);
    void fillFreshBehind(ctlEditer *editor, const FileChoice &file);
    void fillBehind(ctlEditer *editor, const FileChoice &file, const Then &stopped);
    void replaceBehind(ctlEditer *editor, const ArrivingFile::Source &source, const Then &loaded);
    void readInputAgain(
        ctlEditer *editor, const std::shared_ptr<InputReading> &input, const ArrivingFile::As &as);
    void settleInputs();
    void tellInputEnded(const ctlEditer *editor, bool isThere);
    bool endUnsaved(ctlEditer *editor, bool isOpen);
    void readUnsaved(ctlEditer *editor, const FileChoice &file, const QString &name, const Opened &ended);
    bool loadUnsaved(ctlEditer *editor, const FileChoice &file, const QString &name);
    void loadUnsavedBehind(
        ctlEditer *editor, const FileChoice &file, const QString &name, const Opened &ended);
    enum class Failure { IsTold, IsNot };
    ArrivingFile &begin(ctlEditer *editor, const ArrivingFile::Source &source, ArrivingFile::Shown shown,
        const Ended &ended, Failure failure = Failure::IsTold);
    void noteEnd(ctlEditer *editor, ArrivingFile::End end, Failure failure);
    static void tellFailure(ctlEditer *editor, ReadFailure failure);
    /// Folder and name of a file, without looking at the disk. A "/" at the end is not part of the name.
    static FileChoice fileOf(const QString &path, std::optional<CharCode> charCode);
    /// Keys that were pressed before another text, or none, comes into view are not for that. What is shown
    /// when this happens elsewhere keeps its keys.
    void pauseKeysOf(const ctlEditer *editor) const;
    void loadAsUtf16(ctlEditer *editor, Utf16Form form, const Then &loaded = {});
    bool loadAgainAsUtf16(ctlEditer *editor, const FileChoice &file, Utf16Form form);
    bool mayReopen(ctlEditer &editor);
    void offerCode(ctlEditer *editor, CharCode charCode);
    bool isReloadWanted(const ctlEditer &editor);
    bool isReloadWanted(const QString &title, const QString &question);

    QWidget &m_window;
    const WindowDialogs &m_dialogs;
    DocumentArea &m_documents;
    RecentPlaces &m_places;
    const WindowJobs &m_jobs;
    const ctlEditer *m_loading = nullptr;
    std::map<const ctlEditer *, std::unique_ptr<ArrivingFile>> m_arriving;
    std::map<const ctlEditer *, std::vector<std::function<void(bool isThere)>>> m_inputEnds;
};
