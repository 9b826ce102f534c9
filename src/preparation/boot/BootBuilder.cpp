#include "preparation/boot/BootBuilder.h"

#include "crypto/primitives/AesCtr.h"
#include "crypto/primitives/Digests.h"
#include "files/base/LittleEndian.h"
#include "preparation/boot/BootKeyWrap.h"

#include <algorithm>

namespace preparation
{

using crypto::KeyKind;
using files::ErrorCode;
using files::fail;
using files::Result;

namespace
{

using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t kCipherBlock = 16;
constexpr std::size_t kLongestEcdsa = 72;

Result<void> checkSlot(const BootSlot &slot)
{
    const auto isOne = [](std::uint32_t value, std::initializer_list<std::uint32_t> allowed) {
        return std::ranges::find(allowed, value) != allowed.end();
    };
    if (!isOne(slot.align, {1, 2, 4, 8, 16, 32}) || !isOne(slot.maxAlign, {8, 16, 32}) ||
        slot.align > slot.maxAlign) {
        return fail(ErrorCode::BadValue,
                    "an alignment is 1, 2, 4, 8, 16 or 32 bytes, the largest one 8, 16 or 32 and "
                    "not below the other");
    }
    if (slot.erased != 0 && slot.erased != 0xFF) {
        return fail(ErrorCode::BadValue, "an erased byte is 0 or 0xff");
    }
    return {};
}

Result<void> check(const BootRequest &request, ByteView firmware)
{
    if (request.headerSize < kBootHeaderBytes) {
        return fail(ErrorCode::BadValue, "a header has 32 bytes at least");
    }
    if (request.clear && request.recipient == nullptr) {
        return fail(ErrorCode::BadValue,
                    "a clear image with a wrapped key needs a key to wrap for");
    }
    if (request.wholePublicKey && request.signer == nullptr) {
        return fail(ErrorCode::BadValue, "without a signature there is no public key");
    }
    // A header over code that boots elsewhere would be found on the device, not here.
    const bool hasRoom = firmware.size() > request.headerSize &&
                         std::ranges::all_of(firmware.first(request.headerSize),
                                             [](std::uint8_t byte) { return byte == 0; });
    if (!request.padHeader && !hasRoom) {
        return fail(ErrorCode::BadValue,
                    "the firmware doesn't begin with " + std::to_string(request.headerSize) +
                        " zero bytes and more behind them; without such room the header has to be "
                        "put in front of it (--pad-header)");
    }
    if (firmware.empty()) {
        return fail(ErrorCode::BadValue, "the firmware is empty");
    }
    if (firmware.size() > request.slot.size) {
        return fail(ErrorCode::TooLarge, "the firmware has " + std::to_string(firmware.size()) +
                                             " bytes, the slot " +
                                             std::to_string(request.slot.size));
    }
    return checkSlot(request.slot);
}

Result<Bytes> protectedBlock(const BootRequest &request)
{
    Bytes counter;
    std::vector<Bytes> dependencies;
    std::vector<BootTlv> values;
    if (request.securityCounter) {
        files::appendU32le(counter, *request.securityCounter);
        values.push_back({boot_tlv::kSecurityCounter, counter});
    }
    for (const BootDependency &dependency : request.dependencies) {
        dependencies.push_back(encodeDependency(dependency));
    }
    for (const Bytes &dependency : dependencies) {
        values.push_back({boot_tlv::kDependency, dependency});
    }
    return values.empty() ? Bytes() : encodeTlvs(kProtectedBlockMagic, values);
}

std::uint16_t signatureType(KeyKind kind)
{
    switch (kind) {
    case KeyKind::Rsa2048:
        return boot_tlv::kRsa2048;
    case KeyKind::Rsa3072:
        return boot_tlv::kRsa3072;
    case KeyKind::EcdsaP256:
        return boot_tlv::kEcdsaP256;
    default:
        return boot_tlv::kEd25519;
    }
}

struct OwnedTlv {
    std::uint16_t type = 0;
    Bytes value;
};

Result<void> addSignature(const BootRequest &request, const Digest &digest,
                          std::vector<OwnedTlv> &values)
{
    auto der = request.signer->publicHalf().bootDer();
    auto signature = request.signer->signDigest(digest);
    if (!der || !signature) {
        return tl::unexpected(der ? signature.error() : der.error());
    }
    if (request.wholePublicKey) {
        values.push_back({boot_tlv::kPublicKey, std::move(*der)});
    } else {
        const auto hash = crypto::sha256(*der);
        if (!hash) {
            return tl::unexpected(hash.error());
        }
        values.push_back({boot_tlv::kKeyHash, Bytes(hash->begin(), hash->end())});
    }
    const KeyKind kind = request.signer->publicHalf().kind();
    if (kind == KeyKind::EcdsaP256 && request.padSignature) {
        signature->resize(kLongestEcdsa);
    }
    values.push_back({signatureType(kind), std::move(*signature)});
    return {};
}

/// Encrypts the firmware in `image` and adds its wrapped key.
Result<void> encrypt(const BootRequest &request, std::span<std::uint8_t> firmware,
                     std::vector<OwnedTlv> &values)
{
    files::SecretBytes key(kImageKeyBytes);
    if (auto filled = crypto::fillRandom({key.data(), key.size()}); !filled) {
        return filled;
    }
    auto wrapped = wrapImageKey(*request.recipient, key.span());
    if (!wrapped) {
        return tl::unexpected(wrapped.error());
    }
    const bool isPoint = request.recipient->kind() == KeyKind::EcdsaP256;
    values.push_back(
        {isPoint ? boot_tlv::kWrappedP256 : boot_tlv::kWrappedX25519, std::move(*wrapped)});
    return request.clear ? Result<void>() : crypto::aesCtr(key.span(), firmware);
}

BootHeader headerOf(const BootRequest &request, std::size_t imageSize, std::size_t protectedSize)
{
    BootHeader header;
    header.loadAddress = request.loadAddress;
    header.headerSize = request.headerSize;
    header.protectedSize = static_cast<std::uint16_t>(protectedSize);
    header.imageSize = static_cast<std::uint32_t>(imageSize);
    header.version = request.version;
    header.flags = (request.recipient != nullptr ? boot_flag::kEncryptedAes128 : 0) |
                   (request.romFixed           ? boot_flag::kRomFixed
                    : request.loadAddress != 0 ? boot_flag::kRamLoad
                                               : 0);
    return header;
}

/// Hash, signature and wrapped key behind the image; encrypts the firmware in it.
Result<void> seal(const BootRequest &request, std::size_t firmwareSize, Bytes &image)
{
    const auto digest = crypto::sha256(image);
    if (!digest) {
        return tl::unexpected(digest.error());
    }
    std::vector<OwnedTlv> values = {{boot_tlv::kSha256, Bytes(digest->begin(), digest->end())}};
    if (request.signer != nullptr) {
        if (auto added = addSignature(request, *digest, values); !added) {
            return added;
        }
    }
    if (request.recipient != nullptr) {
        const auto firmware = std::span(image).subspan(request.headerSize, firmwareSize);
        if (auto added = encrypt(request, firmware, values); !added) {
            return added;
        }
    }
    std::vector<BootTlv> views;
    views.reserve(values.size());
    for (const OwnedTlv &entry : values) {
        views.push_back({entry.type, entry.value});
    }
    const auto block = encodeTlvs(kPlainBlockMagic, views);
    if (!block) {
        return tl::unexpected(block.error());
    }
    image.insert(image.end(), block->begin(), block->end());
    return {};
}

}  // namespace

Result<Bytes> buildBootImage(const BootRequest &request, ByteView firmware)
{
    if (auto good = check(request, firmware); !good) {
        return tl::unexpected(good.error());
    }
    auto protectedValues = protectedBlock(request);
    if (!protectedValues) {
        return protectedValues;
    }
    Bytes plain(firmware.begin() + (request.padHeader ? 0 : request.headerSize), firmware.end());
    if (request.recipient != nullptr) {
        // Loaders decrypt whole blocks of the cipher.
        plain.resize((plain.size() + kCipherBlock - 1) / kCipherBlock * kCipherBlock);
    }
    Bytes image = encodeBootHeader(headerOf(request, plain.size(), protectedValues->size()));
    image.resize(request.headerSize);
    image.insert(image.end(), plain.begin(), plain.end());
    image.insert(image.end(), protectedValues->begin(), protectedValues->end());
    if (auto sealed = seal(request, plain.size(), image); !sealed) {
        return tl::unexpected(sealed.error());
    }
    BootSlot slot = request.slot;
    if (request.recipient != nullptr) {
        const bool isPoint = request.recipient->kind() == KeyKind::EcdsaP256;
        slot.encryptedKeyBytes = !request.keepWrappedKeys ? kImageKeyBytes : isPoint ? 113 : 80;
    }
    Bytes padded = image;
    if (auto fits = padToSlot(padded, slot, request.confirm); !fits) {
        return tl::unexpected(fits.error());
    }
    return request.pad || request.confirm ? padded : image;
}

}  // namespace preparation
