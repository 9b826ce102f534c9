#include "files/firmware/RecordText.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <string_view>
#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace files
{

namespace
{

constexpr std::size_t kRecordBytes = 32;
constexpr std::size_t kMostData = 255;
/// Mark, kind, count, address and checksum around the data, and the line feed.
constexpr std::size_t kMostLine = 2 * kMostData + 16;
static_assert(kMostLine <= OutputBuffer::kMostRoom);

using Pair = std::array<std::uint8_t, 2>;

consteval std::array<Pair, 256> pairTable(std::string_view digits)
{
    std::array<Pair, 256> table = {};
    for (std::size_t i = 0; i < table.size(); ++i) {
        table[i] = {static_cast<std::uint8_t>(digits[i / 16]),
                    static_cast<std::uint8_t>(digits[i % 16])};
    }
    return table;
}

constexpr auto kUpper = pairTable("0123456789ABCDEF");
constexpr auto kLower = pairTable("0123456789abcdef");

#if defined(__SSE2__)
constexpr std::size_t kLane = 16;

/// Sixteen values below 16 to upper-case digits.
inline __m128i digits(__m128i values)
{
    const __m128i isLetter = _mm_cmpgt_epi8(values, _mm_set1_epi8(9));
    const __m128i shift = _mm_and_si128(isLetter, _mm_set1_epi8('A' - '0' - 10));
    return _mm_add_epi8(_mm_add_epi8(values, _mm_set1_epi8('0')), shift);
}

/// Writes sixteen bytes as digit pairs. @return their sum
inline std::uint32_t appendLane(std::span<const std::uint8_t, kLane> bytes,
                                std::span<std::uint8_t, 2 * kLane> out)
{
    const __m128i low4 = _mm_set1_epi8(15);
    const __m128i values = _mm_loadu_si128(reinterpret_cast<const __m128i *>(bytes.data()));
    const __m128i high = digits(_mm_and_si128(_mm_srli_epi16(values, 4), low4));
    const __m128i low = digits(_mm_and_si128(values, low4));
    auto *target = reinterpret_cast<__m128i *>(out.data());
    _mm_storeu_si128(target, _mm_unpacklo_epi8(high, low));
    _mm_storeu_si128(target + 1, _mm_unpackhi_epi8(high, low));
    const __m128i sums = _mm_sad_epu8(values, _mm_setzero_si128());
    return static_cast<std::uint32_t>(_mm_cvtsi128_si32(sums) +
                                      _mm_cvtsi128_si32(_mm_srli_si128(sums, 8)));
}
#endif

/// Writes one line into the buffer's room and keeps the sum of its bytes.
class RecordLine
{
public:
    explicit RecordLine(OutputBuffer &out) : m_out(out), m_room(out.room(kMostLine)) {}

    void mark(char character) { m_room[m_at++] = static_cast<std::uint8_t>(character); }

    void upper(std::uint32_t byte) { pair(kUpper[byte & 0xFF], byte); }
    void lower(std::uint32_t byte) { pair(kLower[byte & 0xFF], byte); }

    void data(std::span<const std::uint8_t> bytes)
    {
#if defined(__SSE2__)
        for (; bytes.size() >= kLane; bytes = bytes.subspan(kLane)) {
            m_sum += appendLane(bytes.first<kLane>(), m_room.subspan(m_at).first<2 * kLane>());
            m_at += 2 * kLane;
        }
#endif
        for (const std::uint8_t byte : bytes) {
            upper(byte);
        }
    }

    [[nodiscard]] std::uint32_t sum() const
    {
        return m_sum;
    }

    /// Ends the line; the record is part of the output from here on.
    void finish(std::uint32_t checksum)
    {
        upper(checksum);
        mark('\n');
        m_out.use(m_at);
    }

private:
    void pair(const Pair &digits, std::uint32_t byte)
    {
        m_room[m_at] = digits[0];
        m_room[m_at + 1] = digits[1];
        m_at += 2;
        m_sum += byte & 0xFF;
    }

    OutputBuffer &m_out;
    std::span<std::uint8_t> m_room;
    std::size_t m_at = 0;
    std::uint32_t m_sum = 0;
};

void appendSRecord(OutputBuffer &out, std::uint32_t address, std::span<const std::uint8_t> data,
                   SRecordWidth width)
{
    const auto addressBytes = static_cast<std::uint32_t>(width);
    RecordLine line(out);
    line.mark('S');
    line.mark(static_cast<char>('0' + addressBytes - 1));
    line.lower(static_cast<std::uint32_t>(data.size()) + addressBytes + 1);
    for (std::uint32_t i = addressBytes; i-- > 0;) {
        line.lower(address >> (8 * i));
    }
    line.data(data);
    line.finish(~line.sum());
}

}  // namespace

SRecordWidth srecordWidth(std::uint32_t topAddress)
{
    if (topAddress > 0xFFFFFF) {
        return SRecordWidth::Four;
    }
    return topAddress > 0xFFFF ? SRecordWidth::Three : SRecordWidth::Two;
}

void appendIntelRecord(OutputBuffer &out, std::uint8_t type, std::uint16_t offset,
                       std::span<const std::uint8_t> data)
{
    assert(data.size() <= kMostData);
    RecordLine line(out);
    line.mark(':');
    line.upper(static_cast<std::uint32_t>(data.size()));
    line.upper(offset >> 8U);
    line.upper(offset);
    line.upper(type);
    line.data(data);
    line.finish(0U - line.sum());
}

void appendIntelSegment(OutputBuffer &out, std::uint32_t start, std::span<const std::uint8_t> data)
{
    constexpr int kBlockRecords = 256;
    std::uint64_t current = start;  // 64 bits: a segment may end at 2^32
    std::size_t at = 0;
    while (at < data.size()) {
        const auto upper = static_cast<std::uint16_t>(current >> 16);
        if (upper != 0) {
            const std::array<std::uint8_t, 2> base = {static_cast<std::uint8_t>(upper >> 8),
                                                      static_cast<std::uint8_t>(upper)};
            appendIntelRecord(out, 4, 0, base);
        }
        bool isLast = false;
        for (int i = 0; i < kBlockRecords; ++i) {
            const std::size_t length = std::min(kRecordBytes, data.size() - at);
            appendIntelRecord(out, 0, static_cast<std::uint16_t>(current),
                              data.subspan(at, length));
            at += length;
            current += length;
            // Behind a 64 KiB boundary only a new block's address record tells where data goes.
            if (isLast || current >> 16 != upper) {
                break;
            }
            isLast = (current & 0xFFE0) == 0xFFE0;
        }
    }
}

void appendSRecordSegment(OutputBuffer &out, std::uint32_t start,
                          std::span<const std::uint8_t> data, SRecordWidth width)
{
    for (std::size_t at = 0; at < data.size(); at += kRecordBytes) {
        appendSRecord(out, static_cast<std::uint32_t>(start + at),
                      data.subspan(at, std::min(kRecordBytes, data.size() - at)), width);
    }
}

void appendSRecordEnd(OutputBuffer &out, SRecordWidth width)
{
    const std::string_view text = width == SRecordWidth::Four    ? "S70500000000FA\n"
                                  : width == SRecordWidth::Three ? "S804000000FB\n"
                                                                 : "S9030000FC\n";
    out.append({reinterpret_cast<const std::uint8_t *>(text.data()), text.size()});
}

}  // namespace files
