#pragma once
#include "PackageReport.h"
#include "crypto/primitives/EcKey.h"
#include "files/base/Result.h"

namespace unpack
{

/// The kinds of packages, in the order in which a file is compared with them.
enum class Kind { Signed, Sfi, Ssfi, Smi, Sfu, Ssp, Smu };

/// "SFI", "signed image".
const char *kindName(Kind kind);

/// What a package is opened with.
struct Keys {
    std::optional<ByteView> key;               ///< 16 bytes
    const crypto::EcKey *publicKey = nullptr;  ///< of a signed image
};

/// Tells a file's kind from its bytes.
/// @return BadValue with a sentence that names all kinds, the nearest one, and why it isn't it
files::Result<Kind> kindOf(ByteView file);

/// Opens a package of any kind but SFI.
/// @param body  of an SFU package, whose header `file` is; else empty
/// @return the refusals of the kind's opener
files::Result<PackageReport> openPackage(Kind kind, ByteView file, ByteView body, const Keys &keys);

}  // namespace unpack
