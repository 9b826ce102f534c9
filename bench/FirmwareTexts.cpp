#include "FirmwareTexts.h"

#include <algorithm>
#include <cstdint>

namespace
{

constexpr std::uint32_t kStart = 0x08000000;

/// Appends hexadecimal pairs and keeps their sum.
class RecordText
{
public:
    explicit RecordText(std::string *out) : m_out(out) {}

    void byte(std::uint32_t value)
    {
        const char *digits = "0123456789ABCDEF";
        m_out->push_back(digits[value >> 4 & 15]);
        m_out->push_back(digits[value & 15]);
        m_sum += value;
    }
    void bigEndian(std::uint32_t value, int bytes)
    {
        for (int i = bytes - 1; i >= 0; --i) {
            byte(value >> (8 * i) & 0xFF);
        }
    }
    void payload(std::size_t count)
    {
        for (std::size_t i = 0; i < count; ++i) {
            s_random = s_random * 1664525U + 1013904223U;
            byte(s_random >> 24);
        }
    }
    [[nodiscard]] std::uint32_t sum() const { return m_sum; }

private:
    static inline std::uint32_t s_random = 1;
    std::string *m_out;
    std::uint32_t m_sum = 0;
};

void appendIntel(std::string &out, std::uint32_t type, std::uint32_t offset, std::size_t count,
                 std::uint32_t base = 0)
{
    RecordText record(&out);
    out.push_back(':');
    record.byte(static_cast<std::uint32_t>(count));
    record.bigEndian(offset & 0xFFFF, 2);
    record.byte(type);
    if (type == 4) {
        record.bigEndian(base, 2);
    } else {
        record.payload(count);
    }
    record.byte((0U - record.sum()) & 0xFF);
    out.push_back('\n');
}

void appendS3(std::string &out, std::uint32_t address, std::size_t count)
{
    RecordText record(&out);
    out += "S3";
    record.byte(static_cast<std::uint32_t>(count) + 5);
    record.bigEndian(address, 4);
    record.payload(count);
    record.byte(~record.sum() & 0xFF);
    out.push_back('\n');
}

}  // namespace

std::string denseIntelText(std::size_t payload, std::size_t recordBytes)
{
    std::string out;
    out.reserve(payload / recordBytes * (2 * recordBytes + 13));
    for (std::size_t at = 0; at < payload; at += recordBytes) {
        const auto address = static_cast<std::uint32_t>(kStart + at);
        if (at == 0 || address % 0x10000 == 0) {
            appendIntel(out, 4, 0, 2, address >> 16);
        }
        appendIntel(out, 0, address, std::min(recordBytes, payload - at));
    }
    return out + ":00000001FF\n";
}

std::string denseSRecordText(std::size_t payload)
{
    std::string out;
    out.reserve(payload / 32 * 79);
    for (std::size_t at = 0; at < payload; at += 32) {
        appendS3(out, static_cast<std::uint32_t>(kStart + at),
                 std::min<std::size_t>(32, payload - at));
    }
    return out + "S70500000000FA\n";
}

std::string descendingText(std::size_t segments, std::size_t distance)
{
    std::string out;
    for (std::size_t i = segments; i-- > 0;) {
        appendS3(out, static_cast<std::uint32_t>(kStart + i * distance), 4);
    }
    return out;
}
