#pragma once

#include "tests/messageboxes.h"

#include <QAbstractButton>
#include <QApplication>
#include <QEvent>
#include <QMessageBox>
#include <QPushButton>
#include <QStringList>
#include <QTest>

/// Answers each message box that is shown while it lives by its button of that text, or by the Escape key,
/// and keeps what the last one said.
class BoxAnswer : public QObject {
public:
    explicit BoxAnswer(const QString &button)
        : m_button(button)
    {
        qApp->installEventFilter(this);
    }

    static QString escape() { return QStringLiteral("Escape"); }

    int count = 0;
    QString title;
    QString text;
    QStringList buttons;
    QString defaultButton;
    QMessageBox::Icon icon = QMessageBox::NoIcon;

    bool eventFilter(QObject *object, QEvent *event) override
    {
        auto *box = qobject_cast<QMessageBox *>(object);
        if (box && event->type() == QEvent::Show)
            QMetaObject::invokeMethod(
                this, [this, box] { answer(box); }, Qt::QueuedConnection);
        return false;
    }

private:
    void answer(QMessageBox *box)
    {
        ++count;
        title = box->windowTitle();
        text = box->text();
        icon = box->icon();
        defaultButton = box->defaultButton() ? box->defaultButton()->text() : QString();
        buttons.clear();
        QAbstractButton *wanted = nullptr;
        for (QAbstractButton *button : box->buttons()) {
            buttons += button->text();
            if (button->text() == m_button)
                wanted = button;
        }
        if (wanted)
            QTest::mouseClick(wanted, Qt::LeftButton);
        else
            QTest::keyClick(box, Qt::Key_Escape);
    }

    NoTimeToRead m_noTimeToRead;
    QString m_button;
};
