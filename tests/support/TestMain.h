#pragma once

#include "TestEnvironment.h"

#include <QApplication>
#include <QTest>

// Like QTEST_MAIN, but the whole process runs under a temporary HOME, so that no test can
// reach the user's real files even before a test function isolates itself further.
#define TALLYVANE_TEST_MAIN(TestObject)                                                            \
    int main(int argc, char *argv[])                                                               \
    {                                                                                              \
        TestHome processHome;                                                                      \
        QApplication app(argc, argv);                                                              \
        app.setAttribute(Qt::AA_Use96Dpi, true);                                                   \
        TestObject test;                                                                           \
        QTEST_SET_MAIN_SOURCE_PATH                                                                 \
        return QTest::qExec(&test, argc, argv);                                                    \
    }
