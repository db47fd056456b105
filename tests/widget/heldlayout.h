#pragma once

#include "widget/viewlayout.h"

#include <QCoreApplication>
#include <QEvent>

/// While it lives, no long text gets on with its new layout.
class HeldLayout : public QObject {
public:
    HeldLayout() { qApp->installEventFilter(this); }

protected:
    bool eventFilter(QObject *object, QEvent *event) override
    {
        return event->type() == QEvent::Timer && qobject_cast<ViewLayout *>(object->parent());
    }
};
