#include "platform/toolkitplatform.h"

#include "platform/framebuffer.h"
#include "platform/waylandscreen.h"

#include <QCoreApplication>
#include <QDir>
#include <QJsonArray>
#include <QJsonObject>
#include <QPluginLoader>

#include <xcb/xcb.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr auto pluginFolder = "QT_QPA_PLATFORM_PLUGIN_PATH";

struct PlatformWord {
    QByteArrayView option;
    const char *variable;
};
constexpr PlatformWord platformWords[] = {
    { "-platform", "QT_QPA_PLATFORM" },
    { "-display", "DISPLAY" },
    { "-platformpluginpath", pluginFolder },
};

/// What comes before its arguments, as the toolkit reads it.
QString nameOf(const QByteArray &platform)
{
    return QString::fromLocal8Bit(platform.split(':').front().toLower());
}

QStringList pluginFolders()
{
    QStringList folders;
    const QString own = qEnvironmentVariable(pluginFolder);
    if (!own.isEmpty())
        folders << own << own + u"/platforms"_s;
    for (const QString &folder : QCoreApplication::libraryPaths())
        folders << folder + u"/platforms"_s;
    return folders;
}

bool isPluginOf(const QString &file, const QString &platform)
{
    const QJsonObject tells = QPluginLoader(file).metaData().value("MetaData"_L1).toObject();
    const QJsonArray keys = tells.value("Keys"_L1).toArray();
    return std::ranges::any_of(
        keys, [&](const auto &key) { return key.toString().compare(platform, Qt::CaseInsensitive) == 0; });
}

/// Most plugins have the names of their platforms; the others tell them.
bool isInstalled(const QString &platform)
{
    return std::ranges::any_of(pluginFolders(), [&](const QDir &folder) {
        return folder.exists(u"libq"_s + platform + u".so"_s)
            || std::ranges::any_of(folder.entryList(QDir::Files),
                [&](const QString &name) { return isPluginOf(folder.filePath(name), platform); });
    });
}

} // namespace

void takePlatformWords(const QList<QByteArray> &toolkitWords)
{
    for (qsizetype i = 0; i + 1 < toolkitWords.size(); ++i) {
        for (const auto &[option, variable] : platformWords) {
            if (toolkitWords[i] == option || toolkitWords[i] == '-' + option.toByteArray())
                qputenv(variable, toolkitWords[i + 1]);
        }
    }
}

QList<QByteArray> wantedPlatforms()
{
    const QByteArray asked = qgetenv("QT_QPA_PLATFORM");
    if (!asked.isEmpty())
        return asked.split(';');
    const QByteArray desktop = (qgetenv("XDG_CURRENT_DESKTOP") + qgetenv("XDG_SESSION_DESKTOP")).toLower();
    const bool isWayland = qgetenv("XDG_SESSION_TYPE") == "wayland" && !desktop.contains("gnome");
    return isWayland ? QList<QByteArray>{ "wayland", "xcb" } : QList<QByteArray>{ "xcb", "wayland" };
}

bool isWantedPlatformInstalled()
{
    return std::ranges::any_of(
        wantedPlatforms(), [](const QByteArray &one) { return isInstalled(nameOf(one)); });
}

DisplayProbe::DisplayProbe()
    : m_xServer(nullptr, xcb_disconnect)
    , m_isThere(std::ranges::any_of(wantedPlatforms(), [this](const QByteArray &one) { return has(one); }))
{
}

bool DisplayProbe::hasXServer()
{
    m_xServer = connectToX();
    return xcb_connection_has_error(m_xServer.get()) == 0;
}

bool DisplayProbe::has(const QByteArray &platform)
{
    const QString name = nameOf(platform);
    if (!isInstalled(name))
        return false;
    if (name == "xcb"_L1)
        return hasXServer();
    if (name.startsWith("wayland"_L1))
        return hasCompositor();
    return name != "linuxfb"_L1 || hasFrameBuffer(platform);
}
