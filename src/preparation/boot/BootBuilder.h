#pragma once
#include "crypto/primitives/KeyPair.h"
#include "preparation/boot/BootFormat.h"
#include "preparation/boot/BootTrailer.h"

namespace preparation
{

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
    std::optional<std::uint32_t> securityCounter;
    std::vector<BootDependency> dependencies;
    const crypto::KeyPair *signer = nullptr;  ///< null for an image without a signature
    bool wholePublicKey = false;              ///< the key in place of its hash
    bool padSignature = false;  ///< an ECDSA signature always of 72 bytes, for old loaders
    const crypto::PublicKey *recipient = nullptr;  ///< null for an image that isn't encrypted
    bool clear = false;            ///< the key is wrapped, but the firmware stays readable
    bool keepWrappedKeys = false;  ///< the trailer has room for wrapped keys, not for plain ones
};

/// Makes a boot image. The signature of RSASSA-PSS and everything of an encryption hold random
/// numbers; all else is the same each time.
/// @param firmware  plain; without `padHeader` its first `headerSize` bytes must be zero
/// @return TooLarge when it doesn't fit the slot; BadValue for what doesn't go together
files::Result<std::vector<std::uint8_t>> buildBootImage(const BootRequest &request,
                                                        ByteView firmware);

}  // namespace preparation
