#pragma once
#include "files/base/Ownership.h"

#include <cstddef>
#include <cstdint>

namespace files
{

/// A segment whose payload has an owner; `data` holds at least one byte more than `size`.
struct OwnedSegment {
    std::uint32_t address = 0;
    std::uint32_t size = 0;  ///< bytes
    MallocArray<std::uint8_t> data;
};

/// Collects the bytes of the open segment. They grow in one block that is used again for the next
/// segment; only a long segment takes the block with it, so that its bytes aren't copied.
class StagedSegment
{
public:
    /// @return `bytes` writable bytes behind the staged ones; null when memory is short or the
    ///         segment would outgrow 32-bit sizes
    std::uint8_t *tail(std::size_t bytes)
    {
        return bytes <= m_capacity - m_size ? m_block.get() + m_size : grow(bytes);
    }

    /// Counts bytes written to `tail()` as part of the segment.
    void keep(std::size_t bytes) { m_size += bytes; }

    [[nodiscard]] std::size_t size() const { return m_size; }

    /// Empties the stage into a segment of its own. Bytes written to `tail()` but not kept are
    /// lost.
    /// @return the segment; its `data` is null when memory is short
    OwnedSegment finish(std::uint32_t address);

private:
    std::uint8_t *grow(std::size_t bytes);

    MallocArray<std::uint8_t> m_block;
    std::size_t m_capacity = 0;
    std::size_t m_size = 0;
};

}  // namespace files
