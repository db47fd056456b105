#pragma once

#include "app/translation.h"

/// The language that the interface is in; its texts are installed while this lives.
class InterfaceLanguage {
public:
    /// Begins in a Language, or in English when its texts cannot be loaded.
    explicit InterfaceLanguage(int language);

    /// Puts the texts of another Language in the place of the present ones. False, with nothing changed, when
    /// they cannot be loaded.
    bool use(int language);

private:
    std::unique_ptr<Translation> m_translation; ///< null: English
};
