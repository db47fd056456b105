#pragma once

#include "codec/charcode.h"
#include "codec/returncode.h"

/// In what code and with which line ends a text is in its file.
struct FileCodes {
    CharCode charCode = CharCode::ShiftJis;
    ReturnCode returnCode = ReturnCode::CrLf;
};
