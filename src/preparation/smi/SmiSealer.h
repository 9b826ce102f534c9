#pragma once
#include "files/base/Wipe.h"
#include "preparation/sealing/Verdict.h"
#include "preparation/smi/SmiFormat.h"

#include <QByteArray>

#include <functional>
#include <optional>

namespace preparation
{

/// What decides the bytes of one secure module image.
struct SmiRequest {
    ByteView section;
    std::uint32_t loadAddress = 0;
    bool hash = false;         ///< adds the check block
    ByteView key;              ///< 16 bytes
    ByteView nonceFile;        ///< 12 bytes
    ByteView securityVersion;  ///< 16 bytes
};

/// Makes the bytes of a checked request, not looked at again.
using SmiSeal = std::function<files::Result<QByteArray>(const SmiRequest &)>;

/// Builds the file, opens it again and compares it with the request.
/// @param seal  for tests: one that goes wrong instead of the right one
/// @return the file; WrongSize for key, nonce, version or section; BadValue for a range that ends
///         above 2^32
files::Result<QByteArray> buildSmi(const SmiRequest &request, const SmiSeal &seal = {});

/// A secure module image after the check.
struct OpenedSmi {
    ParsedSmi parsed;
    Verdict verdict = Verdict::NotChecked;
    files::SecretBytes plain;  ///< the section; empty unless authentic
};

/// Opens a file. Without a key the check block, reserved bytes and padding are looked at.
/// @param key  16 bytes, or none
/// @return the refusals of `parseSmi`; or WrongSize for a key of another size
files::Result<OpenedSmi> openSmi(ByteView file, std::optional<ByteView> key);

}  // namespace preparation
