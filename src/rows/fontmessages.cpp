#include "rows/fontmessages.h"

#include <QString>
#include <QtGlobal>

namespace {

QtMessageHandler otherMessages = nullptr;

void passOn(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    // The complaint has no category by which it could be switched off.
    if (type != QtWarningMsg || !text.startsWith(QLatin1String("  OpenType support missing for ")))
        otherMessages(type, context, text);
}

} // namespace

void hideFontMessages()
{
    const QtMessageHandler before = qInstallMessageHandler(passOn);
    if (before != passOn)
        otherMessages = before;
}
