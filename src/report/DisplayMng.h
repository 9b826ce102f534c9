#pragma once
#include <QString>
#include <QStringList>

#include <cstdarg>
#include <cstdio>
#include <functional>

/// The in-memory trace of the whole run, one entry for each message: local time, blank, text.
/// It only grows. GUI thread only.
extern QStringList logs;

/// The one road of all reports: callers hand a level and a wide format string to `logMessage`,
/// which passes level and finished text to the display callback.
///
/// Levels: 1 information box, 4 warning box ("Warning: "), 5 error box ("Error: "); 0, 2, 7, 8, 9
/// trace only; 10 and 11 are 4 and 5 that stay out of a box. GUI thread only, no lock.
class DisplayMng
{
public:
    static DisplayMng &getInstance();

    DisplayMng(const DisplayMng &) = delete;
    DisplayMng &operator=(const DisplayMng &) = delete;

    /// Formats as `report::formatWide` tells (`%ls` wide, `%s` UTF-8, the same in every locale),
    /// puts the level's prefix in front and calls `displayCallback`, if there is one. A text is cut
    /// at 30,719 characters, the prefix not counted. Uses the stack alone, no heap.
    void logMessage(int level, const wchar_t *format, ...);

    /// Opens `path` with mode "w+", so an earlier log is emptied. A file that doesn't begin like a
    /// log (a time, a blank) stays as it is: that is told at level 5, and there is no log. Any
    /// other failure isn't reported. `logFile` is null afterwards in both cases. A stream that was
    /// open before is closed, so that its lines are kept.
    void initLogFile(const QString &path);

    void InitProgressBar();
    void loadBar(int current, int total);

    bool noProgress = false;
    int progressMode = 0;
    int verbosity = 1;
    bool plainLevels = false;
    bool forceLevel7 = false;
    bool logToFile = false;
    FILE *logFile = nullptr;
    std::function<void(int, const wchar_t *)> displayCallback;
    std::function<void()> initProgressBarCallback;
    std::function<void(int, int)> loadBarCallback;

private:
    DisplayMng() = default;
    ~DisplayMng();
};
