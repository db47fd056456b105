#pragma once

#include <QByteArray>

#include <optional>

/// UTF-8 one character at a time, without its ban on surrogates: each is three bytes like its neighbours.

struct Utf8Character {
    char32_t value;
    qsizetype length; ///< bytes
};

/// The character that `bytes` (not empty) begin with; nothing where that is invalid, over-long or cut.
std::optional<Utf8Character> decodeUtf8(QByteArrayView bytes);

void appendUtf8(QByteArray &out, char32_t character);
