#include "document/utf16text.h"

#include "codec/codecs.h"
#include "document/textdocument.h"

#include <QtEndian>

#include <algorithm>

namespace {

constexpr qsizetype sampleBytes = 4096;

char16_t unitAt(QByteArrayView bytes, qsizetype at, bool isBigEndian)
{
    return isBigEndian ? qFromBigEndian<char16_t>(bytes.data() + at)
                       : qFromLittleEndian<char16_t>(bytes.data() + at);
}

/// Blocks that text is made of, but for rare characters; half of all other numbers fall outside.
bool isTextUnit(char16_t unit)
{
    static constexpr struct {
        char16_t first;
        char16_t last;
    } blocks[] = { { u'\t', u'\n' }, { u'\f', u'\r' }, { 0x20, 0x7E }, { 0xA0, 0x1FFF }, { 0x2000, 0x27BF },
        { 0x3000, 0x30FF }, { 0x4E00, 0x9FFF }, { 0xAC00, 0xDFFF }, { 0xFE30, 0xFFEF } };
    const bool isInBlock = std::ranges::any_of(
        blocks, [unit](const auto &block) { return unit >= block.first && unit <= block.last; });
    return isInBlock && QChar::category(unit) != QChar::Other_NotAssigned;
}

bool isAsciiByte(uchar byte)
{
    return byte < 0x80;
}

/// A byte that text in no other code has: a control character but for those of lines, of terminals and of
/// old files' ends.
bool isForeignByte(uchar byte)
{
    constexpr QByteArrayView ofTexts = "\t\n\f\r\x1A\x1B";
    return byte == 0xFF || (byte < 0x20 && !ofTexts.contains(char(byte)));
}

bool isKana(char16_t unit)
{
    return unit >= 0x3040 && unit <= 0x30FF;
}

/// A unit whose bytes are hardly neighbours in other codes. All kana begin with the byte of the digit 0, and
/// the letters come behind that digit in numbers, as the first half of them.
bool isProof(char16_t unit)
{
    return isForeignByte(uchar(unit >> 8)) || isForeignByte(uchar(unit))
        || (isKana(unit) && !isAsciiByte(uchar(unit)));
}

/// How much in a sample of text speaks for this order; 0 where it is no text in it. Rare characters do not
/// speak against it. What has no byte above 7F is some other text, with a NUL here and there, unless half of
/// it is ASCII or kana in this order.
qsizetype proofIn(QByteArrayView sample, bool isBigEndian)
{
    constexpr qsizetype leastOfText = 50; ///< one in so many units may be of no such block
    constexpr qsizetype leastOfProof = 16; ///< one in so many must be
    constexpr qsizetype leastProof = 2; ///< one may be a NUL in some other text
    const qsizetype units = sample.size() / 2;
    qsizetype rare = 0;
    qsizetype proof = 0;
    qsizetype plain = 0;
    for (qsizetype at = 0; at + 1 < sample.size(); at += 2) {
        const char16_t unit = unitAt(sample, at, isBigEndian);
        rare += !isTextUnit(unit);
        proof += isProof(unit);
        plain += unit < 0x80 || isKana(unit);
    }
    const bool isSevenBit = std::ranges::all_of(sample, isAsciiByte);
    const bool isText = rare * leastOfText <= units && (!isSevenBit || plain * 2 >= units);
    return isText && proof >= leastProof && proof * leastOfProof >= units ? proof : 0;
}

/// Writes a text in UTF-8 as it is decoded.
class Utf8Sink : public TextCodec::TextSink {
public:
    /// Of so many bytes in UTF-16.
    explicit Utf8Sink(qsizetype size) { m_utf8.reserve(size * longestOfUnit / 2 + longestOfUnit); }
    void latin1(QByteArrayView characters) override { m_encoding->add({ {}, characters, {} }); }
    void utf16(QStringView text) override { m_encoding->add({ {}, {}, text }); }
    QByteArray finish()
    {
        m_encoding->finish({});
        return std::move(m_utf8);
    }

private:
    static constexpr qsizetype longestOfUnit = 3;

    QByteArray m_utf8;
    const std::unique_ptr<TextCodec::Encoding> m_encoding = utf8Codec().encoding(
        [this](QByteArrayView bytes) { return m_utf8 += bytes, true; }, TextCodec::AsRead::UndecodableBytes);
};

} // namespace

std::optional<Utf16Form> utf16FormOf(QByteArrayView bytes)
{
    return utf16FormOf(bytes, bytes.size());
}

std::optional<Utf16Form> utf16FormOf(QByteArrayView start, qint64 size)
{
    if (start.startsWith("\xFF\xFE"))
        return Utf16Form{ false, true };
    if (start.startsWith("\xFE\xFF"))
        return Utf16Form{ true, true };
    if (size % 2 != 0)
        return std::nullopt;
    const QByteArrayView sample = start.first(qMin(start.size(), sampleBytes));
    const qsizetype little = proofIn(sample, false);
    const qsizetype big = proofIn(sample, true);
    if (little == big)
        return std::nullopt;
    return Utf16Form{ big > little, false };
}

const TextCodec &codecOf(Utf16Form form)
{
    if (form.hasMark)
        return form.isBigEndian ? utf16BigEndianCodec() : utf16LittleEndianCodec();
    return form.isBigEndian ? unmarkedUtf16BigEndianCodec() : unmarkedUtf16LittleEndianCodec();
}

Utf8FromUtf16::Utf8FromUtf16(Utf16Form form)
    : m_decoding(codecOf(form).decoding())
{
}

QByteArray Utf8FromUtf16::add(QByteArrayView bytes)
{
    Utf8Sink sink(bytes.size());
    m_decoding->add(bytes, sink);
    return sink.finish();
}

QByteArray Utf8FromUtf16::finish()
{
    Utf8Sink sink(0);
    m_decoding->finish(sink);
    return sink.finish();
}

QByteArray utf8FromUtf16(QByteArrayView bytes, Utf16Form form)
{
    Utf8FromUtf16 conversion(form);
    const QByteArray start = conversion.add(bytes);
    return start + conversion.finish();
}

std::optional<Utf16Form> utf16FormOf(const TextDocument &document)
{
    return document.isUtf16() ? document.findings().utf16 : std::nullopt;
}

bool keepsUtf16(const TextDocument &document)
{
    const auto form = utf16FormOf(document);
    return form && document.writingCode().codec == &codecOf(*form);
}
