#include "preparation/licence/LicenceVerifier.h"

namespace preparation
{

files::Result<OpenedLicence> openLicence(ByteView file, const crypto::EcKey *key)
{
    const auto licence = parseLicence(file);
    if (!licence) {
        return tl::unexpected(licence.error());
    }
    OpenedLicence opened{*licence, SignVerdict::NotChecked};
    if (key == nullptr) {
        return opened;
    }
    const auto identifier = key->identifier();
    const auto digest = crypto::sha256(file.first(kLicenceSigned));
    if (!identifier || !digest) {
        return tl::unexpected(!identifier ? identifier.error() : digest.error());
    }
    if (*identifier != licence->keyIdentifier) {
        opened.verdict = SignVerdict::AnotherKey;
        return opened;
    }
    const auto fits = key->verify(*digest, licence->signature);
    if (!fits) {
        return tl::unexpected(fits.error());
    }
    opened.verdict = *fits ? SignVerdict::Authentic : SignVerdict::Damaged;
    return opened;
}

}  // namespace preparation
