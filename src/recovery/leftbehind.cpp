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

/// The length of a record that is said to be longer than all there is; no base is as long as some that are
/// told wrongly.
bool isCutOff(QByteArrayView bytes)
{
    constexpr qint64 longestBase = 32768;
    const qint64 size = recordSize(bytes);
    return size > bytes.size() && size <= longestBase;
}

std::optional<JournalBase> baseOf(int file, const FileCalls &calls)
{
    JournalReader journal(file, calls);
    const auto first = journal.next();
    return first && first->type == RecordType::Base ? baseIn(first->content) : std::nullopt;
}

/// What stands at the start, enough for a base.
QByteArray startOf(int file, const FileCalls &calls)
{
    constexpr qsizetype mostBytes = 65536;
    QByteArray start(mostBytes, Qt::Uninitialized);
    const ssize_t got = retried([&] { return calls.pread(file, start.data(), size_t(mostBytes), 0); });
    start.truncate(qMax<ssize_t>(0, got));
    return start;
}

/// Of a file as large, by its start: it was cut off before anything of a text could be in it, or what was in
/// it never came to the disk.
bool isWithoutText(QByteArrayView start, qint64 size)
{
    const QByteArrayView magic = journalMagic();
    if (start.size() != size)
        return false;
    if (size <= magic.size())
        return magic.startsWith(start);
    if (!start.startsWith(magic))
        return std::ranges::all_of(start, [](char byte) { return byte == '\0'; });
    const QByteArrayView base = start.sliced(magic.size());
    return base.size() < JournalRecord::headSize
        || (base[JournalRecord::headSize - 1] == char(RecordType::Base) && isCutOff(base));
}

struct Examined {
    std::optional<LeftBehind> found;
    bool isWithoutText = false;
};

/// A journal is known by its base, its end or its magic.
Examined describe(const QByteArray &name, int file, const FileCalls &calls)
{
    struct stat info = {};
    if (calls.fstat(file, &info) != 0)
        return {};
    const auto base = baseOf(file, calls);
    const auto state = lastState(file, info.st_size, calls);
    if (!base && !state) {
        const QByteArray start = startOf(file, calls);
        if (isWithoutText(start, info.st_size))
            return { {}, true };
        if (!start.startsWith(journalMagic()))
            return {};
    }
    LeftBehind found{ name, {}, {}, FileStamp(info).modified / 1'000'000 };
    if (base) {
        found.path = base->path;
        found.name = base->name;
        found.isFileUnchanged = isFileUnchanged(*base, calls);
        found.contentHash = base->contentHash;
        if (base->isFromFile)
            found.readAs = { base->charCode, base->utf16 };
    }
    if (state) {
        found.time = state->time;
        found.length = state->length;
    }
    return { found, false };
}

/// Removes what has nothing of a text.
std::optional<LeftBehind> examine(const QByteArray &name, const FileCalls &calls)
{
    const int file = openUnused(name, LOCK_SH, calls);
    if (file == -1)
        return std::nullopt;
    const Examined examined = describe(name, file, calls);
    calls.close(file);
    if (examined.isWithoutText)
        ClaimedJournal::claim(name, calls).discard();
    return examined.found;
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
