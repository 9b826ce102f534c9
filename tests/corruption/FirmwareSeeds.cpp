// Intel HEX, S-records, ELF.
#include "corruption/Harness.h"

#include "files/firmware/ElfReader.h"
#include "files/firmware/HexText.h"
#include "support/ElfBytes.h"
#include "support/HexLines.h"
#include "support/LinkedElf.h"

#include <algorithm>

namespace corruption
{

namespace
{

using Text = std::span<const std::uint8_t>;

std::optional<std::string> readText(Text file)
{
    files::HexText parser;
    if (!parser.consume(file, true)) {
        return std::nullopt;
    }
    const auto segments = parser.finish();
    if (!segments || segments->empty()) {
        return std::nullopt;
    }
    Content content;
    for (const auto &segment : *segments) {
        content.add(segment.address).add(Text(segment.data.get(), segment.size));
    }
    return content.done();
}

/// Of each line the mark, the digits, which a checksum guards, and the line feed. A damaged mark
/// hides an Intel line; behind a damaged line feed the next record is taken for a comment. In
/// S-record text both are refused, but for a feed that no record follows, and for the kinds without
/// meaning, of which one is as good as another.
Seed textSeed(const std::string &name, const std::string &text)
{
    const bool isIntel = text.front() == ':';
    Seed seed{name, {text.begin(), text.end()}, readText};
    std::vector<bool> isWhole(text.size() + 1, false);
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t feed = std::min(text.find('\n', at), text.size());
        const std::size_t marks = isIntel ? 1 : 2;
        const std::size_t digits = feed - at - marks - (text[feed - 1] == '\r' ? 1 : 0);
        seed.fields.push_back(
            {at, marks, "mark",
             isIntel || at == 0 ? kAny : static_cast<unsigned>(kRefused | kOther)});
        if (!isIntel) {
            // The kind isn't summed.
            seed.fields.back() = {at, 1, "mark", at == 0 ? kAny : static_cast<unsigned>(kRefused)};
            seed.fields.push_back({at + 1, 1, "kind", kAny});
        }
        seed.fields.push_back({at + marks, 2, "count", kRefused, Form::Hex});
        // A sum of bytes can't tell 0x0100 from 0x0001, nor FF FF from what it happens to replace.
        seed.fields.push_back({at + marks + 2, 4, "offset", kRefused, Form::Hex, kAny});
        seed.fields.push_back({at + marks + 6, digits - 6, "digits", kRefused, Form::Hex, kAny});
        seed.fields.push_back({at + marks + digits, feed + 1 - at - marks - digits, "end", kAny});
        isWhole[at] = true;
        std::fill(isWhole.begin() + static_cast<std::ptrdiff_t>(at + marks + digits),
                  isWhole.begin() + static_cast<std::ptrdiff_t>(feed + 1), true);
        at = feed + 1;
    }
    // A file that ends between records is a shorter file; one without bytes of firmware is refused.
    seed.prefix = [isWhole](std::size_t size) {
        return isWhole[size] ? kAny : static_cast<unsigned>(kRefused);
    };
    return seed;
}

std::string withEnds(std::string text, const std::string &end)
{
    for (std::size_t at = 0; (at = text.find('\n', at)) != std::string::npos; at += end.size()) {
        text.replace(at, 1, end);
    }
    return text;
}

std::string lowered(std::string text)
{
    std::ranges::transform(text, text.begin(), [](char c) {
        return c >= 'A' && c <= 'F' ? static_cast<char>(c + 'a' - 'A') : c;
    });
    return text;
}

std::vector<Seed> textSeeds()
{
    std::vector<Seed> seeds;
    const std::string end = intelLine(1, 0, {});
    for (const unsigned size : {1U, 16U, 32U, 180U}) {
        const std::string lines = intelLine(0, 0x100, patternBytes(size)) +
                                  intelLine(0, 0x100 + size, patternBytes(size, 2)) +
                                  intelLine(0, 0x8000, patternBytes(size, 3));
        const std::string name = std::to_string(size) + " bytes a line";
        seeds.push_back(textSeed("HEX, " + name, intelLine(4, 0, {8, 0}) + lines + end));
        seeds.push_back(
            textSeed("HEX by segments, " + name, intelLine(2, 0, {0x10, 0}) + lines + end));
        for (const char kind : {'1', '2', '3'}) {
            seeds.push_back(textSeed(
                std::string("S") + kind + ", " + name,
                srecordLine('0', 0, {'a'}) + srecordLine(kind, 0x1000, patternBytes(size)) +
                    srecordLine(kind, 0x8000, patternBytes(size, 2)) + srecordLine('9', 0, {})));
        }
    }
    const std::string both = intelLine(4, 0, {8, 0}) + intelLine(0, 0, patternBytes(20)) +
                             intelLine(5, 0, {8, 0, 0, 1}) + end;
    seeds.push_back(textSeed("HEX with DOS ends", withEnds(both, "\r\n")));
    seeds.push_back(textSeed("HEX in small letters", lowered(both)));
    return seeds;
}

std::optional<std::string> readElf(Text file)
{
    const auto read = files::readElf(storedFile(file), 0xFF);
    if (!read) {
        return std::nullopt;
    }
    const FileELF &elf = **read;
    Content content;
    content.add(elf.elfType).add(elf.machine).add(elf.version).add(elf.entry).add(elf.flags);
    content.add(elf.osAbi).add(elf.abiVersion).add(elf.elfVersion).add(elf.encoding);
    content.add(elf.headerSize).add(elf.segmentsOffset).add(elf.sectionsOffset);
    content.add(elf.programHeaderCount).add(elf.sectionCount).add(elf.sectionNameIndex);
    content.add(elf.segmentEntrySize).add(elf.sectionEntrySize);
    for (const SegmentData &segment : elf.segments) {
        content.add(segment.address).add(Text(segment.data, segment.size));
    }
    for (const program_header &head : elf.programHeaders) {
        content.add(head.headerType).add(head.headerFlags).add(head.align).add(head.virtualAddress);
        content.add(head.physicalAddress).add(head.fileSize).add(head.memorySize);
    }
    for (const section_header &head : elf.sections) {
        content.add(head.name).add(head.sectionType).add(head.sectionFlags).add(head.fileOffset);
        content.add(head.sectionSize).add(head.link).add(head.info).add(head.sectionAddress);
        content.add(head.addrAlign).add(head.entrySize).add(head.nameOffset);
    }
    for (const symbols &symbol : elf.symbolTable) {
        content.add(symbol.name).add(symbol.value).add(symbol.symbolSize).add(symbol.bind);
        content.add(symbol.symbolType).add(symbol.sectionIndex);
    }
    for (const relocations &relocation : elf.relocationTable) {
        content.add(relocation.offset).add(relocation.symbolIndex).add(relocation.relocationType);
        content.add(static_cast<std::uint64_t>(relocation.addend));
    }
    for (const notes &note : elf.noteTable) {
        content.add(note.noteType).add(note.name).add(note.descriptorSize);
    }
    return content.done();
}

/// Head and program headers by name; all else is content, or unused room between.
Seed elfSeed(const std::string &name, const Bytes &bytes, Form form = Form::Little)
{
    Seed seed{name, bytes, readElf};
    const auto add = [&seed, form](std::size_t at, std::size_t size, const char *meaning,
                                   unsigned accepted, bool isNumber = true) {
        seed.fields.push_back({at, size, meaning, accepted, isNumber ? form : Form::Raw});
    };
    const auto number = [&](std::size_t at, std::size_t size) {
        std::size_t value = 0;
        for (std::size_t i = 0; i < size; ++i) {
            value = value << 8 | bytes[at + (form == Form::Big ? i : size - 1 - i)];
        }
        return value;
    };
    add(6, 1, "version of the identification", kRefused, false);
    add(7, 2, "system", kOther, false);
    add(9, 7, "padding", kSame, false);
    add(16, 2, "type", kOther);
    add(18, 2, "machine", kOther);
    add(20, 4, "version", kOther);
    add(24, 4, "entry", kOther);
    add(28, 4, "program headers", kRefused | kOther);
    add(32, 4, "section headers", kRefused | kOther);
    add(36, 4, "flags", kOther);
    add(40, 2, "size of the head", kRefused | kOther);
    add(42, 2, "size of a program header", kRefused);
    add(44, 2, "count of program headers", kRefused | kOther);
    add(46, 2, "size of a section header", kRefused | kOther);
    // Only entries that the file holds are counted.
    add(48, 2, "count of section headers", kAny);
    add(50, 2, "name table", kOther);
    const std::size_t table = number(28, 4);
    for (std::size_t i = 0; i < number(44, 2); ++i) {
        const std::size_t at = table + 32 * i;
        add(at, 4, "segment's type", kRefused | kOther);
        add(at + 4, 4, "segment's offset", kAny);
        add(at + 8, 4, "segment's address", kOther);
        add(at + 12, 4, "segment's load address", kOther);
        add(at + 16, 4, "segment's bytes", kRefused | kOther);
        add(at + 20, 12, "segment's memory, flags, alignment", kOther, false);
    }
    const std::size_t bodyAt = table + 32 * number(44, 2);
    const std::size_t sections = number(48, 2) == 0 ? bytes.size() : number(32, 4);
    add(bodyAt, sections - bodyAt, "bytes", kTaken, false);
    constexpr std::size_t kWords = 10;
    for (std::size_t at = sections; at + 4 * kWords <= bytes.size(); at += 4 * kWords) {
        for (std::size_t word = 0; word < kWords; ++word) {
            add(at + 4 * word, 4, "section header's word", kRefused | kOther);
        }
    }
    // Without its end a file has lost its section headers, which firmware doesn't need.
    seed.prefix = [bodyAt](std::size_t size) {
        return size < bodyAt ? static_cast<unsigned>(kRefused) : kAny;
    };
    return seed;
}

}  // namespace

std::vector<Seed> firmwareSeeds()
{
    std::vector<Seed> seeds = textSeeds();
    ElfPlan big = usualElf();
    big.isBigEndian = true;
    ElfPlan object;
    object.segments = {{1, 0x100, patternBytes(9)}};
    object.sections = usualElf().sections;
    ElfPlan bare;
    bare.segments = {{1, 0x10, {1}}, {1, 0x1B, {2}}, {0, 0, {}}, {1, 0x18, {3, 4}}};
    ElfPlan nested;
    nested.segments = {{1, 0, patternBytes(100)}, {1, 50, patternBytes(10)}, {1, 70, {1}}};
    seeds.push_back(elfSeed("ELF", elfBytes(usualElf())));
    seeds.push_back(elfSeed("ELF, big-endian", elfBytes(big), Form::Big));
    seeds.push_back(elfSeed("ELF object", elfBytes(object)));
    seeds.push_back(elfSeed("ELF without sections", elfBytes(bare)));
    seeds.push_back(elfSeed("ELF with nested segments", elfBytes(nested)));
    seeds.push_back(elfSeed("linked ELF", linkedFirmware().bytes()));
    return seeds;
}

}  // namespace corruption
