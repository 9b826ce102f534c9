#pragma once
#include "files/base/Wipe.h"
#include "preparation/sealing/Verdict.h"
#include "preparation/ssp/OemKey.h"

#include <QByteArray>

#include <functional>
#include <optional>
#include <string_view>

namespace preparation
{

inline constexpr char kSspMagicText[] = "SSPIMAGE";
inline constexpr std::string_view kSspMagic = kSspMagicText;
inline constexpr std::size_t kSspFileBytes = 232;
inline constexpr std::size_t kSspPayloadBytes = 152;
inline constexpr std::size_t kSspNonceFileBytes = 16;

/// What decides the bytes of one provisioning image.
struct SspRequest {
    ByteView payload;    ///< 152 bytes
    ByteView key;        ///< 16 bytes
    ByteView nonceFile;  ///< 16 bytes
    OemKey oem;
};

/// Makes the bytes of a checked request, not looked at again.
using SspSeal = std::function<files::Result<QByteArray>(const SspRequest &)>;

/// Builds the file, opens it again and compares it with the request.
/// @param seal  for tests: one that goes wrong instead of the right one
/// @return 232 bytes; or WrongSize for payload, key or nonce
files::Result<QByteArray> buildSsp(const SspRequest &request, const SspSeal &seal = {});

/// A provisioning image after the check; the view refers to the file's bytes.
struct OpenedSsp {
    OemKey oem;
    ByteView nonce;  ///< 16 bytes
    Verdict verdict = Verdict::NotChecked;
    files::SecretBytes payload;  ///< 152 bytes; empty unless authentic
};

/// Opens a file. The bytes may be hostile.
/// @param key  16 bytes, or none
/// @return BadValue for another magic, version, key kind or payload size; WrongSize for another
///         length of file or key
files::Result<OpenedSsp> openSsp(ByteView file, std::optional<ByteView> key);

}  // namespace preparation
