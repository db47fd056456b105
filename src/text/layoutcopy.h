#pragma once

#include "text/textlayout.h"

#include <memory>

/// A store's layout for another thread: measures by what the font has told until now, and never asks it.
///
/// A character whose width is not known gets one of its own choice; isComplete() then tells that what was
/// measured is to be measured anew. Cost: a copy is one of an AdvanceTable.
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

private:
    struct Data;
    std::unique_ptr<Data> d;
};
