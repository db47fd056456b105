#pragma once

#include "settings/sessionfiles.h"

#include <QObject>
#include <QTimer>

class DocumentArea;
class DocumentLoader;
class ctlEditer;

/// Has the files open again that were open when the program last ended, where the settings want that: in
/// their order, each where its cursor and view were, and in the code that its user has chosen.
///
/// Which are open is written soon after that changes, for a program that is killed, and at the end.
class LastSession : public QObject {
    Q_OBJECT
public:
    /// A child of the documents.
    LastSession(DocumentArea &documents, DocumentLoader &loader);

    /// Opens them, the first time it is called. Files that are not there any more, or cannot be read, are
    /// passed over.
    void open();
    /// The documents are about to be closed because the program ends: what is open now counts, until a
    /// document is made.
    void beginEnd();
    /// It does not end: what is open then counts again.
    void cancelEnd();
    /// Writes what counts, at the end.
    void write();
    /// Others may be wanted now.
    void applySettings();

private:
    SessionFiles openFiles() const;
    void noteChange();
    void restore(ctlEditer *editor, const SessionFile &file);

    DocumentArea &m_documents;
    DocumentLoader &m_loader;
    QTimer m_soon; ///< runs while something has changed that is not written
    bool m_hasOpened = false;
    std::optional<SessionFiles> m_atEnd; ///< set while the documents are being closed
};
