#pragma once

#include "codec/textcodec.h"
#include "text/asciiwords.h"

#include <algorithm>
#include <memory>
#include <utility>

/// Drives a codec's decoder over bytes and hands the text on in blocks.
///
/// Long sequences of ASCII go to the sink as they lie in the input; everything else, short ones included,
/// gathers in one buffer that stays in the processor's cache. A decoder is a small class, inlined here:
///
///     bool isAscii() const             bytes that are not special stand for themselves now
///     static quint64 special(word)     flags the bytes of a word that isAscii() does not speak for
///     static bool isSpecial(byte)
///     bool next(in, end, out)          decodes one byte or more, to at most `unitsPerStep` units; true: the
///                                      bytes make one unit (at the end of the text perhaps none) and are not
///                                      what the encoder would write
///     bool endsOpen() const            behind the last byte the encoder would write more
///     static qsizetype openFrom(bytes) a call of next() that begins before it wants no byte behind these;
///                                      of a decoder that decodes parts
template <class Decoder> class BlockDecoder {
public:
    static constexpr int unitsPerStep = 64;

    BlockDecoder(TextCodec::TextSink &sink, qsizetype blockUnits, Decoder decoder)
        : m_sink(sink)
        , m_decoder(decoder)
        , m_blockUnits(blockUnits)
        , m_longSequence(std::max<qsizetype>(16, m_blockUnits / 16))
        , m_buffer(new char16_t[static_cast<size_t>(m_blockUnits + m_longSequence + unitsPerStep)])
    {
    }

    /// Decodes the characters that begin before `stop`. Returns where the next one begins.
    qsizetype decode(QByteArrayView bytes, qsizetype stop)
    {
        const auto *const begin = reinterpret_cast<const uchar *>(bytes.data());
        const uchar *in = begin;
        const uchar *const end = in + bytes.size();
        const uchar *const stopAt = in + stop;
        char16_t *out = m_buffer.get();
        Decoder decoder = m_decoder;
        while (in < stopAt) {
            if (out - m_buffer.get() >= m_blockUnits)
                out = flush(out);
            if (decoder.isAscii() && (copyAscii(in, end, out) || in >= stopAt))
                continue;
            const uchar *const from = in;
            char16_t *const unit = out;
            if (decoder.next(in, end, out)) [[unlikely]]
                out = spell({ from, in }, unit, out);
        }
        flush(out);
        m_decoder = decoder;
        return in - begin;
    }

    const Decoder &decoder() const { return m_decoder; }

private:
    /// True when the input is at its end or more may follow; false at a special byte.
    bool copyAscii(const uchar *&in, const uchar *end, char16_t *&out)
    {
        if (end - in < asciiwords::wordSize) {
            if (Decoder::isSpecial(*in))
                return false;
            *out++ = *in++;
            return true;
        }
        const quint64 flags = Decoder::special(asciiwords::loadWord(in));
        if (flags == 0) {
            copyWords(in, end, out);
            return true;
        }
        asciiwords::copy<asciiwords::wordSize>(in, out);
        in += asciiwords::bytesBelow(flags);
        out += asciiwords::bytesBelow(flags);
        return false;
    }

    /// Over the word at `in` and what follows of the same kind.
    void copyWords(const uchar *&in, const uchar *end, char16_t *&out)
    {
        const uchar *next = in;
        char16_t *to = out;
        do {
            asciiwords::copy<asciiwords::wordSize>(next, to);
            next += asciiwords::wordSize;
            to += asciiwords::wordSize;
        } while (next - in < m_longSequence && end - next >= asciiwords::wordSize
            && Decoder::special(asciiwords::loadWord(next)) == 0);
        if (next - in >= m_longSequence) {
            out = flush(out);
            in = passOn(in, end);
        } else {
            out = to;
            in = next;
        }
    }

    /// Gives a sequence of ASCII to the sink in blocks; returns where it ends.
    const uchar *passOn(const uchar *in, const uchar *end)
    {
        for (const uchar *blockEnd = in; blockEnd != end && !Decoder::isSpecial(*blockEnd); in = blockEnd) {
            blockEnd = asciiEnd(in, in + std::min<qsizetype>(m_blockUnits, end - in));
            m_sink.latin1(QByteArrayView(in, blockEnd - in));
        }
        return in;
    }

    static const uchar *asciiEnd(const uchar *in, const uchar *end)
    {
        while (end - in >= asciiwords::wordSize && Decoder::special(asciiwords::loadWord(in)) == 0)
            in += asciiwords::wordSize;
        return std::find_if(in, end, Decoder::isSpecial);
    }

    /// Tells the bytes of the unit that was written last.
    char16_t *spell(QByteArrayView bytes, const char16_t *unit, const char16_t *out)
    {
        char16_t *const to = flush(unit);
        m_sink.spelling(bytes);
        return std::copy(unit, out, to);
    }

    char16_t *flush(const char16_t *out)
    {
        const qsizetype length = out - m_buffer.get();
        if (length > 0)
            m_sink.utf16(QStringView(m_buffer.get(), length));
        return m_buffer.get();
    }

    TextCodec::TextSink &m_sink;
    Decoder m_decoder;
    const qsizetype m_blockUnits;
    const qsizetype m_longSequence;
    std::unique_ptr<char16_t[]> m_buffer;
};

/// Decodes bytes by a decoder, which may be in the middle of a text; as above.
template <class Decoder>
qsizetype decodeSome(QByteArrayView bytes, qsizetype stop, TextCodec::TextSink &sink, Decoder &decoder)
{
    constexpr qsizetype unitsPerByte = 2; // at the most, and only in UTF-16
    const qsizetype blockUnits = std::clamp(unitsPerByte * bytes.size(), qsizetype{ 1 }, sink.blockUnits);
    BlockDecoder<Decoder> blocks(sink, blockUnits, decoder);
    const qsizetype end = blocks.decode(bytes, stop);
    decoder = blocks.decoder();
    return end;
}

/// A whole text.
template <class Decoder>
void decodeBlocks(QByteArrayView bytes, TextCodec::TextSink &sink, Decoder decoder = Decoder())
{
    decodeSome(bytes, bytes.size(), sink, decoder);
    if (decoder.endsOpen())
        sink.spelling("");
}

/// Decodes a text in parts. What may go on behind one waits for the next; where that is much, such as a
/// million escape sequences, for as much again, so that each byte is looked at a few times at most.
template <class Decoder> class BlockDecoding : public TextCodec::Decoding {
public:
    explicit BlockDecoding(Decoder decoder = Decoder())
        : m_decoder(decoder)
    {
    }

    void add(QByteArrayView bytes, TextCodec::TextSink &sink) override
    {
        if (!m_waiting.isEmpty()) {
            m_waiting += bytes;
            bytes = m_waiting;
        }
        if (bytes.size() < m_enough)
            return;
        const qsizetype end = decodeSome(bytes, Decoder::openFrom(bytes), sink, m_decoder);
        m_waiting = bytes.sliced(end).toByteArray();
        m_enough = 2 * m_waiting.size();
    }

    void finish(TextCodec::TextSink &sink) override
    {
        decodeBlocks(std::exchange(m_waiting, {}), sink, m_decoder);
    }

private:
    Decoder m_decoder;
    QByteArray m_waiting;
    qsizetype m_enough = 0; ///< a look at fewer bytes is not worth it
};
