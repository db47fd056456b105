#include "platform/enteredtext.h"

#include "platform/text/textcodec.h"

QString pastedText(const QString &text)
{
    QString result = TextCodec::cleanInput(text);
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
