#pragma once
#include "crypto/primitives/EcKey.h"

#include <QString>

namespace certif
{

/// The private key that signs: PEM, P-256, without a pass phrase. The file's bytes are wiped.
/// @return the path and what is wrong with the file
files::Result<crypto::EcKey> readIssuerKey(const QString &path);

/// The key that a certificate is made for, from a file with its public or its private half.
/// @return as `readIssuerKey`
files::Result<crypto::EcKey> readSubjectKey(const QString &path);

}  // namespace certif
