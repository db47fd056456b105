#include "editor/notice.h"

#include "settings/moresettings.h"

#include <algorithm>

namespace {

struct KindInfo {
    NoticeKind kind;
    int weight;
    int MoreSettings::*setting = nullptr; ///< that switches it off; null: none
};

constexpr auto ofText = &MoreSettings::NoticesOfText;
constexpr auto ofDisk = &MoreSettings::NoticesOfDisk;

/// With gaps, so that a kind can be put between two others.
constexpr KindInfo kinds[] = {
    { NoticeKind::Work, 1000 },
    { NoticeKind::Opening, 990 },
    { NoticeKind::Searching, 980 },
    { NoticeKind::Counting, 960 },
    { NoticeKind::LayingOut, 940 },
    { NoticeKind::InterruptedSave, 800 },
    { NoticeKind::ChangedOnDisk, 700, ofDisk },
    { NoticeKind::RestoredApart, 600 },
    { NoticeKind::OtherCode, 550 },
    { NoticeKind::Substituted, 530, ofText },
    // What it offers also saves the bytes that its text's own code could not write.
    { NoticeKind::Utf16, 520, ofText },
    { NoticeKind::CannotWrite, 500, ofText },
    // What was kept waits, and whoever types now should know what happens to that.
    { NoticeKind::Unsaved, 490 },
    { NoticeKind::NotWritable, 480, ofDisk },
    { NoticeKind::ReplacedInPart, 450 },
    // What does not fit a code looks odd, but comes back as it was; these bytes do not.
    { NoticeKind::RewrittenBytes, 420, ofText },
    { NoticeKind::WrongCode, 400, ofText },
    { NoticeKind::KeptFile, 350 },
    { NoticeKind::NoRecovery, 250 },
    { NoticeKind::Following, 100 },
    { NoticeKind::Languages, 60 },
    { NoticeKind::CodesOfNew, 50 },
};

const KindInfo &infoOf(NoticeKind kind)
{
    return *std::ranges::find(kinds, kind, &KindInfo::kind);
}

} // namespace

int weightOf(NoticeKind kind)
{
    return infoOf(kind).weight;
}

bool isWanted(NoticeKind kind)
{
    const auto setting = infoOf(kind).setting;
    return !setting || moreSettings().*setting != 0;
}
