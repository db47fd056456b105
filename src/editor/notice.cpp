#include "editor/notice.h"

#include <algorithm>

namespace {

struct KindWeight {
    NoticeKind kind;
    int weight;
};

/// With gaps, so that a kind can be put between two others.
constexpr KindWeight weights[] = {
    { NoticeKind::CannotWrite, 500 },
};

} // namespace

int weightOf(NoticeKind kind)
{
    return std::ranges::find(weights, kind, &KindWeight::kind)->weight;
}
