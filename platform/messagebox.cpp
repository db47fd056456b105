#include "platform/messagebox.h"

#include <QMessageBox>
#include <QPushButton>
#include <QStyle>

namespace {

void setTexts(QMessageBox &box, const QString &title, const QString &text)
{
    box.setTextFormat(Qt::PlainText);
    box.setWindowTitle(title);
    box.setText(text);
}

void show(QMessageBox::Icon icon, QWidget *parent, const QString &title, const QString &text)
{
    QMessageBox box(parent);
    setTexts(box, title, text);
    box.setIcon(icon);
    box.exec();
}

} // namespace

void MessageBox::critical(QWidget *parent, const QString &title, const QString &text)
{
    show(QMessageBox::Critical, parent, title, text);
}

void MessageBox::information(QWidget *parent, const QString &title, const QString &text)
{
    show(QMessageBox::Information, parent, title, text);
}

void MessageBox::about(QWidget *parent, const QString &title, const QString &text)
{
    QMessageBox box(parent);
    setTexts(box, title, text);
    const int size = box.style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, &box);
    box.setIconPixmap(box.windowIcon().pixmap(QSize(size, size), box.devicePixelRatioF()));
    box.exec();
}

int MessageBox::question(QWidget *parent, const QString &title, const QString &text,
    const QStringList &buttons, int defaultButton, int escapeButton)
{
    QMessageBox box(parent);
    setTexts(box, title, text);
    box.setIcon(QMessageBox::Information);
    QList<QPushButton *> pushButtons;
    // Every desktop leaves buttons of this role in their order, and none becomes the one for Escape by it.
    for (const QString &button : buttons)
        pushButtons.append(box.addButton(button, QMessageBox::ActionRole));
    box.setDefaultButton(pushButtons.at(defaultButton));
    if (escapeButton != noEscape)
        box.setEscapeButton(pushButtons.at(escapeButton));
    box.exec();
    return static_cast<int>(pushButtons.indexOf(box.clickedButton()));
}
