#include "preparation/boot/BootTrailer.h"

#include <algorithm>
#include <array>

namespace preparation
{

using files::ErrorCode;
using files::fail;
using files::Result;

namespace
{

using Magic = std::array<std::uint8_t, 16>;

constexpr std::uint32_t kUsualAlign = 8;
constexpr Magic kUsualMagic = {0x77, 0xC2, 0x95, 0xF3, 0x60, 0xD2, 0xEF, 0x7F,
                               0x35, 0x52, 0x50, 0x0F, 0x2C, 0xB6, 0x79, 0x80};
constexpr std::uint8_t kFlagSet = 1;

/// Loaders with a wider alignment have a magic of their own, which begins with that number.
Magic magicFor(std::uint32_t maxAlign)
{
    if (maxAlign <= kUsualAlign) {
        return kUsualMagic;
    }
    return {static_cast<std::uint8_t>(maxAlign & 0xFF),
            static_cast<std::uint8_t>(maxAlign >> 8),
            0x2D,
            0xE1,
            0x5D,
            0x29,
            0x41,
            0x0B,
            0x8D,
            0x77,
            0x67,
            0x9C,
            0x11,
            0x0F,
            0x1F,
            0x8A};
}

std::size_t alignedUp(std::size_t bytes, std::size_t align)
{
    return (bytes + align - 1) / align * align;
}

/// Bytes from the flag of a confirmed image to the end of the slot.
std::size_t flagFromEnd(std::uint32_t maxAlign)
{
    return alignedUp(std::tuple_size_v<Magic>, maxAlign) + maxAlign;
}

}  // namespace

std::size_t trailerBytes(const BootSlot &slot)
{
    constexpr std::size_t kWritesPerSector = 3;
    constexpr std::size_t kFields = 4;  // swap size, swap info, copy done, image OK
    const std::size_t magic = alignedUp(std::tuple_size_v<Magic>, slot.maxAlign);
    if (slot.overwriteOnly) {
        return std::size_t{2} * slot.maxAlign + magic;
    }
    return std::size_t{slot.maxSectors} * kWritesPerSector * slot.align +
           2 * alignedUp(slot.encryptedKeyBytes, slot.maxAlign) + kFields * slot.maxAlign + magic;
}

Result<void> padToSlot(std::vector<std::uint8_t> &image, const BootSlot &slot, bool isConfirmed)
{
    const std::size_t trailer = trailerBytes(slot);
    if (trailer > slot.size || image.size() > slot.size - trailer) {
        return fail(ErrorCode::TooLarge, "image (" + std::to_string(image.size()) +
                                             " bytes) and trailer (" + std::to_string(trailer) +
                                             " bytes) don't fit the slot of " +
                                             std::to_string(slot.size) + " bytes");
    }
    image.resize(slot.size, slot.erased);
    std::ranges::copy(magicFor(slot.maxAlign), image.end() - std::ssize(kUsualMagic));
    if (isConfirmed && !slot.overwriteOnly) {
        image[image.size() - flagFromEnd(slot.maxAlign)] = kFlagSet;
    }
    return {};
}

Result<BootRest> readBootRest(ByteView rest)
{
    if (rest.empty()) {
        return BootRest::None;
    }
    const std::size_t magicBytes = std::tuple_size_v<Magic>;
    for (const std::uint32_t maxAlign : {kUsualAlign, 16U, 32U}) {
        const std::size_t flag = flagFromEnd(maxAlign);
        if (rest.size() < flag || !std::ranges::equal(rest.last(magicBytes), magicFor(maxAlign))) {
            continue;
        }
        const std::uint8_t erased = rest.front();
        const std::size_t flagAt = rest.size() - flag;
        const bool isFlagSet = rest[flagAt] == kFlagSet;
        bool isErased = erased == 0 || erased == 0xFF;
        for (std::size_t at = 0; at < rest.size() - magicBytes; ++at) {
            isErased = isErased && (rest[at] == erased || (at == flagAt && isFlagSet));
        }
        if (!isErased) {
            return fail(ErrorCode::BadValue,
                        "there are bytes behind the image that are neither erased nor its trailer");
        }
        return isFlagSet ? BootRest::Confirmed : BootRest::Padded;
    }
    return fail(ErrorCode::BadMagic,
                std::to_string(rest.size()) + " bytes behind the image don't end as a slot does");
}

}  // namespace preparation
