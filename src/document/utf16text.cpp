#include "document/utf16text.h"

#include "codec/codecs.h"

#include <QtEndian>

#include <algorithm>

namespace {

constexpr qsizetype sampleBytes = 4096;

char16_t unitAt(QByteArrayView bytes, qsizetype at, bool isBigEndian)
{
    return isBigEndian ? qFromBigEndian<char16_t>(bytes.data() + at)
                       : qFromLittleEndian<char16_t>(bytes.data() + at);
}

/// Blocks that text is made of, but for rare characters. Bytes of other codes, taken by twos, fall outside.
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

bool isAsciiByte(char byte)
{
    return uchar(byte) < 0x80;
}

bool isKana(char16_t unit)
{
    return unit >= 0x3040 && unit <= 0x30FF;
}

/// The ASCII characters in a sample of text; 0 where it is no text in this order. What has no byte above 7F
/// is some other text, with a NUL here and there, unless half of it is ASCII or kana in this order.
qsizetype asciiIn(QByteArrayView sample, bool isBigEndian)
{
    qsizetype ascii = 0;
    qsizetype kana = 0;
    for (qsizetype at = 0; at + 1 < sample.size(); at += 2) {
        const char16_t unit = unitAt(sample, at, isBigEndian);
        if (!isTextUnit(unit))
            return 0;
        ascii += unit < 0x80;
        kana += isKana(unit);
    }
    const bool isSevenBit = std::ranges::all_of(sample, isAsciiByte);
    return isSevenBit && (ascii + kana) * 4 < sample.size() ? 0 : ascii;
}

} // namespace

std::optional<Utf16Form> utf16FormOf(QByteArrayView bytes)
{
    if (bytes.startsWith("\xFF\xFE"))
        return Utf16Form{ false, true };
    if (bytes.startsWith("\xFE\xFF"))
        return Utf16Form{ true, true };
    if (bytes.size() % 2 != 0)
        return std::nullopt;
    const QByteArrayView sample = bytes.first(qMin(bytes.size(), sampleBytes));
    const qsizetype little = asciiIn(sample, false);
    const qsizetype big = asciiIn(sample, true);
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

QByteArray utf8FromUtf16(QByteArrayView bytes, Utf16Form form)
{
    const TextStore text = codecOf(form).decode(bytes, LayoutRule());
    QByteArray utf8;
    const auto collect = [&utf8](QByteArrayView block) {
        utf8 += block;
        return true;
    };
    utf8Codec().encode(text, collect, TextCodec::AsRead::UndecodableBytes);
    return utf8;
}
