#pragma once
#include <QByteArray>
#include <QString>
#include <QStringList>

#include <cstddef>
#include <functional>

namespace process
{

enum class Ending {
    Exited,      ///< by itself; what the exit code and the words mean is the caller's to judge
    NotStarted,  ///< no such program, or not one that may be run
    Crashed,     ///< ended by a signal that wasn't ours
    Cancelled,   ///< ToolWatch::isCancelled said so; killed
    TimedOut,    ///< longer than ToolWatch::limitMs; killed
};

struct ToolOutcome {
    Ending ending = Ending::NotStarted;
    int exitCode = -1;  ///< 0 to 255 when it exited, else -1
    QByteArray output;  ///< standard output and error as they came, up to ToolWatch::outputLimit;
                        ///< whoever runs a tool that prints keys wipes it
    bool isOutputCut = false;  ///< there was more
    QString reason;            ///< NotStarted: the system's words
};

/// What happens while a tool runs. All members may stay as they are.
struct ToolWatch {
    int limitMs = 0;                                 ///< milliseconds; 0: no time limit
    std::size_t outputLimit = std::size_t{1} << 20;  ///< bytes kept; what follows is dropped
    QByteArray input = {};  ///< what standard input holds, 4096 bytes at most; it goes through a
                            ///< pipe, and whoever hands a secret over wipes it
    std::function<bool()> isCancelled = {};  ///< asked about 40 times a second
    std::function<void()> idle = {};         ///< called as often, so that a window can repaint
};

/// Runs a tool to its end on the calling thread. There is no shell: each argument reaches the tool
/// as it is. Standard input is at its end from the start, or behind `ToolWatch::input`. The tool
/// leads a process group of its own; when it is cancelled or takes too long, the whole group is
/// killed (SIGKILL). Children that outlive a tool which ended by itself are left alone and not
/// waited for.
/// @param program  path of the executable; without a slash it is searched in PATH
/// @param folder   working folder; empty: the program's own
ToolOutcome runTool(const QString &program, const QStringList &arguments,
                    const ToolWatch &watch = {}, const QString &folder = {});

}  // namespace process
