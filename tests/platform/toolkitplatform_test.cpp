#include "platform/toolkitplatform.h"

#include "tests/testprogram.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QProcess>
#include <QScopeGuard>
#include <QTemporaryDir>

#include <xcb/xcb.h>

using namespace Qt::StringLiterals;

namespace {

/// As a client that comes and goes for it.
xcb_atom_t atomOf(uint8_t onlyIfExists)
{
    constexpr std::string_view name = "MARLOPAD_TEST";
    const XConnection server = connectToX();
    const auto reply = xReply(xcb_intern_atom_reply(
        server.get(), xcb_intern_atom(server.get(), onlyIfExists, name.size(), name.data()), nullptr));
    return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

} // namespace

/// What the toolkit will find to show windows on; run without a screen, on an X server and on Wayland.
class ToolkitPlatformTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init() { qunsetenv("QT_QPA_PLATFORM"); }

    void displayIsFoundInEverySession_data();
    void displayIsFoundInEverySession();
    void sessionSaysWhatComesFirst_data();
    void sessionSaysWhatComesFirst();
    void askedOneAloneCounts();
    void oneHasToBeInstalled_data();
    void oneHasToBeInstalled();
    void pluginsOfAnotherFolderCount();
    void serverStaysMeanwhile();

private:
    QByteArray m_there; ///< the platform that the test runs on
};

void ToolkitPlatformTest::initTestCase()
{
    m_there = qgetenv("QT_QPA_PLATFORM");
    qunsetenv("XDG_SESSION_DESKTOP");
}

void ToolkitPlatformTest::displayIsFoundInEverySession_data()
{
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<QByteArray>("desktop");
    for (const char *const type : { "", "tty", "x11", "wayland" }) {
        for (const char *const desktop : { "", "GNOME", "KDE" })
            QTest::addRow("%s %s", type, desktop) << QByteArray(type) << QByteArray(desktop);
    }
}

/// The toolkit goes on to the other one where the session's is not there: its variables are kept where its
/// socket is out of reach, and a compositor may be started in a session of another kind.
void ToolkitPlatformTest::displayIsFoundInEverySession()
{
    QFETCH(QByteArray, type);
    QFETCH(QByteArray, desktop);
    qputenv("XDG_SESSION_TYPE", type);
    qputenv("XDG_CURRENT_DESKTOP", desktop);
    QCOMPARE(DisplayProbe().isThere(), m_there != "offscreen");
}

void ToolkitPlatformTest::sessionSaysWhatComesFirst_data()
{
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<QByteArray>("desktop");
    QTest::addColumn<QByteArray>("first");
    const auto row = [](const char *name, const char *type, const char *desktop, const char *first) {
        QTest::newRow(name) << QByteArray(type) << QByteArray(desktop) << QByteArray(first);
    };
    row("none", "", "", "xcb");
    row("X", "x11", "KDE", "xcb");
    row("Wayland", "wayland", "KDE", "wayland");
    row("GNOME's Wayland", "wayland", "ubuntu:GNOME", "xcb");
}

void ToolkitPlatformTest::sessionSaysWhatComesFirst()
{
    QFETCH(QByteArray, type);
    QFETCH(QByteArray, desktop);
    QFETCH(QByteArray, first);
    qputenv("XDG_SESSION_TYPE", type);
    qputenv("XDG_CURRENT_DESKTOP", desktop);
    QCOMPARE(wantedPlatforms().front(), first);
}

void ToolkitPlatformTest::askedOneAloneCounts()
{
    for (const char *const asked : { "xcb", "wayland" }) {
        qputenv("QT_QPA_PLATFORM", asked);
        QCOMPARE(wantedPlatforms(), QList<QByteArray>{ asked });
        QCOMPARE(DisplayProbe().isThere(), m_there == asked);
    }
}

void ToolkitPlatformTest::oneHasToBeInstalled_data()
{
    QTest::addColumn<QByteArray>("asked");
    QTest::addColumn<bool>("isInstalled");
    const auto row = [](const char *asked, bool isInstalled) {
        QTest::newRow(asked) << QByteArray(asked) << isInstalled;
    };
    row("offscreen", true);
    row("Offscreen:argument", true);
    row("nosuch;minimal", true);
    row("nosuch", false);
    row("nosuch:argument;other", false);
    row("../platforms/nosuch", false);
    row(";", false);
}

void ToolkitPlatformTest::oneHasToBeInstalled()
{
    QFETCH(QByteArray, asked);
    QFETCH(bool, isInstalled);
    qputenv("QT_QPA_PLATFORM", asked);
    QCOMPARE(isWantedPlatformInstalled(), isInstalled);
    QCOMPARE(DisplayProbe().isThere(), isInstalled);
}

/// By what they tell of themselves, whatever their files are called.
void ToolkitPlatformTest::pluginsOfAnotherFolderCount()
{
    const QString plugins = QLibraryInfo::path(QLibraryInfo::PluginsPath) + u"/platforms/"_s;
    const QTemporaryDir folder;
    QVERIFY(QFile::copy(plugins + u"libqminimal.so"_s, folder.filePath(u"other.so"_s)));
    qputenv("QT_QPA_PLATFORM", "minimal");
    const QStringList before = QCoreApplication::libraryPaths();
    QCoreApplication::setLibraryPaths({});
    const auto paths = qScopeGuard([&] {
        QCoreApplication::setLibraryPaths(before);
        qunsetenv("QT_QPA_PLATFORM_PLUGIN_PATH");
    });
    QVERIFY(!isWantedPlatformInstalled());
    takePlatformWords({ "marlopad", "-platformpluginpath", QFile::encodeName(folder.path()) });
    QVERIFY(isWantedPlatformInstalled());
}

/// A server begins anew when its last client has gone, and knows no names from before then.
void ToolkitPlatformTest::serverStaysMeanwhile()
{
    if (m_there != "xcb")
        return;
    QProcess server;
    server.start(u"Xvfb"_s, { u"-displayfd"_s, u"1"_s });
    QVERIFY(server.waitForStarted() && server.waitForReadyRead(busyMachineWait));
    const auto display = qScopeGuard([before = qgetenv("DISPLAY")] { qputenv("DISPLAY", before); });
    qputenv("DISPLAY", ':' + server.readLine().trimmed());
    {
        const DisplayProbe probe;
        QVERIFY(probe.isThere());
        const xcb_atom_t name = atomOf(0);
        QVERIFY(name != XCB_ATOM_NONE);
        for (int i = 0; i < 100; ++i)
            QCOMPARE(atomOf(1), name);
    }
    QTRY_COMPARE(atomOf(1), xcb_atom_t(XCB_ATOM_NONE));
    server.kill();
    server.waitForFinished();
}

REGISTER_TEST(runPlainTest<ToolkitPlatformTest>)
#include "toolkitplatform_test.moc"
