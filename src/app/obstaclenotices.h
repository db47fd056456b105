#pragma once

#include "files/filecalls.h"
#include "files/writeobstacle.h"

#include <QObject>

class DocumentArea;
class DocumentSaver;
class ctlEditer;

/// Tells the user, as soon as a file was read, that it could not be saved there.
class ObstacleNotices : public QObject {
    Q_OBJECT
public:
    /// `calls` is not owned.
    ObstacleNotices(
        DocumentArea &documents, DocumentSaver &saver, const FileCalls &calls = FileCalls::system());

private:
    void check(ctlEditer *editor);
    void tell(ctlEditer *editor, WriteObstacle obstacle);
    static QString textOf(WriteObstacle obstacle);

    DocumentArea &m_documents;
    DocumentSaver &m_saver;
    const FileCalls &m_calls;
};
