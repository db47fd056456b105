#include "app/qpeapplicationesc.h"

#include <QKeyEvent>

namespace {

bool isHeldEscape(const QEvent &event)
{
    if (event.type() != QEvent::KeyPress)
        return false;
    const auto &press = static_cast<const QKeyEvent &>(event);
    return press.key() == Qt::Key_Escape && HeldKeys::isHeld(press);
}

} // namespace

QPEApplicationEsc::QPEApplicationEsc(int &argc, char **argv)
    : QPEApplication(argc, argv)
{
    installEventFilter(this);
}

QPEApplicationEsc::~QPEApplicationEsc() = default;

bool QPEApplicationEsc::eventFilter(QObject *watched, QEvent *event)
{
    return isHeldEscape(*event) || QPEApplication::eventFilter(watched, event);
}
