#pragma once

#include "files/oldcopy.h"

#include <QObject>

class DocumentArea;
class DocumentLoader;

/// Tells the user of copies that are left of files whose saving was interrupted, by a power cut say, one
/// after the other; and cleans up beside the files that are opened and saved what such a save has left there.
///
/// A copy stays, and is told of at every start, until the user has it deleted.
class InterruptedSaves : public QObject {
    Q_OBJECT
public:
    InterruptedSaves(DocumentArea &documents, DocumentLoader &loader);

    /// Looks for copies, and tells of the newest.
    void tell();

private:
    void tellNext();
    QString text() const;
    void openBoth();
    void remove();
    void goOn();

    DocumentArea &m_documents;
    DocumentLoader &m_loader;
    QList<LostCopy> m_copies; ///< that the user was not told of in this run, the present one first
};
