#include "document/documentwriter.h"

#include "files/endorder.h"

#include <utility>

namespace {

/// Gives the text of a store up to its first U+0000, with a line end in the place of each LF.
class LineEndReader {
public:
    LineEndReader(const TextStore &store, QByteArrayView lineEnd)
        : m_store(store)
        , m_lineEnd(lineEnd)
        , m_end(store.end())
    {
    }

    TextChunk operator()()
    {
        if (m_at == m_end)
            return {};
        TextChunk chunk = m_store.chunkAt(m_at);
        qint64 plain = 0;
        while (plain < chunk.size() && unitAt(chunk, plain) != u'\n' && unitAt(chunk, plain) != u'\0')
            ++plain;
        if (plain > 0) {
            chunk.truncate(plain);
            m_at += plain;
            return chunk;
        }
        if (unitAt(chunk, 0) == u'\n')
            return { std::exchange(m_at, m_at + 1), m_lineEnd, {} };
        m_end = m_at;
        return {};
    }

private:
    static char16_t unitAt(const TextChunk &chunk, qint64 at)
    {
        return chunk.isLatin1() ? char16_t(uchar(chunk.latin1[at])) : chunk.utf16[at].unicode();
    }

    const TextStore &m_store;
    const QByteArrayView m_lineEnd;
    Offset m_at;
    Offset m_end;
};

} // namespace

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

bool DocumentWriter::writeWide(const TextStore &store, const TextCodec &codec, TextCodec::AsRead asRead)
{
    const auto sink = [this](QByteArrayView bytes) { return !EndOrder::isGiven() && m_file.write(bytes); };
    return m_file.open() && codec.encode(LineEndReader(store, m_lineEnd), sink, asRead) && m_file.commit();
}

bool DocumentWriter::writeBlock(QByteArrayView encoded)
{
    if (EndOrder::isGiven())
        return false;
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
