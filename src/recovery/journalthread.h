#pragma once

#include "files/filecalls.h"
#include "recovery/journalwrite.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

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

/// The one thread that writes all journals. It takes turns, so that a long write keeps no other waiting, and
/// begins with the first order.
///
/// Snapshots go in and come back: no order is destroyed but by collect() and the destructor, in the thread of
/// the caller. All functions are for that one thread, and none but wait() waits for a disk.
class JournalThread {
public:
    /// `folder` ends in "/"; `calls` is not owned. `notify` is called in the writing thread when there is
    /// something to collect.
    JournalThread(QByteArray folder, const FileCalls &calls, std::function<void()> notify);
    /// What is not written by then is not written; the journals stay, but for those that are to go.
    ~JournalThread();
    Q_DISABLE_COPY_MOVE(JournalThread)

    /// A number for a journal.
    int newJournal() { return ++m_lastJournal; }
    void write(int journal, std::shared_ptr<const JournalWrite> write);
    /// The journal stays as it is, locked; nothing more is written to it.
    void rest(int journal);
    /// The journal goes.
    void remove(int journal);
    /// It stays, for others to find.
    void leave(int journal);

    /// What has come of the writes since the last call.
    std::vector<WriteResult> collect();
    enum class Until { AllWritten, NothingLeft };
    /// Until all orders are carried out, or also what is done at leisure; or `end` has come. Whether it is
    /// so.
    bool wait(Until until, std::chrono::steady_clock::time_point end);

private:
    struct Order {
        enum class Kind { Write, Rest, Remove, Leave };
        Kind kind;
        int journal;
        std::shared_ptr<const JournalWrite> write;
    };
    struct Turn;

    void post(Order order);
    void run();
    bool takeOrders(std::deque<Order> &orders);
    void accept(Order &&order);
    void begin(Order &&order);
    bool isBusy() const;
    Turn *turnAtLeisure() const;
    void work();
    void workAtLeisure();
    void tell(const WriteResult &result);
    void giveBack(std::shared_ptr<const JournalWrite> &&write);

    const QByteArray m_folder;
    const FileCalls &m_calls;
    const std::function<void()> m_notify;
    int m_lastJournal = 0;

    std::map<int, std::unique_ptr<Turn>> m_turns; ///< by journal; of the writing thread alone

    std::mutex m_mutex; ///< for what follows
    std::condition_variable m_hasOrders;
    std::condition_variable m_isIdle;
    std::deque<Order> m_orders;
    std::vector<std::shared_ptr<const JournalWrite>> m_returned;
    std::vector<WriteResult> m_results;
    bool m_isWorking = false; ///< on orders that were taken
    bool m_isAtLeisure = false; ///< there is something that can wait
    bool m_isEnding = false;

    std::thread m_thread;
};
