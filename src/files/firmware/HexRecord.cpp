#include "files/firmware/HexRecord.h"

#include <cstdio>

namespace files
{

namespace
{

/// One character as UTF-8: bytes are Latin-1, and a NUL prints nothing.
std::string characterText(std::uint8_t character)
{
    if (character == 0) {
        return {};
    }
    if (character < 0x80) {
        return std::string(1, static_cast<char>(character));
    }
    return {static_cast<char>(0xC0 | character >> 6), static_cast<char>(0x80 | (character & 0x3F))};
}

int nibbleOf(std::uint8_t digit)
{
    if (digit >= '0' && digit <= '9') {
        return digit - '0';
    }
    if (digit >= 'A' && digit <= 'F') {
        return digit - 'A' + 10;
    }
    if (digit >= 'a' && digit <= 'f') {
        return digit - 'a' + 10;
    }
    return -1;
}

/// Reads the fields of one line. The first bad digit makes it fail for good, so one look at
/// `fault()` ends a group of reads.
class LineReader
{
public:
    explicit LineReader(std::span<const std::uint8_t> line) : m_line(line) {}

    /// The next character; NUL behind the end.
    std::uint8_t character() { return m_at < m_line.size() ? m_line[m_at++] : std::uint8_t{0}; }

    std::uint8_t byte(const char *field)
    {
        const int high = nibble(field);
        const int low = nibble(field);
        const auto value = static_cast<std::uint8_t>(high << 4 | low);
        m_sum = static_cast<std::uint8_t>(m_sum + value);
        return value;
    }

    [[nodiscard]] std::uint8_t sum() const { return m_sum; }
    [[nodiscard]] const std::string &fault() const { return m_fault; }

private:
    int nibble(const char *field)
    {
        if (!m_fault.empty()) {
            return 0;
        }
        const std::uint8_t found = character();
        const int value = nibbleOf(found);
        if (value < 0) {
            m_fault = "parsing " + std::string(field) + ", expecting hex digit, found '" +
                      characterText(found) + "'";
            return 0;
        }
        return value;
    }

    std::span<const std::uint8_t> m_line;
    std::size_t m_at = 0;
    std::uint8_t m_sum = 0;
    std::string m_fault;
};

tl::unexpected<Error> wrongChecksum(unsigned found, unsigned expected)
{
    char text[64];
    std::snprintf(text, sizeof text, "found checksum 0x%02x, expecting 0x%02x", found, expected);
    return fail(ErrorCode::BadChecksum, text);
}

}  // namespace

Result<HexRecord> decodeIntelLine(std::span<const std::uint8_t> line)
{
    HexRecord record;
    LineReader reader(line);
    if (reader.character() != ':') {
        return record;
    }
    const std::uint8_t count = reader.byte("count");
    const std::uint8_t offsetHigh = reader.byte("addr");
    const std::uint8_t offsetLow = reader.byte("addr");
    const std::uint8_t type = reader.byte("recType");
    for (std::size_t i = 0; i < count; ++i) {
        record.data[i] = reader.byte("data");
    }
    const std::uint8_t sum = reader.sum();
    const std::uint8_t found = reader.byte("checksum");
    if (!reader.fault().empty()) {
        return fail(ErrorCode::BadDigit, reader.fault());
    }
    if (reader.sum() != 0) {
        return wrongChecksum(found, (0x100U - sum) & 0xFFU);
    }

    const std::uint32_t word = static_cast<std::uint32_t>(record.data[0]) << 8 | record.data[1];
    switch (type) {
    case 0:
        record.kind = HexRecord::Kind::Data;
        record.value = static_cast<std::uint32_t>(offsetHigh) << 8 | offsetLow;
        record.size = count;
        break;
    case 1:
        record.kind = HexRecord::Kind::EndOfData;
        break;
    case 2:
        record.kind = HexRecord::Kind::SegmentBase;
        record.value = word << 4;
        break;
    case 4:
        record.kind = HexRecord::Kind::LinearBase;
        record.value = word << 16;
        break;
    case 3:  // both name an entry point, which a segment list has no place for
    case 5:
        break;
    default:
        return fail(ErrorCode::BadValue, "Unrecognized record type: " + std::to_string(type));
    }
    return record;
}

Result<HexRecord> decodeSRecordLine(std::span<const std::uint8_t> line)
{
    LineReader reader(line);
    if (reader.character() != 'S') {
        return fail(ErrorCode::BadValue, "doesn't start with an 'S'");
    }
    const std::uint8_t kind = reader.character();
    if (kind < '0' || kind > '9') {
        return fail(ErrorCode::BadDigit,
                    "expecting digit (0-9), found: '" + characterText(kind) + "'");
    }
    HexRecord record;
    const std::uint8_t count = reader.byte("count");
    for (std::size_t i = 0; i + 1 < count; ++i) {
        record.data[i] = reader.byte("data");
    }
    const std::uint8_t sum = reader.sum();
    const std::uint8_t found = reader.byte("checksum");
    if (!reader.fault().empty()) {
        return fail(ErrorCode::BadDigit, reader.fault());
    }
    if (static_cast<std::uint8_t>(~sum) != found) {
        return wrongChecksum(found, ~unsigned{sum} & 0xFFU);
    }

    const std::size_t addressBytes = kind - '0' + std::size_t{1};
    if (kind >= '1' && kind <= '3' && count > addressBytes) {
        for (std::size_t i = 0; i < addressBytes; ++i) {
            record.value = record.value << 8 | record.data[i];
        }
        record.kind = HexRecord::Kind::Data;
        record.size = count - addressBytes - 1;
        std::copy_n(record.data.begin() + static_cast<std::ptrdiff_t>(addressBytes), record.size,
                    record.data.begin());
        return record;
    }
    // A count too small for the address would wrap the data's length.
    if (kind >= '1' && kind <= '4') {
        return fail(ErrorCode::BadValue,
                    "Unrecognized S-Record: S" + std::string(1, static_cast<char>(kind)));
    }
    record.kind = HexRecord::Kind::EndOfData;
    return record;
}

}  // namespace files
