#pragma once

#include "codec/textcodec.h"
#include "text/asciiwords.h"

#include <algorithm>
#include <memory>

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

    /// What the decoder has become behind the bytes.
    Decoder decode(QByteArrayView bytes)
    {
        const auto *in = reinterpret_cast<const uchar *>(bytes.data());
        const uchar *const end = in + bytes.size();
        char16_t *out = m_buffer.get();
        Decoder decoder = m_decoder;
        while (in != end) {
            if (out - m_buffer.get() >= m_blockUnits)
                out = flush(out);
            if (decoder.isAscii() && copyAscii(in, end, out))
                continue;
            const uchar *const from = in;
            char16_t *const unit = out;
            if (decoder.next(in, end, out)) [[unlikely]]
                out = spell({ from, in }, unit, out);
        }
        flush(out);
        return decoder;
    }

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

/// Decodes a text in parts, by one decoder.
template <class Decoder> class BlockDecoding : public TextCodec::Decoding {
public:
    void add(QByteArrayView bytes, TextCodec::TextSink &sink) override
    {
        constexpr qsizetype unitsPerByte = 2; // at the most, and only in UTF-16
        const qsizetype blockUnits = std::clamp(unitsPerByte * bytes.size(), qsizetype{ 1 }, sink.blockUnits);
        m_decoder = BlockDecoder<Decoder>(sink, blockUnits, m_decoder).decode(bytes);
    }

    void finish(TextCodec::TextSink &sink) override
    {
        if (m_decoder.endsOpen())
            sink.spelling("");
    }

private:
    Decoder m_decoder;
};

template <class Decoder> void decodeBlocks(QByteArrayView bytes, TextCodec::TextSink &sink)
{
    BlockDecoding<Decoder> decoding;
    decoding.add(bytes, sink);
    decoding.finish(sink);
}
