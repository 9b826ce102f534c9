// One main for all test programs: widgets need an application object, and a test must never pick
// up the user's locale or display by accident.
#include <gtest/gtest.h>

#include <QApplication>
#include <QStandardPaths>

// Qt's offscreen platform and fontconfig keep what they allocate at start-up; with these names
// suppressed, what is left in a leak report is ours. Built in, so that every way of starting a test
// has them.
extern "C" const char *__lsan_default_suppressions();
extern "C" const char *__lsan_default_suppressions()
{
    return "leak:libqoffscreen\nleak:QScreen::QScreen\nleak:QPlatformScreen\n"
           "leak:QWindowSystemInterface::handleScreenAdded\nleak:libfontconfig\n";
}

extern "C" const char *__lsan_default_options();
extern "C" const char *__lsan_default_options()
{
    return "print_suppressions=0";
}

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    ::testing::InitGoogleTest(&argc, argv);
    const QApplication application(argc, argv);
    QStandardPaths::setTestModeEnabled(true);
    return RUN_ALL_TESTS();
}
