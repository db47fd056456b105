#include "text/undohistory.h"

#include "text/nodebin.h"
#include "text/textlayout.h"

#include <QVarLengthArray>

#include <deque>
#include <optional>
#include <utility>

namespace {

using Kind = UndoCommand::Kind;

TextChange changeOf(const UndoCommand &command)
{
    const TextChange insertion{ command.offset, 0, command.text.length() };
    return command.kind == Kind::Insert ? insertion : insertion.inverse();
}

/// Where the cursor belongs after a change.
Offset cursorBehind(const TextChange &change)
{
    return change.offset + change.inserted;
}

/// Puts a command into effect, or its inverse; returns where the cursor belongs afterwards.
Offset apply(const UndoCommand &command, bool inverse, TextStore &store, const UndoHistory::Changed &changed)
{
    const TextChange change = inverse ? changeOf(command).inverse() : changeOf(command);
    if (change.inserted > 0)
        store.insert(change.offset, command.text);
    else
        store.replace(change.offset, change.removed, {});
    if (changed)
        changed(change);
    return cursorBehind(change);
}

/// Steps that became one.
struct JoinedSteps {
    TextPiece otherText; ///< the text on the other side of them: before them or, undone, behind them
    std::optional<TextChange> change; ///< what they do to the text
    Offset cursorBefore; ///< where the cursor belongs when they are undone
    Offset cursorBehind;

    void add(const UndoCommand &command);
    void exchangeText(TextStore &store);
};

void JoinedSteps::add(const UndoCommand &command)
{
    const TextChange added = changeOf(command);
    if (!change)
        cursorBefore = ::cursorBehind(added.inverse());
    cursorBehind = ::cursorBehind(added);
    change = change ? change->then(added) : added;
}

void JoinedSteps::exchangeText(TextStore &store)
{
    otherText = store.exchange({}, store.length(), otherText);
}

/// What undo() takes back at once.
struct Step {
    QVarLengthArray<UndoCommand, 2> edits; ///< only the newest one of steps that became one
    std::unique_ptr<JoinedSteps> joined; ///< of the oldest step, when it was several
    bool grouped = false;
    bool open = false; ///< its group is not closed yet
    bool takesMore = false; ///< grouped only because text was typed over other text: more of it may follow

    void add(UndoCommand &&command);
    Offset undo(TextStore &store, const UndoHistory::Changed &changed);
    Offset redo(TextStore &store, const UndoHistory::Changed &changed);
    void addCommands(std::vector<const UndoCommand *> &commands) const;
    /// Calls `visit` with each text that is kept.
    template <typename Self, typename Visit> static void forEachText(Self &step, Visit &&visit)
    {
        for (auto &edit : step.edits)
            visit(edit.text);
        if (step.joined)
            visit(step.joined->otherText);
    }
};

void Step::add(UndoCommand &&command)
{
    if (joined) {
        joined->add(command);
        edits.clear();
    }
    edits.push_back(std::move(command));
}

Offset Step::undo(TextStore &store, const UndoHistory::Changed &changed)
{
    if (joined) {
        joined->exchangeText(store);
        if (changed)
            changed(joined->change->inverse());
        return joined->cursorBefore;
    }
    Offset cursor;
    for (auto edit = edits.rbegin(); edit != edits.rend(); ++edit)
        cursor = apply(*edit, true, store, changed);
    return cursor;
}

Offset Step::redo(TextStore &store, const UndoHistory::Changed &changed)
{
    if (joined) {
        joined->exchangeText(store);
        if (changed)
            changed(*joined->change);
        return joined->cursorBehind;
    }
    Offset cursor;
    for (const UndoCommand &edit : std::as_const(edits))
        cursor = apply(edit, false, store, changed);
    return cursor;
}

void Step::addCommands(std::vector<const UndoCommand *> &commands) const
{
    static const UndoCommand begin{ Kind::BeginStep, {}, {} };
    static const UndoCommand end{ Kind::EndStep, {}, {} };
    if (grouped)
        commands.push_back(&begin);
    for (const UndoCommand &edit : edits)
        commands.push_back(&edit);
    if (grouped && !open)
        commands.push_back(&end);
}

} // namespace

