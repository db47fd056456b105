#pragma once

#include "app/frmrecovery.h"
#include "tests/app/stripinwindow.h"
#include "tests/app/testwindow.h"

#include <QPushButton>
#include <QTimer>

#include <functional>

/// Acts in the list of unsaved texts when it is shown.
class InList : public QObject {
public:
    explicit InList(std::function<void(frmRecovery &)> action)
        : m_action(std::move(action))
    {
        qApp->installEventFilter(this);
    }
    bool eventFilter(QObject *object, QEvent *event) override
    {
        auto *form = qobject_cast<frmRecovery *>(object);
        if (form && event->type() == QEvent::Show)
            QTimer::singleShot(0, form, [this, form] { m_action(*form); });
        return false;
    }

private:
    std::function<void(frmRecovery &)> m_action;
};

inline void press(frmRecovery &form, const QString &text)
{
    for (QPushButton *button : form.findChildren<QPushButton *>()) {
        if (button->text() == text)
            button->click();
    }
}

/// All texts that the strip offers.
inline bool restoreAll(TestWindow &window)
{
    const InList restoring([](frmRecovery &form) { press(form, QStringLiteral("Restore")); });
    return StripInWindow(window).click(QStringLiteral("Restore"));
}
