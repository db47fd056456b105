#pragma once

#include "text/textlayout.h"

#include <QDeadlineTimer>

#include <memory>

/// A store's layout for another thread: measures by what the font has told until now, and never asks it.
///
/// A character whose width is not known gets one of its own choice; isComplete() then tells that what was
/// measured is to be measured anew, and askFor() has the font tell what was missing. Cost: a copy is one of
/// an AdvanceTable.
class LayoutCopy {
public:
    /// In the store's thread.
    explicit LayoutCopy(const TextStore &store);
    LayoutCopy(const LayoutCopy &other);
    LayoutCopy(LayoutCopy &&) noexcept;
    LayoutCopy &operator=(LayoutCopy other) noexcept;
    ~LayoutCopy();

    /// One thread at a time, as it notes what it does not know. Lives as long as this.
    const TextLayout &layout() const;
    /// All widths that were asked for were known.
    bool isComplete() const;
    /// In the store's thread, while nobody measures by this: later copies know what this one did not. Where
    /// the time is over before that, false, the next call goes on. Cost: the font's for each character.
    bool askFor(const TextStore &store, QDeadlineTimer end);

private:
    struct Data;
    std::unique_ptr<Data> d;
};
