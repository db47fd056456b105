#pragma once

#include <QObject>
#include <QPointer>

class QCoreApplication;
class QInputMethodEvent;
class QKeyEvent;

/// Keeps Escape from the program while an input method composes, whatever field or text it composes in: the
/// key is the input method's then, also where it lets it through. Some do so after they have dropped, because
/// of the key, what they composed; that Escape is theirs too.
class ComposingEscape : public QObject {
    Q_OBJECT
public:
    /// Looks at all events of the application that owns it.
    explicit ComposingEscape(QCoreApplication *application);

    bool eventFilter(QObject *receiver, QEvent *event) override;

private:
    enum class Composition { None, UnderWay, Dropped };

    void follow(QObject *receiver, const QInputMethodEvent &event);
    bool isTheirs(const QObject *receiver, const QKeyEvent &press) const;

    QPointer<QObject> m_receiver; ///< of the last event of an input method
    Composition m_composition = Composition::None; ///< dropped: no key was pressed or released since
};
