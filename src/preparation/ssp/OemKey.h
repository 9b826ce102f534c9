#pragma once
#include "files/base/Result.h"
#include "preparation/sealing/ImageFormat.h"

#include <QString>

namespace preparation
{

/// What an SSP image tells about the maker's key.
struct OemKey {
    std::uint16_t kind = 0;                 ///< 1 public key, 2 root key table hash
    std::array<std::uint8_t, 32> digest{};  ///< of the key's DER form, or the file's bytes
};

inline constexpr std::uint16_t kOemPublicKey = 1;
inline constexpr std::uint16_t kOemTableHash = 2;

/// Reads the maker's key; its length tells the kind: 178 bytes are a public key in PEM, on P-256 or
/// brainpoolP256t1, and 32 a root key table hash.
/// @return the failures of reading; WrongSize for another length; BadValue for a PEM without such a
///         key
files::Result<OemKey> readOemKey(const QString &path);

}  // namespace preparation
