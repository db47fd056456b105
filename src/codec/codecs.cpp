#include "codec/codecs.h"

const TextCodec &codecForContent(QByteArrayView data)
{
    if (data.startsWith("\xFF\xFE"))
        return utf16LittleEndianCodec();
    if (data.startsWith("\xFE\xFF"))
        return utf16BigEndianCodec();
    if (data.startsWith("\xEF\xBB\xBF"))
        return utf8Codec();
    return latin1Codec();
}
