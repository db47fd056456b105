#pragma once

#include "recovery/journalrecord.h"
#include "tests/recovery/recoveryfolder.h"

/// The journals of a folder as bytes, for tests that do to them what disks and strangers do.
class JournalBytes {
public:
    /// Of the only journal that there is; empty if there is none.
    static QByteArray only(const RecoveryFolder &folder)
    {
        const QStringList names = folder.files().filter(QStringLiteral(".journal"));
        return names.size() == 1 ? named(folder, names.front()) : QByteArray();
    }
    static QByteArray named(const RecoveryFolder &folder, const QString &name)
    {
        QFile file(QFile::decodeName(folder.journals()) + name);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    /// Puts a journal into a folder that has none.
    static LeftBehind put(const RecoveryFolder &folder, const QByteArray &bytes)
    {
        QDir().mkpath(QFile::decodeName(folder.journals()));
        const QByteArray name = folder.journals() + "one.journal";
        QFile file(QFile::decodeName(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            return {};
        return { name, {}, {} };
    }
    /// Commits among the records that are whole.
    static qsizetype commitsIn(QByteArrayView bytes) { return states(bytes).size(); }
    /// Of the last commit; nothing where there is none.
    static std::optional<JournalState> lastState(QByteArrayView bytes)
    {
        const QList<JournalState> all = states(bytes);
        return all.isEmpty() ? std::nullopt : std::optional(all.last());
    }

private:
    static QList<JournalState> states(QByteArrayView bytes)
    {
        QList<JournalState> found;
        if (!bytes.startsWith(journalMagic()))
            return found;
        bytes = bytes.sliced(journalMagic().size());
        for (auto record = firstRecord(bytes); record; record = firstRecord(bytes)) {
            if (record->type == RecordType::Commit)
                found << stateIn(record->content).value_or(JournalState());
            bytes = bytes.sliced(JournalRecord::headSize + record->content.size());
            if (bytes.size() < JournalRecord::headSize)
                break;
        }
        return found;
    }
};
