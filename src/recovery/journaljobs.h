#pragma once

#include "files/filecalls.h"
#include "jobs/job.h"
#include "jobs/poolrunner.h"
#include "recovery/journalwrite.h"

#include <map>

class JournalWriter;

/// What became of a write.
struct WriteResult {
    int journal = 0;
    int error = 0; ///< of errno; 0: it is on the disk
    enum class Of {
        Write,
        Leisure, ///< what is done beside writes, which tells failures alone
        Leaving, ///< others may find the journal now
    };
    Of of = Of::Write;
};

/// Has all journals written, by jobs that take turns step by step, so that a long write keeps no other
/// waiting.
///
/// They have one thread for themselves, which waits for the disk of the journals: where that does not answer,
/// documents are read and saved all the same. All functions are for the thread of the documents, and none but
/// wait() and the destructor waits for a disk.
class JournalJobs : public QObject {
    Q_OBJECT
public:
    /// `folder` ends in "/"; `calls` is not owned.
    JournalJobs(QByteArray folder, const FileCalls &calls);
    /// What is not written by then is not written; the journals stay, but for those that are to go.
    ~JournalJobs() override;

    /// A number for a journal.
    int newJournal() { return ++m_lastJournal; }
    /// Of the journal of that number, not while another write of it is under way.
    void write(int number, std::shared_ptr<const JournalWrite> write);
    /// The journal stays as it is, locked; nothing more is written to it.
    void rest(int number);
    /// The journal goes.
    void remove(int number);
    /// It stays, for others to find.
    void leave(int number);

    enum class Until { AllWritten, NothingLeft };
    /// Until all orders are carried out, or also what is done at leisure; or `end` has come. Whether it is
    /// so. What comes of it is told meanwhile.
    bool wait(Until until, QDeadlineTimer end);

    /// For other work that has to do with that disk.
    JobRunner &runner() { return m_runner; }

signals:
    void told(const WriteResult &result);

private:
    struct Journal {
        std::shared_ptr<JournalWriter> writer; ///< of the job's thread, while there is one
        std::shared_ptr<const JournalWrite> begun; ///< the last write, which the writer refers to
        std::unique_ptr<Job> job; ///< null: there is nothing to do
        bool isAtLeisure = false; ///< the job is
    };
    template <class Work, class Finish>
    void start(Journal &journal, std::unique_ptr<Work> work, Finish finish);
    template <class Finish> void endWriting(int number, void (JournalWriter::*last)(), Finish finish);
    void noteWritten(int number, int error);
    void beginLeisure(int number);
    Job *jobToAwait(Until until) const;

    const QByteArray m_folder;
    const FileCalls &m_calls;
    int m_lastJournal = 0;
    std::map<int, Journal> m_journals; ///< by number
    PoolRunner m_runner; ///< the last one: its jobs end first
};
