#include "FuzzWords.h"

#include "files/containers/SfiReader.h"
#include "support/SfiBytes.h"

#include <algorithm>

namespace
{

/// The record must hold the file again, byte for byte, up to the end of its last area.
void requireSameBytes(const FileSFI &image, std::span<const std::uint8_t> file)
{
    std::size_t at = 0;
    const auto isNext = [&](const std::uint8_t *bytes, std::size_t size) {
        require(size <= file.size() - at);
        require(std::equal(bytes, bytes + size, file.begin() + static_cast<std::ptrdiff_t>(at)));
        at += size;
    };
    isNext(image.header, image.headerSize);
    for (const SegmentSFI &area : image.areas) {
        isNext(area.areaHeader, area.areaHeaderSize);
        isNext(area.data, area.size);
        require(area.tagSize == 16 && area.areaType == area.areaHeader[0]);
    }
}

std::vector<std::uint8_t> withKind(std::uint8_t kind, const ImageBytes &image)
{
    return ImageBytes().u8(kind).append(image.done()).done();
}

}  // namespace

std::vector<std::vector<std::uint8_t>> fuzzSeeds()
{
    const std::vector<AreaBytes> areas = {{'S', 0, 3},      {'M', 0x100, 32}, {'m', 0x140, 33},
                                          {'O', 0x200, 12}, {'K', 0, 8},      {'F', 0x1000, 20},
                                          {'F', 0x2000, 4}, {'E', 0x90, 24},  {'C', 0, 8}};
    return {withKind(0, sfiBytes(areas, 1)), withKind(0, sfiBytes(areas, 2)),
            withKind(1, ssfiBytes(areas, 1)),
            withKind(1, ssfiBytes({{'A', 0, 1}, {'C', 0, 4}}, 65001)),
            withKind(0, sfiBytes({{'P', 0, 16}, {'R', 0, 16}, {'H', 0, 0}, {'C', 0, 4}}))};
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size == 0) {
        return 0;
    }
    const std::span<const std::uint8_t> bytes(data + 1, size - 1);
    const auto image = data[0] % 2 != 0 ? files::readSsfi(bytes) : files::readSfi(bytes);
    if (image) {
        require((*image)->segmentCount == (*image)->areas.size());
        require((*image)->areas.back().areaType == 'C');
        requireSameBytes(**image, bytes);
        return 0;
    }
    using files::ErrorCode;
    requireWords(image.error(), {{ErrorCode::BadMagic, "it does not begin with SFIMAGIC"},
                                 {ErrorCode::Truncated, "the image head before area 1 needs "},
                                 {ErrorCode::Truncated, "the header of area "},
                                 {ErrorCode::Truncated, "the data of area "},
                                 {ErrorCode::BadKind, "Unknown area type at area "},
                                 {ErrorCode::BadValue, "Image version check failed at area "},
                                 {ErrorCode::BadIndex, "Area index check failed at area "},
                                 {ErrorCode::BadCount, "Area number check failed at area "},
                                 {ErrorCode::BadVersion, "The image has format version "},
                                 {ErrorCode::Missing, "Failed to locate an option bytes area"},
                                 {ErrorCode::BadValue, "Area "},
                                 {ErrorCode::Overlap, "Overlap between SFI areas "},
                                 {ErrorCode::Refused, "The area immediately following a module "}});
    return 0;
}
