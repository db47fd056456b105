#include "app/interfacelanguage.h"

#include <tuple>

InterfaceLanguage::InterfaceLanguage(int language)
{
    std::ignore = use(language);
}

bool InterfaceLanguage::use(int language)
{
    const bool isNeeded = Translation::isNeeded(language);
    std::unique_ptr<Translation> translation = isNeeded ? Translation::load(language) : nullptr;
    if (isNeeded && !translation)
        return false;
    m_translation = std::move(translation);
    if (m_translation)
        m_translation->install();
    return true;
}
