#include "platform/decimalnumber.h"

namespace {

constexpr char16_t fullWidthStart = u'\uFF01'; // "！" to "～" stand for "!" to "~"
constexpr char16_t fullWidthEnd = u'\uFF5E';
constexpr char16_t minusSign = u'\u2212'; // what conversion offers for the full-width hyphen

QChar halfWidth(QChar c)
{
    const char16_t unit = c.unicode();
    if (unit == minusSign)
        return u'-';
    return unit >= fullWidthStart && unit <= fullWidthEnd ? QChar(char16_t(unit - fullWidthStart + u'!')) : c;
}

} // namespace

std::optional<qint64> decimalNumber(const QString &text)
{
    QString plain = text.trimmed();
    for (QChar &c : plain)
        c = halfWidth(c);
    bool isNumber = false;
    const qint64 number = plain.toLongLong(&isNumber, 10);
    return isNumber ? std::optional(number) : std::nullopt;
}
