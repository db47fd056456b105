#include "app/translation.h"

#include "platform/qpeapplication.h"

#include <QCoreApplication>
#include <QLibraryInfo>

#include <tuple>

using namespace Qt::StringLiterals;

namespace {

/// Null for English, the language of the texts themselves, and for a number that is no language.
QString languageCode(int language)
{
    switch (language) {
    case Japanese:
        return u"ja"_s;
    case French:
        return u"fr"_s;
    default:
        return {};
    }
}

} // namespace

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
