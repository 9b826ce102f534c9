#include "obk/KeyRegeneration.h"

#include "crypto/service/StandardOutput.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace obk
{

namespace
{

/// Renames an existing key. @return its new path; empty when there was none, or it wouldn't move
QString keepOldKey(const QString &path, const QDateTime &now)
{
    const QFileInfo old(path);
    if (!old.exists() || old.isDir()) {
        return {};
    }
    // The name tells the second; a second one of that second gets a number.
    const QString start = path + QLatin1Char('_') +
                          now.toString(QStringLiteral("dd.MM.yyyy_hh:mm:ss"))
                              .replace(QLatin1Char(':'), QLatin1Char('_'));
    QString kept = start + QLatin1String(".bak");
    for (int number = 2; QFileInfo::exists(kept) || QFileInfo(kept).isSymLink(); ++number) {
        kept = start + QStringLiteral("_%1.bak").arg(number);
    }
    if (!QFile::rename(path, kept)) {
        return {};
    }
    crypto::printText("rename file is succeeded");
    return kept;
}

}  // namespace

QString publicKeyPath(const QString &path)
{
    constexpr int kCut = 4;
    const int nameSize = path.size() - path.lastIndexOf(QLatin1Char('/')) - 1;
    return (nameSize < kCut ? path : path.left(path.size() - kCut)) + QLatin1String("_pub.pem");
}

Regeneration regenerateKey(const QString &path, const QString &type, const QDateTime &now,
                           const ToolRunner &run)
{
    Regeneration done;
    done.keptAs = keepOldKey(path, now);
    done.publicKeyPath = publicKeyPath(path);
    QDir().mkpath(QFileInfo(path).path());
    const bool isFree = !QFileInfo::exists(path);
    const auto outcome =
        run({QStringLiteral("keygen"), QStringLiteral("-k"), path, QStringLiteral("-t"), type,
             QStringLiteral("-e"), done.publicKeyPath});
    if (outcome.ending != process::Ending::Exited) {
        if (isFree && QFileInfo(path).isFile() && QFileInfo(path).size() == 0) {
            QFile::remove(path);  // the tool's claim on the name, not a key
        }
        done.message = QStringLiteral("Key Generation Failed \n");
        return done;
    }
    qDebug() << "responsePub : " << outcome.output;
    // The tool is silent when all is well; any word from it is a complaint.
    done.isMade = outcome.output.isEmpty() && outcome.exitCode == 0;
    done.level = done.isMade ? report::Level::Information : report::Level::Error;
    done.message = done.isMade ? QStringLiteral("SUCCESS Key Generation \n")
                               : QStringLiteral("Fail Key Generation Check Input Param\n");
    return done;
}

bool restoreKey(const QString &keptAs, const QString &path)
{
    return QFile::rename(keptAs, path);
}

}  // namespace obk
