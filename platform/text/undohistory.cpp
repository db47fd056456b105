#include "platform/text/undohistory.h"

#include <deque>
#include <vector>

namespace {

using Kind = UndoCommand::Kind;

/// What undo() takes back at once.
struct Step {
    std::vector<UndoCommand> edits;
    bool grouped = false;
    bool open = false; ///< its group is not closed yet

    qint64 commandCount() const { return qint64(edits.size()) + (grouped ? (open ? 1 : 2) : 0); }
    const UndoCommand &command(qint64 index) const
    {
        static const UndoCommand begin{ Kind::BeginGroup, 0, {} };
        static const UndoCommand end{ Kind::EndGroup, 0, {} };
        if (!grouped)
            return edits[size_t(index)];
        if (index == 0)
            return begin;
        return index <= qint64(edits.size()) ? edits[size_t(index - 1)] : end;
    }
};

/// Puts a command into effect, or its inverse; returns where the cursor belongs afterwards.
qint64 apply(const UndoCommand &command, bool inverse, TextStore &store, const UndoHistory::Changed &changed)
{
    const bool insert = (command.kind == Kind::Insert) != inverse;
    const qint64 length = command.text.length();
    if (insert)
        store.insert(command.offset, command.text);
    else
        store.replace(command.offset, length, {});
    if (changed)
        changed(command.offset, insert ? 0 : length, insert ? length : 0);
    return command.offset + (insert ? length : 0);
}

} // namespace

struct UndoHistory::State {
    std::deque<Step> steps; ///< oldest first; from `done` on they can be redone
    size_t done = 0;
    size_t depth = 256;
    qint64 commandCount = 0; ///< of the steps before `done`
    int groupDepth = 0;
    Joining lastJoining = Joining::Never; ///< how the newest command was recorded

    void record(UndoCommand &&command, Joining joining);
    bool join(UndoCommand &command, Joining joining);
    UndoCommand *newestEdit();
    void forgetRedo();
    void limitDepth();
};

/// The command a new one may join, null when there is none.
UndoCommand *UndoHistory::State::newestEdit()
{
    if (done == 0)
        return nullptr;
    Step &step = steps[done - 1];
    const bool reachable = groupDepth > 0 ? step.open : !step.grouped;
    return reachable && !step.edits.empty() ? &step.edits.back() : nullptr;
}

bool UndoHistory::State::join(UndoCommand &command, Joining joining)
{
    UndoCommand *last = newestEdit();
    if (joining == Joining::Never || joining != lastJoining || !last || last->kind != command.kind)
        return false;
    const bool insert = command.kind == Kind::Insert;
    if (command.offset == last->offset + (insert ? last->text.length() : 0)) {
        last->text.append(std::move(command.text));
        return true;
    }
    if (insert || command.offset + command.text.length() != last->offset)
        return false;
    last->offset = command.offset;
    last->text.prepend(std::move(command.text));
    return true;
}

void UndoHistory::State::forgetRedo()
{
    steps.resize(done);
}

void UndoHistory::State::record(UndoCommand &&command, Joining joining)
{
    if (command.text.length() == 0)
        return;
    forgetRedo();
    const bool joined = join(command, joining);
    lastJoining = joining;
    if (joined)
        return;
    if (groupDepth == 0 || done == 0 || !steps.back().open) {
        steps.push_back({ {}, groupDepth > 0, groupDepth > 0 });
        ++done;
        commandCount += groupDepth > 0;
    }
    steps.back().edits.push_back(std::move(command));
    ++commandCount;
    limitDepth();
}

/// Joins the two oldest steps until no more than `depth` are left.
void UndoHistory::State::limitDepth()
{
    while (done > depth) {
        Step &oldest = steps[0];
        Step &second = steps[1];
        commandCount -= oldest.commandCount() + second.commandCount();
        for (UndoCommand &edit : second.edits)
            oldest.edits.push_back(std::move(edit));
        oldest.grouped = true;
        oldest.open = second.open;
        commandCount += oldest.commandCount();
        steps.erase(steps.begin() + 1);
        --done;
    }
}

UndoHistory::UndoHistory(int depth)
    : d(std::make_unique<State>())
{
    setDepth(depth);
}

UndoHistory::~UndoHistory() = default;

int UndoHistory::depth() const
{
    return int(d->depth);
}

void UndoHistory::setDepth(int steps)
{
    d->depth = size_t(qMax(1, steps));
    d->limitDepth();
}

bool UndoHistory::canUndo() const
{
    return d->done > 0;
}
bool UndoHistory::canRedo() const
{
    return d->done < d->steps.size();
}
qint64 UndoHistory::undoSteps() const
{
    return qint64(d->done);
}

void UndoHistory::clear()
{
    d->steps.clear();
    d->done = 0;
    d->commandCount = 0;
    d->lastJoining = Joining::Never;
}

void UndoHistory::recordInsert(qint64 offset, TextPiece text, Joining joining)
{
    d->record({ Kind::Insert, offset, std::move(text) }, joining);
}

void UndoHistory::recordDelete(qint64 offset, TextPiece text, Joining joining)
{
    d->record({ Kind::Delete, offset, std::move(text) }, joining);
}

void UndoHistory::beginGroup()
{
    if (d->groupDepth++ == 0)
        breakJoining();
}

void UndoHistory::endGroup()
{
    Q_ASSERT(d->groupDepth > 0);
    if (--d->groupDepth > 0)
        return;
    breakJoining();
    if (d->done > 0 && d->steps[d->done - 1].open) {
        d->steps[d->done - 1].open = false;
        ++d->commandCount;
    }
}

void UndoHistory::breakJoining()
{
    d->lastJoining = Joining::Never;
}

qint64 UndoHistory::undo(TextStore &store, const Changed &changed)
{
    Q_ASSERT(canUndo() && d->groupDepth == 0);
    breakJoining();
    const Step &step = d->steps[--d->done];
    d->commandCount -= step.commandCount();
    qint64 cursor = 0;
    for (auto edit = step.edits.rbegin(); edit != step.edits.rend(); ++edit)
        cursor = apply(*edit, true, store, changed);
    return cursor;
}

qint64 UndoHistory::redo(TextStore &store, const Changed &changed)
{
    Q_ASSERT(canRedo() && d->groupDepth == 0);
    breakJoining();
    const Step &step = d->steps[d->done++];
    d->commandCount += step.commandCount();
    qint64 cursor = 0;
    for (const UndoCommand &edit : step.edits)
        cursor = apply(edit, false, store, changed);
    return cursor;
}

qint64 UndoHistory::commandCount() const
{
    return d->commandCount;
}

const UndoCommand &UndoHistory::command(qint64 index) const
{
    Q_ASSERT(index >= 0 && index < d->commandCount);
    size_t step = d->done;
    qint64 first = d->commandCount;
    while (index < first)
        first -= d->steps[--step].commandCount();
    return d->steps[step].command(index - first);
}
