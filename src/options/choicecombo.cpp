#include "options/choicecombo.h"

ChoiceCombo::ChoiceCombo(QWidget *parent)
    : QComboBox(parent)
{
    // A stored number that is no item is a value like any other, not a hint.
    QPalette colors = palette();
    for (const auto group : { QPalette::Active, QPalette::Inactive, QPalette::Disabled })
        colors.setColor(group, QPalette::PlaceholderText, colors.color(group, QPalette::ButtonText));
    setPalette(colors);
}

void ChoiceCombo::addChoice(int value, const QString &text)
{
    addItem(text, value);
}

void ChoiceCombo::setValue(int value)
{
    m_foreignValue = value;
    setCurrentIndex(findData(value));
    if (currentIndex() < 0)
        setPlaceholderText(QString::number(value));
}

int ChoiceCombo::value() const
{
    return currentIndex() < 0 ? m_foreignValue : currentData().toInt();
}
