#include "platform/composingescape.h"

#include <QCoreApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QWidget>

ComposingEscape::ComposingEscape(QCoreApplication *application)
    : QObject(application)
{
    application->installEventFilter(this);
}

bool ComposingEscape::eventFilter(QObject *receiver, QEvent *event)
{
    // Keys come to windows first, and from there to widgets.
    if (!receiver->isWidgetType())
        return false;
    const bool isDropped = m_composition == Composition::Dropped;
    switch (event->type()) {
    case QEvent::InputMethod:
        follow(receiver, *static_cast<QInputMethodEvent *>(event));
        return false;
    case QEvent::KeyPress:
        if (isTheirs(receiver, *static_cast<QKeyEvent *>(event))) {
            event->accept();
            return true;
        }
        if (isDropped)
            m_composition = Composition::None;
        return false;
    case QEvent::KeyRelease:
        if (isDropped && !static_cast<QKeyEvent *>(event)->isAutoRepeat())
            m_composition = Composition::None;
        return false;
    case QEvent::MouseButtonPress:
        // Fields give up what is being composed where they are clicked, with or without the input method.
        if (const auto *field = qobject_cast<QWidget *>(receiver);
            field && (field == m_receiver || field->focusProxy() == m_receiver))
            m_composition = Composition::None;
        return false;
    default:
        return false;
    }
}

void ComposingEscape::follow(QObject *receiver, const QInputMethodEvent &event)
{
    const bool wasUnderWay = m_composition == Composition::UnderWay && receiver == m_receiver;
    m_receiver = receiver;
    if (!event.preeditString().isEmpty())
        m_composition = Composition::UnderWay;
    else
        m_composition =
            wasUnderWay && event.commitString().isEmpty() ? Composition::Dropped : Composition::None;
}

/// A menu that is open gets keys of its own meanwhile.
bool ComposingEscape::isTheirs(const QObject *receiver, const QKeyEvent &press) const
{
    return press.key() == Qt::Key_Escape && m_composition != Composition::None && receiver == m_receiver;
}
