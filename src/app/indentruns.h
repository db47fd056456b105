#pragma once

#include "editor/indentation.h"

#include <QObject>

#include <map>
#include <memory>

class DocumentArea;
class LongIndent;
class ctlEditer;
struct WindowJobs;

/// Moves the blocks of documents that are too long for the editors to move them in one go.
class IndentRuns : public QObject {
public:
    /// `jobs` is not owned. Documents that are there already move their blocks themselves.
    IndentRuns(DocumentArea &documents, const WindowJobs &jobs);
    ~IndentRuns() override;

    /// The document is to be saved or closed: what has not come into its text by now is not wanted any more.
    void stop(const ctlEditer *editor);

private:
    bool begin(ctlEditer &editor, TextRange lines, Indentation direction);
    void end(ctlEditer &editor);

    DocumentArea &m_documents;
    const WindowJobs &m_jobs;
    std::map<const ctlEditer *, std::unique_ptr<LongIndent>> m_underWay;
};
