#pragma once

#include "DesktopTools.h"
#include "TestEnvironment.h"

#include <QApplication>
#include <QTest>

#include <cstdio>

// Runs a test object the way every test executable does: the whole process under a temporary
// HOME, so that no test can reach the user's real files even before a test function isolates
// itself further, with fonts measured at 96 dots per inch.
template <typename TestObject>
int runTallyvaneTests(int argc, char *argv[])
{
    TestHome processHome;
    QApplication app(argc, argv);
    app.setAttribute(Qt::AA_Use96Dpi, true);
    TestObject test;
    return QTest::qExec(&test, argc, argv);
}

// What a desktop test returns when there is no X display to test on; CTest reports it as
// skipped.
inline constexpr int desktopTestSkipped = 77;

#define TALLYVANE_TEST_MAIN(TestObject)                                                            \
    int main(int argc, char *argv[])                                                               \
    {                                                                                              \
        QTEST_SET_MAIN_SOURCE_PATH                                                                 \
        return runTallyvaneTests<TestObject>(argc, argv);                                          \
    }

// For tests that need a real X server and window manager: without an X display the whole test
// is skipped before any application object is made.
#define TALLYVANE_DESKTOP_TEST_MAIN(TestObject)                                                    \
    int main(int argc, char *argv[])                                                               \
    {                                                                                              \
        if (!DesktopTools::hasDisplay()) {                                                         \
            std::fputs("SKIP: needs an X display with a window manager\n", stderr);                \
            return desktopTestSkipped;                                                             \
        }                                                                                          \
        QTEST_SET_MAIN_SOURCE_PATH                                                                 \
        return runTallyvaneTests<TestObject>(argc, argv);                                          \
    }
