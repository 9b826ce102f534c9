#include "preparation/boot/BootVerifier.h"

#include "crypto/primitives/AesCtr.h"
#include "crypto/primitives/AesKeyWrap.h"
#include "crypto/primitives/Digests.h"
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

/// The plain block's values by what they are for; null for what isn't there.
struct PlainValues {
    const BootTlv *hash = nullptr;
    const BootTlv *key = nullptr;
    const BootTlv *signature = nullptr;
    const BootTlv *wrapped = nullptr;
};

const BootTlv **placeFor(std::uint16_t type, PlainValues &values)
{
    switch (type) {
    case boot_tlv::kSha256:
        return &values.hash;
    case boot_tlv::kKeyHash:
    case boot_tlv::kPublicKey:
        return &values.key;
    case boot_tlv::kRsa2048:
    case boot_tlv::kRsa3072:
    case boot_tlv::kEcdsaP256:
    case boot_tlv::kEd25519:
        return &values.signature;
    case boot_tlv::kWrappedRsa:
    case boot_tlv::kWrappedAes:
    case boot_tlv::kWrappedP256:
    case boot_tlv::kWrappedX25519:
        return &values.wrapped;
    default:
        return nullptr;
    }
}

/// Each value once, and none that nothing protects.
Result<PlainValues> sortValues(const BootImage &image)
{
    PlainValues values;
    for (const BootTlv &entry : image.plainTlvs) {
        const BootTlv **const place = placeFor(entry.type, values);
        if (place == nullptr) {
            return fail(ErrorCode::BadKind, "the plain block has a value of type " +
                                                std::to_string(entry.type) +
                                                ", which nothing protects");
        }
        if (*place != nullptr) {
            return fail(ErrorCode::BadCount, "the plain block has two hashes, keys, signatures or "
                                             "wrapped keys");
        }
        *place = &entry;
    }
    if (values.hash == nullptr) {
        return fail(ErrorCode::Missing, "the image has no hash");
    }
    if ((values.key == nullptr) != (values.signature == nullptr)) {
        return fail(ErrorCode::Missing, values.key == nullptr ? "the signature names no key"
                                                              : "the image has no signature");
    }
    return values;
}

Result<bool> hasHash(const BootImage &image, ByteView body, ByteView hash)
{
    crypto::Sha256 sum;
    sum.begin();
    sum.update(image.headerBytes);
    sum.update(body);
    sum.update(image.protectedBlock);
    return sum.finish().map([hash](const Digest &digest) { return crypto::isEqual(digest, hash); });
}

KeyKind recipientOf(std::uint16_t type)
{
    return type == boot_tlv::kWrappedRsa    ? KeyKind::Rsa2048
           : type == boot_tlv::kWrappedP256 ? KeyKind::EcdsaP256
                                            : KeyKind::X25519;
}

Result<files::SecretBytes> openKey(const BootTlv &wrapped, const BootKeys &keys)
{
    if (keys.recipient == nullptr && keys.wrapKey.empty()) {
        return fail(ErrorCode::Refused, "the image is encrypted; the private key that opens it is "
                                        "needed (--decrypt)");
    }
    const bool isAes = wrapped.type == boot_tlv::kWrappedAes;
    if (isAes && !keys.wrapKey.empty()) {
        return crypto::unwrapKey(keys.wrapKey, wrapped.value);
    }
    const KeyKind wanted = recipientOf(wrapped.type);
    if (isAes || keys.recipient == nullptr || keys.recipient->publicHalf().kind() != wanted) {
        return fail(ErrorCode::BadValue,
                    std::string("the image's key is wrapped for a key of the kind ") +
                        (isAes ? "AES" : crypto::kindName(wanted)));
    }
    return unwrapImageKey(*keys.recipient, wrapped.value);
}

/// @return whether the firmware in the file is encrypted
Result<bool> checkEncrypted(const BootImage &image, const PlainValues &values, const BootKeys &keys)
{
    const auto key = openKey(*values.wrapped, keys);
    if (!key) {
        return tl::unexpected(key.error());
    }
    const bool isLong = (image.header.flags & boot_flag::kEncryptedAes256) != 0;
    if (key->size() != (isLong ? kLongImageKeyBytes : kImageKeyBytes)) {
        return fail(ErrorCode::BadCount, "header and wrapped key disagree about the cipher");
    }
    std::vector<std::uint8_t> body(image.body.begin(), image.body.end());
    if (auto opened = crypto::aesCtr(key->span(), body); !opened) {
        return tl::unexpected(opened.error());
    }
    const auto isOpened = hasHash(image, body, values.hash->value);
    files::wipe(body.data(), body.size());
    const auto isClear = hasHash(image, image.body, values.hash->value);
    if (!isOpened || !isClear) {
        return tl::unexpected(isOpened ? isClear.error() : isOpened.error());
    }
    if (!*isOpened && !*isClear) {
        return fail(ErrorCode::BadChecksum, "the hash isn't the image's");
    }
    return *isOpened;
}