struct UndoHistory::State {
    bool isEnabled = true;
    std::deque<Step> steps; ///< oldest first; from `done` on they can be redone
    size_t done = 0;
    size_t depth = 256;
    TextPiece origin; ///< the text before the oldest step
    int groupDepth = 0;
    Joining lastJoining = Joining::Never; ///< how the newest command was recorded

    void startEdit(const TextStore &store);
    void recordEdit(Offset offset, TextPiece &&gone, TextPiece &&inserted, Joining joining);
    void record(UndoCommand &&command, Joining joining);
    bool join(UndoCommand &command, Joining joining);
    bool joinOvertyping(UndoCommand &gone, UndoCommand &typed, Joining joining);
    Step &beginStep();
    void recordBoth(UndoCommand &&gone, UndoCommand &&typed, Joining joining);
    UndoCommand *newestEdit();
    void limitDepth();
    void joinOldestSteps();
    template <typename Self, typename Visit> static void forEachText(Self &state, Visit &&visit)
    {
        visit(state.origin);
        for (auto &step : state.steps)
            Step::forEachText(step, visit);
    }
};

/// The command a new one may join, null when there is none.
UndoCommand *UndoHistory::State::newestEdit()
{
    if (done == 0)
        return nullptr;
    Step &step = steps[done - 1];
    const bool reachable = groupDepth > 0 ? step.open : !step.grouped || step.takesMore;
    return reachable && !step.joined && !step.edits.empty() ? &step.edits.back() : nullptr;
}

