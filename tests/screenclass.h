#pragma once

#include <QtGlobal>

/// The screen class of all forms that are made from now on.
inline void setVga(bool vga)
{
    if (vga)
        qputenv("QWS_DISPLAY", "Vga:0");
    else
        qunsetenv("QWS_DISPLAY");
}
