#include "files/utf8.h"

#include <QChar>

std::optional<Utf8Character> decodeUtf8(QByteArrayView bytes)
{
    const auto lead = static_cast<unsigned char>(bytes.front());
    if (lead < 0x80)
        return Utf8Character{ lead, 1 };
    const int length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC0 || lead > 0xF4 || bytes.size() < length)
        return std::nullopt;
    char32_t character = lead & (0x7FU >> length);
    for (int i = 1; i < length; ++i) {
        const auto byte = static_cast<unsigned char>(bytes[i]);
        if ((byte & 0xC0) != 0x80)
            return std::nullopt;
        character = (character << 6) | (byte & 0x3FU);
    }
    constexpr char32_t smallest[] = { 0, 0, 0x80, 0x800, 0x10000 };
    if (character < smallest[length] || character > QChar::LastValidCodePoint)
        return std::nullopt;
    return Utf8Character{ character, length };
}

void appendUtf8(QByteArray &out, char32_t character)
{
    const int length = character < 0x80 ? 1 : character < 0x800 ? 2 : character < 0x10000 ? 3 : 4;
    constexpr char32_t lead[] = { 0, 0, 0xC0, 0xE0, 0xF0 };
    int shift = 6 * (length - 1);
    out += static_cast<char>(lead[length] | (character >> shift));
    while (shift > 0) {
        shift -= 6;
        out += static_cast<char>(0x80U | ((character >> shift) & 0x3FU));
    }
}
