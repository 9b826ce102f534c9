#pragma once
#include <QByteArray>

#include <cstring>
#include <span>
#include <sys/resource.h>
#include <vector>

namespace files
{

/// Overwrites secret bytes so that the compiler can't drop the write.
inline void wipe(void *data, std::size_t size)
{
    if (data != nullptr && size != 0) {
        ::explicit_bzero(data, size);
    }
}

/// Wipes and empties. A QByteArray that still shares its block is detached by data(), so hand in
/// the only holder.
inline void wipe(QByteArray &bytes)
{
    wipe(bytes.data(), static_cast<std::size_t>(bytes.size()));
    bytes.clear();
}

/// Bytes that are wiped when dropped. Not copyable: each copy of a key is one more to lose.
class SecretBytes
{
public:
    SecretBytes() = default;
    explicit SecretBytes(std::size_t size) : m_bytes(size) {}
    ~SecretBytes() { wipe(m_bytes.data(), m_bytes.size()); }
    SecretBytes(SecretBytes &&other) noexcept = default;
    SecretBytes &operator=(SecretBytes &&other) noexcept
    {
        m_bytes.swap(other.m_bytes);
        return *this;
    }
    SecretBytes(const SecretBytes &) = delete;
    SecretBytes &operator=(const SecretBytes &) = delete;

    [[nodiscard]] std::uint8_t *data() { return m_bytes.data(); }
    [[nodiscard]] const std::uint8_t *data() const { return m_bytes.data(); }
    [[nodiscard]] std::size_t size() const { return m_bytes.size(); }
    [[nodiscard]] std::span<const std::uint8_t> span() const { return m_bytes; }

private:
    std::vector<std::uint8_t> m_bytes;
};

/// Wipes a block that somebody else gives back, on every way out.
class WipeAtEnd
{
public:
    WipeAtEnd(void *data, std::size_t size) : m_data(data), m_size(size) {}
    ~WipeAtEnd() { wipe(m_data, m_size); }
    WipeAtEnd(const WipeAtEnd &) = delete;
    WipeAtEnd &operator=(const WipeAtEnd &) = delete;

private:
    void *m_data;
    std::size_t m_size;
};

/// A crash must not write what is in the memory to a disk. For the start of each program that
/// handles keys.
inline void forbidCoreDumps()
{
    const rlimit none = {0, 0};
    static_cast<void>(::setrlimit(RLIMIT_CORE, &none));  // lowering a limit is always allowed
}

}  // namespace files
