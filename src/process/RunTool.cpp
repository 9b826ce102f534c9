#include "process/RunTool.h"

#include <QElapsedTimer>
#include <QProcess>

#include <algorithm>
#include <climits>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <optional>
#include <unistd.h>

namespace process
{

namespace
{

constexpr int kTurnMs = 25;

class GroupLeader : public QProcess
{
public:
    /// A tool may leave children behind when it is killed; so all of its group are.
    void killGroup()
    {
        const auto leader = static_cast<pid_t>(processId());
        if (leader > 0) {
            ::kill(-leader, SIGKILL);
        }
        waitForFinished(-1);
    }

protected:
    void setupChildProcess() override { ::setpgid(0, 0); }
};

/// Takes what has come; beyond the limit it is dropped, but still read, or the tool would stand
/// still before a full pipe.
void takeOutput(QProcess &tool, std::size_t limit, ToolOutcome &outcome)
{
    QByteArray came = tool.readAll();
    const std::size_t room = limit - static_cast<std::size_t>(outcome.output.size());
    outcome.isOutputCut = outcome.isOutputCut || static_cast<std::size_t>(came.size()) > room;
    outcome.output.append(came.left(static_cast<int>(std::min<std::size_t>(room, INT_MAX))));
    // Some tools print keys: of this copy nothing stays.
    ::explicit_bzero(came.data(), static_cast<std::size_t>(came.size()));
}

/// A pipe that holds its text before anybody reads it, so that nobody waits for the other.
class InputPipe
{
public:
    explicit InputPipe(const QByteArray &text)
    {
        const auto size = static_cast<std::size_t>(text.size());
        m_isFilled = size <= kPipeRoom && ::pipe2(m_ends, O_CLOEXEC) == 0 &&
                     ::write(m_ends[1], text.constData(), size) == text.size();
    }
    ~InputPipe()
    {
        for (const int end : m_ends) {
            if (end >= 0) {
                ::close(end);
            }
        }
    }
    InputPipe(const InputPipe &) = delete;
    InputPipe &operator=(const InputPipe &) = delete;
    [[nodiscard]] bool isFilled() const { return m_isFilled; }
    /// The reading end as a file, which another open leads to the same pipe.
    [[nodiscard]] QString path() const { return QStringLiteral("/proc/self/fd/%1").arg(m_ends[0]); }

private:
    static constexpr std::size_t kPipeRoom = 4096;
    int m_ends[2] = {-1, -1};
    bool m_isFilled = false;
};

/// Starts the tool. @return false when it doesn't run; outcome.reason says why
bool start(QProcess &tool, const QString &program, const QStringList &arguments,
           const QByteArray &input, ToolOutcome &outcome)
{
    std::optional<InputPipe> pipe;
    if (!input.isEmpty()) {
        pipe.emplace(input);
        if (!pipe->isFilled()) {
            outcome.reason = QStringLiteral("its input can't be handed over");
            return false;
        }
    }
    tool.setStandardInputFile(pipe ? pipe->path() : QProcess::nullDevice());
    tool.start(program, arguments, QIODevice::ReadOnly);
    if (!tool.waitForStarted(-1)) {
        outcome.reason = tool.errorString();
        return false;
    }
    return true;
}

/// @return whether the tool ended by itself; otherwise outcome.ending says why it has to be killed
bool waitForEnd(QProcess &tool, const ToolWatch &watch, ToolOutcome &outcome)
{
    QElapsedTimer sinceStart;
    sinceStart.start();
    QElapsedTimer sinceTurn;
    sinceTurn.start();
    while (tool.state() != QProcess::NotRunning) {
        // Returns for each piece of output, so a tool that floods is never ahead of this loop.
        tool.waitForReadyRead(kTurnMs);
        takeOutput(tool, watch.outputLimit, outcome);
        if (watch.limitMs > 0 && sinceStart.elapsed() >= watch.limitMs) {
            outcome.ending = Ending::TimedOut;
            return tool.state() == QProcess::NotRunning;
        }
        if (sinceTurn.elapsed() < kTurnMs) {
            continue;
        }
        sinceTurn.restart();
        if (watch.isCancelled && watch.isCancelled()) {
            outcome.ending = Ending::Cancelled;
            return tool.state() == QProcess::NotRunning;
        }
        if (watch.idle) {
            watch.idle();
        }
    }
    return true;
}

}  // namespace

ToolOutcome runTool(const QString &program, const QStringList &arguments, const ToolWatch &watch,
                    const QString &folder)
{
    ToolOutcome outcome;
    // At once, as each growth would leave a copy of what a tool printed.
    outcome.output.reserve(static_cast<int>(std::min<std::size_t>(watch.outputLimit, 1 << 20)));
    GroupLeader tool;
    tool.setProcessChannelMode(QProcess::MergedChannels);
    tool.setWorkingDirectory(folder);
    if (!start(tool, program, arguments, watch.input, outcome)) {
        return outcome;
    }
    if (!waitForEnd(tool, watch, outcome)) {
        tool.killGroup();
        takeOutput(tool, watch.outputLimit, outcome);
        return outcome;
    }
    takeOutput(tool, watch.outputLimit, outcome);
    const bool isExit = tool.exitStatus() == QProcess::NormalExit;
    outcome.ending = isExit ? Ending::Exited : Ending::Crashed;
    outcome.exitCode = isExit ? tool.exitCode() : -1;
    return outcome;
}

}  // namespace process
