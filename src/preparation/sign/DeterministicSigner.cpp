#include "preparation/sign/DeterministicSigner.h"

#include <botan/bigint.h>
#include <botan/ec_group.h>
#include <botan/ecdsa.h>
#include <botan/pubkey.h>
#include <botan/system_rng.h>

#include <algorithm>
#include <exception>

namespace preparation
{

namespace
{

Botan::BigInt numberOf(const std::vector<std::uint8_t> &bytes)
{
    return {bytes.data(), bytes.size()};
}

}  // namespace

files::Result<RawSignature> signDeterministic(const EcKey &key, const Digest32 &digest)
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
        // The standard takes the digest modulo the order; the library leaves that to us.
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

}  // namespace preparation
