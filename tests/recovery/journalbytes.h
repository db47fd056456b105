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
        QFile file(QFile::decodeName(folder.journals()) + names.value(0));
        return names.size() == 1 && file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
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
    static qsizetype commitsIn(QByteArrayView bytes)
    {
        qsizetype commits = 0;
        if (!bytes.startsWith(journalMagic()))
            return 0;
        bytes = bytes.sliced(journalMagic().size());
        for (auto record = firstRecord(bytes); record; record = firstRecord(bytes)) {
            commits += record->type == RecordType::Commit ? 1 : 0;
            bytes = bytes.sliced(JournalRecord::headSize + record->content.size());
            if (bytes.size() < JournalRecord::headSize)
                break;
        }
        return commits;
    }
};
