#include "FuzzSupport.h"

#include "files/base/ByteCursor.h"
#include "files/firmware/RecordText.h"
#include "support/PlainWriters.h"

#include <algorithm>

namespace
{

/// Input: for each segment an address, a 16-bit size and a byte to count up from. Only the first
/// may be longer than a few records, as those take most of the time.
PlainImage imageFrom(std::span<const std::uint8_t> input)
{
    PlainImage image;
    files::ByteCursor in(input);
    while (in.left() >= 7 && image.size() < 4) {
        const std::uint32_t address = in.u32le();
        const std::uint32_t number = in.u16le();
        // A block of the HEX writer is 0x2000 bytes long.
        const bool isLong = number >= 0xFC00 && image.empty();
        const std::uint32_t size = isLong ? 0x1F00 + number % 0x300 : number % 0x90;
        std::uint8_t value = in.u8();
        std::vector<std::uint8_t> bytes(std::min(size, UINT32_MAX - address));
        std::generate(bytes.begin(), bytes.end(), [&value] { return value++; });
        image.push_back({address, std::move(bytes)});
    }
    return image;
}

template <typename Encode>
std::string textOf(Encode encode)
{
    std::string text;
    files::OutputBuffer out([&text](std::span<const std::uint8_t> bytes) {
        text.append(reinterpret_cast<const char *>(bytes.data()), bytes.size());
        return true;
    });
    encode(out);
    require(out.flush());
    return text;
}

}  // namespace

std::vector<std::vector<std::uint8_t>> fuzzSeeds()
{
    return {{0, 0, 0, 8, 40, 0, 1},
            {0xE5, 0xFF, 0, 0, 70, 0, 7, 0, 0, 2, 0, 0, 0x30, 9},
            {0xC0, 0xFF, 0xFF, 0xFF, 0x3F, 0, 0xFF},
            {0xF0, 0xDF, 0, 8, 0x00, 0xFE, 5},  // 0x2100 bytes, past a block's end
            {0xFF, 0xFF, 0xFF, 0, 1, 0, 0, 0, 0, 0, 1, 33, 0, 3}};
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const PlainImage image = imageFrom({data, size});
    std::uint32_t top = 0;
    for (const auto &[start, bytes] : image) {
        if (!bytes.empty()) {
            top = std::max(top, start + static_cast<std::uint32_t>(bytes.size() - 1));
        }
    }
    const auto width = files::srecordWidth(top);
    require(plainIntelText(image) == textOf([&image](files::OutputBuffer &out) {
                for (const auto &[start, bytes] : image) {
                    files::appendIntelSegment(out, start, bytes);
                }
                if (!image.empty()) {
                    files::appendIntelRecord(out, 1, 0, {});
                }
            }));
    require(plainSRecordText(image) == textOf([&image, width](files::OutputBuffer &out) {
                for (const auto &[start, bytes] : image) {
                    files::appendSRecordSegment(out, start, bytes, width);
                }
                files::appendSRecordEnd(out, width);
            }));
    return 0;
}
