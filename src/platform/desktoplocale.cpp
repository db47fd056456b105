#include "platform/desktoplocale.h"

#include <QByteArray>
#include <QLocale>

#include <langinfo.h>
#include <locale.h>

namespace {

/// The name of the locale that characters are in.
QByteArray namedLocale()
{
    for (const char *const variable : { "LC_ALL", "LC_CTYPE" }) {
        if (const QByteArray name = qgetenv(variable); !name.isEmpty())
            return name;
    }
    return qgetenv("LANG");
}

/// As in "fr_FR.UTF-8" or "fr_FR.utf8@euro".
bool isNamedUtf8(QByteArrayView locale)
{
    const qsizetype code = locale.indexOf('.');
    if (code < 0)
        return false;
    const qsizetype end = locale.indexOf('@', code);
    QByteArray name = locale.sliced(code + 1, (end < 0 ? locale.size() : end) - code - 1).toByteArray();
    return name.replace('-', "").toLower() == "utf8";
}

/// The toolkit has set the process to UTF-8 by now, whatever the variables say. A locale that is not
/// installed has only its name to go by.
bool isCodeUtf8()
{
    const locale_t locale = newlocale(LC_CTYPE_MASK, "", nullptr);
    if (!locale)
        return isNamedUtf8(namedLocale());
    const bool isUtf8 = qstrcmp(nl_langinfo_l(CODESET, locale), "UTF-8") == 0;
    freelocale(locale);
    return isUtf8;
}

/// Not that of a machine without a desktop.
bool isSet(const QStringList &languages)
{
    return !languages.isEmpty() && QLocale(languages.first()).language() != QLocale::C;
}

} // namespace

DesktopLocale desktopLocale()
{
    const QStringList languages = QLocale::system().uiLanguages();
    return { languages, isSet(languages) && isCodeUtf8() };
}
