#include "preparation/sign/SignTrailer.h"

#include "files/base/ByteCursor.h"
#include "files/base/LittleEndian.h"
#include "preparation/sealing/SealCipher.h"

#include <algorithm>

namespace preparation
{

using files::ErrorCode;
using files::fail;
using files::Result;

SignTrailerBytes encodeSignTrailer(const SignTrailer &trailer)
{
    std::vector<std::uint8_t> bytes(kSignMagic.begin(), kSignMagic.end());
    files::appendU32le(bytes, trailer.imageVersion);
    files::appendU32le(bytes, trailer.signedSize);
    files::appendU32le(bytes, trailer.fileSize);
    bytes.insert(bytes.end(), {trailer.curve, trailer.sizeKind, 0, 0});
    bytes.insert(bytes.end(), trailer.keyIdentifier.begin(), trailer.keyIdentifier.end());
    bytes.insert(bytes.end(), trailer.signature.begin(), trailer.signature.end());
    bytes.insert(bytes.end(), kSignMagic.begin(), kSignMagic.end());
    SignTrailerBytes encoded{};
    std::copy(bytes.begin(), bytes.end(), encoded.begin());
    return encoded;
}

Result<SignTrailer> parseSignTrailer(ByteView file)
{
    if (file.size() < kSignTrailerBytes ||
        !std::ranges::equal(file.last(kSignMagic.size()), kSignMagic)) {
        return fail(ErrorCode::BadValue, "It does not end with SPBSIGN1");
    }
    files::ByteCursor cursor(file.last(kSignTrailerBytes));
    const auto magic = cursor.bytes(kSignMagic.size());
    SignTrailer trailer;
    trailer.imageVersion = cursor.u32le();
    trailer.signedSize = cursor.u32le();
    trailer.fileSize = cursor.u32le();
    trailer.curve = cursor.u8();
    trailer.sizeKind = cursor.u8();
    const std::uint16_t reserved = cursor.u16le();
    std::ranges::copy(cursor.bytes(trailer.keyIdentifier.size()), trailer.keyIdentifier.begin());
    std::ranges::copy(cursor.bytes(trailer.signature.size()), trailer.signature.begin());
    if (!std::ranges::equal(magic, kSignMagic)) {
        return fail(ErrorCode::BadValue, "Its trailer does not begin with SPBSIGN1");
    }
    const std::size_t before = file.size() - kSignTrailerBytes;
    if (trailer.fileSize != before) {
        return fail(ErrorCode::BadValue,
                    "Its trailer says that " + std::to_string(trailer.fileSize) +
                        " bytes stand before it, there are " + std::to_string(before));
    }
    if (trailer.signedSize > trailer.fileSize) {
        return fail(ErrorCode::BadValue,
                    "Its trailer says that " + std::to_string(trailer.signedSize) +
                        " bytes are signed, the file has " + std::to_string(trailer.fileSize));
    }
    if (trailer.curve != static_cast<std::uint8_t>(crypto::Curve::P256) &&
        trailer.curve != static_cast<std::uint8_t>(crypto::Curve::BrainpoolP256t1)) {
        return fail(ErrorCode::BadValue, "Its trailer names the curve " +
                                             std::to_string(trailer.curve) +
                                             ", only 1 and 2 are known");
    }
    if (reserved != 0) {
        return fail(ErrorCode::BadValue, "Its trailer has bytes that must be zero");
    }
    return trailer;
}

Result<Digest> signDigest(ByteView signedBytes, ByteView trailer)
{
    Sha256 sha;
    sha.begin();
    sha.update(signedBytes);
    sha.update(trailer.first(kSignAuthenticated));
    return sha.finish();
}

}  // namespace preparation
