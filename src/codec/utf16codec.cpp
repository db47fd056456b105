#include "codec/blockdecoder.h"
#include "codec/blockencoder.h"
#include "codec/codecs.h"
#include "codec/withoutcode.h"
#include "files/escapedhalf.h"

namespace {

enum class Order { LittleEndian, BigEndian };
enum class Mark { Written, None };

template <Order order> char16_t loadUnit(const uchar *in)
{
    return order == Order::LittleEndian ? qFromLittleEndian<char16_t>(in) : qFromBigEndian<char16_t>(in);
}

template <Order order> void storeUnit(char16_t unit, uchar *&out)
{
    if (order == Order::LittleEndian)
        qToLittleEndian(unit, out);
    else
        qToBigEndian(unit, out);
    out += 2;
}

/// A lone surrogate is an escaped half; an odd last byte an escape, or ASCII.
template <Order order> class Utf16Decoder {
public:
    explicit Utf16Decoder(Mark mark)
        : m_mayHaveMark(mark == Mark::Written)
    {
    }

    static bool isAscii() { return false; }
    static bool isSpecial(uchar) { return true; }
    static quint64 special(quint64) { return 1; }

    bool next(const uchar *&in, const uchar *end, char16_t *&out)
    {
        if (end - in < 2) {
            const bool isAsciiByte = *in < 0x80;
            *out++ = isAsciiByte ? char16_t{ *in } : escapeOf(*in);
            ++in;
            return isAsciiByte;
        }
        if (std::exchange(m_mayHaveMark, false) && loadUnit<order>(in) == QChar::ByteOrderMark) {
            in += 2;
            return false;
        }
        int count = 0;
        do
            nextUnit(in, end, out);
        while (++count < unitsPerStep && end - in >= longest);
        return false;
    }

    static bool endsOpen() { return false; }

    static qsizetype openFrom(QByteArrayView bytes)
    {
        const qsizetype end = bytes.size() / 2 * 2;
        const auto *const in = reinterpret_cast<const uchar *>(bytes.data());
        return end > 0 && QChar::isHighSurrogate(loadUnit<order>(in + end - 2)) ? end - 2 : end;
    }

private:
    static constexpr int unitsPerStep = 16;
    static constexpr qsizetype longest = 4; ///< bytes of a character

    static void nextUnit(const uchar *&in, const uchar *end, char16_t *&out)
    {
        const auto unit = loadUnit<order>(in);
        in += 2;
        if (!QChar::isSurrogate(unit)) {
            *out++ = unit;
        } else if (QChar::isHighSurrogate(unit) && end - in >= 2
            && QChar::isLowSurrogate(loadUnit<order>(in))) {
            *out++ = unit;
            *out++ = loadUnit<order>(in);
            in += 2;
        } else {
            escapeHalf(unit, out);
        }
    }

    bool m_mayHaveMark; ///< at its start
};

/// Gathers escapes: an escaped half becomes a lone surrogate again, others stay bytes.
template <Order order> class Utf16Encoder {
public:
    static constexpr bool hasByteOrderMark = true;
    static constexpr bool writesPairs = true;
    static bool hasCode(char16_t) { return true; }
    static bool isEscape(char16_t c) { return isByteEscape(c); }
    static bool isAscii() { return false; }
    static quint64 special(quint64) { return 1; }

    void character(char16_t c, uchar *&out)
    {
        finish(out);
        storeUnit<order>(c, out);
    }

    void pair(char16_t high, char16_t low, uchar *&out)
    {
        character(high, out);
        storeUnit<order>(low, out);
    }

    void byte(uchar b, uchar *&out)
    {
        m_escaped = m_escaped << 8 | b;
        if (++m_count == 3) {
            if (const char16_t half = halfOfBytes(m_escaped)) {
                storeUnit<order>(half, out);
                m_count = 0;
            } else {
                *out++ = static_cast<uchar>(m_escaped >> 16 & 0xFF);
                m_count = 2;
            }
        }
    }

    void unknown(uchar *&out) { character(QChar::ReplacementCharacter, out); }
    void lone(char16_t, uchar *&out) { unknown(out); }

    bool admits(char16_t, QByteArrayView, uchar *&out)
    {
        finish(out);
        return true;
    }

    void finish(uchar *&out)
    {
        for (; m_count > 0; --m_count)
            *out++ = static_cast<uchar>(m_escaped >> (8 * (m_count - 1)) & 0xFF);
    }

private:
    quint32 m_escaped = 0; ///< the last escaped bytes, the newest lowest
    int m_count = 0; ///< how many of them are not written yet
};

/// UTF-16 behind a byte-order mark, which decoding drops and encoding writes; or without one.
template <Order order> class Utf16Codec : public TextCodec {
public:
    explicit Utf16Codec(Mark mark)
        : m_mark(mark)
    {
    }

    using TextCodec::decode;
    void decode(QByteArrayView bytes, TextSink &sink) const override
    {
        decodeBlocks(bytes, sink, Utf16Decoder<order>(m_mark));
    }

    std::unique_ptr<Decoding> decoding() const override
    {
        return std::make_unique<BlockDecoding<Utf16Decoder<order>>>(Utf16Decoder<order>(m_mark));
    }

    std::unique_ptr<Encoding> encoding(ByteSink sink, AsRead asRead) const override
    {
        const QByteArrayView before = m_mark == Mark::None ? QByteArrayView() : byteOrderMark();
        return std::make_unique<BlockEncoder<Utf16Encoder<order>>>(std::move(sink), asRead, before);
    }

    qint64 findWithoutCode(const TextChunk &chunk, qint64 from, AsRead asRead) const override
    {
        return WithoutCode<Utf16Encoder<order>>::find(chunk, from, asRead);
    }

private:
    static QByteArrayView byteOrderMark() { return order == Order::LittleEndian ? "\xFF\xFE" : "\xFE\xFF"; }

    const Mark m_mark;
};

} // namespace

const TextCodec &utf16LittleEndianCodec()
{
    static const Utf16Codec<Order::LittleEndian> codec(Mark::Written);
    return codec;
}

const TextCodec &utf16BigEndianCodec()
{
    static const Utf16Codec<Order::BigEndian> codec(Mark::Written);
    return codec;
}

const TextCodec &unmarkedUtf16LittleEndianCodec()
{
    static const Utf16Codec<Order::LittleEndian> codec(Mark::None);
    return codec;
}

const TextCodec &unmarkedUtf16BigEndianCodec()
{
    static const Utf16Codec<Order::BigEndian> codec(Mark::None);
    return codec;
}
