#include "preparation/licence/LicenceFormat.h"

#include "files/base/ByteCursor.h"

#include <algorithm>

namespace preparation
{

namespace
{

using files::ErrorCode;
using files::fail;
using files::Result;

constexpr std::uint16_t kVersion = 1;

void appendPadded(std::vector<std::uint8_t> &bytes, const std::string &text, std::size_t room)
{
    const std::size_t size = std::min(text.size(), room);
    bytes.insert(bytes.end(), text.begin(), text.begin() + static_cast<std::ptrdiff_t>(size));
    bytes.insert(bytes.end(), room - size, 0);
}

/// Text up to the first zero, behind which only zeros may stand.
Result<std::string> readPadded(ByteView field, const char *name)
{
    const auto end = std::ranges::find(field, std::uint8_t{0});
    if (std::any_of(end, field.end(), [](std::uint8_t b) { return b != 0; })) {
        return fail(ErrorCode::BadValue, std::string("Bytes stand behind the end of its ") + name);
    }
    if (std::any_of(field.begin(), end, [](std::uint8_t b) { return b < 0x20 || b == 0x7F; })) {
        return fail(ErrorCode::BadValue, std::string("Its ") + name + " holds a control character");
    }
    return std::string(field.begin(), end);
}

template <typename Array>
void take(files::ByteCursor &in, Array &out)
{
    std::ranges::copy(in.bytes(out.size()), out.begin());
}

Result<void> readTexts(files::ByteCursor &in, std::uint8_t size, Licence &licence)
{
    const auto identifier = readPadded(in.bytes(kLicenceIdentifierRoom), "identifier");
    const auto device = readPadded(in.bytes(kLicenceDeviceRoom), "device");
    if (!identifier || !device) {
        return tl::unexpected(!identifier ? identifier.error() : device.error());
    }
    if (identifier->size() != size || size == 0 || size == kLicenceIdentifierRoom) {
        return fail(ErrorCode::BadValue, "Its identifier has " +
                                             std::to_string(identifier->size()) +
                                             " bytes, its head says " + std::to_string(size));
    }
    licence.identifier = *identifier;
    licence.device = *device;
    return {};
}

}  // namespace

std::vector<std::uint8_t> encodeLicence(const Licence &licence)
{
    std::vector<std::uint8_t> bytes(kLicenceMagic.begin(), kLicenceMagic.end());
    files::appendU16le(bytes, kVersion);
    bytes.push_back(licence.index);
    bytes.push_back(static_cast<std::uint8_t>(licence.identifier.size()));
    appendPadded(bytes, licence.identifier, kLicenceIdentifierRoom);
    appendPadded(bytes, licence.device, kLicenceDeviceRoom);
    files::appendU32le(bytes, licence.left);
    const auto append = [&bytes](ByteView part) {
        bytes.insert(bytes.end(), part.begin(), part.end());
    };
    append(licence.nonce);
    append(licence.chipIdentifier);
    append(licence.ephemeralPoint);
    append(licence.wrappedKey);
    append(licence.keyIdentifier);
    append(licence.signature);
    return bytes;
}

Result<Licence> parseLicence(ByteView file)
{
    files::ByteCursor in(file);
    if (!std::ranges::equal(in.bytes(kLicenceMagic.size()), kLicenceMagic)) {
        return fail(ErrorCode::BadMagic, "It does not begin with SPBLICN1");
    }
    if (file.size() != kLicenceBytes) {
        return fail(ErrorCode::WrongSize, "It has " + std::to_string(file.size()) +
                                              " bytes, a licence has " +
                                              std::to_string(kLicenceBytes));
    }
    if (const std::uint16_t version = in.u16le(); version != kVersion) {
        return fail(ErrorCode::BadVersion,
                    "It is of version " + std::to_string(version) + ", only 1 is known");
    }
    Licence licence;
    licence.index = in.u8();
    const std::uint8_t identifierBytes = in.u8();
    if (auto texts = readTexts(in, identifierBytes, licence); !texts) {
        return tl::unexpected(texts.error());
    }
    licence.left = in.u32le();
    take(in, licence.nonce);
    take(in, licence.chipIdentifier);
    take(in, licence.ephemeralPoint);
    take(in, licence.wrappedKey);
    take(in, licence.keyIdentifier);
    take(in, licence.signature);
    if (licence.index == 0) {
        return fail(ErrorCode::BadValue, "Its index is 0");
    }
    if (!crypto::EcKey::fromPoint(crypto::Curve::P256, licence.ephemeralPoint)) {
        return fail(ErrorCode::BadValue, "Its ephemeral key is no point on P-256");
    }
    return licence;
}

}  // namespace preparation
