#include "document/readcode.h"

#include "text/enteredtext.h"

namespace {

/// Whether a text has undecodable bytes or spellings.
bool hasBytes(const TextStore &store)
{
    for (Offset at; at < store.end();) {
        const TextChunk chunk = store.spelledChunkAt(at);
        const QString text = chunk.utf16.toString();
        if (chunk.spelling || cleanInput(text) != text)
            return true;
        at += chunk.size();
    }
    return store.spelledChunkAt(store.end()).spelling.has_value();
}

} // namespace

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

void ReadCode::setWritten(const TextCodec &codec, const TextStore &store)
{
    if (&codec == m_codec)
        return;
    m_keepsSpellings = false;
    if (!hasBytes(store))
        *this = ReadCode(codec);
}
