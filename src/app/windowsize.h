#pragma once

#include <QObject>

class QWidget;

/// The size of the window when it is neither maximised nor in full screen, from one run to the next.
class WindowSize : public QObject {
    Q_OBJECT
public:
    /// Of this window, which is not owned and lives longer. Notes its size in the settings from now on.
    explicit WindowSize(QWidget *window);

    /// Gives the window the size that was noted, or its first one, within its screen.
    void restore();

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool isLikeMaximised() const;

    QWidget *m_window;
};
