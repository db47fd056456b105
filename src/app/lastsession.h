#pragma once

#include "app/sessionopening.h"

#include <QObject>
#include <QTimer>

#include <optional>

class DocumentArea;
class DocumentLoader;

/// Has the files open again that were open when the program last ended, where the settings want that: in
/// their order, each where its cursor and view were, and in the code that its user has chosen.
///
/// Which are open is written soon after that changes, for a program that is killed, and at the end.
class LastSession : public QObject {
    Q_OBJECT
public:
    /// Not owned, and live longer.
    LastSession(DocumentArea &documents, DocumentLoader &loader);

    /// Begins to open them, the first time it is called; requests come behind them. Files that are not there
    /// any more, or cannot be read, are passed over.
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

    DocumentArea &m_documents;
    DocumentLoader &m_loader;
    QTimer m_soon; ///< runs while something has changed that is not written
    bool m_hasOpened = false;
    std::optional<SessionOpening> m_opening; ///< while they are opened
    std::optional<SessionFiles> m_atEnd; ///< set while the documents are being closed
};
