#pragma once

#include "settings/settings.h"

#include <QList>

class ChoiceCombo;
class QCheckBox;

/// The controls of settings that are stored as small numbers. Each is made showing its setting, and has its
/// setting's key as its object name.
class SettingControls {
public:
    /// The settings must live as long.
    explicit SettingControls(AppSettings &settings);

    /// Checked for 1 alone; stored as 1 or 0.
    QCheckBox *createCheck(const QString &key, int AppSettings::*setting, const QString &text);
    struct Item {
        int value;
        QString text;
    };
    /// Stored as the value of the chosen item.
    ChoiceCombo *createChoice(const QString &key, int AppSettings::*setting, const QList<Item> &items);
    /// The same of items whose values follow one another.
    ChoiceCombo *createChoice(
        const QString &key, int AppSettings::*setting, int firstValue, const QStringList &items);

    /// Writes what the controls show into the settings. The controls must still be there.
    void store() const;

private:
    struct Check {
        QCheckBox *box;
        int AppSettings::*setting;
    };
    struct Choice {
        ChoiceCombo *combo;
        int AppSettings::*setting;
    };

    AppSettings &m_settings;
    QList<Check> m_checks;
    QList<Choice> m_choices;
};
