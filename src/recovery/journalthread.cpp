#include "recovery/journalthread.h"

#include "files/endorder.h"
#include "recovery/journalwriter.h"

#include <algorithm>

/// One document's journal in the writing thread.
struct JournalThread::Turn {
    Turn(int number, const QByteArray &folder, const FileCalls &calls)
        : journal(number)
        , writer(folder, calls)
    {
    }
    const int journal;
    JournalWriter writer;
    std::shared_ptr<const JournalWrite> write; ///< what was begun last
    bool isBusy = false;
};

JournalThread::JournalThread(QByteArray folder, const FileCalls &calls, std::function<void()> notify)
    : m_folder(std::move(folder))
    , m_calls(calls)
    , m_notify(std::move(notify))
{
}

JournalThread::~JournalThread()
{
    {
        const std::lock_guard lock(m_mutex);
        m_isEnding = true;
    }
    m_hasOrders.notify_one();
    if (m_thread.joinable())
        m_thread.join();
}

void JournalThread::write(int journal, std::shared_ptr<const JournalWrite> write)
{
    post({ Order::Kind::Write, journal, std::move(write) });
}

void JournalThread::rest(int journal)
{
    post({ Order::Kind::Rest, journal, {} });
}

void JournalThread::remove(int journal)
{
    post({ Order::Kind::Remove, journal, {} });
}

void JournalThread::leave(int journal)
{
    post({ Order::Kind::Leave, journal, {} });
}

void JournalThread::post(Order order)
{
    {
        const std::lock_guard lock(m_mutex);
        m_orders.push_back(std::move(order));
    }
    if (!m_thread.joinable())
        m_thread = std::thread([this] { run(); });
    m_hasOrders.notify_one();
}

std::vector<WriteResult> JournalThread::collect()
{
    std::vector<std::shared_ptr<const JournalWrite>> returned; // destroyed behind the lock
    const std::lock_guard lock(m_mutex);
    returned.swap(m_returned);
    return std::exchange(m_results, {});
}

bool JournalThread::wait(Until until, std::chrono::steady_clock::time_point end)
{
    std::unique_lock lock(m_mutex);
    return m_isIdle.wait_until(lock, end, [this, until] {
        return m_orders.empty() && !m_isWorking && (until == Until::AllWritten || !m_isAtLeisure);
    });
}

void JournalThread::run()
{
    std::deque<Order> orders;
    while (takeOrders(orders)) {
        for (Order &order : std::exchange(orders, {}))
            accept(std::move(order));
        if (isBusy())
            work();
        else
            workAtLeisure();
    }
    // Nothing is written any more, but what its user has closed goes.
    for (Order &order : orders)
        accept(std::move(order));
    for (auto &[journal, turn] : m_turns)
        giveBack(std::move(turn->write));
    m_turns.clear();
}

/// Waits for some where there is nothing else to do. False: it is to end.
bool JournalThread::takeOrders(std::deque<Order> &orders)
{
    std::unique_lock lock(m_mutex);
    m_isWorking = isBusy();
    m_isAtLeisure = turnAtLeisure() != nullptr;
    if (!m_isWorking && m_orders.empty())
        m_isIdle.notify_all();
    if (!m_isWorking && !m_isAtLeisure)
        m_hasOrders.wait(lock, [this] { return m_isEnding || !m_orders.empty(); });
    orders.swap(m_orders);
    m_isWorking = m_isWorking || !orders.empty();
    return !m_isEnding;
}

void JournalThread::accept(Order &&order)
{
    if (order.kind == Order::Kind::Write)
        return begin(std::move(order));
    const auto found = m_turns.find(order.journal);
    if (found == m_turns.end())
        return;
    Turn &turn = *found->second;
    turn.isBusy = false;
    turn.writer.rest();
    giveBack(std::move(turn.write));
    if (order.kind == Order::Kind::Remove)
        turn.writer.remove();
    if (order.kind != Order::Kind::Rest)
        m_turns.erase(found);
    if (order.kind == Order::Kind::Leave)
        tell({ order.journal, 0, WriteResult::Of::Leaving });
}

void JournalThread::begin(Order &&order)
{
    std::unique_ptr<Turn> &turn = m_turns[order.journal];
    if (!turn)
        turn = std::make_unique<Turn>(order.journal, m_folder, m_calls);
    turn->writer.begin(*order.write);
    turn->isBusy = true;
    giveBack(std::exchange(turn->write, std::move(order.write)));
}

bool JournalThread::isBusy() const
{
    return std::ranges::any_of(m_turns, [](const auto &entry) { return entry.second->isBusy; });
}

JournalThread::Turn *JournalThread::turnAtLeisure() const
{
    const auto found = std::ranges::find_if(
        m_turns, [](const auto &entry) { return entry.second->writer.hasLeisureWork(); });
    return found == m_turns.end() ? nullptr : found->second.get();
}

void JournalThread::work()
{
    const EndOrder::Delay delay;
    for (auto &[journal, turn] : m_turns) {
        if (!turn->isBusy)
            continue;
        const JournalWriter::Progress progress = turn->writer.step();
        turn->isBusy = progress == JournalWriter::Progress::More;
        if (!turn->isBusy)
            tell({ journal, progress == JournalWriter::Progress::Failed ? turn->writer.error() : 0 });
    }
}

void JournalThread::workAtLeisure()
{
    Turn *const turn = turnAtLeisure();
    if (turn && turn->writer.stepAtLeisure() == JournalWriter::Progress::Failed)
        tell({ turn->journal, turn->writer.error(), WriteResult::Of::Leisure });
}

void JournalThread::tell(const WriteResult &result)
{
    {
        const std::lock_guard lock(m_mutex);
        m_results.push_back(result);
    }
    m_notify();
}

void JournalThread::giveBack(std::shared_ptr<const JournalWrite> &&write)
{
    if (!write)
        return;
    const std::lock_guard lock(m_mutex);
    m_returned.push_back(std::move(write));
}
