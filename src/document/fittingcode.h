#pragma once

#include "codec/charcode.h"

#include <functional>

/// Gives bytes from the start, in blocks cut where no character of the code goes on, unless it has a state,
/// until the function returns false.
using ByteBlocks = std::function<void(CharCode code, const std::function<bool(QByteArrayView)> &take)>;

/// Another code than the one that a file was read with, which all of its bytes fit; nothing when there is
/// none.
///
/// None is named where they fit the code that was wanted. UTF-8 is named whenever the bytes fit it, as hardly
/// any other text does, and EUC in the place of Shift-JIS; another code only where half of the bytes
/// above 7F could not be decoded: a single broken one is no reason to call UTF-8 Shift-JIS, which most bytes
/// fit.
///
/// Cost: most often a look at the start, as it ends at the first slice of the bytes that do not fit; at worst
/// what decoding the bytes costs, for each code.
std::optional<CharCode> otherFittingCode(
    const ByteBlocks &blocks, CharCode readAs, bool wasDetected, qint64 undecodableBytes);
