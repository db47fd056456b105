#include "text/enteredtext.h"

namespace {

/// NUL, and every surrogate: pairs are looked at more closely.
bool isSuspect(char16_t c)
{
    return c == 0 || QChar::isSurrogate(c);
}

bool hasSuspect(QStringView text)
{
    bool found = false;
    for (const QChar c : text)
        found |= isSuspect(c.unicode());
    return found;
}

} // namespace

QString cleanInput(const QString &text)
{
    if (!hasSuspect(text))
        return text;
    QString clean;
    clean.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        const bool isPair = c.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        if (isPair)
            clean.append(c).append(text[++i]);
        else if (c.isSurrogate())
            clean.append(QChar::ReplacementCharacter);
        else if (!c.isNull())
            clean.append(c);
    }
    return clean;
}

QString pastedText(const QString &text)
{
    QString result = cleanInput(text);
    if (result.contains(u'\r')) {
        result.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
        result.replace(u'\r', u'\n');
    }
    return result;
}

QString typedText(const QString &text)
{
    return pastedText(text).removeIf(
        [](QChar c) { return c.category() == QChar::Other_Control && c != u'\n' && c != u'\t'; });
}
