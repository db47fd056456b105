#pragma once

#include "filedialog/folderjobs.h"
#include "platform/qpeapplication.h"
#include "platform/toolkitstart.h"
#include "tests/screenclass.h"

#include <QApplication>
#include <QRegularExpression>
#include <QTest>

/// The screen class and the font that goes with it.
inline void setScreenClass(bool vga)
{
    setVga(vga);
    QFont font = QApplication::font();
    font.setPointSize(vga ? 18 : 10);
    QApplication::setFont(font);
}

/// Folders are shown in one go, however busy the machine is.
inline FolderJobs inOneGo()
{
    return { nullptr, std::chrono::minutes(1) };
}

/// Every warning is a failure, but for the one of the platform without a screen.
inline void failOnWarnings()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral("^(?!This plugin does not support)")));
}

/// Runs a test of forms where one point is one pixel, at scale 1 unless the environment says otherwise.
template <typename Test> int runFormTest(int argc, char **argv)
{
    if (!qEnvironmentVariableIsSet("QT_SCALE_FACTOR"))
        qputenv("QT_SCALE_FACTOR", "1");
    prepareScale();
    QPEApplication application(argc, argv);
    Test test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}
