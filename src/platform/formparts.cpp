#include "platform/formparts.h"

#include "platform/screenclass.h"

#include <QComboBox>
#include <QDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

QSize usualButtonSize()
{
    return forScreen(QSize(60, 17), QSize(120, 28));
}

EndButtons createEndButtons(QDialog *dialog, const QString &acceptText, const QString &rejectText)
{
    const EndButtons buttons{ new QPushButton(acceptText, dialog), new QPushButton(rejectText, dialog) };
    buttons.accept->setDefault(true);
    QObject::connect(buttons.accept, &QPushButton::clicked, dialog, &QDialog::accept);
    QObject::connect(buttons.reject, &QPushButton::clicked, dialog, &QDialog::reject);
    return buttons;
}

QWidget *createRowOfButtons(const QList<QPushButton *> &buttons, int spacing)
{
    auto *row = new QWidget(buttons.constFirst()->parentWidget());
    auto *layout = new QHBoxLayout(row);
    setSpaces(layout, 0, spacing);
    layout->addStretch();
    for (QPushButton *button : buttons)
        layout->addWidget(button);
    return row;
}

void setSpaces(QLayout *layout, int margin, int spacing)
{
    layout->setContentsMargins(margin, margin, margin, margin);
    layout->setSpacing(spacing);
}

QLabel *createLabel(const QString &text, QWidget *control)
{
    auto *label = new QLabel(text);
    label->setBuddy(control);
    if (const auto *const combo = qobject_cast<QComboBox *>(control); combo && combo->isEditable())
        combo->lineEdit()->setAccessibleName(QString(text).remove(u'&'));
    return label;
}

void makeTypable(QComboBox *combo)
{
    combo->setEditable(true);
    combo->setInsertPolicy(QComboBox::NoInsert);
    combo->setCompleter(nullptr);
}

void nameTypable(QComboBox *combo, const QString &name)
{
    combo->setAccessibleName(name);
    combo->lineEdit()->setAccessibleName(name);
}
