#pragma once

#include <QApplication>
#include <QKeyEvent>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

/// While it lives a double click has no time, so that message boxes answer as soon as they are there.
class NoTimeToRead {
public:
    NoTimeToRead() { QApplication::setDoubleClickInterval(0); }
    ~NoTimeToRead() { QApplication::setDoubleClickInterval(m_interval); }
    Q_DISABLE_COPY_MOVE(NoTimeToRead)

private:
    int m_interval = QApplication::doubleClickInterval();
};

/// Answers the message boxes that appear while it lives, in turn, and keeps what they showed.
class MessageBoxes : public QObject {
public:
    struct Box {
        QString title;
        QString text;
        QStringList buttons; ///< in the order they were added
        QString defaultButton;
        QString escapeButton; ///< null when Escape does nothing
        Qt::TextFormat format = Qt::AutoText;
        QMessageBox::Icon icon = QMessageBox::NoIcon;
        bool hasPicture = false; ///< of its own, beside the icons of all boxes

        /// The buttons in their order, as "[Yes] No Cancel=Escape": the default one in brackets.
        QString drawnButtons() const
        {
            QStringList drawn;
            for (const QString &button : buttons)
                drawn << (button == defaultButton ? u'[' + button + u']' : button)
                        + (button == escapeButton ? QStringLiteral("=Escape") : QString());
            return drawn.join(u' ');
        }
    };

    /// `answers`: text of the button to press in the first box, the second … "Escape" sends that key,
    /// "(close)" closes the box. A box beyond the answers gets its default button, or the first.
    explicit MessageBoxes(const QStringList &answers = {})
        : m_answers(answers)
    {
        qApp->installEventFilter(this);
    }

    const QList<Box> &shown() const { return m_shown; }
    qsizetype count() const { return m_shown.size(); }
    /// "title|text" of each box.
    QStringList texts() const
    {
        QStringList texts;
        for (const Box &box : m_shown)
            texts << box.title + u'|' + box.text;
        return texts;
    }
    QStringList titles() const
    {
        QStringList titles;
        for (const Box &box : m_shown)
            titles << box.title;
        return titles;
    }

    bool eventFilter(QObject *object, QEvent *event) override
    {
        auto *box = qobject_cast<QMessageBox *>(object);
        if (box && event->type() == QEvent::Show)
            QTimer::singleShot(0, box, [this, box] { answer(box); });
        return false;
    }

private:
    static QString textOf(const QAbstractButton *button)
    {
        return button ? button->text().remove(u'&') : QString();
    }

    void answer(QMessageBox *box)
    {
        const QList<QAbstractButton *> buttons = box->buttons();
        Box shown{ box->windowTitle(), box->text(), {}, textOf(box->defaultButton()),
            textOf(box->escapeButton()), box->textFormat(), box->icon(), !box->iconPixmap().isNull() };
        for (const QAbstractButton *button : buttons)
            shown.buttons << textOf(button);
        m_shown << shown;
        const QString wanted = m_answers.isEmpty() ? shown.defaultButton : m_answers.takeFirst();
        if (wanted == QLatin1String("Escape")) {
            QKeyEvent press(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
            QApplication::sendEvent(box, &press);
            return;
        }
        if (wanted == QLatin1String("(close)")) {
            box->close();
            return;
        }
        const qsizetype index = wanted.isEmpty() ? 0 : shown.buttons.indexOf(wanted);
        if (index < 0)
            qFatal("no button \"%s\" in the box: %s", qPrintable(wanted), qPrintable(shown.text));
        buttons.at(index)->click();
    }

    NoTimeToRead m_noTimeToRead;
    QStringList m_answers;
    QList<Box> m_shown;
};
