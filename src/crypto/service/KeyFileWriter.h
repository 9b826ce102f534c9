#pragma once
#include "crypto/primitives/Handles.h"
#include "files/base/SafeWriter.h"

#include <QFile>
#include <QString>

#include <functional>

namespace crypto
{

enum class Written {
    Done,
    NotCreated,  ///< the file can't be made, or an old one not be replaced
    NotWritten,  ///< the content can't be encoded or written; an old file is as it was
};

/// A path in the locale's 8-bit form, NUL at its end; null is the empty path.
QString fromBytes(const unsigned char *path);

/// Writes a key file whole or not at all; until it is complete only its owner can read it.
/// @param secrecy  Secret replaces a file that an earlier run has locked
/// @param encode  writes the content to a memory BIO; false refuses
Written writeKeyFile(const QString &path, files::Secrecy secrecy,
                     const std::function<bool(BIO *)> &encode);

/// What finished key files allow: the private ones, and all others.
constexpr auto kOwnerReads = QFile::ReadOwner | QFile::ReadUser;
constexpr auto kAllRead = QFile::ReadOwner | QFile::ReadUser | QFile::ReadGroup | QFile::ReadOther;

}  // namespace crypto
