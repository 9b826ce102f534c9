#include "files/containers/SfiReader.h"

#include "files/base/Ownership.h"
#include "files/containers/SfiAreaRules.h"
#include "files/containers/SfiFormat.h"

#include <algorithm>

namespace files
{

namespace
{

/// Where the two formats differ.
struct Layout {
    std::uint32_t type = 0;
    bool (*isLetter)(std::uint8_t letter) = nullptr;  ///< area kinds that may occur
    bool hasImageVersionHead = false;  ///< the head has it, and the areas' own isn't compared
    std::size_t tagOffset = 0;         ///< from the start of the area header
    Result<void> (*checkAreas)(std::span<const SegmentSFI> areas) = nullptr;
};
constexpr Layout kSfi = {file_type::kSfi, isSfiLetter, false, kPrefixBytes, checkSfiAreas};
constexpr Layout kSsfi = {file_type::kSsfi, isSsfiLetter, true, kPrefixBytes + kTagBytes,
                          checkSsfiAreas};

std::size_t headBytes(const Layout &layout, std::uint16_t version)
{
    if (!layout.hasImageVersionHead) {
        return kSfiHeadBytes;
    }
    return version == kSsfiLongHeadVersion ? kSsfiLongHeadBytes : kSsfiHeadBytes;
}

/// Of an SSFI image's areas, and of the areas of an SFI image with an unknown version: the shorter
/// header is what its prefix needs, and no more is read before the version is refused.
std::size_t areaHeadBytes(const Layout &layout, std::uint16_t version)
{
    return areaHeaderBytes(layout.hasImageVersionHead || version == 2 ? 2 : 1);
}

tl::unexpected<Error> badArea(ErrorCode code, const char *check, std::size_t ordinal)
{
    return fail(code, std::string(check) + " at area " + std::to_string(ordinal));
}

tl::unexpected<Error> cutArea(const char *what, std::size_t ordinal, std::size_t needed,
                              std::size_t left)
{
    return fail(ErrorCode::Truncated,
                std::string("the ") + what + " of area " + std::to_string(ordinal) + " needs " +
                    std::to_string(needed) + " bytes, " + std::to_string(left) + " are left");
}

/// Moves a copy of `bytes` into a record's field.
Result<void> storeCopy(std::span<const std::uint8_t> bytes, std::uint8_t *&outField)
{
    auto copy = copyBytes(bytes);
    if (!copy) {
        return fail(ErrorCode::NoMemory, "Unable to allocate memory");
    }
    outField = copy.release();
    return {};
}

/// One reading of one image: the file's bytes, what its head promised, and the record to fill.
class ImageReader
{
public:
    ImageReader(std::span<const std::uint8_t> bytes, const Layout &layout, FileSFI &image)
        : m_layout(layout), m_image(image), m_in(bytes)
    {
    }

    Result<void> readHead();
    Result<void> readAreas();

private:
    Result<void> readArea(std::size_t ordinal);
    Result<void> checkPrefix(const AreaPrefix &prefix, std::size_t ordinal, std::size_t left);
    Result<void> storeArea(SegmentSFI &area, std::size_t ordinal);

