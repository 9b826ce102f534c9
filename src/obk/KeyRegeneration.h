#pragma once
#include "process/RunTool.h"
#include "report/Level.h"

#include <QDateTime>
#include <QString>
#include <QStringList>

#include <functional>

namespace obk
{

/// Runs the image tool with these arguments to its end.
using ToolRunner = std::function<process::ToolOutcome(const QStringList &arguments)>;

/// How making a new key pair went.
struct Regeneration {
    bool isMade = false;
    report::Level level = report::Level::Error;  ///< of the message
    QString message;                             ///< for the user
    QString keptAs;         ///< where the old key is now; empty when there was none to keep
    QString publicKeyPath;  ///< of the new pair
};

/// Makes a key pair with the image tool. An old key is renamed first and stays under that name; the
/// folder is made when it is missing.
/// @param path  of the private key, complete
/// @param type  as the image tool knows it
/// @param now   goes into the old key's new name
Regeneration regenerateKey(const QString &path, const QString &type, const QDateTime &now,
                           const ToolRunner &run);

/// Where the public key of a private one goes: the path without its last four characters, "_pub"
/// and ".pem". Of a file name shorter than that all characters stay.
QString publicKeyPath(const QString &path);

/// Gives an old key its name back. @return false when a file of that name exists again
bool restoreKey(const QString &keptAs, const QString &path);

}  // namespace obk
