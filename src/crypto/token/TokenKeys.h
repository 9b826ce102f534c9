#pragma once
#include "crypto/primitives/EcKey.h"
#include "crypto/token/LicenceStock.h"

#include <memory>

namespace crypto
{

using WrappedKey = std::array<std::uint8_t, kStockKeyBytes + 8>;

/// A P-256 pair in a token that exists for one licence and goes with this object.
class EphemeralPair
{
public:
    static files::Result<EphemeralPair> make(const TokenSession &session);
    EphemeralPair(EphemeralPair &&) noexcept;
    EphemeralPair &operator=(EphemeralPair &&) noexcept;
    ~EphemeralPair();

    /// X, then Y, 32 bytes each, big-endian.
    [[nodiscard]] const std::array<std::uint8_t, 64> &point() const;

    /// Wraps a stock's firmware key for a chip with AES key wrap (RFC 3394) under 32 bytes that
    /// ANSI X9.63's KDF derives with SHA-256 from the ECDH secret. The key never leaves the token
    /// in clear.
    /// @param chipPoint    X, then Y of the chip's key, 64 bytes
    /// @param sharedInfo   goes into the derivation
    /// @param outInToken   whether the token derived the wrapping bits itself. Tokens that don't
    /// know
    ///                     this KDF digest the secret inside, and the bits pass through memory here
    [[nodiscard]] files::Result<WrappedKey> wrap(const LicenceStock &stock, ByteView chipPoint,
                                                 ByteView sharedInfo, bool *outInToken) const;

private:
    struct State;
    explicit EphemeralPair(std::unique_ptr<State> state);
    std::unique_ptr<State> m_state;
};

/// ECDSA with a stock's signing key, verified before it is given out.
files::Result<RawSignature> signWithStock(const TokenSession &session, const LicenceStock &stock,
                                          const Digest &digest);

}  // namespace crypto
