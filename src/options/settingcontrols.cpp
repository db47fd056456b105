#include "options/settingcontrols.h"

#include "options/choicecombo.h"

#include <QCheckBox>

SettingControls::SettingControls(AppSettings &settings)
    : m_settings(settings)
{
}

QCheckBox *SettingControls::createCheck(const QString &key, int AppSettings::*setting, const QString &text)
{
    auto *box = new QCheckBox(text);
    box->setObjectName(key);
    box->setChecked(m_settings.*setting == 1);
    m_checks.append({ box, setting });
    return box;
}

ChoiceCombo *SettingControls::createChoice(
    const QString &key, int AppSettings::*setting, int firstValue, const QStringList &items)
{
    auto *combo = new ChoiceCombo(firstValue);
    combo->setObjectName(key);
    combo->addItems(items);
    combo->setValue(m_settings.*setting);
    m_choices.append({ combo, setting });
    return combo;
}

void SettingControls::store() const
{
    for (const Check &check : m_checks)
        m_settings.*check.setting = check.box->isChecked() ? 1 : 0;
    for (const Choice &choice : m_choices)
        m_settings.*choice.setting = choice.combo->value();
}
