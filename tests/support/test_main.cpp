// Test main of every Qt test executable: an application object speaking Czech as the
// program's does, the offscreen platform when no other is asked for, private folders and
// a database server.

#include "core/czech.h"
#include "support/testenv.h"

#include <QApplication>

#include <gtest/gtest.h>

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // Every test runs as on a workstation whose language is not Czech: what the screens show
    // in Czech, they show by the program's own doing.
    qputenv("LC_ALL", "C.UTF-8");
    QApplication app(argc, argv);
    UseCzech();
    ::testing::InitGoogleTest(&argc, argv);
    // Listing the tests (discovery at build time) needs no server.
    if (::testing::GTEST_FLAG(list_tests))
        return RUN_ALL_TESTS();
    testenv::SetUp();
    const int rc = RUN_ALL_TESTS();
    testenv::TearDown();
    return rc;
}
