#include "tests/app/testwindow.h"
#include "tests/testprogram.h"

#include <QScreen>

using namespace Qt::StringLiterals;

/// Full screen while the window manager is still at the request before; everybody shares one core.
class FullScreenWindowTest : public QObject {
    Q_OBJECT

private slots:
    void init() { resetSettings(); }
    void changesOfMind_data();
    void changesOfMind();
    void escapeAfterTheCommand_data();
    void escapeAfterTheCommand();
};

namespace {

/// As the program sees it and as it is on the screen.
bool isCovering(const frmMain &window, bool covering)
{
    const bool isWhole = window.size() == window.screen()->size();
    return window.isCoveringScreen() == covering && window.isFullScreen() == covering && isWhole == covering;
}

bool open(TestWindow &window)
{
    window.showMaximized();
    if (!QTest::qWaitForWindowExposed(&window))
        return false;
    window.slotCmdFileNew();
    return waitUntil([&window] { return window.isMaximized() && isCovering(window, false); });
}

} // namespace

void FullScreenWindowTest::changesOfMind_data()
{
    QTest::addColumn<int>("commands");
    for (int commands = 2; commands <= 6; ++commands)
        QTest::addRow("%d commands", commands) << commands;
}

void FullScreenWindowTest::changesOfMind()
{
    QFETCH(int, commands);
    TestWindow window;
    QVERIFY(open(window));
    bool isOn = false;
    for (int round = 0; round < 4; ++round) {
        for (int i = 0; i < commands; ++i) {
            window.slotCmdViewFull();
            isOn = !isOn;
            QCOMPARE(window.isCoveringScreen(), isOn);
        }
        QTRY_VERIFY(isCovering(window, isOn));
        window.slotCmdViewFull();
        isOn = !isOn;
        QTRY_VERIFY(isCovering(window, isOn));
    }
}

void FullScreenWindowTest::escapeAfterTheCommand_data()
{
    QTest::addColumn<int>("turns");
    for (const int turns : { 0, 1, 2, 3, 5, 8, 13, 100 })
        QTest::addRow("%d turns of the event loop later", turns) << turns;
}

void FullScreenWindowTest::escapeAfterTheCommand()
{
    QFETCH(int, turns);
    TestWindow window;
    QVERIFY(open(window));
    for (int round = 0; round < 4; ++round) {
        window.slotCmdViewFull();
        for (int i = 0; i < turns; ++i)
            QCoreApplication::processEvents();
        QTest::keyClick(window.currentEditor(), Qt::Key_Escape);
        QVERIFY(!window.isCoveringScreen());
        QTRY_VERIFY(isCovering(window, false));
        QCOMPARE(window.tabBar()->count(), 1);
    }
}

REGISTER_TEST(runWindowTest<FullScreenWindowTest>)
#include "fullscreenwindow_test.moc"
