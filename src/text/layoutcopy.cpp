#include "text/layoutcopy.h"

#include <utility>

struct LayoutCopy::Data {
    explicit Data(const TextLayout &of)
        : advances(of.advances(), [this](char32_t) { return isComplete = false, int(subpixelsPerPixel); })
        , layout(of, advances)
    {
    }

    bool isComplete = true;
    AdvanceTable advances;
    TextLayout layout;
};

LayoutCopy::LayoutCopy(const TextStore &store)
    : d(std::make_unique<Data>(store.layout()))
{
}

LayoutCopy::LayoutCopy(const LayoutCopy &other)
    : d(std::make_unique<Data>(other.layout()))
{
    d->isComplete = other.isComplete();
}

LayoutCopy::LayoutCopy(LayoutCopy &&) noexcept = default;

LayoutCopy &LayoutCopy::operator=(LayoutCopy other) noexcept
{
    std::swap(d, other.d);
    return *this;
}

LayoutCopy::~LayoutCopy() = default;

const TextLayout &LayoutCopy::layout() const
{
    return d->layout;
}

bool LayoutCopy::isComplete() const
{
    return d->isComplete;
}
