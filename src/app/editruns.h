#pragma once

#include "editor/indentation.h"

#include <QObject>

#include <functional>
#include <map>
#include <memory>
#include <vector>

class DocumentArea;
class LongEdit;
class ctlEditer;
struct BroughtText;
struct WindowJobs;

/// Makes the edits that take too long for the editors to make them in one go: blocks that are moved, and what
/// is pasted.
class EditRuns : public QObject {
public:
    /// Whether the edit was made: neither stopped nor failed, and the document is not closed.
    using Then = std::function<void(bool isMade)>;

    /// `jobs` is not owned. Documents that are there already make all edits themselves.
    EditRuns(DocumentArea &documents, const WindowJobs &jobs);
    ~EditRuns() override;

    bool isUnderWay(const ctlEditer *editor) const { return m_underWay.contains(editor); }
    /// Calls `then` at the end of the edit that is under way.
    void whenEnded(const ctlEditer *editor, const Then &then);
    /// The document is to be closed with the text that it has.
    void stop(const ctlEditer *editor);

private:
    struct UnderWay {
        std::unique_ptr<LongEdit> edit;
        std::vector<Then> then;
    };
    bool indent(ctlEditer &editor, TextRange lines, Indentation direction);
    bool paste(ctlEditer &editor, const BroughtText &brought);
    void begin(ctlEditer &editor, std::unique_ptr<LongEdit> edit);
    void end(ctlEditer &editor, bool isMade);

    DocumentArea &m_documents;
    const WindowJobs &m_jobs;
    std::map<const ctlEditer *, UnderWay> m_underWay;
};
