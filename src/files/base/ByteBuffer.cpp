#include "files/base/ByteBuffer.h"

#include <cstdlib>

namespace files
{

ByteBuffer ByteBuffer::allocate(std::size_t size)
{
    constexpr std::size_t kPage = 4096;
    ByteBuffer buffer;
    if (size > SIZE_MAX - kPage) {
        return buffer;
    }
    // aligned_alloc wants a multiple of the alignment; at least one page keeps a size of 0 valid.
    const std::size_t rounded = size == 0 ? kPage : (size + kPage - 1) / kPage * kPage;
    buffer.m_data.reset(static_cast<std::uint8_t *>(std::aligned_alloc(kPage, rounded)));
    buffer.m_size = buffer.m_data ? size : 0;
    return buffer;
}

}  // namespace files
