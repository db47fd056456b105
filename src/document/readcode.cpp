#include "document/readcode.h"

#include "text/enteredtext.h"

bool hasBytes(const TextSnapshot &text, TextRange range)
{
    for (Offset at = range.start; at < range.end;) {
        const TextChunk chunk = text.spelledChunkAt(at);
        const QString units = chunk.utf16.toString();
        if (chunk.spelling || cleanInput(units) != units)
            return true;
        at += chunk.size();
    }
    return range.end == text.end() && text.spelledChunkAt(text.end()).spelling.has_value();
}

ReadCode::ReadCode(const TextCodec &codec)
    : m_codec(&codec)
{
}

TextCodec::AsRead ReadCode::writtenAsReadIn(const TextCodec &codec) const
{
    if (&codec != m_codec)
        return TextCodec::AsRead::Nothing;
    return m_keepsSpellings ? TextCodec::AsRead::Everything : TextCodec::AsRead::UndecodableBytes;
}

void ReadCode::setWritten(const TextCodec &codec, bool hasBytes)
{
    if (&codec == m_codec)
        return;
    m_keepsSpellings = false;
    if (!hasBytes)
        *this = ReadCode(codec);
}
