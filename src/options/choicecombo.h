#pragma once

#include <QComboBox>

/// A list for a setting that is stored as the number of the chosen item. A stored number that is no item's is
/// shown as it is, and stays until an item is chosen.
class ChoiceCombo : public QComboBox {
    Q_OBJECT
public:
    explicit ChoiceCombo(QWidget *parent = nullptr);

    void addChoice(int value, const QString &text);

    /// The choices are to be there by now.
    void setValue(int value);
    int value() const;

private:
    int m_foreignValue = 0; ///< what is stored while no item is chosen
};
