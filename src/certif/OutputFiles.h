#pragma once
#include <QString>
#include <QStringList>

#include <optional>

namespace certif
{

/// Whether certificates of a role, a word of `kRoles`, are joined to the one above.
bool isChained(const QString &role);

/// The files that a request writes, in this order: certificate, Base64 text, and below the root the
/// chain. @param out  output path without an extension
QStringList outputFiles(const QString &out, const QString &role);

/// The file that holds the result of a request: the last one that it writes.
QString finishedFile(const QString &out, const QString &role);

/// A file that can't be opened for writing.
struct LockedOutput {
    QString path;
    QString why;  ///< the system's reason
};
/// The first file of a request that can't be opened for writing; none when all can. Nothing is
/// changed, made or left behind.
std::optional<LockedOutput> lockedOutput(const QString &out, const QString &role);

/// The first file of a request that is one of its inputs, also through links; empty when none is.
/// The chain alone may take the place of the chain that it makes longer.
QString outputOverInput(const QString &out, const QString &role, const QStringList &keys,
                        const QString &upperCertificate);

}  // namespace certif