/// @return whether the firmware in the file is encrypted
Result<bool> checkHash(const BootImage &image, const PlainValues &values, const BootKeys &keys)
{
    constexpr std::uint32_t kBoth = boot_flag::kEncryptedAes128 | boot_flag::kEncryptedAes256;
    const std::uint32_t ciphers = image.header.flags & kBoth;
    if (ciphers == kBoth) {
        return fail(ErrorCode::BadValue, "the header says encrypted with AES-128 and with AES-256");
    }
    const bool isFlagged = ciphers != 0;
    if (isFlagged != (values.wrapped != nullptr)) {
        return fail(ErrorCode::Missing, isFlagged
                                            ? "the header says encrypted, but no wrapped key "
                                              "is there"
                                            : "a wrapped key is there, but the header doesn't "
                                              "say encrypted");
    }
    if (isFlagged) {
        return checkEncrypted(image, values, keys);
    }
    const auto isRight = hasHash(image, image.body, values.hash->value);
    if (isRight && !*isRight) {
        return fail(ErrorCode::BadChecksum, "the hash isn't the image's");
    }
    return isRight.map([](bool) { return false; });
}

/// An ECDSA signature may be filled up with zeros to its longest form.
ByteView withoutFilling(ByteView signature)
{
    constexpr std::size_t kLongest = 72;
    if (signature.size() != kLongest || signature[0] != 0x30) {
        return signature;
    }
    const std::size_t size = std::size_t{2} + signature[1];
    const bool isFilled =
        size < kLongest &&
        std::ranges::all_of(signature.subspan(size), [](std::uint8_t byte) { return byte == 0; });
    return isFilled ? signature.first(size) : signature;
}

bool isKindOf(std::uint16_t type, KeyKind kind)
{
    switch (type) {
    case boot_tlv::kRsa2048:
        return kind == KeyKind::Rsa2048;
    case boot_tlv::kRsa3072:
        return kind == KeyKind::Rsa3072;
    case boot_tlv::kEcdsaP256:
        return kind == KeyKind::EcdsaP256;
    default:
        return kind == KeyKind::Ed25519;
    }
}

Result<void> checkSignature(const PlainValues &values, const crypto::PublicKey &key)
{
    if (values.signature == nullptr) {
        return fail(ErrorCode::Missing, "the image isn't signed");
    }
    const auto der = key.bootDer();
    if (!der) {
        return tl::unexpected(der.error());
    }
    const auto hash = crypto::sha256(*der);
    if (!hash) {
        return tl::unexpected(hash.error());
    }
    const bool isWhole = values.key->type == boot_tlv::kPublicKey;
    if (!crypto::isEqual(values.key->value, isWhole ? ByteView(*der) : ByteView(*hash)) ||
        !isKindOf(values.signature->type, key.kind())) {
        return fail(ErrorCode::BadValue, "the image names another key");
    }
    Digest digest{};
    std::ranges::copy(values.hash->value, digest.begin());
    const bool isEcdsa = values.signature->type == boot_tlv::kEcdsaP256;
    const auto fits = key.verify(digest, isEcdsa ? withoutFilling(values.signature->value)
                                                 : values.signature->value);
    if (!fits) {
        return tl::unexpected(fits.error());
    }
    if (!*fits) {
        return fail(ErrorCode::BadChecksum, "the signature isn't the key's");
    }
    return {};
}

}  // namespace

Result<BootVerdict> verifyBootImage(const BootImage &image, const BootKeys &keys)
{
    const auto values = sortValues(image);
    if (!values) {
        return tl::unexpected(values.error());
    }
    const auto rest = readBootRest(image.rest);
    if (!rest) {
        return tl::unexpected(rest.error());
    }
    const auto isEncrypted = checkHash(image, *values, keys);
    if (!isEncrypted) {
        return tl::unexpected(isEncrypted.error());
    }
    if (keys.signer != nullptr) {
        // The hash is right, so it has 32 bytes.
        if (auto checked = checkSignature(*values, *keys.signer); !checked) {
            return tl::unexpected(checked.error());
        }
    }
    return BootVerdict{values->signature != nullptr, keys.signer != nullptr, *isEncrypted, *rest};
}

}  // namespace preparation
