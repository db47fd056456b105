#pragma once

#include "codec/textcodec.h"
#include "files/escapedhalf.h"
#include "text/asciiwords.h"

#include <memory>

/// Drives a codec's encoder over chunks of text and hands the bytes on in blocks of 64 KiB. Surrogate pairs
/// are put together here, also where two chunks meet; so are escaped halves of them, where one character is
/// written for each. An encoder is a small class, inlined here; each call writes at most `bytesPerStep`
/// bytes:
///
///     bool isAscii() const             ASCII that is not special goes out as it is now
///     static quint64 special(word)     flags the bytes of a word that isAscii() does not speak for
///     void character(c, out)           not a surrogate
///     void pair(high, low, out)
///     void byte(b, out)                an escaped byte
///     void lone(c, out)                any other lone surrogate
///     void unknown(out)                what stands for a character that the code lacks
///     bool admits(c, spelling, out)    writes what must stand before the bytes that `c` was read from; false
///                                      if they would not be read as `c`, which is then written as any other
///     void finish(out)
///     static constexpr bool hasByteOrderMark  U+FEFF has a code
template <class Encoder> class BlockEncoder : public TextCodec::Encoding {
public:
    static constexpr int bytesPerStep = 32;

    /// The few bytes `before` come before the text.
    BlockEncoder(TextCodec::ByteSink sink, TextCodec::AsRead asRead, QByteArrayView before = {})
        : m_sink(std::move(sink))
        , m_asRead(asRead)
        , m_buffer(new uchar[blockBytes + qMax(bytesPerStep, asciiAtOnce)])
        , m_out(std::copy(before.begin(), before.end(), m_buffer.get()))
    {
    }

    bool add(const TextChunk &chunk) override
    {
        if (std::exchange(m_isStart, false) && dropsByteOrderMark(chunk)) {
            TextChunk rest = chunk;
            rest.utf16 = rest.utf16.sliced(1);
            return rest.utf16.isEmpty() || write(rest);
        }
        return isSpelled(chunk) ? writeSpelled(chunk) : write(chunk);
    }

    bool finish(const TextChunk &end) override
    {
        dropWaiting(m_out);
        if (isSpelled(end))
            return writeBytes(*end.spelling) && flushRest();
        m_encoder.finish(m_out);
        return flushRest();
    }

private:
    static constexpr qsizetype blockBytes = 65536;
    static constexpr int asciiAtOnce = 64;

    static bool dropsByteOrderMark(const TextChunk &chunk)
    {
        return !Encoder::hasByteOrderMark && chunk.utf16.startsWith(QChar::ByteOrderMark);
    }

    bool isSpelled(const TextChunk &chunk) const
    {
        return chunk.spelling && m_asRead == TextCodec::AsRead::Everything;
    }

    bool write(const TextChunk &chunk)
    {
        return chunk.isLatin1() ? write(reinterpret_cast<const uchar *>(chunk.latin1.data()), chunk.size())
                                : write(chunk.utf16.utf16(), chunk.size());
    }

    bool writeSpelled(const TextChunk &chunk)
    {
        Q_ASSERT(chunk.size() == 1);
        dropWaiting(m_out);
        const char16_t c = chunk.isLatin1() ? uchar(chunk.latin1[0]) : chunk.utf16[0].unicode();
        return m_encoder.admits(c, *chunk.spelling, m_out) ? writeBytes(*chunk.spelling) : write(chunk);
    }

    /// Of any length.
    bool writeBytes(QByteArrayView bytes)
    {
        if (m_out - m_buffer.get() + bytes.size() > blockBytes) {
            if (!flushRest())
                return false;
            if (bytes.size() > blockBytes)
                return m_sink(bytes);
        }
        m_out = std::copy(bytes.begin(), bytes.end(), m_out);
        return true;
    }

    template <class Unit> bool write(const Unit *in, qint64 length)
    {
        const Unit *const end = in + length;
        uchar *out = m_out;
        while (in != end) {
            if (out - m_buffer.get() >= blockBytes) {
                if (!flush(out))
                    return false;
                out = m_buffer.get();
            }
            if (*in < 0x80 && m_waiting == 0 && m_encoder.isAscii() && copyAscii(in, end, out)) {
                copyMoreAscii(in, end, out);
                continue;
            }
            put(*in++, out);
        }
        m_out = out;
        return true;
    }

    template <class Unit> static bool copyAscii(const Unit *&in, const Unit *end, uchar *&out)
    {
        if (end - in < asciiwords::wordSize || !isAsciiWord(in))
            return false;
        asciiwords::copy<asciiwords::wordSize>(in, out);
        if (Encoder::special(asciiwords::loadWord(out)) != 0)
            return false;
        in += asciiwords::wordSize;
        out += asciiwords::wordSize;
        return true;
    }

    /// What follows ASCII is mostly more of it.
    void copyMoreAscii(const uchar *&in, const uchar *end, uchar *&out) const
    {
        const uchar *const full = m_buffer.get() + blockBytes;
        for (; end - in >= asciiAtOnce && out < full; in += asciiAtOnce, out += asciiAtOnce) {
            quint64 special = 0;
            for (int i = 0; i < asciiAtOnce; i += asciiwords::wordSize)
                special |= Encoder::special(asciiwords::loadWord(in + i))
                    | asciiwords::highBytes(asciiwords::loadWord(in + i));
            if (special != 0)
                return;
            asciiwords::copy<asciiAtOnce>(in, out);
        }
    }
    void copyMoreAscii(const char16_t *, const char16_t *, uchar *) const { }

    static bool isAsciiWord(const uchar *in) { return asciiwords::highBytes(asciiwords::loadWord(in)) == 0; }
    static bool isAsciiWord(const char16_t *in)
    {
        return asciiwords::isAscii4(asciiwords::loadWord(in) | asciiwords::loadWord(in + 4));
    }

    void put(uchar c, uchar *&out)
    {
        dropWaiting(out);
        m_encoder.character(c, out);
    }

    void put(char16_t c, uchar *&out)
    {
        if (m_waiting == 0 && !QChar::isSurrogate(c))
            m_encoder.character(c, out);
        else
            putSurrogate(c, out);
    }

    void putSurrogate(char16_t c, uchar *&out)
    {
        if (QChar::isHighSurrogate(m_waiting) && QChar::isLowSurrogate(c)) {
            m_encoder.pair(std::exchange(m_waiting, u'\0'), c, out);
        } else if (goesOnHalf(m_waiting, c)) {
            goOnHalf(c, out);
        } else {
            dropWaiting(out);
            beginSurrogate(c, out);
        }
    }

    void beginSurrogate(char16_t c, uchar *&out)
    {
        const bool isUnknown = m_asRead == TextCodec::AsRead::Nothing;
        if (QChar::isHighSurrogate(c) || (isUnknown && c == firstOfHalf))
            m_waiting = c;
        else if (!QChar::isSurrogate(c))
            m_encoder.character(c, out);
        else if (isUnknown)
            m_encoder.unknown(out);
        else if (isByteEscape(c))
            m_encoder.byte(escapedByte(c), out);
        else
            m_encoder.lone(c, out);
    }

    void goOnHalf(char16_t c, uchar *&out)
    {
        if (m_waiting == firstOfHalf) {
            m_waiting = c;
        } else {
            m_waiting = 0;
            m_encoder.unknown(out);
        }
    }

    /// It does not go on. What waits with the second unit of an escaped half are two bytes.
    void dropWaiting(uchar *&out)
    {
        if (m_waiting == 0)
            return;
        m_encoder.unknown(out);
        if (isSecondOfHalf(std::exchange(m_waiting, u'\0')))
            m_encoder.unknown(out);
    }

    bool flushRest()
    {
        const bool taken = m_out == m_buffer.get() || flush(m_out);
        m_out = m_buffer.get();
        return taken;
    }

    bool flush(const uchar *out) { return m_sink(QByteArrayView(m_buffer.get(), out - m_buffer.get())); }

    const TextCodec::ByteSink m_sink;
    const TextCodec::AsRead m_asRead;
    Encoder m_encoder;
    std::unique_ptr<uchar[]> m_buffer;
    uchar *m_out;
    bool m_isStart = true; ///< nothing has come yet
    char16_t m_waiting = 0; ///< last unit of a pair or an escaped half whose rest is still to come
};
