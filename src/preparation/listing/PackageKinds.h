#pragma once
#include "crypto/primitives/EcKey.h"
#include "files/base/Result.h"
#include "preparation/listing/PackageReport.h"

#include <QString>

namespace preparation
{

/// The kinds of packages, in the order in which a file is compared with them.
enum class PackageKind { Signed, Sfi, Ssfi, Smi, Sfu, Ssp, Licence, Smu };

/// "SFI", "signed image".
const char *kindName(PackageKind kind);

/// What a package is opened with.
struct PackageKeys {
    std::optional<ByteView> key;               ///< 16 bytes
    const crypto::EcKey *publicKey = nullptr;  ///< of a signed image or a licence
};

/// Tells a file's kind from its bytes.
/// @return BadValue with a sentence that names all kinds, the nearest one, and why it isn't it
files::Result<PackageKind> kindOf(ByteView file);

/// Opens a package. Of an SFI image the report has the head alone.
/// @param body  of an SFU package, whose header `file` is; else empty
/// @return the refusals of the kind's opener
files::Result<PackageReport> openPackage(PackageKind kind, ByteView file, ByteView body,
                                         const PackageKeys &keys);

/// Where the body of an SFU package lies: beside its header, under its name without the last
/// letter.
/// @return Missing when the header's name doesn't end in `.sfuh`
files::Result<QString> bodyBeside(const QString &headerPath);

}  // namespace preparation
