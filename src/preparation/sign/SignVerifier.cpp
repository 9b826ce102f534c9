#include "preparation/sign/SignVerifier.h"

namespace preparation
{

const char *signVerdictText(SignVerdict verdict)
{
    switch (verdict) {
    case SignVerdict::NotChecked:
        return "not checked";
    case SignVerdict::Authentic:
        return "authentic";
    case SignVerdict::AnotherKey:
        return "another key";
    case SignVerdict::Damaged:
        return "damaged";
    }
    return "";
}

files::Result<OpenedSign> openSigned(ByteView file, const crypto::EcKey *key)
{
    const auto trailer = parseSignTrailer(file);
    if (!trailer) {
        return tl::unexpected(trailer.error());
    }
    OpenedSign opened{*trailer, SignVerdict::NotChecked};
    if (key == nullptr) {
        return opened;
    }
    const auto identifier = key->identifier();
    if (!identifier) {
        return tl::unexpected(identifier.error());
    }
    if (*identifier != trailer->keyIdentifier) {
        opened.verdict = SignVerdict::AnotherKey;
        return opened;
    }
    const auto digest = signDigest(file.first(trailer->signedSize), file.last(kSignTrailerBytes));
    if (!digest) {
        return tl::unexpected(digest.error());
    }
    const auto fits = key->verify(*digest, trailer->signature);
    if (!fits) {
        return tl::unexpected(fits.error());
    }
    const bool isKeysCurve = trailer->curve == static_cast<std::uint8_t>(key->curve());
    opened.verdict = *fits && isKeysCurve ? SignVerdict::Authentic : SignVerdict::Damaged;
    return opened;
}

}  // namespace preparation
