#pragma once
#include "crypto/primitives/Bytes.h"
#include "crypto/primitives/Handles.h"
#include "files/base/Result.h"

#include <vector>

namespace crypto
{

/// What a boot loader can do with a key.
enum class KeyKind { Rsa2048, Rsa3072, EcdsaP256, Ed25519, X25519, Other };

/// "RSA-2048", "ECDSA-P256" and so on.
const char *kindName(KeyKind kind);

/// A public key of any kind that a boot loader uses.
class PublicKey
{
public:
    /// Reads a public key out of PEM text, or the public half of a private key without a pass
    /// phrase. @return BadValue when there is neither
    static files::Result<PublicKey> read(ByteView pem);

    /// Takes a key that stands in a message: X25519 (32 bytes, RFC 7748) or a point of P-256 (65
    /// bytes, uncompressed, SEC 1). One key has one form here: X25519 with its unused top bit set
    /// and hybrid points are refused.
    /// @return BadValue when it is no such key
    static files::Result<PublicKey> fromRaw(KeyKind kind, ByteView raw);

    explicit PublicKey(EvpKey key) : m_key(std::move(key)) {}

    /// Another owner of the same key.
    [[nodiscard]] PublicKey share() const;

    [[nodiscard]] KeyKind kind() const;

    /// What boot loaders hold and hash: `RSAPublicKey` (RFC 8017) of an RSA key,
    /// `SubjectPublicKeyInfo` (RFC 5280) of all others, both in DER.
    [[nodiscard]] files::Result<std::vector<std::uint8_t>> bootDer() const;

    /// As `fromRaw` takes it; only for these two kinds.
    [[nodiscard]] files::Result<std::vector<std::uint8_t>> raw() const;

    /// Whether a signature over a SHA-256 digest is this key's: RSASSA-PSS (SHA-256, MGF1 with
    /// SHA-256, 32 bytes of salt), ECDSA in DER, or Ed25519 with the digest as its message. A kind
    /// that doesn't sign has no signature.
    [[nodiscard]] files::Result<bool> verify(const Digest &digest, ByteView signature) const;

    /// RSAES-OAEP (RFC 8017) with SHA-256, MGF1 with SHA-256 and no label; random.
    /// @return BadValue for a key of another kind than RSA
    [[nodiscard]] files::Result<std::vector<std::uint8_t>> encrypt(ByteView secret) const;

    /// For this folder.
    [[nodiscard]] EVP_PKEY *handle() const { return m_key.get(); }

private:
    EvpKey m_key;
};

}  // namespace crypto
