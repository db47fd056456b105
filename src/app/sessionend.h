#pragma once

#include <QList>
#include <QObject>

class DocumentArea;
class DocumentCloser;
class RecoveryJournals;
class ctlEditer;

/// What the end of the user's session asks of the documents.
class SessionEnd : public QObject {
    Q_OBJECT
public:
    /// Answers the session manager from then on, while it lives. A child of the documents.
    SessionEnd(DocumentArea &documents, DocumentCloser &closer, RecoveryJournals &journals);

    /// Asks about edited documents, from the last tab backwards; where nothing may be asked their text is
    /// kept for the next start. False when the session is not to end: that was cancelled, a save failed, a
    /// dialog waits for its answer, or text that is coming for a dialog, or the text cannot be kept. All
    /// documents stay open, since the session may go on all the same; those whose edits nobody wanted are
    /// closed without asking when it really ends.
    bool prepare(bool mayAsk);

signals:
    /// The settings were written, and what other programs had written was taken over.
    void settingsTakenOver();

private:
    bool hasEdits() const;
    bool askAll();
    void forget(ctlEditer *editor);
    void closeUnwanted();

    DocumentArea &m_documents;
    DocumentCloser &m_closer;
    RecoveryJournals &m_journals;
    QList<ctlEditer *> m_unwanted; ///< not to be saved at the end of the session, and not edited since
};
