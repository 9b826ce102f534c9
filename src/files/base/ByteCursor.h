#pragma once
#include "files/base/LittleEndian.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace files
{

/// Walks over untrusted bytes. Every read checks the length; the first one that doesn't fit makes
/// the cursor fail for good, and it and all later ones give 0 or an empty span. So one check of
/// `ok()` ends a group of reads. The bytes must outlive the cursor and what it hands out.
class ByteCursor
{
public:
    explicit ByteCursor(std::span<const std::uint8_t> bytes) : m_bytes(bytes) {}

    [[nodiscard]] bool ok() const { return m_ok; }
    [[nodiscard]] std::size_t offset() const { return m_at; }  ///< bytes from the start
    [[nodiscard]] std::size_t left() const { return m_bytes.size() - m_at; }

    /// The next `count` bytes, or an empty span and a failed cursor.
    std::span<const std::uint8_t> bytes(std::size_t count)
    {
        // The only length check of the program: a sum of forged numbers could wrap.
        if (!m_ok || count > m_bytes.size() - m_at) {
            m_ok = false;
            return {};
        }
        const auto part = m_bytes.subspan(m_at, count);
        m_at += count;
        return part;
    }

    /// Moves to `offset` bytes from the start; beyond the end the cursor fails.
    void seek(std::size_t offset)
    {
        if (offset > m_bytes.size()) {
            m_ok = false;
            return;
        }
        m_at = offset;
    }

    void skip(std::size_t count) { bytes(count); }

    std::uint8_t u8()
    {
        const auto part = bytes(1);
        return part.empty() ? std::uint8_t{0} : part[0];
    }
    std::uint16_t u16le()
    {
        const auto part = bytes(2);
        return part.empty() ? std::uint16_t{0} : readU16le(part.first<2>());
    }
    std::uint32_t u32le()
    {
        const auto part = bytes(4);
        return part.empty() ? std::uint32_t{0} : readU32le(part.first<4>());
    }

private:
    std::span<const std::uint8_t> m_bytes;
    std::size_t m_at = 0;
    bool m_ok = true;
};

}  // namespace files
