#include "preparation/smi/ElfSegmentCut.h"

#include <algorithm>

namespace preparation
{

namespace
{

/// What is left of a range from `begin` on, given inside a segment (0 is its first byte).
using Part = files::Range;

/// `other`, as bytes from `start` on.
Part inside(const files::Range &other, std::uint64_t start, std::uint64_t size)
{
    const std::uint64_t begin = std::max(other.begin, start);
    const std::uint64_t end = std::min(other.end, start + size);
    return begin < end ? Part{begin - start, end - start} : Part();
}

std::vector<Part> without(const std::vector<Part> &parts, const Part &hole)
{
    std::vector<Part> left;
    for (const Part &part : parts) {
        if (hole.empty() || !files::overlaps(part, hole)) {
            left.push_back(part);
            continue;
        }
        for (const Part rest : {Part{part.begin, hole.begin}, Part{hole.end, part.end}}) {
            if (!rest.empty()) {
                left.push_back(rest);
            }
        }
    }
    return left;
}

Elf32_Phdr partOf(const Elf32_Phdr &segment, const Part &part)
{
    Elf32_Phdr cut = segment;
    const auto begin = static_cast<std::uint32_t>(part.begin);
    const auto size = static_cast<std::uint32_t>(part.end - part.begin);
    cut.p_offset += begin;
    cut.p_vaddr += begin;
    cut.p_paddr += begin;
    cut.p_memsz = size;
    cut.p_filesz = segment.p_filesz <= begin ? 0 : std::min(segment.p_filesz - begin, size);
    return cut;
}

std::vector<Elf32_Phdr> cutSegment(const Elf32_Phdr &segment, const ElfHole &hole)
{
    const std::uint64_t size = std::max(segment.p_memsz, segment.p_filesz);
    const Part byAddress = inside(hole.addresses, segment.p_vaddr, size);
    const Part byFile = inside(hole.bytes, segment.p_offset, segment.p_filesz);
    if (segment.p_type == PT_NULL || (byAddress.empty() && byFile.empty())) {
        return {segment};
    }
    std::vector<Elf32_Phdr> cut;
    for (const Part &part : without(without({{0, size}}, byAddress), byFile)) {
        cut.push_back(partOf(segment, part));
    }
    if (segment.p_type != PT_LOAD && cut.size() > 1) {
        cut.resize(1);
    }
    return cut;
}

/// One stretch that a file loads.
struct Load {
    std::uint32_t virtualAddress = 0;
    std::uint32_t physicalAddress = 0;
    std::uint64_t size = 0;
    ByteView bytes;  ///< the rest of `size` is zeros
};

std::vector<Load> loadsOf(const std::vector<Elf32_Phdr> &segments, ByteView file)
{
    std::vector<Load> loads;
    for (const Elf32_Phdr &segment : segments) {
        if (segment.p_type != PT_LOAD) {
            continue;
        }
        const ByteView bytes =
            segment.p_filesz == 0 ? ByteView() : file.subspan(segment.p_offset, segment.p_filesz);
        if (!bytes.empty()) {
            loads.push_back({segment.p_vaddr, segment.p_paddr, bytes.size(), bytes});
        }
        if (segment.p_memsz > segment.p_filesz) {
            loads.push_back({segment.p_vaddr + segment.p_filesz,
                             segment.p_paddr + segment.p_filesz,
                             segment.p_memsz - segment.p_filesz,
                             {}});
        }
    }
    return loads;
}

/// Takes `count` bytes off the front.
void advance(Load &load, std::uint64_t count)
{
    load.virtualAddress += static_cast<std::uint32_t>(count);
    load.physicalAddress += static_cast<std::uint32_t>(count);
    load.size -= count;
    load.bytes = load.bytes.empty() ? load.bytes : load.bytes.subspan(count);
}

/// Compares two lists of stretches, however they are cut.
bool sameLoads(std::vector<Load> left, std::vector<Load> right)
{
    std::size_t l = 0;
    std::size_t r = 0;
    while (l < left.size() && r < right.size()) {
        const std::uint64_t count = std::min(left[l].size, right[r].size);
        if (left[l].virtualAddress != right[r].virtualAddress ||
            left[l].physicalAddress != right[r].physicalAddress ||
            left[l].bytes.empty() != right[r].bytes.empty() ||
            (!left[l].bytes.empty() &&
             !std::ranges::equal(left[l].bytes.first(count), right[r].bytes.first(count)))) {
            return false;
        }
        advance(left[l], count);
        advance(right[r], count);
        l += left[l].size == 0 ? 1 : 0;
        r += right[r].size == 0 ? 1 : 0;
    }
    return l == left.size() && r == right.size();
}

}  // namespace

void cutSegments(std::vector<Elf32_Phdr> &segments, const ElfHole &hole)
{
    std::vector<Elf32_Phdr> cut;
    for (const Elf32_Phdr &segment : segments) {
        const auto parts = cutSegment(segment, hole);
        cut.insert(cut.end(), parts.begin(), parts.end());
    }
    if (cut.empty()) {
        // A file without any program header is none that can be loaded.
        cut.emplace_back();
    }
    segments = std::move(cut);
}

void detachHead(ElfImage &image)
{
    std::vector<Elf32_Phdr> detached;
    for (const Elf32_Phdr &segment : image.segments) {
        const bool covers = segment.p_type == PT_LOAD && segment.p_filesz != 0 &&
                            segment.p_offset < sizeof(Elf32_Ehdr);
        if (!covers) {
            detached.push_back(segment);
            continue;
        }
        const std::uint64_t size = std::max(segment.p_memsz, segment.p_filesz);
        const std::uint64_t split =
            std::min<std::uint64_t>(sizeof(Elf32_Ehdr) - segment.p_offset, segment.p_filesz);
        Elf32_Phdr front = partOf(segment, {0, split});
        const std::size_t room = image.appendRoom(front.p_filesz, front.p_vaddr);
        std::copy_n(image.bytes.begin() + segment.p_offset, front.p_filesz,
                    image.bytes.begin() + static_cast<std::ptrdiff_t>(room));
        front.p_offset = static_cast<std::uint32_t>(room);
        front.p_align = 4;
        detached.push_back(front);
        if (split < size) {
            detached.push_back(partOf(segment, {split, size}));
        }
    }
    image.segments = std::move(detached);
}

bool loadSame(const ElfImage &before, const ElfImage &after, const ElfHole &hole)
{
    std::vector<Elf32_Phdr> expected = before.segments;
    cutSegments(expected, hole);
    const bool isHidden =
        std::none_of(after.segments.begin(), after.segments.end(), [&](const Elf32_Phdr &segment) {
            return segment.p_type != PT_NULL && segment.p_filesz != 0 &&
                   (files::overlaps(hole.bytes, rangeOf(segment)) ||
                    (segment.p_type == PT_LOAD &&
                     files::overlaps(hole.addresses,
                                     files::Range::of(segment.p_vaddr, segment.p_filesz))));
        });
    return isHidden &&
           sameLoads(loadsOf(expected, before.bytes), loadsOf(after.segments, after.bytes));
}

}  // namespace preparation
