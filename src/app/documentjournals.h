#pragma once

#include <QObject>

class DocumentArea;
class RecoveryJournals;
class ctlEditer;

/// Gives every document of the window its recovery journal, from when it is made until its user closes it,
/// and tells the user when there can be none. The text of a file that was deleted meanwhile is kept in it,
/// and left behind there when the document is closed.
class DocumentJournals : public QObject {
    Q_OBJECT
public:
    DocumentJournals(DocumentArea &documents, RecoveryJournals &journals);

    /// The document's file was looked at: it may be gone, or there again.
    void noteLook(const ctlEditer *editor);

private:
    void lookAtAll();
    void closeJournal(ctlEditer *editor);
    void writeSoon();
    void tellFailure();

    DocumentArea &m_documents;
    RecoveryJournals &m_journals;
};
