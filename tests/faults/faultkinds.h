#pragma once

#include <cerrno>

/// What a call to the system may meet. docs/robustness.md has a row for each.
struct FaultKind {
    enum class Effect { Fails, IsShort, Kills };

    const char *name;
    Effect effect;
    int error = 0; ///< with which it fails
};

inline constexpr FaultKind faultKinds[] = {
    { "ENOSPC", FaultKind::Effect::Fails, ENOSPC },
    { "EIO", FaultKind::Effect::Fails, EIO },
    { "EACCES", FaultKind::Effect::Fails, EACCES },
    { "EINTR", FaultKind::Effect::Fails, EINTR },
    { "EDQUOT", FaultKind::Effect::Fails, EDQUOT },
    { "EROFS", FaultKind::Effect::Fails, EROFS },
    { "short count", FaultKind::Effect::IsShort },
    { "SIGKILL", FaultKind::Effect::Kills },
};
