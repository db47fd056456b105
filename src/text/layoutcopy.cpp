#include "text/layoutcopy.h"

#include <utility>
#include <vector>

struct LayoutCopy::Data {
    explicit Data(const TextLayout &of)
        : advances(of.advances(), [this](char32_t codePoint) { return noteUnknown(codePoint); })
        , layout(of, advances)
    {
    }

    int noteUnknown(char32_t codePoint)
    {
        unknown.push_back(codePoint);
        return int(subpixelsPerPixel);
    }

    std::vector<char32_t> unknown; ///< that were asked for
    size_t asked = 0; ///< of these, the font
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
    d->unknown = other.d->unknown;
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
    return d->unknown.empty();
}

bool LayoutCopy::askFor(const TextStore &store, QDeadlineTimer end)
{
    while (d->asked < d->unknown.size() && !end.hasExpired())
        (void)store.layout().advances().advanceOf(d->unknown[d->asked++]);
    return d->asked == d->unknown.size();
}