    const Layout &m_layout;
    FileSFI &m_image;
    ByteCursor m_in;
    std::uint16_t m_declared = 0;  ///< number of areas
};

Result<void> ImageReader::readHead()
{
    const std::size_t fileBytes = m_in.left();
    if (!std::ranges::equal(m_in.bytes(kMagicBytes), kSfiMagic)) {
        return fail(ErrorCode::BadMagic, "it does not begin with SFIMAGIC");
    }
    m_image.version = m_in.u16le();
    if (m_layout.hasImageVersionHead) {
        m_image.imageVersion = m_in.u32le();
    }
    m_declared = m_in.u16le();
    const auto nonce = m_in.bytes(kNonceBytes);
    const std::size_t size = headBytes(m_layout, m_image.version);
    m_in.seek(0);
    const auto head = m_in.bytes(size);
    if (!m_in.ok()) {
        return fail(ErrorCode::Truncated, "the image head before area 1 needs " +
                                              std::to_string(size) + " bytes, the file holds " +
                                              std::to_string(fileBytes));
    }
    m_image.headerSize = static_cast<std::uint32_t>(size);
    m_image.nonceSize = static_cast<std::uint32_t>(nonce.size());
    m_image.segmentCount = m_declared;
    return storeCopy(head, m_image.header).and_then([&] {
        return storeCopy(nonce, m_image.nonce);
    });
}

/// Checks the fields in their order, so the first wrong one is the one reported.
/// @param left  bytes from the header's start on, which may end inside the prefix
Result<void> ImageReader::checkPrefix(const AreaPrefix &prefix, std::size_t ordinal,
                                      std::size_t left)
{
    const auto cut = [&] {
        return cutArea("header", ordinal, areaHeadBytes(m_layout, m_image.version), left);
    };
    if (left < prefix_end::kLetter) {
        return cut();
    }
    if (!m_layout.isLetter(prefix.letter)) {
        return badArea(ErrorCode::BadKind, "Unknown area type", ordinal);
    }
    if (left < prefix_end::kImageVersion) {
        return cut();
    }
    if (!m_layout.hasImageVersionHead && ordinal == 1) {
        m_image.imageVersion = prefix.imageVersion;
    }
    if (!m_layout.hasImageVersionHead && prefix.imageVersion != m_image.imageVersion) {
        return badArea(ErrorCode::BadValue, "Image version check failed", ordinal);
    }
    if (left < prefix_end::kIndex) {
        return cut();
    }
    if (prefix.index != ordinal) {
        return badArea(ErrorCode::BadIndex, "Area index check failed", ordinal);
    }
    if (left < kPrefixBytes) {
        return cut();
    }
    if (prefix.areaCount != m_declared) {
        return badArea(ErrorCode::BadCount, "Area number check failed", ordinal);
    }
    if (!m_layout.hasImageVersionHead && m_image.version != 1 && m_image.version != 2) {
        return fail(ErrorCode::BadVersion,
                    "The image has format version " + std::to_string(m_image.version) +
                        ", so the header length of area " + std::to_string(ordinal) +
                        " is unknown: known are versions 1 and 2");
    }
    return {};
}

/// Copies header, tag and data of the area whose header begins here.
Result<void> ImageReader::storeArea(SegmentSFI &area, std::size_t ordinal)
{
    const std::size_t headSize = areaHeadBytes(m_layout, m_image.version);
    const std::size_t left = m_in.left();
    const auto header = m_in.bytes(headSize);
    if (!m_in.ok()) {
        return cutArea("header", ordinal, headSize, left);
    }
    const std::size_t dataLeft = m_in.left();
    const auto data = m_in.bytes(area.size);
    if (!m_in.ok()) {
        return cutArea("data", ordinal, area.size, dataLeft);
    }
    area.areaHeaderSize = static_cast<std::uint32_t>(headSize);
    area.tagSize = kTagBytes;
    return storeCopy(header, area.areaHeader)
        .and_then(
            [&] { return storeCopy(header.subspan(m_layout.tagOffset, kTagBytes), area.tag); })
        .and_then([&] { return storeCopy(data, area.data); });
}

Result<void> ImageReader::readArea(std::size_t ordinal)
{
    ByteCursor ahead = m_in;
    const AreaPrefix prefix = readPrefix(ahead);
    if (auto checked = checkPrefix(prefix, ordinal, m_in.left()); !checked) {
        return checked;
    }
    // The record owns the area from here, so that a refusal frees what was copied.
    SegmentSFI &area = m_image.areas.emplace_back();
    area.areaType = prefix.letter;
    area.size = prefix.dataSize;
    area.address = prefix.address;
    return storeArea(area, ordinal);
}

Result<void> ImageReader::readAreas()
{
    for (std::size_t ordinal = 1; ordinal <= m_declared; ++ordinal) {
        if (auto read = readArea(ordinal); !read) {
            return read;
        }
        if (m_image.areas.back().areaType == letter::kOptionBytes) {
            m_image.segmentCount = static_cast<std::uint32_t>(m_image.areas.size());
            return {};
        }
    }
    return fail(ErrorCode::Missing, "Failed to locate an option bytes area");
}

Result<RecordOwner<FileSFI>> readImage(std::span<const std::uint8_t> file, const Layout &layout)
{
    RecordOwner<FileSFI> image(new FileSFI);
    image->type = layout.type;
    ImageReader reader(file, layout, *image);
    const auto read = reader.readHead().and_then([&] { return reader.readAreas(); }).and_then([&] {
        return layout.checkAreas(image->areas);
    });
    if (!read) {
        return tl::unexpected<Error>(read.error());
    }
    return image;
}

}  // namespace

Result<RecordOwner<FileSFI>> readSfi(std::span<const std::uint8_t> file)
{
    return readImage(file, kSfi);
}

Result<RecordOwner<FileSFI>> readSsfi(std::span<const std::uint8_t> file)
{
    return readImage(file, kSsfi);
}

}  // namespace files
