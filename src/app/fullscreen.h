#pragma once

#include <QDeadlineTimer>
#include <QObject>
#include <QRect>

class QWidget;

/// Whether a window is in full screen: the only one to ask for it, and to hear of it.
///
/// A window manager carries a request out when it gets to it, and tells of it later still. So there is never
/// more than one request under way: a change of mind meanwhile is carried out when the answer has come, and
/// no answer can be taken for news. What the window manager says at any other time is believed: it may begin
/// and end full screen by itself. Without one the window is placed over the screen here, at once.
class FullScreen : public QObject {
    Q_OBJECT
public:
    /// Of this window, which is not owned and lives longer.
    explicit FullScreen(QWidget *window);

    /// As it was last wanted, or told by the window manager since.
    bool isOn() const { return m_isOn; }

    /// Begins full screen, or ends it and maximises the window.
    void toggle();
    /// To be called when the window was shown or resized: sees to it that in full screen it is over the whole
    /// screen. Does nothing where it is so already or a window manager sees to it.
    void keep();

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void request();
    void noteRequest();
    void coverScreen();
    void uncoverScreen();
    void place(const QRect &geometry);
    void hear(bool isCovering);
    void takeAnswer();

    QWidget *m_window;
    bool m_isOn = false;
    bool m_isAskedOn = false; ///< what the window manager was asked for last
    bool m_isToldOn = false; ///< what it said last
    bool m_isAnswered = false; ///< it has said that it has done so
    QDeadlineTimer m_answer; ///< runs while its answer is awaited
    QRect m_before; ///< where the window was, without a window manager
};
