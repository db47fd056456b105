#pragma once

#include <QTest>

/// How long a test waits for what has to come, in ms: no machine is so busy that it would take longer. A test
/// that passes waits until it has come, and no longer.
constexpr int busyMachineWait = 30000;

/// As QTest::qWaitFor, as long as it takes.
template <typename Condition> [[nodiscard]] bool waitUntil(const Condition &condition)
{
    return QTest::qWaitFor(condition, busyMachineWait);
}

// The toolkit's own give up after five seconds, within which a busy machine may not even have started a
// program.
#undef QTRY_VERIFY
#undef QTRY_VERIFY2
#undef QTRY_COMPARE
#define QTRY_VERIFY(condition) QTRY_VERIFY_WITH_TIMEOUT(condition, busyMachineWait)
#define QTRY_VERIFY2(condition, message) QTRY_VERIFY2_WITH_TIMEOUT(condition, message, busyMachineWait)
#define QTRY_COMPARE(actual, expected) QTRY_COMPARE_WITH_TIMEOUT(actual, expected, busyMachineWait)
