#include "app/charactershown.h"

#include "files/byteescape.h"

using namespace Qt::StringLiterals;

namespace {

QString hex(char32_t number, int digits)
{
    return QString::number(number, 16).toUpper().rightJustified(digits, u'0');
}

bool canBeSeen(char32_t character)
{
    return QChar::isPrint(character) && !QChar::isSpace(character) && !QChar::isMark(character);
}

} // namespace

QString shownCharacter(char32_t character)
{
    if (character <= 0xFFFF && isByteEscape(char16_t(character)))
        return u"0x"_s + hex(escapedByte(char16_t(character)), 2);
    if (!QChar::isSurrogate(character) && canBeSeen(character))
        return QString::fromUcs4(&character, 1);
    return u"U+"_s + hex(character, 4);
}
