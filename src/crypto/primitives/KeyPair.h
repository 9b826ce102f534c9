#pragma once
#include "crypto/primitives/Bytes.h"
#include "crypto/primitives/Handles.h"
#include "crypto/primitives/PublicKey.h"
#include "files/base/Result.h"
#include "files/base/Wipe.h"

#include <string>
#include <string_view>
#include <vector>

namespace crypto
{

/// A private key of any kind that a boot loader uses, in the forms in which it is stored.
class KeyPair
{
public:
    /// The types that `make` knows, as they are written.
    static std::vector<std::string_view> types();

    /// Makes a new pair. @return BadValue for a type that isn't known
    static files::Result<KeyPair> make(std::string_view type);

    /// Whether PEM text holds a private key that only a pass phrase opens.
    static bool isLocked(ByteView pem);

    /// Reads the first private key out of PEM text.
    /// @param phrase  opens a locked key; empty for none
    /// @return BadValue when there is none, or the phrase isn't the key's
    static files::Result<KeyPair> readPrivate(ByteView pem, ByteView phrase = {});

    /// PKCS#8 (RFC 5208) as PEM text.
    /// @param phrase  locks it (PBES2, AES-256-CBC); empty for a key without a pass phrase
    [[nodiscard]] files::Result<files::SecretBytes> privatePem(ByteView phrase = {}) const;

    /// PKCS#8 in DER.
    /// @param minimal  leaves the public half of an elliptic-curve key out
    [[nodiscard]] files::Result<files::SecretBytes> privateDer(bool minimal) const;

    /// The private number alone, 32 bytes, in the order of its standard: big-endian on the curves
    /// of 256 bits, as RFC 8032 and RFC 7748 have it for Ed25519 and X25519.
    /// @return BadValue for a key with a longer one
    [[nodiscard]] files::Result<files::SecretBytes> rawPrivate() const;

    /// The public half as `SubjectPublicKeyInfo` (RFC 5280), in PEM text and in DER.
    [[nodiscard]] files::Result<std::string> publicPem() const;
    [[nodiscard]] files::Result<std::vector<std::uint8_t>> publicDer() const;

    [[nodiscard]] PublicKey publicHalf() const;

    /// Signs a SHA-256 digest, see PublicKey::verify, which looks at the signature before it is
    /// given out. ECDSA and Ed25519 give the same bytes each time (RFC 6979, RFC 8032); the salt of
    /// RSASSA-PSS is random.
    /// @return BadValue for a kind that doesn't sign
    [[nodiscard]] files::Result<std::vector<std::uint8_t>> signDigest(const Digest &digest) const;

    /// The secret that both sides of a Diffie-Hellman exchange get: X25519 (RFC 7748) or the X
    /// coordinate on P-256, 32 bytes.
    /// @return BadValue for a peer that gives none, such as one of another kind
    [[nodiscard]] files::Result<files::SecretBytes> agree(const PublicKey &peer) const;

    /// Opens what PublicKey::encrypt made. @param text  may be hostile
    /// @return BadValue when it isn't for this key, or isn't as it was
    [[nodiscard]] files::Result<files::SecretBytes> decrypt(ByteView text) const;

private:
    explicit KeyPair(EvpKey key) : m_key(std::move(key)) {}
    EvpKey m_key;
};

}  // namespace crypto
