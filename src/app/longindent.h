#pragma once

#include "editor/indentation.h"
#include "editor/worksign.h"
#include "jobs/job.h"
#include "platform/freeturn.h"

#include <QObject>

#include <optional>

class DocumentArea;
class IndentWork;
class JobRunner;
class TextDocument;
class ctlEditer;

/// One block that is too long to be moved in one go, on its way: its lines are made anew behind the window,
/// and take the place of the old ones as one edit.
///
/// The document is held until then, and the strip tells how far it is. Where a dialog or a run of
/// replacements is in the way of the edit, that waits for them.
class LongIndent : public QObject {
    Q_OBJECT
public:
    /// Begins at once. Nothing is owned; the document may be closed before this goes.
    LongIndent(ctlEditer &editor, TextRange lines, Indentation direction, DocumentArea &documents,
        JobRunner &runner);
    ~LongIndent() override;

    /// The text stays as it was; ended() comes at once.
    void stop();

signals:
    /// The last signal; this may be destroyed by whoever is told. The document is held no more.
    void ended();

private:
    void begin();
    void note(const JobProgress &progress);
    void finish(JobOutcome outcome);
    void takeOver();
    void put();
    void fail();
    void end();

    ctlEditer &m_editor;
    TextDocument &m_document;
    const TextRange m_lines;
    const Indentation m_direction;
    DocumentArea &m_documents;
    JobRunner &m_runner;
    const CursorPlace m_anchor; ///< at the beginning
    const CursorPlace m_cursor;
    std::optional<WorkSign> m_sign; ///< until the end
    JobOutcome m_outcome = JobOutcome::Stopped;
    FreeTurn m_end{ [this] { takeOver(); } };
    IndentWork *m_work = nullptr; ///< owned by the job
    std::optional<Job> m_job;
};
