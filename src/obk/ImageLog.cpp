#include "obk/ImageLog.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace obk
{

QString imageLogPath()
{
    return QDir::homePath() + QLatin1String("/.VDR32FlashBench/imgtool-command.log");
}

QString endingText(const process::ToolOutcome &outcome)
{
    switch (outcome.ending) {
    case process::Ending::Exited:
        return QStringLiteral("status %1").arg(outcome.exitCode);
    case process::Ending::NotStarted:
        return QStringLiteral("not started: ") + outcome.reason;
    case process::Ending::Crashed:
        return QStringLiteral("crashed");
    case process::Ending::TimedOut:
        return QStringLiteral("timed out");
    case process::Ending::Cancelled:
        break;
    }
    return QStringLiteral("cancelled");
}

Result<void> appendImageLog(const QString &path, const QDateTime &now, const QString &ending,
                            const QString &command)
{
    const auto failed = [&path] {
        return refuse(QStringLiteral("The command isn't in the log %1: ").arg(path) +
                      QString::fromLocal8Bit(std::strerror(errno)));
    };
    const QString folder = QFileInfo(path).path();
    if (!QFileInfo::exists(folder) && QDir().mkpath(folder)) {
        QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    // A link or a pipe in its place is somebody's trap.
    const int handle =
        ::open(QFile::encodeName(path).constData(),
               O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0600);
    if (handle < 0) {
        return failed();
    }
    QString line =
        now.toString(Qt::ISODate) + QLatin1String("  ") + ending + QLatin1String("  ") + command;
    line.replace(QLatin1Char('\n'), QLatin1String("\\n"))
        .replace(QLatin1Char('\r'), QLatin1String("\\r"));
    const QByteArray bytes = line.toUtf8() + '\n';
    struct stat entry = {};
    // A log of an earlier version may be readable by others. One write, so that lines of two
    // programs don't mix.
    const bool isOurs =
        ::fstat(handle, &entry) == 0 && S_ISREG(entry.st_mode) && ::fchmod(handle, 0600) == 0;
    const ssize_t count =
        isOurs ? ::write(handle, bytes.constData(), static_cast<std::size_t>(bytes.size())) : -1;
    const bool isWritten = count == bytes.size();
    if (count > 0 && !isWritten && ::ftruncate(handle, entry.st_size) == 0) {
        errno = ENOSPC;  // half a line would run into the next one
    }
    const bool isClosed = ::close(handle) == 0;
    if (!isWritten || !isClosed) {
        return failed();
    }
    return {};
}

}  // namespace obk
