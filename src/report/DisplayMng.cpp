#include "report/DisplayMng.h"

#include "report/WideFormat.h"

#include <QFile>

#include <cwchar>
#include <iterator>

QStringList logs;

namespace
{

constexpr std::size_t kTextRoom = 30'720;  // characters, terminator included
constexpr std::size_t kPrefixRoom = 16;

struct Dispatch {
    int level;
    const wchar_t *prefix;
};

Dispatch dispatchOf(int level, bool plainLevels)
{
    if (plainLevels) {
        switch (level) {
        case 4:  // to 0, not to 10 like the other warning
        case 5:
        case 11:
            return {0, L""};
        case 2:
            return {9, L""};
        case 10:
            return {10, L"Warning: "};
        default:
            return {level, L""};
        }
    }
    if (level == 5 || level == 11) {
        return {level, L"Error: "};
    }
    return {level, level == 4 || level == 10 ? L"Warning: " : L""};
}

}  // namespace

DisplayMng &DisplayMng::getInstance()
{
    static DisplayMng instance;
    return instance;
}

DisplayMng::~DisplayMng()
{
    if (logToFile && logFile != nullptr) {
        std::fclose(logFile);
    }
}

void DisplayMng::logMessage(int level, const wchar_t *format, ...)
{
    const Dispatch dispatch = dispatchOf(level, plainLevels);
    // Prefix and text share one block of the stack: an exhausted memory can still be reported.
    wchar_t text[kPrefixRoom + kTextRoom];
    const std::size_t prefixLength = std::wcslen(dispatch.prefix);
    std::wmemcpy(text, dispatch.prefix, prefixLength);
    va_list arguments;
    va_start(arguments, format);
    report::formatWide(text + prefixLength, kTextRoom, format, arguments);
    va_end(arguments);
    if (displayCallback) {
        displayCallback(forceLevel7 ? 7 : dispatch.level, text);
    }
}

void DisplayMng::initLogFile(const QString &path)
{
    // Left open, the old stream would write its rest into the file at exit, behind the new lines.
    if (logFile != nullptr) {
        std::fclose(logFile);
    }
    // "e": an external tool must not inherit the log.
    logFile = std::fopen(QFile::encodeName(path).constData(), "w+e");
}

void DisplayMng::InitProgressBar()
{
    if (!noProgress && initProgressBarCallback) {
        initProgressBarCallback();
    }
}

void DisplayMng::loadBar(int current, int total)
{
    if ((!noProgress || progressMode == 1) && loadBarCallback) {
        loadBarCallback(current, total);
    }
}
