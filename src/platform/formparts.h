#pragma once

#include <QList>
#include <QSize>

class QComboBox;
class QDialog;
class QLabel;
class QLayout;
class QPushButton;
class QString;
class QWidget;

/// What the forms have in common. Lengths are platform pixels.

/// Size of a button that has no reason to be larger or smaller.
QSize usualButtonSize();

/// The two buttons that end a dialog.
struct EndButtons {
    QPushButton *accept; ///< Return presses it wherever the focus is
    QPushButton *reject;
};
/// Connected to the slots of these names. They belong to the dialog from the start, since it chooses another
/// default button otherwise, and so come last in the order of Tab if the other controls belong to it already.
/// It is for the caller to give them their sizes and places.
EndButtons createEndButtons(QDialog *dialog, const QString &acceptText, const QString &rejectText);

/// A row of its own with these buttons at its right end; the style's spacing where none is given.
QWidget *createRowOfButtons(const QList<QPushButton *> &buttons, int spacing = -1);

/// The same margin on all sides.
void setSpaces(QLayout *layout, int margin, int spacing);

/// A label whose letter leads to the control, and which names it for assistive technology. In a combo that is
/// typed into the field takes the keys, so it gets the name too.
QLabel *createLabel(const QString &text, QWidget *control);

/// Makes a field of a combo: what is typed is neither completed nor added to the list.
void makeTypable(QComboBox *combo);
/// Names such a combo and its field where no label does.
void nameTypable(QComboBox *combo, const QString &name);
