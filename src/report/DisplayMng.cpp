#include "report/DisplayMng.h"

#include "report/WideFormat.h"

#include <QFile>

#include <cwchar>
#include <fcntl.h>
#include <iterator>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

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

/// Empties an open file that begins like a log, "hh:mm:ss:zzz ". Devices and pipes have nothing to
/// lose, and looking into them could take what others wait for.
/// @return false for a file with other content, which is untouched
bool mayBeEmptied(int file)
{
    struct stat status = {};
    if (::fstat(file, &status) != 0 || !S_ISREG(status.st_mode) || status.st_size == 0) {
        return true;
    }
    constexpr std::string_view kForm = "00:00:00:000 ";
    char begin[kForm.size()];
    if (::pread(file, begin, kForm.size(), 0) != static_cast<ssize_t>(kForm.size())) {
        return false;
    }
    for (std::size_t at = 0; at < kForm.size(); ++at) {
        const bool isDigit = begin[at] >= '0' && begin[at] <= '9';
        if (kForm[at] == '0' ? !isDigit : begin[at] != kForm[at]) {
            return false;
        }
    }
    return ::ftruncate(file, 0) == 0;
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
        std::fclose(std::exchange(logFile, nullptr));
    }
    // An external tool must not inherit the log.
    const int file =
        ::open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
    if (file < 0) {
        return;
    }
    if (!mayBeEmptied(file)) {
        ::close(file);
        logMessage(5,
                   L"The file %ls is not a log file of this program and is left as it is. No log "
                   L"file is written.",
                   path.toStdWString().c_str());
        return;
    }
    logFile = ::fdopen(file, "w+");
    if (logFile == nullptr) {
        ::close(file);
    }
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
