#pragma once
#include "crypto/primitives/KeyPair.h"
#include "preparation/boot/BootFormat.h"
#include "preparation/boot/BootKeyWrap.h"
#include "preparation/boot/BootTrailer.h"

namespace preparation
{

/// A tagged value of the user's own.
struct BootOwnValue {
    std::uint16_t type = 0;  ///< its low byte 0xA0 or more
    std::vector<std::uint8_t> value;
};

/// What a boot image is made of.
struct BootRequest {
    BootVersion version;
    std::uint16_t headerSize = kBootHeaderBytes;  ///< bytes, 32 at least
    bool padHeader = false;                       ///< the firmware has no room for the header yet
    BootSlot slot;                  ///< the image must fit it; its key bytes are set here
    bool pad = false;               ///< fills the slot, with the trailer
    bool confirm = false;           ///< likewise, and the image stays without being tried
    std::uint32_t loadAddress = 0;  ///< in RAM, or with `romFixed` in flash; 0 for neither
    bool romFixed = false;
    bool nonBootable = false;
    std::optional<std::uint32_t> securityCounter;
    std::string bootRecord;  ///< role of the image in a boot record; empty for none
    std::vector<BootDependency> dependencies;
    std::vector<BootOwnValue> ownValues;      ///< protected, in this order
    const crypto::KeyPair *signer = nullptr;  ///< null for an image without a signature
    /// In place of `signer`: the public key, and its signature that was made elsewhere.
    const crypto::PublicKey *signerHalf = nullptr;
    ByteView madeSignature;
    bool wholePublicKey = false;  ///< the key in place of its hash
    bool padSignature = false;    ///< an ECDSA signature always of 72 bytes, for old loaders
    const crypto::PublicKey *recipient = nullptr;  ///< null for an image that isn't encrypted
    ByteView wrapKey;  ///< in place of `recipient`: an AES key as long as the image's
    std::size_t imageKeyBytes = kImageKeyBytes;  ///< 16 or 32: AES-128 or AES-256
    bool clear = false;            ///< the key is wrapped, but the firmware stays readable
    bool keepWrappedKeys = false;  ///< the trailer has room for wrapped keys, not for plain ones
};

/// Makes a boot image. The signature of RSASSA-PSS and everything of an encryption hold random
/// numbers; all else is the same each time.
/// @param firmware  plain; without `padHeader` its first `headerSize` bytes must be zero
/// @return TooLarge when it doesn't fit the slot; BadValue for what doesn't go together
files::Result<std::vector<std::uint8_t>> buildBootImage(const BootRequest &request,
                                                        ByteView firmware);

/// What is hashed and signed of the image: header, plain firmware and protected block. For a
/// signature that is made elsewhere, which is then `madeSignature`.
files::Result<std::vector<std::uint8_t>> signedPart(const BootRequest &request, ByteView firmware);

}  // namespace preparation
