#include "recovery/leftbehind.h"

#include "files/fileversion.h"
#include "recovery/claimedjournal.h"
#include "recovery/journalfolder.h"
#include "recovery/journalreader.h"

#include <algorithm>

#include <sys/file.h>

namespace {

/// Names in a folder; as many as there are, also if reading breaks off.
std::vector<QByteArray> namesIn(const QByteArray &folder, const FileCalls &calls)
{
    std::vector<QByteArray> names;
    DIR *const open = calls.opendir(folder.constData());
    if (!open)
        return names;
    while (const dirent *entry = calls.readdir(open))
        names.emplace_back(entry->d_name);
    calls.closedir(open);
    return names;
}

/// The last commit, which ends a journal that was not cut off, and mostly one that was.
std::optional<JournalState> lastState(int file, qint64 size, const FileCalls &calls)
{
    constexpr qint64 mostBytes = 65536;
    constexpr qint64 recordBytes = JournalRecord::headSize + JournalState::bytes;
    QByteArray end(qMin(size, mostBytes), Qt::Uninitialized);
    const ssize_t got =
        retried([&] { return calls.pread(file, end.data(), size_t(end.size()), size - end.size()); });
    for (qint64 at = got - recordBytes; at >= 0; --at) {
        const QByteArrayView bytes = QByteArrayView(end).sliced(at, recordBytes);
        if (recordSize(bytes) != recordBytes)
            continue;
        const auto record = firstRecord(bytes);
        if (record && record->type == RecordType::Commit)
            return stateIn(record->content);
    }
    return std::nullopt;
}

std::optional<LeftBehind> describe(const QByteArray &name, int file, const FileCalls &calls)
{
    struct stat info = {};
    JournalReader journal(file, calls);
    const auto first = journal.next();
    const auto base =
        first && first->type == RecordType::Base ? baseIn(first->content) : std::optional<JournalBase>();
    if (!base || calls.fstat(file, &info) != 0)
        return std::nullopt;
    LeftBehind found{ name, base->path, base->name, FileStamp(info).modified / 1'000'000, -1,
        isFileUnchanged(*base, calls) };
    if (const auto state = lastState(file, info.st_size, calls)) {
        found.time = state->time;
        found.length = state->length;
    }
    return found;
}

std::optional<LeftBehind> examine(const QByteArray &name, const FileCalls &calls)
{
    const int file = openUnused(name, LOCK_SH, calls);
    if (file == -1)
        return std::nullopt;
    const auto found = describe(name, file, calls);
    calls.close(file);
    return found;
}

} // namespace

std::vector<LeftBehind> findLeftBehind(const QByteArray &folder, const FileCalls &calls)
{
    std::vector<LeftBehind> all;
    for (const QByteArray &name : namesIn(folder, calls)) {
        if (isUnfinishedName(name)) {
            ClaimedJournal::claim(folder + name, calls).discard();
        } else if (isJournalName(name)) {
            if (const auto found = examine(folder + name, calls))
                all.push_back(*found);
        }
    }
    std::ranges::sort(all, std::ranges::greater(), &LeftBehind::time);
    return all;
}
