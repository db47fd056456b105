#pragma once

#include <QObject>

class QCoreApplication;

/// Gives the keys back to the window that a dialog belongs to when the dialog closes, where no window manager
/// does: an X server would leave them with nobody.
class ReturnedFocus : public QObject {
    Q_OBJECT
public:
    /// Looks at all events of the application that owns it.
    explicit ReturnedFocus(QCoreApplication *application);

    bool eventFilter(QObject *object, QEvent *event) override;
};
