#include "FuzzSupport.h"
#include "FuzzWords.h"

#include "files/firmware/CrcArea.h"
#include "files/firmware/ElfExtension.h"
#include "support/HexLines.h"
#include "support/LinkedElf.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace
{

using Bytes = std::vector<std::uint8_t>;
using ByteView = std::span<const std::uint8_t>;

/// The input begins with the addition: address, padding and how many bytes.
constexpr std::size_t kHead = 6;

Bytes withHead(const Bytes &elf, std::uint32_t address, std::uint8_t padding, std::uint8_t size)
{
    Bytes input = {static_cast<std::uint8_t>(address),
                   static_cast<std::uint8_t>(address >> 8),
                   static_cast<std::uint8_t>(address >> 16),
                   static_cast<std::uint8_t>(address >> 24),
                   padding,
                   size};
    input.insert(input.end(), elf.begin(), elf.end());
    return input;
}

/// Each old segment begins the new one of its number, and the addition is the last.
void requireNothingLost(ByteView before, ByteView after, const files::ElfAddition &addition)
{
    const auto old = files::loadsOf(before);
    const auto made = files::loadsOf(after);
    require(old && made && made->size() == old->size() + 1);
    const auto bytesOf = [](ByteView file, const Elf32_Phdr &load) {
        return load.p_filesz == 0 ? ByteView() : file.subspan(load.p_offset, load.p_filesz);
    };
    for (std::size_t i = 0; i < old->size(); ++i) {
        const ByteView was = bytesOf(before, (*old)[i]);
        const ByteView is = bytesOf(after, (*made)[i]);
        require((*old)[i].p_paddr == (*made)[i].p_paddr && (*old)[i].p_vaddr == (*made)[i].p_vaddr);
        require(is.size() >= was.size() && is.size() - was.size() < 4);
        require(std::equal(was.begin(), was.end(), is.begin()));
    }
    const ByteView added = bytesOf(after, made->back());
    require(made->back().p_paddr == addition.address);
    require(std::equal(added.begin(), added.end(), addition.data.begin(), addition.data.end()));
}

void requireWordsOf(const files::Error &error)
{
    using files::ErrorCode;
    requireWords(error, {{ErrorCode::Truncated, "the ELF head is cut short"},
                         {ErrorCode::BadValue, "it is no 32-bit little-endian ELF file"},
                         {ErrorCode::BadValue, "the entries of its tables have strange sizes"},
                         {ErrorCode::BadValue, "it has no table of section names"},
                         {ErrorCode::Truncated, "its tables end outside the file"},
                         {ErrorCode::Truncated, "the bytes of its sections aren't all in the file"},
                         {ErrorCode::Truncated, "the bytes of a segment end outside the file"},
                         {ErrorCode::BadValue, "its segments hold far more bytes than the file"},
                         {ErrorCode::TooLarge, "\"Name\" runs past the end of the address space"},
                         {ErrorCode::TooLarge, "The ELF file has too many sections "},
                         {ErrorCode::Refused, "Adding \"Name\" would lose bytes of the segment "}});
}

/// The input as firmware of two segments: the table has an entry for each slice and lies in the
/// range.
void sumFirmware(ByteView input, std::uint32_t start)
{
    Bytes bytes(input.begin(), input.end());
    const auto half = static_cast<std::uint32_t>(bytes.size() / 2);
    const std::array<SegmentData, 2> segments = {
        SegmentData{start, half, bytes.data()},
        SegmentData{start + 0x10000, static_cast<std::uint32_t>(bytes.size()) - half,
                    bytes.data() + half}};
    const files::CrcRange range = {start & 0xFFFFFF00, (start & 0xFFFFFF00) + 0x20000, 0x100};
    require(files::checkRange(range).has_value());
    const auto area = files::makeCrcArea(segments, range, 0xFF);
    if (area && !area->blocks.empty()) {
        require(area->bytes.size() == 0x800 && area->address == range.end - 0x800);
    }
}

}  // namespace

std::vector<Bytes> fuzzSeeds()
{
    const Bytes elf = linkedFirmware().bytes();
    const LinkedElf atZero = {{{".a", 0, patternBytes(64)}}, {{0, 1, 0}}};
    const LinkedElf hole = {
        {{".a", 0x1000, patternBytes(13)}, {".b", 0x1010, patternBytes(5), 1, 3}},
        {{0, 2, 0x1000}}};
    return {withHead(elf, 0x08002000, 0, 12), withHead(elf, 0x08001000, 0xFF, 200),
            withHead(atZero.bytes(), 0x100, 0, 1), withHead(hole.bytes(), 0x2000, 0xA5, 7)};
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size < kHead) {
        return 0;
    }
    std::uint32_t address = 0;
    std::memcpy(&address, data, sizeof address);
    const Bytes more(data[5], 0x5A);
    const files::ElfAddition addition = {more, address, "Name", data[4]};
    const ByteView before(data + kHead, size - kHead);
    const auto once = files::withAddition(before, addition);
    if (!once) {
        requireWordsOf(once.error());
    } else {
        requireNothingLost(before, *once, addition);
        const auto twice =
            files::withAddition(*once, {more, address ^ 0x10000000, "Name", data[4]});
        require(!twice || twice->size() <= once->size() + 40 + 32 + 4 + more.size() + 4 + 3);
    }
    sumFirmware(before, address);
    return 0;
}
