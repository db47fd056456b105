#include "codec/returncode.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr ReturnCodeInfo returnCodes[] = {
    { ReturnCode::None, "??"_L1, "\n" },
    { ReturnCode::Cr, "CR"_L1, "\r" },
    { ReturnCode::CrLf, "CR+LF"_L1, "\r\n" },
    { ReturnCode::Lf, "LF"_L1, "\n" },
};

} // namespace

const ReturnCodeInfo &infoOf(ReturnCode code)
{
    const auto *const found = std::ranges::find(returnCodes, code, &ReturnCodeInfo::code);
    return found == std::end(returnCodes) ? returnCodes[0] : *found;
}

std::optional<ReturnCode> requestedReturnCode(int code)
{
    return code == 0 ? std::nullopt : std::optional(ReturnCode(code));
}
