#pragma once

#include "settings/settings.h"

#include <QList>

/// The files that were open when the program last ended, for the next start: a key file of its own,
/// "marlopad_session".
struct SessionFiles {
    static constexpr int most = 200; ///< that are kept

    QList<RecentEntry> files; ///< in the order of their tabs
    int current = -1; ///< its index; -1 or another that is no index: none

    bool operator==(const SessionFiles &) const = default;
};

/// Those of its entries that name a file by an absolute path; empty where there is no file or it cannot be
/// read. The numbers are whatever the file held.
SessionFiles readSessionFiles();
/// Those beyond the most are left out. A file that cannot be written is not reported.
void writeSessionFiles(const SessionFiles &session);
