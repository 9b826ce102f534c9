#include "preparation/boot/BootBuilder.h"

#include "crypto/primitives/AesCtr.h"
#include "crypto/primitives/AesKeyWrap.h"
#include "crypto/primitives/Digests.h"
#include "files/base/LittleEndian.h"
#include "preparation/boot/BootRecord.h"

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

bool isEncrypted(const BootRequest &request)
{
    return request.recipient != nullptr || !request.wrapKey.empty();
}

std::optional<crypto::PublicKey> signerOf(const BootRequest &request)
{
    return request.signer != nullptr       ? std::optional(request.signer->publicHalf())
           : request.signerHalf != nullptr ? std::optional(request.signerHalf->share())
                                           : std::nullopt;
}

Result<void> checkValues(const BootRequest &request)
{
    const bool isSigned = request.signer != nullptr || request.signerHalf != nullptr;
    if (request.wholePublicKey && !isSigned) {
        return fail(ErrorCode::BadValue, "without a signature there is no public key");
    }
    if (!request.bootRecord.empty() && !isSigned) {
        return fail(ErrorCode::BadValue, "a boot record names the signer, and there is no key");
    }
    if (request.bootRecord.size() > kLongestRole) {
        return fail(ErrorCode::BadValue, "the role in a boot record has 12 characters at most");
    }
    for (const BootOwnValue &own : request.ownValues) {
        const bool isFree = (own.type & 0xFFU) >= boot_tlv::kFirstOwn;
        const auto isSame = [&own](const BootOwnValue &each) { return each.type == own.type; };
        if (!isFree || own.value.empty() || std::ranges::count_if(request.ownValues, isSame) != 1) {
            return fail(ErrorCode::BadValue,
                        "a value of your own has a type whose low byte is 0xa0 to 0xff, a value, "
                        "and stands there once; type " +
                            std::to_string(own.type) + " doesn't");
        }
    }
    if (!request.wrapKey.empty() && request.wrapKey.size() != request.imageKeyBytes) {
        return fail(ErrorCode::BadValue,
                    "the AES key that wraps has as many bytes as the image's: 16 for AES-128, 32 "
                    "for AES-256 (--encrypt-keylen 256)");
    }
    return {};
}

