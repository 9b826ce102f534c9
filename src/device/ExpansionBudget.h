#pragma once
#include <cstdint>
#include <stdexcept>

namespace device
{

/// Counts what a device's text expands to, before it is expanded. `occurence`, `ByBit` and lists of
/// configurations multiply, so a few hundred forged bytes could ask for gigabytes.
/// Each operation throws `std::length_error` when a limit would be passed.
class ExpansionBudget
{
public:
    static constexpr std::uint64_t kSectors = 200'000;
    static constexpr std::uint64_t kBits = 20'000;
    static constexpr std::uint64_t kBytes = 64ULL << 20;  ///< of texts, values and rows

    void takeSectors(std::uint64_t count) { take(m_sectors, count, 1); }
    void takeBits(std::uint64_t count) { take(m_bits, count, 1); }
    /// @param each    bytes of one copy
    /// @param copies  how many of them; the product may be beyond 64 bits
    void takeBytes(std::uint64_t each, std::uint64_t copies) { take(m_bytes, copies, each); }

private:
    static void take(std::uint64_t &left, std::uint64_t count, std::uint64_t each)
    {
        if (each != 0 && count > left / each) {
            throw std::length_error("it describes more than a device can have");
        }
        left -= count * each;
    }

    std::uint64_t m_sectors = kSectors;
    std::uint64_t m_bits = kBits;
    std::uint64_t m_bytes = kBytes;
};

}  // namespace device
