#pragma once

#include <QString>

/// The last search that was asked for.
struct SearchRequest {
    int searchMode = 0; ///< 0 search, 1 replace
    bool caseSensitive = false;
    QString findText;
    QString replaceText;
};
