#pragma once

#include "files/fileversion.h"
#include "jobs/job.h"

#include <map>

class ctlEditer;

/// Reads through files of documents that are too large to be read in passing, behind the window: whether they
/// are still what they were.
class ContentReader : public QObject {
    Q_OBJECT
public:
    /// `jobs` and `calls` are not owned.
    explicit ContentReader(JobRunner &jobs, const FileCalls &calls = FileCalls::system());

    /// A file that is read already is read once more if this reading comes to nothing: it may have been
    /// written meanwhile. What cannot be read is not told of.
    void read(ctlEditer *editor);

signals:
    /// Of a document that has the same file as when it was asked for, and is open.
    void seen(ctlEditer *editor, const SeenContent &content);

private:
    struct Reading {
        std::unique_ptr<Job> job;
        bool isAskedAgain = false;
    };
    void start(ctlEditer *editor);
    void forget(const QObject *document);
    void finish(ctlEditer *editor, const QString &file, const std::optional<SeenContent> &content);

    JobRunner &m_jobs;
    const FileCalls &m_calls;
    std::map<const QObject *, Reading> m_readings; ///< by their documents
};