bool UndoHistory::State::join(UndoCommand &command, Joining joining)
{
    if (joining == Joining::Never || joining != lastJoining)
        return false;
    UndoCommand *last = newestEdit();
    if (!last || last->kind != command.kind)
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

/// Text typed over the text right behind what was typed over before.
bool UndoHistory::State::joinOvertyping(UndoCommand &gone, UndoCommand &typed, Joining joining)
{
    const UndoCommand *last = newestEdit();
    const bool follows = joining != Joining::Never && joining == lastJoining && last
        && steps[done - 1].takesMore && gone.offset == last->offset + last->text.length();
    if (!follows)
        return false;
    QVarLengthArray<UndoCommand, 2> &edits = steps[done - 1].edits;
    edits[0].text.append(std::move(gone.text));
    edits[1].text.append(std::move(typed.text));
    return true;
}

void UndoHistory::State::recordBoth(UndoCommand &&gone, UndoCommand &&typed, Joining joining)
{
    if (joinOvertyping(gone, typed, joining))
        return;
    if (groupDepth > 0) {
        record(std::move(gone), joining);
        record(std::move(typed), joining);
        return;
    }
    lastJoining = joining;
    Step &step = beginStep();
    step.grouped = true;
    step.takesMore = joining != Joining::Never;
    step.add(std::move(gone));
    step.add(std::move(typed));
    limitDepth();
}

void UndoHistory::State::startEdit(const TextStore &store)
{
    if (done == 0)
        origin = store.piece({}, store.length());
    const NodeBin::Gathering together;
    steps.resize(done);
}

void UndoHistory::State::recordEdit(Offset offset, TextPiece &&gone, TextPiece &&inserted, Joining joining)
{
    UndoCommand deletion{ Kind::Delete, offset, std::move(gone) };
    UndoCommand insertion{ Kind::Insert, offset, std::move(inserted) };
    if (!deletion.text.isEmpty() && !insertion.text.isEmpty())
        recordBoth(std::move(deletion), std::move(insertion), joining);
    else if (!deletion.text.isEmpty())
        record(std::move(deletion), joining);
    else
        record(std::move(insertion), joining);
}

Step &UndoHistory::State::beginStep()
{
    ++done;
    return steps.emplace_back();
}

void UndoHistory::State::record(UndoCommand &&command, Joining joining)
{
    const bool joined = join(command, joining);
    lastJoining = joining;
    if (joined)
        return;
    if (groupDepth == 0 || done == 0 || !steps.back().open) {
        Step &step = beginStep();
        step.grouped = step.open = groupDepth > 0;
    }
    steps.back().add(std::move(command));
    limitDepth();
}

void UndoHistory::State::limitDepth()
{
    while (done > depth)
        joinOldestSteps();
}

void UndoHistory::State::joinOldestSteps()
{
    Step &oldest = steps[0];
    std::unique_ptr<JoinedSteps> joined = std::move(oldest.joined);
    if (!joined) {
        joined = std::make_unique<JoinedSteps>(JoinedSteps{ origin, {}, {}, {} });
        for (const UndoCommand &edit : std::as_const(oldest.edits))
            joined->add(edit);
    }
    steps.pop_front();
    --done;
    Step &step = steps[0];
    step.joined = std::move(joined);
    for (const UndoCommand &edit : std::as_const(step.edits))
        step.joined->add(edit);
    step.edits.erase(step.edits.begin(), step.edits.end() - 1);
    step.grouped = true;
}

UndoHistory::UndoHistory(int depth)
    : d(std::make_unique<State>())
{
    setDepth(depth);
}

UndoHistory::~UndoHistory()
{
    clear();
}

bool UndoHistory::isEnabled() const
{
    return d->isEnabled;
}

void UndoHistory::setEnabled(bool enabled)
{
    if (std::exchange(d->isEnabled, enabled) != enabled)
        clear();
}

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

const TextPiece &UndoHistory::origin() const
{
    return d->origin;
}

void UndoHistory::clear()
{
    const NodeBin::Gathering together;
    d->steps.clear();
    d->done = 0;
    d->origin = {};
    d->lastJoining = Joining::Never;
}

void UndoHistory::replace(
    TextStore &store, Offset offset, qint64 removed, QStringView inserted, Joining joining)
{
    if (removed == 0 && inserted.isEmpty())
        return;
    if (!d->isEnabled) {
        store.replace(offset, removed, inserted);
        return;
    }
    d->startEdit(store);
    TextPiece gone = store.exchange(offset, removed, inserted);
    d->recordEdit(offset, std::move(gone), TextPiece(inserted, store.layout().sizes()), joining);
}

void UndoHistory::replace(
    TextStore &store, Offset offset, qint64 removed, const TextPiece &inserted, Joining joining)
{
    if (removed == 0 && inserted.isEmpty())
        return;
    if (!d->isEnabled) {
        store.exchange(offset, removed, inserted);
        return;
    }
    d->startEdit(store);
    TextPiece gone = store.exchange(offset, removed, inserted);
    d->recordEdit(offset, std::move(gone), TextPiece(inserted), joining);
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
    if (d->done > 0)
        d->steps[d->done - 1].open = false;
}

void UndoHistory::breakJoining()
{
    d->lastJoining = Joining::Never;
}

Offset UndoHistory::undo(TextStore &store, const Changed &changed)
{
    Q_ASSERT(canUndo() && d->groupDepth == 0);
    breakJoining();
    return d->steps[--d->done].undo(store, changed);
}

Offset UndoHistory::redo(TextStore &store, const Changed &changed)
{
    Q_ASSERT(canRedo() && d->groupDepth == 0);
    breakJoining();
    return d->steps[d->done++].redo(store, changed);
}

bool UndoHistory::measure(LayoutChange &change, QDeadlineTimer end) const
{
    bool isMeasured = true;
    State::forEachText(std::as_const(*d),
        [&](const TextPiece &text) { isMeasured = isMeasured && text.measure(change, end); });
    return isMeasured;
}

void UndoHistory::setLayout(const LayoutChange &change)
{
    State::forEachText(*d, [&change](TextPiece &text) { text.setLayout(change); });
}

qint64 UndoHistory::longestText() const
{
    qint64 longest = 0;
    State::forEachText(
        std::as_const(*d), [&longest](const TextPiece &text) { longest = qMax(longest, text.length()); });
    return longest;
}

std::vector<const UndoCommand *> UndoHistory::commands() const
{
    std::vector<const UndoCommand *> commands;
    for (size_t step = 0; step < d->done; ++step)
        d->steps[step].addCommands(commands);
    return commands;
}
