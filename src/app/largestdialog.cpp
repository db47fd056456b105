#include "app/largestdialog.h"

#include "platform/screenclass.h"

QSize largestDialog()
{
    // As wide as the handhelds' own screens: three buttons of a message box take that.
    return forScreen(QSize(240, 270), QSize(480, 400));
}
