#include "options/choicecombo.h"

ChoiceCombo::ChoiceCombo(int firstValue, QWidget *parent)
    : QComboBox(parent)
    , m_firstValue(firstValue)
{
    // A stored number that is no item is a value like any other, not a hint.
    QPalette colors = palette();
    for (const auto group : { QPalette::Active, QPalette::Inactive, QPalette::Disabled })
        colors.setColor(group, QPalette::PlaceholderText, colors.color(group, QPalette::ButtonText));
    setPalette(colors);
}

void ChoiceCombo::setValue(int value)
{
    const qint64 index = qint64(value) - m_firstValue;
    m_foreignValue = value;
    setCurrentIndex(index >= 0 && index < count() ? int(index) : -1);
    if (currentIndex() < 0)
        setPlaceholderText(QString::number(value));
}

int ChoiceCombo::value() const
{
    return currentIndex() < 0 ? m_foreignValue : currentIndex() + m_firstValue;
}
