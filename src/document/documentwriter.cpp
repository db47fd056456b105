#include "document/documentwriter.h"

DocumentWriter::DocumentWriter(const QByteArray &name, ReturnCode returnCode, const FileCalls &calls)
    : m_file(name, calls)
    , m_lineEnd(infoOf(returnCode).bytes)
{
}

bool DocumentWriter::write(const TextStore &store, const TextCodec &codec, TextCodec::AsRead asRead)
{
    if (!m_file.open())
        return false;
    const auto sink = [this](QByteArrayView bytes) { return writeBlock(bytes); };
    const bool encoded = codec.encode(store, sink, asRead);
    return (encoded || m_ended) && m_file.commit();
}

bool DocumentWriter::writeBlock(QByteArrayView encoded)
{
    // In every code the bytes 00 and 0A stand for U+0000 and U+000A alone.
    const qsizetype end = encoded.indexOf('\0');
    if (end == -1)
        return writeLines(encoded);
    m_ended = writeLines(encoded.first(end));
    return false;
}

bool DocumentWriter::writeLines(QByteArrayView encoded)
{
    if (m_lineEnd == "\n")
        return m_file.write(encoded);
    for (qsizetype end = encoded.indexOf('\n'); end != -1; end = encoded.indexOf('\n')) {
        if (!m_file.write(encoded.first(end)) || !m_file.write(m_lineEnd))
            return false;
        encoded = encoded.sliced(end + 1);
    }
    return m_file.write(encoded);
}
