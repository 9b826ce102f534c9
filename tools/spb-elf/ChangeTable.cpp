#include "ChangeTable.h"

#include "files/base/Range.h"
#include "files/firmware/ElfExtension.h"
#include "tools/console/Table.h"

#include <algorithm>
#include <cstdio>

namespace elf_tool
{

namespace
{

using console::Row;

std::string hexText(std::uint32_t address)
{
    char text[16];
    std::snprintf(text, sizeof text, "0x%08X", address);
    return text;
}

/// The segments of both files; a rewrite has read them before.
struct Loads {
    explicit Loads(const files::ElfRewrite &rewrite)
        : before(files::loadsOf(rewrite.before.span()).value_or(std::vector<Elf32_Phdr>())),
          after(files::loadsOf(rewrite.after).value_or(std::vector<Elf32_Phdr>()))
    {
    }
    std::vector<Elf32_Phdr> before;
    std::vector<Elf32_Phdr> after;
};

files::Range rangeOf(const Elf32_Phdr &load)
{
    return files::Range::of(load.p_paddr, load.p_filesz);
}

std::string change(const Loads &loads, std::size_t i, const std::vector<std::string> &added)
{
    if (i >= loads.before.size()) {
        return "added as " + added[i - loads.before.size()];
    }
    const std::uint32_t grown = loads.after[i].p_filesz - loads.before[i].p_filesz;
    return grown == 0 ? "stays" : "grows by " + std::to_string(grown) + " of padding";
}

std::string counted(std::size_t count, const char *noun)
{
    return std::to_string(count) + ' ' + noun + (count == 1 ? "" : "s");
}

const files::CrcBlock *blockOf(const files::CrcArea &area, std::size_t segment)
{
    const auto found =
        std::find_if(area.blocks.begin(), area.blocks.end(),
                     [segment](const files::CrcBlock &block) { return block.segment == segment; });
    return found == area.blocks.end() ? nullptr : &*found;
}

}  // namespace

std::string changeTable(const files::ElfRewrite &rewrite)
{
    const Loads loads(rewrite);
    std::vector<Row> rows = {{"Segment", "Address", "Bytes", "Change"}};
    for (std::size_t i = 0; i < loads.after.size(); ++i) {
        rows.push_back({std::to_string(i + 1), hexText(loads.after[i].p_paddr),
                        std::to_string(loads.after[i].p_filesz), change(loads, i, rewrite.added)});
    }
    rows.push_back({"File", "", std::to_string(rewrite.after.size()),
                    "from " + std::to_string(rewrite.before.size())});
    return console::alignedTable(rows);
}

std::string changeTable(const files::CrcRewrite &rewrite, std::uint64_t fileBytes)
{
    const auto &image = static_cast<const FileData &>(*rewrite.record);
    std::vector<Row> rows = {{"Segment", "Address", "Bytes", "Change"}};
    for (std::size_t i = 0; i < image.segments.size(); ++i) {
        const files::CrcBlock *block = blockOf(rewrite.area, i);
        const int zeros = rewrite.zeros[i];
        rows.push_back(
            {std::to_string(i + 1), hexText(image.segments[i].address),
             std::to_string(image.segments[i].size),
             (zeros == 0 ? "stays"
                         : "grows by " + counted(static_cast<std::size_t>(zeros), "zero")) +
                 (block == nullptr ? ", outside the range"
                                   : ", " + counted(block->sums.size(), "sum") + " at " +
                                         hexText(block->target))});
    }
    rows.push_back({std::to_string(image.segments.size() + 1), hexText(rewrite.area.address),
                    std::to_string(rewrite.area.bytes.size()), "added as CRCs area"});
    if (fileBytes != 0) {
        const std::uint64_t end = rewrite.area.address + rewrite.area.bytes.size();
        rows.push_back({"File", "", std::to_string(end - image.segments.front().address),
                        "from " + std::to_string(fileBytes)});
    }
    return console::alignedTable(rows);
}

std::optional<std::string> shrunkMemory(const files::ElfRewrite &rewrite)
{
    const Loads loads(rewrite);
    for (std::size_t i = 0; i < loads.before.size(); ++i) {
        if (loads.after[i].p_memsz < loads.before[i].p_memsz) {
            return "the segment " + std::to_string(i + 1) + " at " +
                   hexText(loads.before[i].p_paddr) + " would have " +
                   std::to_string(loads.after[i].p_memsz) + " bytes in memory instead of " +
                   std::to_string(loads.before[i].p_memsz);
        }
    }
    return std::nullopt;
}

std::optional<std::string> foreignSum(const files::CrcRewrite &rewrite)
{
    const auto &image = static_cast<const FileData &>(*rewrite.record);
    const auto loads = files::loadsOf(rewrite.elf->after).value_or(std::vector<Elf32_Phdr>());
    for (const files::CrcBlock &block : rewrite.area.blocks) {
        const SegmentData &segment = image.segments[block.segment];
        const std::uint32_t zeros = rewrite.zeros[block.segment];
        const files::Range filled = files::Range::of(segment.address + segment.size - zeros, zeros);
        const auto holdsThem = [&filled, &rewrite](const Elf32_Phdr &load) {
            const files::Range range = rangeOf(load);
            if (range.begin > filled.begin || range.end < filled.end) {
                return false;
            }
            const auto first = rewrite.elf->after.begin() + load.p_offset +
                               static_cast<std::ptrdiff_t>(filled.begin - range.begin);
            return std::all_of(first,
                               first + static_cast<std::ptrdiff_t>(filled.end - filled.begin),
                               [](std::uint8_t byte) { return byte == 0; });
        };
        if (zeros != 0 && std::none_of(loads.begin(), loads.end(), holdsThem)) {
            return "the segment " + std::to_string(block.segment + 1) + " at " +
                   hexText(segment.address) +
                   " ends inside a word, and the file wouldn't hold the " + counted(zeros, "zero") +
                   " that its sum counts: align the end of its section";
        }
    }
    return std::nullopt;
}

std::optional<std::string> overlapOf(const files::ElfRewrite &rewrite)
{
    const Loads loads(rewrite);
    const std::size_t old = loads.before.size();
    for (std::size_t i = 0; i < loads.after.size(); ++i) {
        if (i < old && loads.after[i].p_filesz == loads.before[i].p_filesz) {
            continue;
        }
        const std::string what =
            i < old ? "the segment " + std::to_string(i + 1) + ", filled up to a word,"
                    : rewrite.added[i - old];
        for (std::size_t other = 0; other < loads.after.size(); ++other) {
            const files::Range a = rangeOf(loads.after[i]);
            const files::Range b = rangeOf(loads.after[other]);
            if (other != i && !a.empty() && !b.empty() && files::overlaps(a, b)) {
                return what + " at " + hexText(loads.after[i].p_paddr) +
                       " would share addresses with the segment " + std::to_string(other + 1) +
                       " at " + hexText(loads.after[other].p_paddr);
            }
        }
    }
    return std::nullopt;
}

}  // namespace elf_tool
