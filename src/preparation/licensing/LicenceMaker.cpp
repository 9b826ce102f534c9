#include "preparation/licensing/LicenceMaker.h"

#include "crypto/token/TokenKeys.h"
#include "preparation/licence/LicenceVerifier.h"

#include <algorithm>

namespace preparation
{

namespace
{

using crypto::EcKey;
using crypto::LicenceStock;
using crypto::TokenSession;
using files::ErrorCode;
using files::fail;
using files::Result;

/// The fields that are known before anything is asked of the token.
Result<Licence> headOf(const LicenceStock &stock, const EcKey &chip, const EcKey &signing)
{
    const auto chipIdentifier = chip.identifier();
    const auto keyIdentifier = signing.identifier();
    if (!chipIdentifier || !keyIdentifier) {
        return tl::unexpected(!chipIdentifier ? chipIdentifier.error() : keyIdentifier.error());
    }
    Licence licence;
    licence.index = stock.index;
    licence.identifier = stock.identifier;
    licence.device = stock.device;
    licence.nonce = stock.nonce;
    licence.chipIdentifier = *chipIdentifier;
    licence.keyIdentifier = *keyIdentifier;
    return licence;
}

/// Wraps the key and signs.
Result<std::vector<std::uint8_t>> complete(const TokenSession &session, const LicenceStock &stock,
                                           const EcKey &chip, Licence licence, bool *outInToken)
{
    const auto pair = crypto::EphemeralPair::make(session);
    if (!pair) {
        return tl::unexpected(pair.error());
    }
    licence.ephemeralPoint = pair->point();
    const auto bound = encodeLicence(licence);
    const auto wrapped =
        pair->wrap(stock, chip.publicPoint(), ByteView(bound).first(kLicenceBound), outInToken);
    if (!wrapped) {
        return tl::unexpected(wrapped.error());
    }
    licence.wrappedKey = *wrapped;
    const auto unsignedBytes = encodeLicence(licence);
    const auto digest = crypto::sha256(ByteView(unsignedBytes).first(kLicenceSigned));
    if (!digest) {
        return tl::unexpected(digest.error());
    }
    const auto signature = crypto::signWithStock(session, stock, *digest);
    if (!signature) {
        return tl::unexpected(signature.error());
    }
    licence.signature = *signature;
    return encodeLicence(licence);
}

Result<MadeLicence> makeTaken(const TokenSession &session, const LicenceStock &stock,
                              const EcKey &chip, const EcKey &signing, Licence licence,
                              const LicenceWriter &write)
{
    MadeLicence made{licence.left, false};
    const auto bytes = complete(session, stock, chip, std::move(licence), &made.derivedInToken);
    if (!bytes) {
        return tl::unexpected(bytes.error());
    }
    const auto opened = openLicence(*bytes, &signing);
    if (!opened || opened->verdict != SignVerdict::Authentic) {
        return fail(ErrorCode::Refused, "The licence that was made can't be read back.");
    }
    if (auto written = write(*bytes); !written) {
        return tl::unexpected(written.error());
    }
    return made;
}

}  // namespace

Result<MadeLicence> makeLicence(const TokenSession &session, const LicenceStock &stock,
                                const EcKey &chip, const LicenceWriter &write)
{
    if (!stock.fault.empty()) {
        return fail(ErrorCode::Missing, "The token can't license " + stock.identifier + ", " +
                                            stock.fault + ": program it anew.");
    }
    const auto signing = EcKey::fromPoint(crypto::Curve::P256, stock.signingPoint);
    auto licence = signing ? headOf(stock, chip, *signing) : tl::unexpected(signing.error());
    if (!licence) {
        return tl::unexpected(licence.error());
    }
    const auto left = crypto::takeLicence(session, stock);
    if (!left) {
        return tl::unexpected(left.error());
    }
    licence->left = *left;
    auto made = makeTaken(session, stock, chip, *signing, *licence, write);
    if (!made) {
        const auto back = crypto::giveBackLicence(session, stock);
        if (!back) {
            made.error().text +=
                " The licence was counted and can't be given back: " + back.error().text;
        }
    }
    return made;
}

}  // namespace preparation
