#pragma once

#include <QGuiApplication>

/// While it lives the pointer tells that the program is busy, in all its windows at once.
class BusyPointer {
public:
    BusyPointer() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
    ~BusyPointer() { QGuiApplication::restoreOverrideCursor(); }
    Q_DISABLE_COPY_MOVE(BusyPointer)
};
