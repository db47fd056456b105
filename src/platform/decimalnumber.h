#pragma once

#include <QString>

#include <concepts>
#include <optional>
#include <utility>

/// The whole number that a text as typed stands for; nothing when it is none or has more than 64 bits.
/// Full-width digits and signs, as Japanese input methods leave them, and their minus sign count as the plain
/// ones; blanks around it do not matter.
std::optional<qint64> decimalNumber(const QString &text);

/// The same for a smaller type: nothing for a number that it cannot hold.
template <std::signed_integral Number> std::optional<Number> decimalNumberAs(const QString &text)
{
    const std::optional<qint64> number = decimalNumber(text);
    return number && std::in_range<Number>(*number) ? std::optional(Number(*number)) : std::nullopt;
}
