#include "crypto/primitives/DeterministicSigner.h"

#include <botan/bigint.h>
#include <botan/ec_group.h>
#include <botan/ecdsa.h>
#include <botan/pubkey.h>
#include <botan/system_rng.h>

#include <algorithm>
#include <exception>

namespace crypto
{

namespace
{

Botan::BigInt numberOf(const std::vector<std::uint8_t> &bytes)
{
    return {bytes.data(), bytes.size()};
}

/// The signature by itself, not looked at again.
files::Result<RawSignature> compute(const EcKey &key, const Digest &digest)
{
    const auto scalar = key.scalar();
    const auto curve = numbersOf(key.curve());
    if (!scalar || !curve) {
        return tl::unexpected(scalar ? curve.error() : scalar.error());
    }
    try {
        // By numbers, because the library knows only one of the two curves by name.
        const Botan::EC_Group group(numberOf(curve->p), numberOf(curve->a), numberOf(curve->b),
                                    numberOf(curve->x), numberOf(curve->y), numberOf(curve->order),
                                    1);
        // The generator only blinds the computation; the result doesn't depend on it.
        Botan::System_RNG blinding;
        const Botan::ECDSA_PrivateKey privateKey(blinding, group,
                                                 Botan::BigInt(scalar->data(), scalar->size()));
        Botan::PK_Signer signer(privateKey, blinding, "Raw(SHA-256)");
        // The nonce is made of the digest modulo the order, which this library forgets; on the
        // curve with the smaller order that is a third of all digests.
        const Botan::BigInt reduced =
            Botan::BigInt(digest.data(), digest.size()) % group.get_order();
        signer.update(Botan::BigInt::encode_1363(reduced, digest.size()));
        const std::vector<std::uint8_t> bytes = signer.signature(blinding);
        RawSignature signature{};
        if (bytes.size() == signature.size()) {
            std::copy(bytes.begin(), bytes.end(), signature.begin());
            return signature;
        }
    } catch (const std::exception &) {
        // Its texts may name numbers of the key.
    }
    return files::fail(files::ErrorCode::Refused, "The cryptographic library failed at ECDSA");
}

}  // namespace

files::Result<RawSignature> signDeterministic(const EcKey &key, const Digest &digest)
{
    auto signature = compute(key, digest);
    if (!signature) {
        return signature;
    }
    const auto fits = key.verify(digest, *signature);
    if (!fits) {
        return tl::unexpected(fits.error());
    }
    if (!*fits) {
        return files::fail(files::ErrorCode::Refused,
                           "the signature doesn't fit the key's public half");
    }
    return signature;
}

}  // namespace crypto
