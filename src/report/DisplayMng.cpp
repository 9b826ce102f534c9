#include "report/DisplayMng.h"

#include <cwchar>

QStringList logs;

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
    const wchar_t *prefix = L"";
    if (plainLevels) {
        switch (level) {
        case 4:
        case 5:
        case 11:
            level = 0;
            break;
        case 2:
            level = 9;
            break;
        case 10:
            prefix = L"Warning: ";
            break;
        default:
            break;
        }
    } else if (level == 5 || level == 11) {
        prefix = L"Error: ";
    } else if (level == 4 || level == 10) {
        prefix = L"Warning: ";
    }
    if (forceLevel7) {
        level = 7;
    }
    wchar_t buffer[30720];
    va_list arguments;
    va_start(arguments, format);
    std::vswprintf(buffer, std::size(buffer), format, arguments);
    va_end(arguments);
    const std::wstring text = std::wstring(prefix) + buffer;
    if (displayCallback) {
        displayCallback(level, text.c_str());
    }
}

void DisplayMng::initLogFile(const QString &path)
{
    if (logFile != nullptr) {
        std::fclose(logFile);
    }
    logFile = std::fopen(path.toLocal8Bit().constData(), "w+");
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
