#include "app/translation.h"

#include "platform/qpeapplication.h"

#include <QCoreApplication>
#include <QLibraryInfo>

#include <tuple>

using namespace Qt::StringLiterals;

namespace {

constexpr std::pair<Language, QLatin1StringView> languageCodes[] = { { English, "en"_L1 },
    { Japanese, "ja"_L1 }, { French, "fr"_L1 } };

/// Null for English, the language of the texts themselves, and for a number that is no language.
QString languageCode(int language)
{
    for (const auto &[known, code] : languageCodes) {
        if (known == language && known != English)
            return code;
    }
    return {};
}

} // namespace

std::optional<Language> languageAmong(const QStringList &names)
{
    for (const QString &name : names) {
        for (const auto &[language, code] : languageCodes) {
            if (name.section(u'-', 0, 0) == code)
                return language;
        }
    }
    return std::nullopt;
}

bool Translation::isNeeded(int language)
{
    return !languageCode(language).isNull();
}

std::unique_ptr<Translation> Translation::load(int language)
{
    const QString code = languageCode(language);
    std::unique_ptr<Translation> translation(new Translation);
    // Without delimiters: no file of a shorter name is to be taken in its place.
    const QString fileName = QPEApplication::qpeDir() + u"/i18n/%1/marlopad2.qm"_s.arg(code);
    if (!translation->m_program.load(fileName, {}, u""_s))
        return nullptr;
    // Where the toolkit's translation is not installed its few texts stay English.
    const QString toolkitFolder = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
    std::ignore = translation->m_toolkit.load(u"qtbase_"_s + code, toolkitFolder);
    return translation;
}

Translation::~Translation()
{
    QCoreApplication::removeTranslator(&m_program);
    QCoreApplication::removeTranslator(&m_toolkit);
}

void Translation::install()
{
    // An empty translator would be refused.
    if (!m_toolkit.isEmpty())
        QCoreApplication::installTranslator(&m_toolkit);
    QCoreApplication::installTranslator(&m_program);
}
