#pragma once

#include "tests/filedialog/shownlist.h"
#include "tests/filedialog/testfolder.h"
#include "tests/jobs/steppedrunner.h"

#include <QSet>

#include <algorithm>

inline constexpr int manyFiles = 600; // a step reads 256

inline QByteArray numbered(int number)
{
    return "file" + QByteArray::number(1000 + number);
}

/// In whichever order the system tells of them, of ten in a row some come before others.
inline void fillWithFiles(const TestFolder &folder, const char *ending = "")
{
    constexpr int stride = 7;
    for (int number = 0; number < manyFiles; ++number)
        folder.file((numbered(number * stride % manyFiles) + ending).constData());
}

/// A list that shows only what the steps of its runner have read.
struct FillingList : ShownList {
    explicit FillingList(const QString &path, SteppedRunner &steps)
        : ShownList(path, userSurroundings(), { &steps, std::chrono::milliseconds(0) })
    {
    }

    /// Each once, and none that never was in the folder.
    bool isPartOf(const QStringList &all) const
    {
        const QStringList shown = names();
        const QSet<QString> different(shown.begin(), shown.end());
        return different.size() == shown.size() && QSet<QString>(all.begin(), all.end()).contains(different);
    }
    bool isSorted() const { return std::ranges::is_sorted(names()); }
    int rows() const { return list.rows().rowCount(); }
};
