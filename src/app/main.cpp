#include "app/frmmain.h"
#include "app/largestdialog.h"
#include "app/qpeapplicationesc.h"
#include "platform/toolkitstart.h"

int main(int argc, char *argv[])
{
    prepareScale(largestDialog());
    prepareEventLoop();
    QPEApplicationEsc application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("marlopad"));
    QApplication::setApplicationVersion(QStringLiteral(MARLOPAD_VERSION));
    QApplication::setDesktopFileName(QStringLiteral("marlopad"));
    if (application.handOver())
        return 0;
    frmMain window;
    application.showMainWidget(&window, false);
    return QApplication::exec();
}
