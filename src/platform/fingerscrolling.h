#pragma once

#include <QObject>
#include <QPointer>

#include <memory>

class QAbstractScrollArea;
class QMouseEvent;
class QWidget;

/// A finger that is dragged scrolls what is under it, with momentum: lists, and forms that are larger than
/// their room. Only when it goes where it came is what it has touched pressed and released. Without this the
/// finger would be a mouse, whose drag chooses row after row.
///
/// Scroll bars, sliders and the titles of columns are dragged themselves. Pens and the mouse do as ever, and
/// so does whatever takes touches by itself.
class FingerScrolling : public QObject {
public:
    /// For all windows of the application, which owns it or outlives it.
    explicit FingerScrolling(QObject *application);
    ~FingerScrolling() override;
    Q_DISABLE_COPY_MOVE(FingerScrolling)

    bool eventFilter(QObject *object, QEvent *event) override;

private:
    bool press(QWidget *pressed, const QMouseEvent &event);
    bool move(const QMouseEvent &event);
    bool release(const QMouseEvent &event);
    bool isOfFinger(const QMouseEvent &event);
    bool isFar(const QMouseEvent &event) const;
    bool tap();

    QPointer<QAbstractScrollArea> m_area; ///< under the finger
    QPointer<QWidget> m_pressed;
    std::unique_ptr<QMouseEvent> m_press; ///< held back for as long as the finger may be tapping
    bool m_isTapping = false;
};
