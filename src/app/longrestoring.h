#pragma once

#include "app/arrivingfile.h"
#include "editor/worksign.h"
#include "jobs/job.h"
#include "jobs/workturns.h"
#include "recovery/leftbehind.h"
#include "recovery/restoring.h"

#include <QByteArrayList>
#include <QDeadlineTimer>
#include <QObject>

#include <optional>

class DocumentArea;
class DocumentLoader;
class JournalLook;
class RecoveryJournals;
struct WindowJobs;
class ctlEditer;

/// A long text that is to come back, with its journal locked against others.
struct LongText {
    LeftBehind found;
    ClaimedJournal claimed;
    SharedJournal journal; ///< the same one, open
};

/// A long text on its way back into a document, behind the window: its file is read and looked through by
/// jobs, its edits are made in turns of the event loop, and it is in the document at once.
///
/// The document is held until then, and the strip tells how far it is.
///
/// Where it is given up, or destroyed, the journal stays and is locked no more.
class LongRestoring : public QObject {
    Q_OBJECT
public:
    /// What all of them need; nothing is owned.
    struct Parts {
        DocumentArea &documents;
        DocumentLoader &loader;
        RecoveryJournals &journals;
        const WindowJobs &jobs;
    };
    /// Begins at once, with a document that has nothing to lose, and may be closed before this goes.
    LongRestoring(ctlEditer &editor, LongText &&text, const Parts &parts);
    ~LongRestoring() override;

signals:
    /// One of these is the last signal; whoever is told may destroy this. The document is held no more.
    /// Stopped, or failed for want of memory: it may have text that is to be taken away.
    void stopped();
    void failed();
    void ended(const Restored &restored);

private:
    void readFile();
    void readBehind(const FileChoice &file, void (LongRestoring::*next)(ArrivingFile::End end));
    bool hasFailedForMemory(ArrivingFile::End end) const;
    void endReading(ArrivingFile::End end);
    void readNextCopy();
    void endReadingCopy(ArrivingFile::End end);
    void look(TextSnapshot text);
    void note(const JobProgress &progress);
    void endLook(JobOutcome outcome);
    void goOn();
    bool prepare(QDeadlineTimer end);
    void endTurns();
    void finish();
    void hold(WorkNotice::Work work);
    void release();
    void giveUp();
    void stop();
    void fail();

    ctlEditer &m_editor;
    TextDocument &m_document;
    LongText m_text; ///< its journal until the restoring has it
    const Parts m_parts;
    const WorkSign::Clock::time_point m_begun = WorkSign::Clock::now();
    const ArrivingFile *m_arriving = nullptr; ///< while a file is read
    bool m_isFileRead = false;
    QByteArrayList m_copies; ///< that are still to be read
    bool m_areCopiesKnown = false;
    std::optional<WorkSign> m_sign; ///< while this holds the document
    JournalLook *m_look = nullptr; ///< owned by the job
    std::optional<Job> m_job;
    std::optional<Restoring> m_restoring;
    WorkTurns m_turns;
};
