#include "options/decimalnumber.h"

namespace {

constexpr char16_t fullWidthStart = u'\uFF01'; // "！" to "～" stand for "!" to "~"
constexpr char16_t fullWidthEnd = u'\uFF5E';

QChar halfWidth(QChar c)
{
    const char16_t unit = c.unicode();
    return unit >= fullWidthStart && unit <= fullWidthEnd ? QChar(char16_t(unit - fullWidthStart + u'!')) : c;
}

} // namespace

std::optional<int> decimalNumber(const QString &text)
{
    QString plain = text.trimmed();
    for (QChar &c : plain)
        c = halfWidth(c);
    bool isNumber = false;
    const int number = plain.toInt(&isNumber, 10);
    return isNumber ? std::optional(number) : std::nullopt;
}
