#include "files/firmware/StagedSegment.h"
#include "files/base/PageBlock.h"

#include <algorithm>
#include <cstring>

namespace files
{

namespace
{

constexpr std::size_t kFirstCapacity = std::size_t{64} * 1024;
/// From here on copying a segment costs more than making a new stage.
constexpr std::size_t kHandOverFrom = std::size_t{1024} * 1024;

/// Segments have always had up to four spare bytes behind their data.
constexpr std::size_t blockBytes(std::size_t size)
{
    return size / 4 * 4 + 4;
}

}  // namespace

std::uint8_t *StagedSegment::grow(std::size_t bytes)
{
    if (bytes > UINT32_MAX - m_size) {
        return nullptr;
    }
    const std::size_t capacity = std::max({kFirstCapacity, m_capacity * 2, m_size + bytes});
    auto *block = static_cast<std::uint8_t *>(std::realloc(m_block.get(), capacity));
    if (block == nullptr) {
        return nullptr;
    }
    static_cast<void>(m_block.release());  // realloc has taken it over
    m_block.reset(block);
    preferLargePages(block);
    m_capacity = capacity;
    return block + m_size;
}

OwnedSegment StagedSegment::finish(std::uint32_t address)
{
    OwnedSegment segment{address, static_cast<std::uint32_t>(m_size), nullptr};
    const std::size_t bytes = blockBytes(m_size);
    if (m_size >= kHandOverFrom && tail(bytes - m_size) != nullptr) {
        auto *block = static_cast<std::uint8_t *>(std::realloc(m_block.get(), bytes));
        segment.data.reset(block != nullptr ? block : m_block.get());
        static_cast<void>(m_block.release());
        m_capacity = 0;
    } else {
        segment.data.reset(static_cast<std::uint8_t *>(std::malloc(bytes)));
        if (segment.data != nullptr && m_size != 0) {
            std::memcpy(segment.data.get(), m_block.get(), m_size);
        }
    }
    m_size = 0;
    return segment;
}

}  // namespace files
