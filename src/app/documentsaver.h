#pragma once

#include "app/savingfile.h"
#include "app/windowdialogs.h"

#include <QPointer>

#include <map>
#include <vector>

class DocumentArea;
class EditRuns;
class RecentPlaces;
struct WindowJobs;

/// Saves documents: the one place that writes their files.
///
/// A long text is written behind the window (SavingFile), and what has come of it is known later than here.
class DocumentSaver : public QObject {
public:
    /// Whether the document was written.
    using Then = std::function<void(bool isSaved)>;

    /// Asks over `window`. `jobs` is not owned.
    DocumentSaver(QWidget &window, const WindowDialogs &dialogs, DocumentArea &documents,
        RecentPlaces &places, EditRuns &edits, const WindowJobs &jobs);
    ~DocumentSaver() override;

    /// Saves under the document's own name and codes; asks for a name when it has none. `then` is called at
    /// the end, which may be at once, and also when the document was closed before.
    void beginSave(ctlEditer *editor, const Then &then = {});
    /// The same as another file; without a code or a line end the document keeps its own.
    void beginSaveTo(ctlEditer *editor, const FileChoice &file, const Then &then = {});
    /// Asks for a name until the document is written under one; the dialog comes with a code chosen, if one
    /// is given. Not saved: the user gave up.
    void beginSaveAs(ctlEditer *editor, std::optional<CharCode> charCode = {}, const Then &then = {});
    /// Asks for the name alone, also while the text comes. Nothing: the user gave up.
    std::optional<FileChoice> askForName(ctlEditer *editor);
    /// Goes on with the name that was given, when the text is there, as beginSaveAs() does.
    void beginSaveUnder(ctlEditer *editor, const FileChoice &file, const Then &then);
    /// The same with a code or a line end chosen.
    void beginSaveAsIn(
        ctlEditer *editor, std::optional<CharCode> charCode, std::optional<ReturnCode> returnCode);
    /// The same; the end is waited for in an event loop, where the window goes on. Whether it was written.
    bool save(ctlEditer *editor);
    bool saveTo(ctlEditer *editor, const FileChoice &file);
    bool saveAs(ctlEditer *editor, std::optional<CharCode> charCode = {});
    /// Saves the edited documents in the order of their ids, until one cannot be saved. A long edit of one is
    /// waited for, behind this call; where that is stopped, so is this.
    void saveAll();

    /// A save of it is under way.
    bool isSaving(const ctlEditer *editor) const { return m_saving.contains(editor); }
    /// Calls `then` at the end of the save that is under way.
    void whenSaved(const ctlEditer *editor, const Then &then);
    /// Begins something that calls its argument at its end, and waits for that in an event loop, where the
    /// window goes on. False also where the program ends before.
    static bool wait(const std::function<void(const Then &)> &begin);
    /// Until no save is under way.
    void waitForAll();
    /// The program ends: what is under way leaves its files as they were, but for what was too far for that.
    /// Whether there was such, whose documents are saved.
    bool giveUp(QDeadlineTimer end);

private:
    struct UnderWay {
        std::unique_ptr<SavingFile> file;
        std::vector<Then> then;
    };
    bool isLarge(const ctlEditer &editor) const;
    void saveBehind(ctlEditer *editor, const FileChoice &file, const Then &then);
    void endBehind(ctlEditer *editor, const SaveResult &result, JobOutcome outcome);
    void finish(ctlEditer *editor, bool isSaved, const Then &then);
    void saveRest(QList<int> ids, const QPointer<ctlEditer> &before);
    std::optional<FileChoice> askForName(ctlEditer *editor, const FileChoice &start);
    void askAgain(ctlEditer *editor, const FileChoice &start, const Then &then);

    QWidget &m_window;
    const WindowDialogs &m_dialogs;
    DocumentArea &m_documents;
    RecentPlaces &m_places;
    EditRuns &m_edits;
    const WindowJobs &m_jobs;
    std::map<const ctlEditer *, UnderWay> m_saving;
};
