#include "preparation/boot/BootKeyWrap.h"

#include "crypto/primitives/AesCtr.h"
#include "crypto/primitives/Digests.h"

#include <algorithm>
#include <string_view>

namespace preparation
{

using crypto::Digest;
using crypto::KeyKind;
using files::ErrorCode;
using files::fail;
using files::Result;
using files::SecretBytes;

namespace
{

constexpr std::string_view kInfo = "MCUBoot_ECIES_v1";

/// The keys that both sides make of their common secret.
struct WrapKeys {
    SecretBytes bytes;
    [[nodiscard]] ByteView cipher() const { return bytes.span().first(kImageKeyBytes); }
    [[nodiscard]] ByteView mac() const { return bytes.span().subspan(kImageKeyBytes); }
};

Result<WrapKeys> wrapKeys(const crypto::KeyPair &own, const crypto::PublicKey &peer)
{
    const auto shared = own.agree(peer);
    if (!shared) {
        return tl::unexpected(shared.error());
    }
    auto derived = crypto::hkdfSha256(
        shared->span(), {reinterpret_cast<const std::uint8_t *>(kInfo.data()), kInfo.size()},
        kImageKeyBytes + std::tuple_size_v<Digest>);
    if (!derived) {
        return tl::unexpected(derived.error());
    }
    return WrapKeys{std::move(*derived)};
}

Result<Digest> macOf(ByteView key, ByteView text)
{
    crypto::HmacSha256 mac(key);
    mac.update(text);
    return mac.finish();
}

}  // namespace

Result<std::vector<std::uint8_t>> wrapImageKey(const crypto::PublicKey &recipient,
                                               ByteView imageKey)
{
    const KeyKind kind = recipient.kind();
    if (kind == KeyKind::Rsa2048) {
        return recipient.encrypt(imageKey);
    }
    if (kind != KeyKind::EcdsaP256 && kind != KeyKind::X25519) {
        return fail(ErrorCode::BadValue,
                    std::string("a key of the kind ") + crypto::kindName(kind) +
                        " wraps no image key; P-256, X25519 or RSA-2048 is needed");
    }
    if (imageKey.size() != kImageKeyBytes) {
        return fail(ErrorCode::BadValue,
                    "the format tells only for AES-128 how a key is wrapped for P-256 or X25519; "
                    "AES-256 takes RSA-2048 or an AES key of 32 bytes");
    }
    const auto fresh = crypto::KeyPair::make(kind == KeyKind::X25519 ? "x25519" : "ecdsa-p256");
    if (!fresh) {
        return tl::unexpected(fresh.error());
    }
    auto wrapped = fresh->publicHalf().raw();
    const auto keys = wrapKeys(*fresh, recipient);
    if (!wrapped || !keys) {
        return tl::unexpected(wrapped ? keys.error() : wrapped.error());
    }
    std::vector<std::uint8_t> cipher(kImageKeyBytes);
    SecretBytes copy(imageKey.size());  // the plain key stands in no buffer that isn't wiped
    std::ranges::copy(imageKey, copy.data());
    if (auto done = crypto::aesCtr(keys->cipher(), {copy.data(), copy.size()}); !done) {
        return tl::unexpected(done.error());
    }
    cipher.assign(copy.span().begin(), copy.span().end());
    const auto mac = macOf(keys->mac(), cipher);
    if (!mac) {
        return tl::unexpected(mac.error());
    }
    wrapped->insert(wrapped->end(), mac->begin(), mac->end());
    wrapped->insert(wrapped->end(), cipher.begin(), cipher.end());
    return wrapped;
}

Result<SecretBytes> unwrapImageKey(const crypto::KeyPair &key, ByteView wrapped)
{
    const auto refused = [] {
        return fail(ErrorCode::BadValue,
                    "the wrapped key isn't for this private key, or is damaged");
    };
    if (key.publicHalf().kind() == KeyKind::Rsa2048) {
        auto imageKey = key.decrypt(wrapped);
        return imageKey ? std::move(imageKey) : Result<SecretBytes>(refused());
    }
    constexpr std::size_t kTail = std::tuple_size_v<Digest> + kImageKeyBytes;
    if (wrapped.size() <= kTail) {
        return refused();
    }
    const auto peer =
        crypto::PublicKey::fromRaw(key.publicHalf().kind(), wrapped.first(wrapped.size() - kTail));
    if (!peer) {
        return refused();
    }
    const auto keys = wrapKeys(key, *peer);
    if (!keys) {
        return refused();
    }
    const ByteView cipher = wrapped.last(kImageKeyBytes);
    const auto mac = macOf(keys->mac(), cipher);
    if (!mac) {
        return tl::unexpected(mac.error());
    }
    if (!crypto::isEqual(*mac, wrapped.last(kTail).first(mac->size()))) {
        return refused();
    }
    SecretBytes imageKey(cipher.size());
    std::ranges::copy(cipher, imageKey.data());
    if (auto done = crypto::aesCtr(keys->cipher(), {imageKey.data(), imageKey.size()}); !done) {
        return tl::unexpected(done.error());
    }
    return imageKey;
}

}  // namespace preparation
