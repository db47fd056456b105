#pragma once

#include "files/oldcopy.h"
#include "jobs/job.h"

#include <QObject>

class DocumentArea;
class DocumentLoader;

/// Tells the user of copies that are left of files whose saving was interrupted, by a power cut say, one
/// after the other; and cleans up what such a save has left beside its file: at the start where an earlier
/// program has saved, later beside the files that are opened and saved.
///
/// A copy stays, and is told of at every start, until the user has it deleted.
class InterruptedSaves : public QObject {
    Q_OBJECT
public:
    /// `jobs` has a thread for each job, since a disk may not answer. Nothing is owned.
    InterruptedSaves(DocumentArea &documents, DocumentLoader &loader, JobRunner &jobs);

    /// Looks for copies, and tells of the newest; and begins to clean up.
    void tell();

private:
    void tellNext();
    QString text() const;
    void openBoth();
    void remove();
    void goOn();

    DocumentArea &m_documents;
    DocumentLoader &m_loader;
    JobRunner &m_jobs;
    std::unique_ptr<Job> m_removal;
    QList<LostCopy> m_copies; ///< that the user was not told of in this run, the present one first
};
