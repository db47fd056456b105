#pragma once

#include "files/fileversion.h"

#include <QObject>

class DocumentArea;
class RecoveryJournals;
class ctlEditer;

/// Gives every document of the window its recovery journal, from when it is made until its user closes it or
/// turns recovery off, and tells the user when there can be none. The text of a file that was deleted or
/// written over meanwhile is kept in it while the document is open; that of a deleted one is left behind
/// there when it is closed.
class DocumentJournals : public QObject {
    Q_OBJECT
public:
    DocumentJournals(DocumentArea &documents, RecoveryJournals &journals);

    /// Recovery may have been turned on or off.
    void applySettings();
    /// The document's file was looked at: it may be gone or another one, or there again.
    void noteLook(ctlEditer *editor, FileChange change);

private:
    void attach(ctlEditer *editor);
    void lookAtAll();
    void closeJournal(ctlEditer *editor);
    void writeSoon();
    void tellFailure();

    DocumentArea &m_documents;
    RecoveryJournals &m_journals;
};
