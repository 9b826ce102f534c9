#include "preparation/smi/SmiFormat.h"

#include "files/base/ByteCursor.h"

#include <algorithm>

namespace preparation
{

using files::ErrorCode;
using files::fail;

files::Result<ParsedSmi> parseSmi(ByteView file, const std::string &what)
{
    files::ByteCursor cursor(file);
    const auto magic = cursor.bytes(kMagicBytes);
    const std::uint16_t version = cursor.u16le();
    ParsedSmi smi;
    smi.flags = cursor.u16le();
    smi.loadAddress = cursor.u32le();
    smi.plainSize = cursor.u32le();
    if (!cursor.ok() || !std::ranges::equal(magic, kSmiMagic)) {
        return fail(ErrorCode::BadValue, what + " is not an SMI image");
    }
    if (version != 1) {
        return fail(ErrorCode::BadValue, what + " has the format version " +
                                             std::to_string(version) + ", only 1 is known");
    }
    if (const std::uint64_t expected = smiFileBytes(smi.plainSize); file.size() != expected) {
        return fail(ErrorCode::WrongSize, what + " has " + std::to_string(file.size()) +
                                              " bytes, its head says " + std::to_string(expected));
    }
    smi.nonce = cursor.bytes(kNonceBytes);
    smi.securityVersion = cursor.bytes(kSmiVersionBytes);
    smi.tag = cursor.bytes(kTagBytes);
    smi.check = cursor.bytes(kCheckBytes);
    smi.reserved = cursor.bytes(kSmiHeadBytes - cursor.offset());
    smi.head = file.first(kSmiHeadBytes);
    smi.data = cursor.bytes(smi.plainSize);
    smi.padding = cursor.bytes(cursor.left());
    return smi;
}

}  // namespace preparation
