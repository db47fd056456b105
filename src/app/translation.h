#pragma once

#include <QTranslator>

#include <memory>
#include <optional>

/// Languages of the interface as they are stored.
enum Language : int { English = 0, Japanese = 1, French = 2 };

/// The first of these, named as in "fr-CH", that there is.
std::optional<Language> languageAmong(const QStringList &names);

/// The texts of one language, installed in the application for as long as this lives: the program's own, and
/// the toolkit's (buttons of message boxes, menus of text fields) where it comes with them.
class Translation {
public:
    /// Whether the program's texts exist in other words than its own; any number may be asked about.
    static bool isNeeded(int language);
    /// Null when the program's file of that language cannot be loaded; nothing is installed then.
    static std::unique_ptr<Translation> load(int language);
    ~Translation();
    Q_DISABLE_COPY_MOVE(Translation)

    /// Puts the texts to use.
    void install();

private:
    Translation() = default;

    QTranslator m_toolkit;
    QTranslator m_program;
};
