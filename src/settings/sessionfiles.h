#pragma once

#include "codec/charcode.h"
#include "settings/settings.h"

#include <QList>

#include <optional>

/// One of the files of a session, and how it was read.
struct SessionFile {
    enum class Utf16 { No, LittleEndian, BigEndian };

    RecentEntry place; ///< its name, and where its cursor and view were
    std::optional<CharCode> charCode = {}; ///< nothing: the one that is detected
    Utf16 utf16 = Utf16::No; ///< as such a text, instead of any code
    bool keepsUtf16 = false; ///< and is saved as one

    bool operator==(const SessionFile &) const = default;
};

/// The files that were open when the program last ended, for the next start: a key file of its own,
/// "marlopad_session".
struct SessionFiles {
    static constexpr int most = 200; ///< that are kept

    QList<SessionFile> files; ///< in the order of their tabs
    int current = -1; ///< its index; -1 or another that is no index: none

    bool operator==(const SessionFiles &) const = default;
};

/// Those of its entries that name a file by an absolute path; empty where there is no file or it cannot be
/// read. The numbers of places are whatever the file held; a code that cannot be chosen is none.
SessionFiles readSessionFiles();
/// Those beyond the most are left out. A file that cannot be written is not reported.
void writeSessionFiles(const SessionFiles &session);
