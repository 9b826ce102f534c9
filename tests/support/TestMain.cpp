// One main for all test programs: widgets need an application object, and a test must never pick
// up the user's locale or display by accident.
#include "support/LeakSuppressions.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QStandardPaths>

#include <cwchar>

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    // Or a brief run, in which the program prints first and wide, would hide what fails.
    std::fwide(stdout, -1);
    ::testing::InitGoogleTest(&argc, argv);
    const QApplication application(argc, argv);
    QStandardPaths::setTestModeEnabled(true);
    return RUN_ALL_TESTS();
}
