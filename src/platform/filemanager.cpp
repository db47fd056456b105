#include "platform/filemanager.h"

#include <QDesktopServices>
#include <QString>
#include <QUrl>
#include <QtGlobal>

namespace {

QtMessageHandler otherMessages = nullptr;

/// They have no category by which they could be switched off.
bool isComplaint(const QString &text)
{
    return text.startsWith(QLatin1String("Unable to detect a launcher for "))
        || text.startsWith(QLatin1String("This plugin does not support QPlatformServices::openUrl()"));
}

void passOn(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (type != QtWarningMsg || !isComplaint(text))
        otherMessages(type, context, text);
}

} // namespace

bool showInFileManager(const QUrl &folder)
{
    otherMessages = qInstallMessageHandler(passOn);
    const bool isShown = QDesktopServices::openUrl(folder);
    qInstallMessageHandler(otherMessages);
    return isShown;
}