Result<void> check(const BootRequest &request, ByteView firmware)
{
    if (request.headerSize < kBootHeaderBytes) {
        return fail(ErrorCode::BadValue, "a header has 32 bytes at least");
    }
    if (request.clear && !isEncrypted(request)) {
        return fail(ErrorCode::BadValue,
                    "a clear image with a wrapped key needs a key to wrap for");
    }
    if (auto good = checkValues(request); !good) {
        return good;
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

struct OwnedTlv {
    std::uint16_t type = 0;
    Bytes value;
};

Result<Bytes> encodeOwned(std::uint16_t magic, const std::vector<OwnedTlv> &values)
{
    std::vector<BootTlv> views;
    views.reserve(values.size());
    for (const OwnedTlv &entry : values) {
        views.push_back({entry.type, entry.value});
    }
    return encodeTlvs(magic, views);
}

Result<Digest> keyHash(const crypto::PublicKey &key)
{
    return key.bootDer().and_then([](const Bytes &der) { return crypto::sha256(der); });
}

Result<Bytes> protectedBlock(const BootRequest &request)
{
    std::vector<OwnedTlv> values;
    if (request.securityCounter) {
        values.push_back({boot_tlv::kSecurityCounter, {}});
        files::appendU32le(values.back().value, *request.securityCounter);
    }
    if (!request.bootRecord.empty()) {
        const auto signerId = keyHash(*signerOf(request));
        if (!signerId) {
            return tl::unexpected(signerId.error());
        }
        values.push_back({boot_tlv::kBootRecord,
                          encodeBootRecord(request.bootRecord, request.version, *signerId)});
    }
    for (const BootDependency &dependency : request.dependencies) {
        values.push_back({boot_tlv::kDependency, encodeDependency(dependency)});
    }
    for (const BootOwnValue &own : request.ownValues) {
        values.push_back({own.type, own.value});
    }
    return values.empty() ? Bytes() : encodeOwned(kProtectedBlockMagic, values);
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

/// The signature; one that was made elsewhere is checked first.
Result<Bytes> signatureOver(const BootRequest &request, const Digest &digest)
{
    if (request.signer != nullptr) {
        return request.signer->signDigest(digest);
    }
    const auto fits = request.signerHalf->verify(digest, request.madeSignature);
    if (!fits) {
        return tl::unexpected(fits.error());
    }
    if (!*fits) {
        return fail(ErrorCode::BadChecksum, "the signature isn't this image's, or isn't the key's");
    }
    return Bytes(request.madeSignature.begin(), request.madeSignature.end());
}

Result<void> addSignature(const BootRequest &request, const Digest &digest,
                          std::vector<OwnedTlv> &values)
{
    const crypto::PublicKey key = *signerOf(request);
    auto der = key.bootDer();
    auto signature = signatureOver(request, digest);
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
    const KeyKind kind = key.kind();
    if (kind == KeyKind::EcdsaP256 && request.padSignature) {
        signature->resize(kLongestEcdsa);
    }
    values.push_back({signatureType(kind), std::move(*signature)});
    return {};
}

std::uint16_t wrappedType(const BootRequest &request)
{
    if (request.recipient == nullptr) {
        return boot_tlv::kWrappedAes;
    }
    switch (request.recipient->kind()) {
    case KeyKind::Rsa2048:
        return boot_tlv::kWrappedRsa;
    case KeyKind::EcdsaP256:
        return boot_tlv::kWrappedP256;
    default:
        return boot_tlv::kWrappedX25519;
    }
}

/// Encrypts the firmware in `image` and adds its wrapped key.
Result<void> encrypt(const BootRequest &request, std::span<std::uint8_t> firmware,
                     std::vector<OwnedTlv> &values)
{
    files::SecretBytes key(request.imageKeyBytes);
    if (auto filled = crypto::fillRandom({key.data(), key.size()}); !filled) {
        return filled;
    }
    auto wrapped = request.recipient != nullptr ? wrapImageKey(*request.recipient, key.span())
                                                : crypto::wrapKey(request.wrapKey, key.span());
    if (!wrapped) {
        return tl::unexpected(wrapped.error());
    }
    values.push_back({wrappedType(request), std::move(*wrapped)});
    return request.clear ? Result<void>() : crypto::aesCtr(key.span(), firmware);
}

std::uint32_t flagsOf(const BootRequest &request)
{
    const std::uint32_t cipher = !isEncrypted(request) ? 0
                                 : request.imageKeyBytes == kLongImageKeyBytes
                                     ? boot_flag::kEncryptedAes256
                                     : boot_flag::kEncryptedAes128;
    return cipher | (request.nonBootable ? boot_flag::kNonBootable : 0) |
           (request.romFixed           ? boot_flag::kRomFixed
            : request.loadAddress != 0 ? boot_flag::kRamLoad
                                       : 0);
}

BootHeader headerOf(const BootRequest &request, std::size_t imageSize, std::size_t protectedSize)
{
    BootHeader header;
    header.loadAddress = request.loadAddress;
    header.headerSize = request.headerSize;
    header.protectedSize = static_cast<std::uint16_t>(protectedSize);
    header.imageSize = static_cast<std::uint32_t>(imageSize);
    header.version = request.version;
    header.flags = flagsOf(request);
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
    if (signerOf(request)) {
        if (auto added = addSignature(request, *digest, values); !added) {
            return added;
        }
    }
    if (isEncrypted(request)) {
        const auto firmware = std::span(image).subspan(request.headerSize, firmwareSize);
        if (auto added = encrypt(request, firmware, values); !added) {
            return added;
        }
    }
    const auto block = encodeOwned(kPlainBlockMagic, values);
    if (!block) {
        return tl::unexpected(block.error());
    }
    image.insert(image.end(), block->begin(), block->end());
    return {};
}

/// Header, plain firmware and protected block. @param outFirmware  bytes of the firmware in it
Result<Bytes> plainImage(const BootRequest &request, ByteView firmware, std::size_t *outFirmware)
{
    if (auto good = check(request, firmware); !good) {
        return tl::unexpected(good.error());
    }
    auto protectedValues = protectedBlock(request);
    if (!protectedValues) {
        return protectedValues;
    }
    Bytes plain(firmware.begin() + (request.padHeader ? 0 : request.headerSize), firmware.end());
    if (isEncrypted(request)) {
        // Loaders decrypt whole blocks of the cipher.
        plain.resize((plain.size() + kCipherBlock - 1) / kCipherBlock * kCipherBlock);
    }
    Bytes image = encodeBootHeader(headerOf(request, plain.size(), protectedValues->size()));
    image.resize(request.headerSize);
    image.insert(image.end(), plain.begin(), plain.end());
    image.insert(image.end(), protectedValues->begin(), protectedValues->end());
    *outFirmware = plain.size();
    return image;
}

/// What the trailer keeps for each of two keys.
std::uint32_t trailerKeyBytes(const BootRequest &request)
{
    if (!isEncrypted(request)) {
        return 0;
    }
    const auto keyBytes = static_cast<std::uint32_t>(request.imageKeyBytes);
    if (!request.keepWrappedKeys) {
        return keyBytes;
    }
    switch (wrappedType(request)) {
    case boot_tlv::kWrappedRsa:
        return 256;
    case boot_tlv::kWrappedAes:
        return keyBytes + 8;
    case boot_tlv::kWrappedP256:
        return 113;
    default:
        return 80;
    }
}

}  // namespace

Result<Bytes> signedPart(const BootRequest &request, ByteView firmware)
{
    std::size_t firmwareSize = 0;
    return plainImage(request, firmware, &firmwareSize);
}

Result<Bytes> buildBootImage(const BootRequest &request, ByteView firmware)
{
    std::size_t firmwareSize = 0;
    auto plain = plainImage(request, firmware, &firmwareSize);
    if (!plain) {
        return plain;
    }
    Bytes image = std::move(*plain);
    if (auto sealed = seal(request, firmwareSize, image); !sealed) {
        return tl::unexpected(sealed.error());
    }
    BootSlot slot = request.slot;
    slot.encryptedKeyBytes = trailerKeyBytes(request);
    Bytes padded = image;
    if (auto fits = padToSlot(padded, slot, request.confirm); !fits) {
        return tl::unexpected(fits.error());
    }
    return request.pad || request.confirm ? padded : image;
}

}  // namespace preparation
