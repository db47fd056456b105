#include "app/screenclass.h"

#include <QString>

bool isVgaDisplay()
{
    return qEnvironmentVariable("QWS_DISPLAY").contains(QLatin1StringView("Vga"));
}

QSize largestDialog()
{
    // As wide as the handhelds' own screens: three buttons of a message box take that.
    return isVgaDisplay() ? QSize(480, 400) : QSize(240, 270);
}
