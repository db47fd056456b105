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
    const QString &key, int AppSettings::*setting, const QList<Item> &items)
{
    auto *combo = new ChoiceCombo;
    combo->setObjectName(key);
    for (const Item &item : items)
        combo->addChoice(item.value, item.text);
    combo->setValue(m_settings.*setting);
    m_choices.append({ combo, setting });
    return combo;
}

ChoiceCombo *SettingControls::createChoice(
    const QString &key, int AppSettings::*setting, int firstValue, const QStringList &items)
{
    QList<Item> numbered;
    for (const QString &text : items)
        numbered.append({ firstValue + int(numbered.size()), text });
    return createChoice(key, setting, numbered);
}

void SettingControls::store() const
{
    for (const Check &check : m_checks)
        m_settings.*check.setting = check.box->isChecked() ? 1 : 0;
    for (const Choice &choice : m_choices)
        m_settings.*choice.setting = choice.combo->value();
}
