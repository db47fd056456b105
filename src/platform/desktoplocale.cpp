#include "platform/desktoplocale.h"

#include <QLocale>

#include <langinfo.h>
#include <locale.h>

namespace {

/// The toolkit has set the process to UTF-8 by now, whatever the variables say.
bool isCodeUtf8()
{
    const locale_t locale = newlocale(LC_CTYPE_MASK, "", nullptr);
    if (!locale)
        return false;
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
