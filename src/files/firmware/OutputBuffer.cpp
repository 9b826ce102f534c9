#include "files/firmware/OutputBuffer.h"

#include <algorithm>

namespace files
{

namespace
{

/// Stays in the second-level cache while it is filled and written.
constexpr std::size_t kBufferBytes = std::size_t{256} * 1024;

}  // namespace

OutputBuffer::OutputBuffer(Write write)
    : m_write(std::move(write)), m_buffer(ByteBuffer::allocate(kBufferBytes)), m_isGood(isReady())
{
}

void OutputBuffer::append(std::span<const std::uint8_t> bytes)
{
    if (bytes.size() > m_buffer.size() - m_used) {
        drain();
        if (bytes.size() >= m_buffer.size()) {
            write(bytes);  // copying a long piece first would gain nothing
            return;
        }
    }
    std::copy(bytes.begin(), bytes.end(), m_buffer.data() + m_used);
    m_used += bytes.size();
}

void OutputBuffer::fill(std::uint64_t count, std::uint8_t value)
{
    while (count != 0) {
        if (m_used == m_buffer.size()) {
            drain();
        }
        const auto step =
            static_cast<std::size_t>(std::min<std::uint64_t>(count, m_buffer.size() - m_used));
        std::fill_n(m_buffer.data() + m_used, step, value);
        m_used += step;
        count -= step;
    }
}

bool OutputBuffer::flush()
{
    drain();
    return m_isGood;
}

void OutputBuffer::drain()
{
    write(m_buffer.span().first(m_used));
    m_used = 0;
}

void OutputBuffer::write(std::span<const std::uint8_t> bytes)
{
    m_drained += bytes.size();
    if (m_isGood && !bytes.empty()) {
        m_isGood = m_write(bytes);
    }
}

}  // namespace files
