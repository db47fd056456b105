#pragma once

#include "editor/indentation.h"

#include <QObject>

#include <map>
#include <memory>

class DocumentArea;
class LongEdit;
class ctlEditer;
struct BroughtText;
struct WindowJobs;

/// Makes the edits that take too long for the editors to make them in one go: blocks that are moved, and what
/// is pasted.
class EditRuns : public QObject {
public:
    /// `jobs` is not owned. Documents that are there already make all edits themselves.
    EditRuns(DocumentArea &documents, const WindowJobs &jobs);
    ~EditRuns() override;

    /// The document is to be saved or closed: what has not come into its text by now is not wanted any more.
    void stop(const ctlEditer *editor);

private:
    bool indent(ctlEditer &editor, TextRange lines, Indentation direction);
    bool paste(ctlEditer &editor, const BroughtText &brought);
    void begin(ctlEditer &editor, std::unique_ptr<LongEdit> edit);
    void end(ctlEditer &editor);

    DocumentArea &m_documents;
    const WindowJobs &m_jobs;
    std::map<const ctlEditer *, std::unique_ptr<LongEdit>> m_underWay;
};
