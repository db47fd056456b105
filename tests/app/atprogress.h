#pragma once

#include "search/frmreplaceprogress.h"

#include <QApplication>

#include <functional>

/// While it lives: acts once on each progress panel that is shown, from the event loop of its run.
class AtProgress : public QObject {
public:
    explicit AtProgress(std::function<void(frmReplaceProgress &)> action)
        : m_action(std::move(action))
    {
        qApp->installEventFilter(this);
    }
    bool eventFilter(QObject *object, QEvent *event) override
    {
        auto *panel = qobject_cast<frmReplaceProgress *>(object);
        if (panel && event->type() == QEvent::Show && !event->spontaneous())
            QMetaObject::invokeMethod(
                panel, [this, panel] { m_action(*panel); }, Qt::QueuedConnection);
        return false;
    }

private:
    std::function<void(frmReplaceProgress &)> m_action;
};
