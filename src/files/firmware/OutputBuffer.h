#pragma once
#include "files/base/ByteBuffer.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>

namespace files
{

/// Gathers small pieces of output into large writes. A failed write sticks: what follows is
/// dropped, and `flush()` tells.
class OutputBuffer
{
public:
    /// @return false when the bytes couldn't be written
    using Write = std::function<bool(std::span<const std::uint8_t> bytes)>;

    /// Most bytes that `room()` can give.
    static constexpr std::size_t kMostRoom = 4096;

    /// Without memory for the buffer it isn't ready, and nothing may be put into it.
    explicit OutputBuffer(Write write);
    OutputBuffer(const OutputBuffer &) = delete;
    OutputBuffer &operator=(const OutputBuffer &) = delete;

    [[nodiscard]] bool isReady() const { return static_cast<bool>(m_buffer); }

    /// @param bytes  at most `kMostRoom`
    /// @return the place for the next `bytes` bytes, counted only once `use()` is called
    std::span<std::uint8_t> room(std::size_t bytes)
    {
        if (bytes > m_buffer.size() - m_used) {
            drain();
        }
        return m_buffer.span().subspan(m_used, bytes);
    }

    /// Counts bytes written to `room()`.
    void use(std::size_t bytes) { m_used += bytes; }

    void append(std::span<const std::uint8_t> bytes);

    /// Appends `count` bytes of `value`.
    void fill(std::uint64_t count, std::uint8_t value);

    /// Bytes handed over so far, written or not.
    [[nodiscard]] std::uint64_t position() const { return m_drained + m_used; }

    /// Writes what is left. @return false when this or any earlier write failed
    bool flush();

private:
    void drain();
    void write(std::span<const std::uint8_t> bytes);

    Write m_write;
    ByteBuffer m_buffer;
    std::size_t m_used = 0;
    std::uint64_t m_drained = 0;
    bool m_isGood;
};

}  // namespace files
