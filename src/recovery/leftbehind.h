#pragma once

#include "files/filecalls.h"
#include "recovery/journalrecord.h"

#include <vector>

/// A journal that a program has left behind: it was killed, or the machine stopped.
struct LeftBehind {
    QByteArray journal; ///< name of the file
    QString path; ///< folder of the document, ending in "/"; empty for one never saved
    QString name; ///< of the document
    qint64 time = 0; ///< of the last write, in ms since 1970 UTC
    qint64 length = -1; ///< of the text, in units; -1: not known before it is restored
    /// The document's file is as it was, by its size and time.
    bool isFileUnchanged = false;
    std::optional<quint64> contentHash = {}; ///< of the file as it was; see ContentHash
    /// How bytes became text.
    struct ReadAs {
        CharCode code;
        std::optional<Utf16Form> utf16; ///< instead of the code
    };
    std::optional<ReadAs> readAs = {}; ///< the file that the edits begin with; nothing: they begin with none
};

/// What there is in a folder of journals (ends in "/"), the newest first, and clears away what was never
/// finished or has nothing of a text. Journals in use, by this program or another, are passed over, and so is
/// what is no journal. One whose start is lost is there too, without a name.
/// Cost: the head and the end of each file, whatever its size; nothing is waited for.
std::vector<LeftBehind> findLeftBehind(
    const QByteArray &folder, const FileCalls &calls = FileCalls::system());
