#pragma once
#include "files/base/Wipe.h"
#include "preparation/sealing/Verdict.h"
#include "preparation/sfu/SfuFormat.h"

#include <QByteArray>

#include <functional>
#include <optional>

namespace preparation
{

/// What decides the bytes of one secure update.
struct SfuRequest {
    ByteView firmware;
    std::uint32_t loadAddress = 0;
    std::uint16_t imageVersion = 0;  ///< at most 255
    ByteView key;                    ///< 16 bytes
    ByteView nonceFile;              ///< 12 bytes
};

/// Makes the bytes of a checked request, not looked at again.
using SfuSeal = std::function<files::Result<QByteArray>(const SfuRequest &)>;

/// Builds header and body, opens both again and compares them with the request.
/// @param seal  for tests: one that goes wrong instead of the right one
/// @return the header's 64 bytes, then the body; WrongSize for key, nonce or firmware; BadValue for
///         a version above 255 or a range that ends above 2^32
files::Result<QByteArray> buildSfu(const SfuRequest &request, const SfuSeal &seal = {});

/// A secure update after the check.
struct OpenedSfu {
    ParsedSfu parsed;
    Verdict verdict = Verdict::NotChecked;
    std::uint32_t firstBadPiece = 0;  ///< from 1, where the header fits and a piece doesn't; else 0
    files::SecretBytes plain;         ///< the firmware; empty unless authentic
};

/// Opens a pair of files.
/// @param key  16 bytes, or none
/// @return the refusals of `parseSfuHeader`; WrongSize for a body of another length than the header
///         says, or a key of another size
files::Result<OpenedSfu> openSfu(ByteView header, ByteView body, std::optional<ByteView> key);

}  // namespace preparation
