#include "preparation/ImageOpener.h"

#include "files/base/ByteCursor.h"
#include "files/base/PageBlock.h"
#include "preparation/sealing/ImageKeys.h"

#include <algorithm>
#include <array>

namespace preparation
{

namespace
{

using files::ByteCursor;
using files::ErrorCode;
using files::fail;
using files::Result;

Result<ParsedArea> parseArea(ByteCursor &cursor, std::size_t index, std::uint16_t version,
                             std::uint16_t areaCount)
{
    const std::string place = "area " + std::to_string(index);
    ParsedArea area;
    area.header = cursor.bytes(areaHeaderBytes(version));
    if (!cursor.ok()) {
        return fail(ErrorCode::Truncated, "The image ends inside the header of " + place + " of " +
                                              std::to_string(areaCount));
    }
    ByteCursor fields(area.header);
    area.prefix = files::readPrefix(fields);
    area.tag = fields.bytes(kTagBytes);
    area.check = fields.bytes(fields.left());
    if (area.prefix.index != index) {
        return fail(ErrorCode::BadValue, "The header of " + place + " has the index " +
                                             std::to_string(area.prefix.index));
    }
    if (area.prefix.areaCount != areaCount) {
        return fail(ErrorCode::BadValue, "The header of " + place + " counts " +
                                             std::to_string(area.prefix.areaCount) +
                                             " areas, the head " + std::to_string(areaCount));
    }
    const std::size_t left = cursor.left();
    area.data = cursor.bytes(area.prefix.dataSize);
    if (!cursor.ok()) {
        return fail(ErrorCode::Truncated,
                    "The data of " + place + " has " + std::to_string(area.prefix.dataSize) +
                        " bytes, the image only " + std::to_string(left) + " more");
    }
    if ((area.prefix.letter == letter::kOptionBytes) != (index == areaCount)) {
        return fail(ErrorCode::BadValue,
                    index == areaCount ? "The image does not end with an option bytes area"
                                       : "The option bytes area is " + place + " of " +
                                             std::to_string(areaCount) + ", it must be the last");
    }
    return area;
}

/// Decrypts an area. A vector fills what it grows by: in steps that stay in the processor's cache
/// this costs next to nothing, over the whole area as much as the decrypting.
void decrypt(AreaCipher &cipher, ByteView data, std::vector<std::uint8_t> &plain)
{
    constexpr std::size_t kStep = std::size_t{1} << 15;
    plain.clear();
    plain.reserve(data.size());
    if (!data.empty()) {
        files::preferLargePages(plain.data());
    }
    while (!data.empty()) {
        const ByteView part = data.first(std::min(data.size(), kStep));
        const std::size_t at = plain.size();
        plain.resize(at + part.size());
        cipher.update(part, plain.data() + at);
        data = data.subspan(part.size());
    }
}

/// Decrypts one area.
/// @return whether its tag fits
Result<bool> tryArea(AreaCipher &cipher, const ImageKeys &keys, const ParsedImage &image,
                     const ParsedArea &area, std::vector<std::uint8_t> &plain)
{
    cipher.begin(keys.areaIv(area.prefix.index), image.head);
    cipher.associate(area.header.first(kPrefixBytes));
    decrypt(cipher, area.data, plain);
    return cipher.finishOpening(area.tag);
}

/// Tries every area under one profile.
/// @param plain  receives the decrypted bytes, authentic or not, by area
/// @return by area, whether its tag fits
Result<std::vector<bool>> tryProfile(const ParsedImage &image, ByteView key, std::uint32_t profile,
                                     std::vector<std::vector<std::uint8_t>> &plain)
{
    const auto keys = ImageKeys::derive(key, profile, image.nonce);
    if (!keys) {
        return tl::unexpected(keys.error());
    }
    AreaCipher cipher(AreaCipher::Direction::Open, keys->imageKey());
    std::vector<bool> fits(image.areas.size(), false);
    plain.resize(image.areas.size());
    for (std::size_t i = 0; i < image.areas.size(); ++i) {
        const auto authentic = tryArea(cipher, *keys, image, image.areas[i], plain[i]);
        if (!authentic) {
            return tl::unexpected(authentic.error());
        }
        fits[i] = *authentic;
    }
    return fits;
}

/// The profiles, the likelier one first: telling costs the smallest area, not the whole image.
Result<std::array<std::uint32_t, 2>> profilesFor(const ParsedImage &image, ByteView key)
{
    const auto smallest = std::ranges::min_element(
        image.areas, {}, [](const ParsedArea &area) { return area.data.size(); });
    const auto keys = ImageKeys::derive(key, kProfileH5, image.nonce);
    if (!keys) {
        return tl::unexpected(keys.error());
    }
    AreaCipher cipher(AreaCipher::Direction::Open, keys->imageKey());
    std::vector<std::uint8_t> plain;
    const auto isH5 = tryArea(cipher, *keys, image, *smallest, plain);
    if (!isH5) {
        return tl::unexpected(isH5.error());
    }
    return *isH5 ? std::array{kProfileH5, kProfileUsual} : std::array{kProfileUsual, kProfileH5};
}

/// Finds the profile of the image and puts its verdicts into the undamaged areas.
Result<void> verifyTags(OpenedImage &opened, ByteView key)
{
    std::vector<std::vector<std::uint8_t>> plain;
    std::vector<bool> fits;
    const auto profiles = profilesFor(opened.parsed, key);
    if (!profiles) {
        return tl::unexpected(profiles.error());
    }
    for (const std::uint32_t profile : *profiles) {
        auto tried = tryProfile(opened.parsed, key, profile, plain);
        if (!tried) {
            return tl::unexpected(tried.error());
        }
        fits = std::move(*tried);
        if (std::find(fits.begin(), fits.end(), true) != fits.end()) {
            opened.profile = profile;
            break;
        }
    }
    opened.authentic = true;
    for (std::size_t i = 0; i < fits.size(); ++i) {
        if (opened.verdicts[i] != Verdict::Damaged) {
            opened.verdicts[i] = fits[i] ? Verdict::Authentic : Verdict::WrongKeyOrDamaged;
        }
        opened.authentic = opened.authentic && opened.verdicts[i] == Verdict::Authentic;
    }
    if (opened.authentic) {
        opened.plain = std::move(plain);
    }
    return {};
}

}  // namespace

Result<ParsedImage> parseImage(ByteView image)
{
    ByteCursor cursor(image);
    ParsedImage parsed;
    const ByteView magic = cursor.bytes(kMagicBytes);
    if (!std::ranges::equal(magic, kSfiMagic)) {
        return fail(ErrorCode::BadValue, "It does not begin with SFIMAGIC");
    }
    parsed.version = cursor.u16le();
    const std::uint16_t areaCount = cursor.u16le();
    parsed.nonce = cursor.bytes(kNonceBytes);
    if (!cursor.ok()) {
        return fail(ErrorCode::Truncated, "Its head is cut short: " + std::to_string(image.size()) +
                                              " bytes of " + std::to_string(kHeadBytes));
    }
    parsed.head = image.first(kHeadBytes);
    if (parsed.version != 1 && parsed.version != 2) {
        return fail(ErrorCode::BadValue, "Its format version is " + std::to_string(parsed.version) +
                                             ", only 1 and 2 are known");
    }
    if (areaCount == 0) {
        return fail(ErrorCode::BadValue, "The image has no areas");
    }
    for (std::size_t index = 1; index <= areaCount; ++index) {
        auto area = parseArea(cursor, index, parsed.version, areaCount);
        if (!area) {
            return tl::unexpected(area.error());
        }
        parsed.areas.push_back(*area);
    }
    if (cursor.left() != 0) {
        return fail(ErrorCode::BadValue,
                    std::to_string(cursor.left()) + " bytes stand behind the option bytes area");
    }
    return parsed;
}

Result<OpenedImage> openImage(ByteView image, std::optional<ByteView> key)
{
    if (key && key->size() != kKeyBytes) {
        return fail(ErrorCode::WrongSize,
                    "The key has " + std::to_string(key->size()) + " bytes, it must have 16");
    }
    auto parsed = parseImage(image);
    if (!parsed) {
        return tl::unexpected(parsed.error());
    }
    OpenedImage opened;
    opened.parsed = std::move(*parsed);
    Sha256 sha;
    for (const ParsedArea &area : opened.parsed.areas) {
        const auto intact = checkBlockFits(sha, opened.parsed, area);
        if (!intact) {
            return tl::unexpected(intact.error());
        }
        opened.verdicts.push_back(*intact ? Verdict::NotChecked : Verdict::Damaged);
    }
    if (key) {
        if (auto verified = verifyTags(opened, *key); !verified) {
            return tl::unexpected(verified.error());
        }
    }
    return opened;
}

Result<Tag> checkBlock(Sha256 &sha, ByteView head, ByteView headerWithTag, ByteView data)
{
    sha.begin();
    sha.update(head);
    sha.update(headerWithTag);
    sha.update(data);
    const auto digest = sha.finish();
    if (!digest) {
        return tl::unexpected(digest.error());
    }
    Tag block{};
    std::copy_n(digest->begin(), block.size(), block.begin());
    return block;
}

Result<bool> checkBlockFits(Sha256 &sha, const ParsedImage &image, const ParsedArea &area)
{
    if (image.version == 1) {
        return true;
    }
    const auto expected =
        checkBlock(sha, image.head, area.header.first(kPrefixBytes + kTagBytes), area.data);
    if (!expected) {
        return tl::unexpected(expected.error());
    }
    return std::ranges::equal(*expected, area.check);
}

}  // namespace preparation
