#pragma once

#include <QCoreApplication>

#include <functional>

class DocumentArea;
class DocumentLoader;
class DocumentSaver;
class EditRuns;
class QWidget;
class RecentPlaces;
class ctlEditer;

/// What becomes of edits when all documents are closed.
enum class EditsAtClosing { Ask, Save };

/// Closes documents, and asks what is to become of their edits.
class DocumentCloser {
    Q_DECLARE_TR_FUNCTIONS(frmMain)
public:
    /// Asks over `window`.
    DocumentCloser(QWidget &window, DocumentArea &documents, DocumentLoader &loader, DocumentSaver &saver,
        EditRuns &edits, RecentPlaces &places);

    /// Asks about an edited document and saves it on "Yes". Waits for a long edit before and for a save that
    /// is under way; the window goes on meanwhile. Standard input is asked about while it comes, and what has
    /// come by the answer, or by the choice of a name, is all, but for "Cancel". False when it is not to be
    /// closed, or is closed by then.
    bool saveIfWanted(ctlEditer *editor);
    /// A long edit of one of them, or text from standard input.
    bool isTextComing() const;
    /// Until no text is coming and no save is under way, the same way.
    void waitForWork();
    /// Closes the current document, unless the user wants to keep it; behind a save or a long edit, when that
    /// is over.
    void askAndClose();
    /// The same with any document; the one that was current before stays so.
    void askAndClose(ctlEditer *editor);
    /// Closes all but one document, from the last tab backwards, until that is cancelled or a save fails.
    void closeOthers(ctlEditer *kept);
    /// Closes every document, from the last tab backwards. False when that was cancelled or a save failed;
    /// what was passed by then stays closed.
    bool closeAll(EditsAtClosing edits);
    /// Without asking. The document becomes the most recent file.
    void close(ctlEditer *editor);

private:
    enum class Answer { Yes, No, Cancel };

    Answer askToSave(const ctlEditer &editor);
    void saveIfWanted(ctlEditer *editor, const std::function<void(bool mayClose)> &then);
    void saveInputIfWanted(ctlEditer *editor, const std::function<void(bool mayClose)> &then);
    void saveInput(ctlEditer *editor, const std::function<void(bool isSaved)> &then);
    bool isInputToLose(const ctlEditer *editor) const;
    bool mayCloseLast(ctlEditer *editor, EditsAtClosing edits);
    bool isTextComing(const ctlEditer *editor) const;
    void whenTextIsThere(ctlEditer *editor, const std::function<void(bool isThere)> &then);
    bool waitForText(ctlEditer *editor);
    bool mayGo(const ctlEditer &editor) const;
    bool mayCloseShown(ctlEditer *editor);
    void closeUneditedFromTheLast();
    void closeUnedited(const QList<ctlEditer *> &editors);
    void closeBehind(ctlEditer *editor, ctlEditer *shown);

    QWidget &m_window;
    DocumentArea &m_documents;
    DocumentLoader &m_loader;
    DocumentSaver &m_saver;
    EditRuns &m_edits;
    RecentPlaces &m_places;
};
