#pragma once
#include "obk/NumberText.h"
#include "process/RunTool.h"

#include <QDateTime>

namespace obk
{

/// "/.VDR32FlashBench/imgtool-command.log" in the user's home.
QString imageLogPath();

/// How a tool ended, in a few words: "status 0", "not started: ...", "cancelled".
QString endingText(const process::ToolOutcome &outcome);

/// Appends one line: time, how it ended, command. The file and its folder are for their owner
/// alone.
/// @param command  of `shellText`, so without pass phrases; line feeds in it are shown as "\n"
/// @return WriteFailed or CannotOpen, with a sentence
Result<void> appendImageLog(const QString &path, const QDateTime &now, const QString &ending,
                            const QString &command);

}  // namespace obk
