#pragma once
/// @file
/// Included by the main file of each test program.

// Qt's offscreen platform and fontconfig keep what they allocate at start-up, and its schema
// classes lose objects of documents that they refuse. Its network configuration, which the schema
// classes start unasked, now and then ends its thread after the last look for leaks; nothing of
// ours makes a QThread. With these names suppressed, what is left in a leak report is ours. Built
// in, so that every way of starting a test has them.
extern "C" const char *__lsan_default_suppressions();
extern "C" const char *__lsan_default_suppressions()
{
    return "leak:libqoffscreen\nleak:QScreen::QScreen\nleak:QPlatformScreen\n"
           "leak:QWindowSystemInterface::handleScreenAdded\nleak:libfontconfig\nleak:"
           "libQt5XmlPatterns\nleak:QThread::QThread\n";
}

extern "C" const char *__lsan_default_options();
extern "C" const char *__lsan_default_options()
{
    return "print_suppressions=0";
}
