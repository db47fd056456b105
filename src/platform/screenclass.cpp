#include "platform/screenclass.h"

#include <QByteArray>

bool isVga()
{
    return qgetenv("QWS_DISPLAY").contains("Vga");
}
