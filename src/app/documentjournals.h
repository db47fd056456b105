#pragma once

#include <QObject>

class DocumentArea;
class RecoveryJournals;
class ctlEditer;

/// Gives every document of the window its recovery journal, from when it is made until its user closes it,
/// and tells the user when there can be none. The text of a file that was deleted meanwhile is left behind in
/// it.
class DocumentJournals : public QObject {
    Q_OBJECT
public:
    DocumentJournals(DocumentArea &documents, RecoveryJournals &journals);

private:
    void closeJournal(ctlEditer *editor);
    void writeSoon();
    void tellFailure();

    DocumentArea &m_documents;
    RecoveryJournals &m_journals;
};
