#pragma once
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

/// Builds file contents field by field; `forge` then puts a lie into one of them.
class ImageBytes
{
public:
    ImageBytes &u8(std::uint32_t value) { return number(value, 1); }
    ImageBytes &u16le(std::uint32_t value) { return number(value, 2); }
    ImageBytes &u32le(std::uint32_t value) { return number(value, 4); }
    ImageBytes &text(std::string_view characters)
    {
        m_bytes.insert(m_bytes.end(), characters.begin(), characters.end());
        return *this;
    }
    ImageBytes &fill(std::size_t count, std::uint8_t value)
    {
        m_bytes.insert(m_bytes.end(), count, value);
        return *this;
    }
    ImageBytes &append(const std::vector<std::uint8_t> &bytes)
    {
        m_bytes.insert(m_bytes.end(), bytes.begin(), bytes.end());
        return *this;
    }
    /// Overwrites the u32 (or `bytes` low bytes of it) at `offset`.
    ImageBytes &forge(std::size_t offset, std::uint32_t value, std::size_t bytes = 4)
    {
        for (std::size_t i = 0; i < bytes; ++i) {
            m_bytes.at(offset + i) = static_cast<std::uint8_t>(value >> 8 * i);
        }
        return *this;
    }
    ImageBytes &cutTo(std::size_t size)
    {
        m_bytes.resize(size);
        return *this;
    }
    [[nodiscard]] std::size_t size() const { return m_bytes.size(); }
    [[nodiscard]] const std::vector<std::uint8_t> &done() const { return m_bytes; }

private:
    ImageBytes &number(std::uint32_t value, std::size_t bytes)
    {
        for (std::size_t i = 0; i < bytes; ++i) {
            m_bytes.push_back(static_cast<std::uint8_t>(value >> 8 * i));
        }
        return *this;
    }

    std::vector<std::uint8_t> m_bytes;
};
