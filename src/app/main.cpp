#include "app/frmmain.h"
#include "app/largestdialog.h"
#include "app/qpeapplicationesc.h"

int main(int argc, char *argv[])
{
    QPEApplication::prepareScale(largestDialog());
    QPEApplication::prepareEventLoop();
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
