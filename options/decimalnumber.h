#pragma once

#include <QString>

#include <optional>

/// The whole number that a text as typed stands for; nothing when it is none or does not fit. Full-width
/// digits and signs, as Japanese input methods leave them, count as the plain ones; blanks around it do not
/// matter.
std::optional<int> decimalNumber(const QString &text);
