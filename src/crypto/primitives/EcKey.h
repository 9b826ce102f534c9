#pragma once
#include "crypto/primitives/Bytes.h"
#include "crypto/primitives/Handles.h"
#include "files/base/Result.h"
#include "files/base/Wipe.h"

#include <string>
#include <vector>

namespace crypto
{

/// The curves that the program knows; the value stands in the trailer of a signed image.
enum class Curve : std::uint8_t { P256 = 1, BrainpoolP256t1 = 2 };

/// "prime256v1" or "brainpoolP256t1".
const char *curveName(Curve curve);

inline constexpr std::size_t kScalarBytes = 32;
/// r, then s, 32 bytes each, big-endian.
using RawSignature = std::array<std::uint8_t, 2 * kScalarBytes>;

/// An elliptic-curve key on one of the two curves, public or private.
class EcKey
{
public:
    /// Reads the first public key out of PEM text.
    /// @return BadValue that says what stands there instead
    static files::Result<EcKey> readPublic(ByteView pem);

    /// Reads the first private key out of PEM text.
    /// @param phrase  NUL at its end; null for a key without one
    /// @return BadValue that says what stands there instead: a key that needs a pass phrase, a
    ///         public key, another kind or curve
    static files::Result<EcKey> readPrivate(ByteView pem, const char *phrase);

    /// A public key from its point alone.
    /// @param point  X, then Y, 32 bytes each, big-endian
    /// @return BadValue when it is no point of the curve
    static files::Result<EcKey> fromPoint(Curve curve, ByteView point);

    [[nodiscard]] Curve curve() const { return m_curve; }

    /// The public half as `SubjectPublicKeyInfo` in DER: named curve, uncompressed point.
    [[nodiscard]] const std::vector<std::uint8_t> &publicDer() const { return m_publicDer; }

    /// X, then Y, 32 bytes each, big-endian: the last bytes of `publicDer`.
    [[nodiscard]] ByteView publicPoint() const
    {
        return ByteView(m_publicDer).last(2 * kScalarBytes);
    }

    /// The same in PEM.
    [[nodiscard]] std::string publicPem() const;

    /// SHA-256 of `publicDer`.
    [[nodiscard]] files::Result<Digest> identifier() const;

    /// The private number, 32 bytes, big-endian. Only for a key that `readPrivate` gave.
    [[nodiscard]] files::Result<files::SecretBytes> scalar() const;

    /// Whether a signature over a digest is this key's.
    /// @param signature  64 bytes
    [[nodiscard]] files::Result<bool> verify(const Digest &digest, ByteView signature) const;

    /// Takes a key that is there already.
    /// @param key  not null. @return BadValue that says what it is instead
    static files::Result<EcKey> fromKey(EvpKey key);

private:
    EvpKey m_key;
    Curve m_curve = Curve::P256;
    std::vector<std::uint8_t> m_publicDer;
};

/// The curve's numbers, big-endian, as the crypto library holds them.
struct CurveNumbers {
    std::vector<std::uint8_t> p, a, b, x, y, order;
};
files::Result<CurveNumbers> numbersOf(Curve curve);

}  // namespace crypto
