#include "support/ElfBytes.h"

#include "support/HexLines.h"

using Bytes = std::vector<std::uint8_t>;

namespace
{

class ElfBytes
{
public:
    ElfBytes(bool is64, bool isBigEndian) : m_is64(is64), m_isBigEndian(isBigEndian) {}

    ElfBytes &number(std::uint64_t value, int width)
    {
        for (int i = 0; i < width; ++i) {
            const int shift = 8 * (m_isBigEndian ? width - 1 - i : i);
            bytes.push_back(static_cast<std::uint8_t>(value >> shift));
        }
        return *this;
    }
    ElfBytes &u16(std::uint64_t value) { return number(value, 2); }
    ElfBytes &u32(std::uint64_t value) { return number(value, 4); }
    ElfBytes &word(std::uint64_t value) { return number(value, m_is64 ? 8 : 4); }
    ElfBytes &raw(const Bytes &more)
    {
        bytes.insert(bytes.end(), more.begin(), more.end());
        return *this;
    }

    Bytes bytes;

private:
    bool m_is64;
    bool m_isBigEndian;
};

struct Sizes {
    std::uint64_t head;
    std::uint64_t segment;
    std::uint64_t section;
};

void appendSegment(ElfBytes &out, const ElfPlan::Segment &segment, std::uint64_t offset, bool is64)
{
    out.u32(segment.type);
    if (is64) {
        out.u32(5);
    }
    out.word(offset).word(segment.virtualAddress).word(segment.physical);
    out.word(segment.bytes.size()).word(segment.bytes.size() + segment.extraMemory);
    if (!is64) {
        out.u32(5);
    }
    out.word(4);
}

}  // namespace

Bytes elfBytes(const ElfPlan &plan)
{
    const Sizes sizes = plan.is64 ? Sizes{64, 56, 64} : Sizes{52, 32, 40};
    std::vector<ElfPlan::Section> sections = plan.sections;
    Bytes names = {0};
    if (!sections.empty()) {
        sections.insert(sections.begin(), ElfPlan::Section{"", 0, {}});
        sections.push_back({".shstrtab", 3, {}});
    }
    std::vector<std::uint64_t> nameOffsets;
    for (const auto &section : sections) {
        nameOffsets.push_back(section.name.empty() ? 0 : names.size());
        names.insert(names.end(), section.name.begin(), section.name.end());
        names.push_back(0);
    }
    if (!sections.empty()) {
        sections.back().bytes = names;
    }

    ElfBytes body(plan.is64, plan.isBigEndian);
    const std::uint64_t bodyAt = sizes.head + plan.segments.size() * sizes.segment;
    ElfBytes heads(plan.is64, plan.isBigEndian);
    for (const auto &segment : plan.segments) {
        appendSegment(heads, segment, bodyAt + body.bytes.size(), plan.is64);
        body.raw(segment.bytes);
    }
    ElfBytes table(plan.is64, plan.isBigEndian);
    for (std::size_t i = 0; i < sections.size(); ++i) {
        const auto &section = sections[i];
        const bool isBare = section.type == 8;
        table.u32(nameOffsets[i]).u32(section.type).word(section.flags).word(0);
        table.word(bodyAt + body.bytes.size());
        table.word(isBare ? section.bytesInMemory : section.bytes.size());
        table.u32(section.link).u32(0).word(4).word(section.entrySize);
        body.raw(section.bytes);
    }

    ElfBytes file(plan.is64, plan.isBigEndian);
    file.raw({0x7F, 'E', 'L', 'F', static_cast<std::uint8_t>(plan.is64 ? 2 : 1),
              static_cast<std::uint8_t>(plan.isBigEndian ? 2 : 1), 1, 3, 4, 0, 0, 0, 0, 0, 0, 0});
    file.u16(plan.type).u16(40).u32(1).word(0x8000101);
    file.word(plan.segments.empty() ? 0 : sizes.head);
    file.word(sections.empty() ? 0 : bodyAt + body.bytes.size());
    file.u32(0x5000000).u16(sizes.head);
    file.u16(sizes.segment).u16(plan.segments.size());
    file.u16(sizes.section).u16(sections.size());
    file.u16(sections.empty() ? 0 : sections.size() - 1);
    return file.raw(heads.bytes).raw(body.bytes).raw(table.bytes).bytes;
}

Bytes forged(Bytes bytes, std::size_t at, std::uint64_t value, int width)
{
    for (int i = 0; i < width; ++i) {
        bytes.at(at + static_cast<std::size_t>(i)) = static_cast<std::uint8_t>(value >> (8 * i));
    }
    return bytes;
}

Bytes symbolBytes(std::uint32_t name, std::uint32_t value, std::uint32_t size, std::uint8_t info,
                  std::uint16_t section, bool isBigEndian)
{
    ElfBytes out(false, isBigEndian);
    return out.u32(name).u32(value).u32(size).raw({info, 2}).u16(section).bytes;
}

Bytes relaBytes(std::uint32_t offset, std::uint32_t info, std::uint32_t addend)
{
    return ElfBytes(false, false).u32(offset).u32(info).u32(addend).bytes;
}

Bytes noteBytes(const std::string &name, std::uint32_t type, const Bytes &descriptor)
{
    ElfBytes out(false, false);
    out.u32(name.size() + 1).u32(descriptor.size()).u32(type).raw({name.begin(), name.end()});
    out.raw({0});
    out.bytes.resize((out.bytes.size() + 3) / 4 * 4);
    out.raw(descriptor);
    out.bytes.resize((out.bytes.size() + 3) / 4 * 4);
    return out.bytes;
}

Bytes operator+(Bytes a, const Bytes &b)
{
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

ElfPlan usualElf()
{
    const std::string names("\0main\0data_start\0", 17);
    ElfPlan plan;
    plan.segments = {{1, 0x8000100, patternBytes(64), 0x20000000, 16},
                     {1, 0x8000000, patternBytes(48, 2), 0x8000000},
                     {4, 0, {1, 2, 3, 4}}};
    plan.sections = {{".text", 1, patternBytes(48, 2), 0, 0, 6},
                     {".bss", 8, {}, 0, 0, 3, 16},
                     {".symtab", 2,
                      symbolBytes(0, 0, 0, 0, 0) + symbolBytes(1, 0x8000101, 24, 0x12, 1) +
                          symbolBytes(6, 0x20000000, 4, 0x11, 2) +
                          symbolBytes(99, 7, 0, 0x21, 0xFFF1),
                      4, 16},
                     {".strtab", 3, {names.begin(), names.end()}},
                     {".rela.text", 4, relaBytes(0x10, 0x201, 0xFFFFFFFC), 3, 12},
                     {".note", 7, noteBytes("GNU", 3, {9, 8, 7, 6}) + noteBytes("", 5, {})}};
    return plan;
}
