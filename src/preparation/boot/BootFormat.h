#pragma once
#include "crypto/primitives/Bytes.h"
#include "files/base/Result.h"
#include "preparation/boot/BootVersion.h"

#include <optional>
#include <vector>

/// @file
/// Boot images as the public documentation of the MCUboot project has them: a header of 32 bytes
/// and padding, the firmware, a block of protected tagged values, a block of plain ones, and, in an
/// image that fills its slot, padding and a trailer. All numbers are little-endian.

namespace preparation
{

using crypto::ByteView;
using crypto::Digest;

inline constexpr std::uint32_t kBootMagic = 0x96F3B83D;
inline constexpr std::size_t kBootHeaderBytes = 32;  ///< the shortest header
inline constexpr std::uint16_t kPlainBlockMagic = 0x6907;
inline constexpr std::uint16_t kProtectedBlockMagic = 0x6908;

namespace boot_flag
{
inline constexpr std::uint32_t kEncryptedAes128 = 0x04;
inline constexpr std::uint32_t kEncryptedAes256 = 0x08;
inline constexpr std::uint32_t kNonBootable = 0x10;  ///< belongs to another image, isn't started
inline constexpr std::uint32_t kRamLoad = 0x20;      ///< runs from RAM at the load address
inline constexpr std::uint32_t kRomFixed = 0x100;    ///< must stand in flash at the load address
}  // namespace boot_flag

/// Type of a tagged value.
namespace boot_tlv
{
inline constexpr std::uint16_t kKeyHash = 0x01;    ///< SHA-256 of the public key
inline constexpr std::uint16_t kPublicKey = 0x02;  ///< the public key whole
inline constexpr std::uint16_t kSha256 = 0x10;  ///< of header, plain firmware and protected block
inline constexpr std::uint16_t kRsa2048 = 0x20;
inline constexpr std::uint16_t kEcdsaP256 = 0x22;
inline constexpr std::uint16_t kRsa3072 = 0x23;
inline constexpr std::uint16_t kEd25519 = 0x24;
inline constexpr std::uint16_t kWrappedRsa = 0x30;     ///< RSA-2048 with OAEP: 256 bytes
inline constexpr std::uint16_t kWrappedAes = 0x31;     ///< AES key wrap: 8 bytes more than the key
inline constexpr std::uint16_t kWrappedP256 = 0x32;    ///< point, HMAC, key: 65, 32, 16 bytes
inline constexpr std::uint16_t kWrappedX25519 = 0x33;  ///< key, HMAC, key: 32, 32, 16 bytes
inline constexpr std::uint16_t kDependency = 0x40;
inline constexpr std::uint16_t kSecurityCounter = 0x50;
inline constexpr std::uint16_t kBootRecord = 0x60;
inline constexpr std::uint16_t kFirstOwn = 0xA0;  ///< types whose low byte is this or more are free
}  // namespace boot_tlv

/// Name of a type such as "SHA256"; null for one that isn't known here.
const char *tlvName(std::uint16_t type);

/// Whether a value of this type is the image's signature.
bool isSignature(std::uint16_t type);

struct BootHeader {
    std::uint32_t loadAddress = 0;
    std::uint16_t headerSize = kBootHeaderBytes;  ///< bytes before the firmware
    std::uint16_t protectedSize = 0;              ///< bytes of the protected block, head included
    std::uint32_t imageSize = 0;                  ///< bytes of the firmware
    std::uint32_t flags = 0;
    BootVersion version;
};

/// The 32 bytes of a header, the last 4 of them zero.
std::vector<std::uint8_t> encodeBootHeader(const BootHeader &header);

struct BootTlv {
    std::uint16_t type = 0;
    ByteView value;
};

/// A block of tagged values: magic, size, then each value's type, length and bytes.
/// @return TooLarge when 16 bits don't count its bytes
files::Result<std::vector<std::uint8_t>> encodeTlvs(std::uint16_t magic,
                                                    const std::vector<BootTlv> &values);

/// The 12 bytes of a dependency, and the other way; nothing for a value of another form.
std::vector<std::uint8_t> encodeDependency(const BootDependency &dependency);
std::optional<BootDependency> readDependency(ByteView value);

/// The parts of an image; they lie in the file's bytes one behind the other without gaps.
struct BootImage {
    BootHeader header;
    ByteView headerBytes;  ///< `headerSize` bytes
    ByteView body;         ///< `imageSize` bytes; the firmware, encrypted or not
    ByteView protectedBlock;
    ByteView rest;  ///< behind the plain block: empty, or padding and trailer
    std::vector<BootTlv> protectedTlvs;
    std::vector<BootTlv> plainTlvs;
};

/// Cuts a file into its parts. The bytes may be hostile; whether they are authentic isn't looked
/// at. @return BadMagic, Truncated, or BadCount for sizes that don't agree; BadValue for a header
///         that is too short
files::Result<BootImage> parseBootImage(ByteView file);

}  // namespace preparation
