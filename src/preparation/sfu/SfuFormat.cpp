#include "preparation/sfu/SfuFormat.h"

#include "files/base/ByteCursor.h"

#include <algorithm>

namespace preparation
{

namespace
{

using files::ErrorCode;
using files::fail;

files::Result<void> expect(std::uint32_t value, std::uint32_t expected, const char *what)
{
    if (value != expected) {
        return fail(ErrorCode::BadValue, std::string("Its ") + what + " is " +
                                             std::to_string(value) + ", it must be " +
                                             std::to_string(expected));
    }
    return {};
}

}  // namespace

files::Result<ParsedSfu> parseSfuHeader(ByteView file)
{
    files::ByteCursor cursor(file);
    const auto magic = cursor.bytes(kSfuMagic.size());
    if (!cursor.ok() || !std::ranges::equal(magic, kSfuMagic)) {
        return fail(ErrorCode::BadValue, "It does not begin with SFUH");
    }
    if (file.size() != kSfuHeaderBytes) {
        return fail(ErrorCode::WrongSize,
                    "A header file has 64 bytes, this one has " + std::to_string(file.size()));
    }
    ParsedSfu sfu;
    sfu.header = file;
    sfu.protocol = cursor.u16le();
    sfu.imageVersion = cursor.u16le();
    sfu.loadAddress = cursor.u32le();
    sfu.plainSize = cursor.u32le();
    const std::uint16_t headerSize = cursor.u16le();
    sfu.pieceSize = cursor.u16le();
    sfu.pieces = cursor.u32le();
    sfu.nonce = cursor.bytes(kNonceBytes);
    sfu.tag = cursor.bytes(kTagBytes);
    sfu.reserved = cursor.bytes(cursor.left());
    if (sfu.plainSize == 0) {
        return fail(ErrorCode::BadValue, "It counts no bytes");
    }
    const auto pieces = static_cast<std::uint32_t>(sfuPieces(sfu.plainSize));
    for (const auto &checked : {expect(sfu.protocol, kSfuProtocol, "protocol version"),
                                expect(headerSize, kSfuHeaderBytes, "header size"),
                                expect(sfu.pieceSize, kSfuPieceBytes, "piece size"),
                                expect(sfu.pieces, pieces, "number of pieces")}) {
        if (!checked) {
            return tl::unexpected(checked.error());
        }
    }
    return sfu;
}

}  // namespace preparation
