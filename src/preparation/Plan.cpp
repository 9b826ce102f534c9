#include "preparation/Plan.h"

#include <cstdio>

namespace preparation
{

namespace
{

const char *sourceName(Source source)
{
    switch (source) {
    case Source::Ssfi:
        return "SSFI file";
    case Source::Module:
        return "module";
    case Source::Smi:
        return "SMI file";
    case Source::Obk:
        return "OBK file";
    case Source::KeyArea:
        return "key area";
    case Source::Firmware:
        return "firmware segment";
    case Source::External:
        return "external firmware segment";
    case Source::OptionBytes:
        return "option bytes";
    case Source::Pause:
        return "pause";
    case Source::Resume:
        return "resume";
    }
    return "area";
}

}  // namespace

std::span<std::uint8_t> Plan::newBlock(std::size_t bytes,
                                       std::initializer_list<std::uint32_t> words)
{
    auto &block = m_blocks.emplace_back();
    std::size_t at = 0;
    for (const std::uint32_t word : words) {
        for (int shift = 0; shift < 32; shift += 8) {
            block[at++] = static_cast<std::uint8_t>(word >> shift);
        }
    }
    return std::span(block).first(bytes);
}

std::string hexText(std::uint32_t value)
{
    char text[11];
    std::snprintf(text, sizeof text, "0x%08X", value);
    return text;
}

std::string describe(const PlanArea &area)
{
    std::string text = sourceName(area.source);
    if (area.ordinal != 0) {
        text += ' ';
        text += std::to_string(area.ordinal);
    }
    text += " (";
    if (area.source != Source::Ssfi && area.source != Source::KeyArea &&
        area.source != Source::OptionBytes) {
        text += hexText(area.address) + ", ";
    }
    // What the user gave: without the heads, trailers and padding that the image adds.
    const std::uint64_t bytes =
        area.extent.empty() ? area.size : area.extent.end - area.extent.begin;
    text += std::to_string(bytes);
    return text + " bytes)";
}

void appendExternalArea(Plan &plan, std::uint32_t address, ByteView firmware,
                        const std::array<std::uint32_t, 3> &region, std::uint32_t ordinal)
{
    PlanArea area;
    area.letter = letter::kExternal;
    area.address = address;
    area.source = Source::External;
    area.ordinal = ordinal;
    area.append(firmware);
    area.append(plan.newBlock(kTrailerBytes, {address, region[0], region[1], region[2]}));
    area.extent = files::Range::of(address, firmware.size());
    plan.areas.push_back(std::move(area));
}

}  // namespace preparation
