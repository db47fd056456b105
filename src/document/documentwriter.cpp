#include "document/documentwriter.h"

#include "files/endorder.h"

#include <utility>

namespace {

constexpr qint64 unitsPerStep = qint64{ 1 } << 20;

char16_t unitAt(const TextChunk &chunk, qint64 at)
{
    return chunk.isLatin1() ? char16_t(uchar(chunk.latin1[at])) : chunk.utf16[at].unicode();
}

} // namespace

DocumentWriter::DocumentWriter(const QByteArray &name, WrittenText text, const FileCalls &calls)
    : m_text(std::move(text))
    , m_lineEnd(infoOf(m_text.returnCode).bytes)
    , m_file(name, calls)
{
}

DocumentWriter::Step DocumentWriter::step(const std::function<bool()> &isWanted)
{
    if (isSyncDue()) {
        m_isSynced = m_file.sync();
        return m_isSynced ? Step::More : Step::Failed;
    }
    if (m_isEncoded)
        return commit(isWanted);
    if ((m_encoding || begin()) && encodeSome()) {
        m_toCopy = m_file.bytesToCopy();
        return Step::More;
    }
    giveUp();
    return Step::Failed;
}

DocumentWriter::Step DocumentWriter::commit(const std::function<bool()> &isWanted)
{
    m_toCopy = m_file.bytesToCopy();
    const bool isDone = m_file.commit([&](qint64 bytes) {
        m_copied = qMin(m_copied + bytes, m_toCopy);
        return isWanted();
    });
    m_copied = m_toCopy;
    return isDone ? Step::Written : Step::Failed;
}

/// Long enough for somebody to stop it: that can be heard before the file is put in place.
bool DocumentWriter::isSyncDue() const
{
    return m_isEncoded && !m_isSynced && m_at > Offset(unitsPerStep);
}

bool DocumentWriter::begin()
{
    const auto sink = [this](QByteArrayView bytes) { return !EndOrder::isGiven() && writeBlock(bytes); };
    m_encoding = m_text.code.codec->encoding(sink, m_text.code.asRead);
    return m_file.open();
}

bool DocumentWriter::encodeSome()
{
    const Offset end = qMin(m_at + unitsPerStep, m_text.text.end());
    while (m_at < end && !m_hasEnded) {
        if (!m_encoding->add(isWide() ? nextWideChunk() : nextChunk())) {
            m_isEncoded = m_hasEnded;
            return m_isEncoded;
        }
    }
    if (m_at < m_text.text.end() && !m_hasEnded)
        return true;
    m_isEncoded = m_encoding->finish(isWide() ? TextChunk() : nextChunk()) || m_hasEnded;
    return m_isEncoded;
}

bool DocumentWriter::isWide() const
{
    return m_text.units == WrittenText::Units::Wide;
}

TextChunk DocumentWriter::nextChunk()
{
    const TextChunk chunk = m_text.text.spelledChunkAt(m_at);
    m_at += chunk.size();
    return chunk;
}

/// With a line end in the place of each LF; empty at a U+0000.
TextChunk DocumentWriter::nextWideChunk()
{
    TextChunk chunk = m_text.text.spelledChunkAt(m_at);
    chunk.spelling.reset();
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
    m_hasEnded = true;
    return {};
}

bool DocumentWriter::writeBlock(QByteArrayView encoded)
{
    if (isWide())
        return m_file.write(encoded);
    // In every other code the bytes 00 and 0A stand for U+0000 and U+000A alone.
    const qsizetype end = encoded.indexOf('\0');
    if (end == -1)
        return writeLines(encoded);
    m_hasEnded = writeLines(encoded.first(end));
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
