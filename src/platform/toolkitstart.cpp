#include "platform/toolkitstart.h"

#include "platform/screenscale.h"

#include <QThreadPool>

#include <algorithm>
#include <iterator>
#include <latch>
#include <memory>

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

/// A task that waits has its thread for itself.
void startPaintingThreads()
{
    constexpr int enough = 4; // for what a screen has
    QThreadPool &pool = *QThreadPool::globalInstance();
    pool.setMaxThreadCount(std::min(enough, pool.maxThreadCount()));
    pool.setExpiryTimeout(-1);
    const auto areStarted = std::make_shared<std::latch>(1);
    for (int i = 0; i < pool.maxThreadCount(); ++i)
        pool.start([areStarted] { areStarted->wait(); });
    areStarted->count_down();
}
