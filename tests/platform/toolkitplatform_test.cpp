#include "platform/toolkitplatform.h"

#include "tests/testprogram.h"

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
    QCOMPARE(hasDisplay(), m_there != "offscreen");
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
        QCOMPARE(hasDisplay(), m_there == asked);
    }
}

REGISTER_TEST(runPlainTest<ToolkitPlatformTest>)
#include "toolkitplatform_test.moc"
