#include "app/textsizewheel.h"

#include "app/documentarea.h"
#include "editor/ctlediter.h"
#include "settings/moresettings.h"

#include <QWheelEvent>

TextSizeWheel::TextSizeWheel(DocumentArea &documents)
    : QObject(&documents)
    , m_documents(documents)
{
    connect(&documents, &DocumentArea::added, this,
        [this](const ctlEditer *editor) { editor->viewport()->installEventFilter(this); });
}

/// Nothing else is done with such a turn: the text stays where it is.
bool TextSizeWheel::eventFilter(QObject *, QEvent *event)
{
    constexpr int notch = 120; // eighths of a degree
    if (event->type() != QEvent::Wheel || moreSettings().WheelTextSize == 0)
        return false;
    const auto &wheel = static_cast<const QWheelEvent &>(*event);
    if (wheel.modifiers() != Qt::ControlModifier)
        return false;
    const int angle = wheel.angleDelta().y();
    const bool isAnother = wheel.phase() == Qt::ScrollBegin || angle * m_rest < 0;
    m_rest = isAnother ? angle : m_rest + angle;
    const int notches = m_rest / notch;
    m_rest %= notch;
    if (notches != 0 && m_documents.beginCommand())
        emit turned(notches);
    event->accept();
    return true;
}
