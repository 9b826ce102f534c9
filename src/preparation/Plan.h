#pragma once
#include "files/base/Records.h"
#include "files/base/Result.h"
#include "preparation/sealing/ImageFormat.h"

#include <deque>
#include <initializer_list>
#include <string>
#include <vector>

namespace preparation
{

/// Where an area comes from; with the ordinal it names the area in messages.
enum class Source {
    Ssfi,
    Module,
    Smi,
    Obk,
    KeyArea,
    Firmware,
    External,
    OptionBytes,
    Pause,
    Resume
};

/// One area before sealing. Its plain data is a list of views, of the caller's records and of the
/// plan's own small blocks, so that nothing large is copied before it is encrypted.
struct PlanArea {
    std::uint8_t letter = 0;
    std::uint32_t address = 0;
    Source source = Source::Firmware;
    std::uint32_t ordinal = 0;     ///< place in its input list, from 1; 0 when there is one at most
    std::vector<ByteView> pieces;  ///< plain data, in order
    std::uint64_t size = 0;        ///< bytes of all pieces
    files::Range extent;           ///< what it really occupies at its destination; may be empty

    void append(ByteView bytes)
    {
        if (!bytes.empty()) {
            pieces.push_back(bytes);
            size += bytes.size();
        }
    }
};

/// All that decides the bytes of an image but key and nonce file. Refers to the request's records.
struct Plan {
    std::uint16_t version = 1;
    std::uint8_t imageVersion = 0;
    std::uint32_t profile = kProfileUsual;
    std::vector<PlanArea> areas;

    Plan() = default;
    Plan(Plan &&) = default;
    Plan &operator=(Plan &&) = default;
    // A copy's areas would refer to the blocks of the original.
    Plan(const Plan &) = delete;
    Plan &operator=(const Plan &) = delete;

    /// A block of the plan's own, for heads, trailers and the like; its place never changes.
    /// @param bytes  at most 32
    /// @param words  the block's beginning, little-endian; the rest is 0
    std::span<std::uint8_t> newBlock(std::size_t bytes, std::initializer_list<std::uint32_t> words);

    /// Header and data.
    [[nodiscard]] std::uint64_t sizeOf(const PlanArea &area) const
    {
        return areaHeaderBytes(version) + area.size;
    }

private:
    std::deque<std::array<std::uint8_t, 32>> m_blocks;
};

/// What one image is asked to hold; the records stay the caller's.
struct SfiRequest {
    const FileData *firmware = nullptr;
    bool combined = false;
    std::vector<const FileOBK *> obkFiles;
    const FileData *optionBytes = nullptr;
    ByteView key;
    ByteView nonce;
    std::uint8_t imageVersion = 0;
    bool hash = false;
    std::vector<const FileData *> smiFiles;
    std::uint32_t ramSize = 0;
    std::uint32_t tokenAddress = 0;
    const FileSFI *ssfi = nullptr;
    const FileMCSV *modules = nullptr;
    std::uint32_t profile = kProfileUsual;
    const FileData *externalFirmware = nullptr;
    const FileData *keyArea = nullptr;
    std::vector<ExtBinInfo> externalInfos;
};

/// Names an area for a message: "firmware segment 3 (0x08000000, 4096 bytes)".
std::string describe(const PlanArea &area);

/// "0x" and eight hexadecimal digits.
std::string hexText(std::uint32_t value);

/// Appends an `E` area: firmware and the 16-byte trailer that the installer reads behind it.
/// @param region  region number, region mode, key address
void appendExternalArea(Plan &plan, std::uint32_t address, ByteView firmware,
                        const std::array<std::uint32_t, 3> &region, std::uint32_t ordinal);

}  // namespace preparation
