#include "platform/enteredtext.h"

#include "platform/text/textcodec.h"

QString movedText(const QString &text)
{
    if (!text.contains(u'\r') && !text.contains(QChar(u'\0')))
        return text;
    QString result = text;
    result.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    result.replace(u'\r', u'\n');
    return result.remove(QChar(u'\0'));
}

QString pastedText(const QString &text)
{
    return movedText(TextCodec::cleanInput(text));
}

QString typedText(const QString &text)
{
    return pastedText(text).removeIf(
        [](QChar c) { return c.category() == QChar::Other_Control && c != u'\n' && c != u'\t'; });
}
