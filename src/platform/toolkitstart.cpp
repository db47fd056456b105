#include "platform/toolkitstart.h"

#include "platform/screenscale.h"

#include <algorithm>
#include <iterator>

void prepareScale(const QSize &largestDialog)
{
    const char *const scaleVariables[] = { "QT_SCALE_FACTOR", "QT_SCREEN_SCALE_FACTORS",
        "QT_ENABLE_HIGHDPI_SCALING" };
    const bool isScaleGiven = std::any_of(std::begin(scaleVariables), std::end(scaleVariables),
        [](const char *v) { return qEnvironmentVariableIsSet(v); });
    if (!isScaleGiven)
        qputenv("QT_SCALE_FACTOR", QByteArray::number(platformPixelScale(largestDialog), 'f', 6));
    if (!qEnvironmentVariableIsSet("QT_FONT_DPI"))
        qputenv("QT_FONT_DPI", "72");
}

void prepareEventLoop()
{
    if (!qEnvironmentVariableIsSet("QT_NO_GLIB"))
        qputenv("QT_NO_GLIB", "1");
}
