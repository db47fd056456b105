#include "editor/notice.h"

#include <algorithm>

namespace {

struct KindWeight {
    NoticeKind kind;
    int weight;
};

/// With gaps, so that a kind can be put between two others.
constexpr KindWeight weights[] = {
    { NoticeKind::Work, 1000 },
    { NoticeKind::Searching, 980 },
    { NoticeKind::Counting, 960 },
    { NoticeKind::Unsaved, 900 },
    { NoticeKind::InterruptedSave, 800 },
    { NoticeKind::ChangedOnDisk, 700 },
    { NoticeKind::RestoredApart, 600 },
    { NoticeKind::OtherCode, 550 },
    { NoticeKind::CannotWrite, 500 },
    { NoticeKind::NotWritable, 480 },
    { NoticeKind::ReplacedInPart, 450 },
    { NoticeKind::Utf16, 420 },
    { NoticeKind::WrongCode, 400 },
    { NoticeKind::KeptFile, 350 },
    { NoticeKind::RewrittenBytes, 300 },
    { NoticeKind::NoRecovery, 250 },
    { NoticeKind::Following, 100 },
    { NoticeKind::Languages, 60 },
    { NoticeKind::CodesOfNew, 50 },
};

} // namespace

int weightOf(NoticeKind kind)
{
    return std::ranges::find(weights, kind, &KindWeight::kind)->weight;
}
