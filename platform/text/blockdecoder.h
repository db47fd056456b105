#pragma once

#include "platform/text/asciirun.h"
#include "platform/text/textcodec.h"

#include <memory>

/// Units that a block of decoded text holds, about; see TextCodec::setBlockUnits().
extern qsizetype decodedBlockUnits;

/// Drives a codec's decoder over bytes and hands the text on in blocks.
///
/// Long runs of ASCII go to the sink as they lie in the input; everything else, short runs included, gathers
/// in one buffer that stays in the processor's cache. A decoder is a small class, inlined here:
///
///     bool isAscii() const             bytes that are not special stand for themselves now
///     static quint64 special(word)     marks the bytes of a word that isAscii() does not speak for
///     static bool isSpecial(byte)
///     void next(in, end, out)          decodes one byte or more, to at most `unitsPerStep` units
template <class Decoder> class BlockDecoder {
public:
    static constexpr int unitsPerStep = 64;

    BlockDecoder(TextCodec::TextSink &sink, Decoder decoder)
        : m_sink(sink)
        , m_decoder(decoder)
        , m_blockUnits(decodedBlockUnits)
        , m_longRun(std::max<qsizetype>(16, m_blockUnits / 16))
        , m_buffer(new char16_t[static_cast<size_t>(m_blockUnits + m_longRun + unitsPerStep)])
    {
    }

    void decode(QByteArrayView bytes)
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
            decoder.next(in, end, out);
        }
        flush(out);
    }

private:
    /// True when the input is at its end or more may follow; false at a special byte.
    bool copyAscii(const uchar *&in, const uchar *end, char16_t *&out)
    {
        if (end - in < asciirun::wordSize) {
            if (Decoder::isSpecial(*in))
                return false;
            *out++ = *in++;
            return true;
        }
        const int count = asciirun::bytesBelow(Decoder::special(asciirun::loadWord(in)));
        asciirun::copy<asciirun::wordSize>(in, out);
        in += count;
        out += count;
        if (count < asciirun::wordSize)
            return false;
        copyRun(in, end, out);
        return true;
    }

    void copyRun(const uchar *&in, const uchar *end, char16_t *&out)
    {
        const uchar *const start = in;
        const uchar *run = in;
        char16_t *to = out;
        while (end - run >= 2 * asciirun::wordSize && run - start < m_longRun
            && Decoder::special(asciirun::loadWord(run)) == 0
            && Decoder::special(asciirun::loadWord(run + asciirun::wordSize)) == 0) {
            asciirun::copy<2 * asciirun::wordSize>(run, to);
            run += 2 * asciirun::wordSize;
            to += 2 * asciirun::wordSize;
        }
        if (run - start < m_longRun) {
            in = run;
            out = to;
        } else {
            out = flush(out);
            in = passOn(start, end);
        }
    }

    /// Gives a run of ASCII to the sink in blocks; returns where it ends.
    const uchar *passOn(const uchar *in, const uchar *end)
    {
        const uchar *block = in;
        while (end - in >= asciirun::wordSize && Decoder::special(asciirun::loadWord(in)) == 0) {
            in += asciirun::wordSize;
            if (in - block >= m_blockUnits) {
                m_sink.latin1(QByteArrayView(block, in - block));
                block = in;
            }
        }
        if (in != block)
            m_sink.latin1(QByteArrayView(block, in - block));
        return in;
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
    const qsizetype m_longRun;
    std::unique_ptr<char16_t[]> m_buffer;
};

template <class Decoder>
void decodeBlocks(QByteArrayView bytes, TextCodec::TextSink &sink, Decoder decoder = {})
{
    BlockDecoder<Decoder>(sink, decoder).decode(bytes);
}

/// The unit that stands for a byte that cannot be decoded.
constexpr char16_t escapeOf(uchar byte)
{
    return static_cast<char16_t>(0xDC00 + byte);
}
