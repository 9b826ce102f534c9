#pragma once
#include "files/base/Result.h"
#include "preparation/sealing/SealCipher.h"
#include "preparation/sealing/Verdict.h"

#include <optional>
#include <vector>

namespace preparation
{

/// One area as it stands in an image; the views refer to the image's bytes.
struct ParsedArea {
    AreaPrefix prefix;
    ByteView header;  ///< whole, 30 or 46 bytes
    ByteView tag;     ///< 16 bytes
    ByteView check;   ///< 16 bytes in version 2, else empty
    ByteView data;    ///< encrypted
};

/// The structure of an image; nothing in it is verified yet.
struct ParsedImage {
    std::uint16_t version = 0;
    ByteView head;   ///< 28 bytes
    ByteView nonce;  ///< 16 bytes
    std::vector<ParsedArea> areas;
};

/// Splits an image into its areas. The bytes may be hostile.
/// @return BadValue or Truncated with area and numbers: wrong magic, a version other than 1 and 2,
///         an index or count that doesn't agree, an area beyond the end, no `C` at the end, a `C`
///         before it, bytes behind it
files::Result<ParsedImage> parseImage(ByteView image);

/// An image after the check; `plain` and `verdicts` go by place in `parsed.areas`.
struct OpenedImage {
    ParsedImage parsed;
    std::optional<std::uint32_t> profile;  ///< none without a key, or when no tag fits
    bool authentic = false;                ///< every area is
    std::vector<Verdict> verdicts;
    std::vector<std::vector<std::uint8_t>> plain;  ///< empty unless `authentic`
};

/// Opens an image: structure, check blocks, and with a key the tags.
/// @param key  16 bytes, or none
/// @return the refusals of `parseImage`; or WrongSize for a key of another size
files::Result<OpenedImage> openImage(ByteView image, std::optional<ByteView> key);

/// The 16 bytes that let anyone see damage: over head, area header up to the tag, encrypted data.
files::Result<Tag> checkBlock(Sha256 &sha, ByteView head, ByteView headerWithTag, ByteView data);

/// Whether an area's check block fits; true in version 1, which has none.
files::Result<bool> checkBlockFits(Sha256 &sha, const ParsedImage &image, const ParsedArea &area);

}  // namespace preparation
