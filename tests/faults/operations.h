#pragma once

#include "document/textdocument.h"
#include "tests/faults/sandbox.h"

#include <QMetaType>
#include <functional>

#include <memory>
#include <vector>

/// Of every document here.
inline constexpr FileCodes plainCodes{ CharCode::Utf8, ReturnCode::Lf };

/// Something that the program does with files, to be tried again and again with another fault.
class Operation {
public:
    using Begin = std::function<void()>;

    explicit Operation(const Sandbox &sandbox)
        : m_sandbox(sandbox)
    {
    }
    virtual ~Operation() = default;
    Q_DISABLE_COPY_MOVE(Operation)

    /// Makes what is there before, in an empty sandbox.
    virtual void prepare() { }
    /// Does it; `begin` is called when what faults are about begins. Whether the user is told that it is
    /// done.
    virtual bool run(const FileCalls &calls, const Begin &begin) = 0;
    /// Notes what a run that went well leaves behind.
    virtual void noteResult() { }
    /// What a run that was not killed has lost of what is in the window; empty for nothing.
    virtual QString lostInWindow() const { return {}; }
    /// What is lost on the disk; `isDone` is what run() said, false if it was killed.
    virtual QString lostOnDisk(const NextStart &start, bool isDone) const = 0;

protected:
    const Sandbox &m_sandbox;
};

struct NamedOperation {
    const char *name;
    std::function<std::unique_ptr<Operation>(const Sandbox &sandbox)> make;
};

/// Loads and saves.
std::vector<NamedOperation> documentOperations();
/// Writes of settings, with the recent files, and of the search history.
std::vector<NamedOperation> settingsOperations();
/// Writes of journals, restoring, and the start of a program that others have left something to.
std::vector<NamedOperation> journalOperations();

inline std::vector<NamedOperation> operations()
{
    std::vector<NamedOperation> all = documentOperations();
    for (const auto &more : { settingsOperations(), journalOperations() })
        all.insert(all.end(), more.begin(), more.end());
    return all;
}
