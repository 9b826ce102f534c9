#pragma once
#include "crypto/Handles.h"
#include "files/base/SafeWriter.h"

#include <QFile>
#include <QString>

#include <functional>

namespace crypto
{

/// What becomes of an old file that can't be opened for writing.
enum class OldFile {
    MayBeLocked,   ///< a key of an earlier run, locked by us: replace it
    MustBeUsable,  ///< locked by someone on purpose: keep it and fail
};

enum class Written { Done, NotCreated, NotWritten };

/// A path in the locale's 8-bit form, NUL at its end; null is the empty path.
QString fromBytes(const unsigned char *path);

/// A writer whose file only its owner can read, from its first byte on.
files::Result<files::SafeWriter> openKeyFile(const QString &path, OldFile old);

/// Writes a key file whole or not at all.
/// @param encode  writes the content to a memory BIO; false refuses
Written writeKeyFile(const QString &path, OldFile old, const std::function<bool(BIO *)> &encode);

constexpr auto kOwnerReads = QFile::ReadOwner | QFile::ReadUser;
constexpr auto kAllRead = QFile::ReadOwner | QFile::ReadUser | QFile::ReadGroup | QFile::ReadOther;

}  // namespace crypto
