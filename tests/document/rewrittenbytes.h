#pragma once

#include "document/lineends.h"

/// What a save changes in a file of these bytes.
inline RewrittenBytes countRewritten(QByteArrayView bytes, ReturnCode returnCode)
{
    RewrittenCount count;
    count.add(bytes);
    return count.with(returnCode);
}
