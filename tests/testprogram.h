#pragma once

#include "tests/waiting.h"
#include "text/units.h"

#include <QTest>

/// A comparison that fails tells places by their numbers.
template <typename Unit> char *toString(Position<Unit> place)
{
    return QTest::toString(place.value());
}

/// The tests of a folder are one program, which runs the one that its first argument names:
///
///     app_tests closing_test [function[:row]]…
///
/// Each runs in a process of its own all the same, so none sees what another has left behind.
class TestProgram {
public:
    /// Gets what stands behind the test's name, as main() would.
    using Run = int (*)(int argc, char **argv);

    /// Names the test after its source file.
    TestProgram(const char *sourceFile, Run run);

    static int main(int argc, char **argv);
};

/// At the end of a test's source file: how it is run.
#define REGISTER_TEST(...) REGISTER_TEST_AS(__COUNTER__, __VA_ARGS__)
#define REGISTER_TEST_AS(number, ...) REGISTER_TEST_NUMBERED(number, __VA_ARGS__)
#define REGISTER_TEST_NUMBERED(number, ...)                                                                  \
    static const TestProgram registeredTest##number(__FILE__, __VA_ARGS__);

/// Without an application.
template <class Test> int runPlainTest(int argc, char **argv)
{
    Test test;
    return QTest::qExec(&test, argc, argv);
}

/// With an application that knows no screen.
template <class Test> int runCoreTest(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    return runPlainTest<Test>(argc, argv);
}

#ifdef QT_WIDGETS_LIB
#include <QApplication>

/// With an application that shows windows, whatever the screen's density is.
template <class Test> int runWindowTest(int argc, char **argv)
{
    const QApplication application(argc, argv);
    QApplication::setAttribute(Qt::AA_Use96Dpi);
    return runPlainTest<Test>(argc, argv);
}
#endif
