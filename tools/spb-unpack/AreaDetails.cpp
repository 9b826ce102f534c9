#include "AreaDetails.h"

#include "files/base/ByteCursor.h"
#include "preparation/listing/PackageReport.h"

#include <algorithm>

namespace unpack
{

namespace
{

using files::ByteCursor;
using namespace preparation;

constexpr std::size_t kSmiVersionAt = 36;

/// Printable ASCII as it is, all else as a question mark; without the zeros at the end.
std::string textOf(ByteView bytes)
{
    std::string text;
    for (const std::uint8_t byte : bytes) {
        text += byte >= 0x20 && byte < 0x7F ? static_cast<char>(byte) : byte == 0 ? '\0' : '?';
    }
    text.erase(text.find_last_not_of('\0') + 1);
    std::replace(text.begin(), text.end(), '\0', '?');
    return text;
}

Details moduleDetails(ByteView plain)
{
    ByteCursor cursor(plain);
    Details details{"Modules", {}};
    details.fields = {{"moduleSize", "Module", cursor.u32le(), {}, false},
                      {"licenceSize", "Licence", cursor.u32le(), {}, false},
                      {"identifierSize", "Identifier", cursor.u32le(), {}, false},
                      {"flags", "Flags", cursor.u32le(), {}, true}};
    details.fields.push_back({"identifier", "Text", 0, textOf(cursor.bytes(16)), false});
    return cursor.ok() ? details : Details();
}

Details smiDetails(ByteView plain)
{
    ByteCursor cursor(plain);
    cursor.skip(kMagicBytes);
    Details details{"SMI files", {}};
    details.fields = {{"smiVersion", "Format", cursor.u16le(), {}, false},
                      {"smiFlags", "Flags", cursor.u16le(), {}, true},
                      {"loadAddress", "Load address", cursor.u32le(), {}, true},
                      {"plainSize", "Module", cursor.u32le(), {}, false}};
    cursor.seek(kSmiVersionAt);
    details.fields.push_back(
        {"securityVersion", "Security version", 0, hexOf(cursor.bytes(16)), false});
    return cursor.ok() ? details : Details();
}

Details externalDetails(ByteView plain)
{
    if (plain.size() < kTrailerBytes) {
        return {};
    }
    ByteCursor cursor(plain.last(kTrailerBytes));
    return {"External firmware",
            {{"startAddress", "Start address", cursor.u32le(), {}, true},
             {"regionNumber", "Region", cursor.u32le(), {}, false},
             {"regionMode", "Mode", cursor.u32le(), {}, false},
             {"keyAddress", "Key address", cursor.u32le(), {}, true}}};
}

Details tokenDetails(ByteView plain)
{
    ByteCursor cursor(plain);
    Details details{"Parts", {}};
    details.fields = {{"part", "Part", cursor.u32le(), {}, false},
                      {"parts", "Of", cursor.u32le(), {}, false},
                      {"token", "Token", cursor.u32le(), {}, true}};
    return cursor.ok() ? details : Details();
}

}  // namespace

Details detailsOf(std::uint8_t letter, ByteView plain)
{
    // A module head can't look like the SMI magic: module and licence would be 2.4 GB.
    const bool isSmi =
        plain.size() >= kMagicBytes && std::ranges::equal(plain.first(kMagicBytes), kSmiMagic);
    switch (letter) {
    case letter::kModule:
        return isSmi ? smiDetails(plain) : moduleDetails(plain);
    case letter::kFreeModule:
        return moduleDetails(plain);
    case letter::kExternal:
        return externalDetails(plain);
    case letter::kPause:
    case letter::kResume:
        return tokenDetails(plain);
    default:
        return {};
    }
}

}  // namespace unpack
