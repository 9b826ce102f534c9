#include "files/firmware/QuickRecord.h"

#include <cassert>
#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace files
{

namespace
{

using Line = std::span<const std::uint8_t, kMostLineCharacters>;

/// What a run of digit pairs holds.
struct DecodedPairs {
    std::uint32_t sum = 0;   ///< of the bytes
    bool areDigits = false;  ///< when false, sum and bytes are worth nothing
};

constexpr std::uint16_t kNoDigit = 0x100;

/// The digit's value times `weight`; `kNoDigit` for all other characters.
consteval std::array<std::uint16_t, 256> digitTable(unsigned weight)
{
    std::array<std::uint16_t, 256> table = {};
    for (std::uint16_t &entry : table) {
        entry = kNoDigit;
    }
    for (unsigned i = 0; i < 10; ++i) {
        table['0' + i] = static_cast<std::uint16_t>(i * weight);
    }
    for (unsigned i = 0; i < 6; ++i) {
        table['A' + i] = static_cast<std::uint16_t>((10 + i) * weight);
        table['a' + i] = static_cast<std::uint16_t>((10 + i) * weight);
    }
    return table;
}

constexpr auto kHigh = digitTable(16);
constexpr auto kLow = digitTable(1);

#if defined(__SSE2__)
/// Sixteen characters to sixteen values. @param allDigits  loses the bits of other characters
inline __m128i nibbles(__m128i text, __m128i *allDigits)
{
    const __m128i number = _mm_sub_epi8(text, _mm_set1_epi8('0'));
    const __m128i lower = _mm_or_si128(text, _mm_set1_epi8(0x20));
    const __m128i letter = _mm_sub_epi8(lower, _mm_set1_epi8('a'));
    const __m128i isNumber = _mm_cmpeq_epi8(_mm_min_epu8(number, _mm_set1_epi8(9)), number);
    const __m128i isLetter = _mm_cmpeq_epi8(_mm_min_epu8(letter, _mm_set1_epi8(5)), letter);
    *allDigits = _mm_and_si128(*allDigits, _mm_or_si128(isNumber, isLetter));
    return _mm_or_si128(_mm_and_si128(isNumber, number),
                        _mm_and_si128(isLetter, _mm_add_epi8(letter, _mm_set1_epi8(10))));
}

/// Joins the two values of each 16-bit lane; the first, in the low byte, is the high digit.
inline __m128i joinNibbles(__m128i pairs)
{
    const __m128i joined = _mm_or_si128(_mm_slli_epi16(pairs, 4), _mm_srli_epi16(pairs, 8));
    return _mm_and_si128(joined, _mm_set1_epi16(0xFF));
}
#endif

/// Decodes two digits a byte.
/// @param bytes  filled whole, with anything where a character is no digit
inline DecodedPairs decodePairs(std::span<const std::uint8_t> text, std::span<std::uint8_t> bytes)
{
    assert(text.size() / 2 >= bytes.size());
    std::size_t at = 0;
    std::uint32_t sum = 0;
    std::uint32_t faults = 0;
#if defined(__SSE2__)
    __m128i allDigits = _mm_set1_epi8(-1);
    __m128i sums = _mm_setzero_si128();
    for (; bytes.size() - at >= 16; at += 16) {
        const auto *source = reinterpret_cast<const __m128i *>(text.data() + 2 * at);
        const __m128i first = nibbles(_mm_loadu_si128(source), &allDigits);
        const __m128i second = nibbles(_mm_loadu_si128(source + 1), &allDigits);
        const __m128i joined = _mm_packus_epi16(joinNibbles(first), joinNibbles(second));
        sums = _mm_add_epi64(sums, _mm_sad_epu8(joined, _mm_setzero_si128()));
        _mm_storeu_si128(reinterpret_cast<__m128i *>(bytes.data() + at), joined);
    }
    if (at != 0) {
        sum = static_cast<std::uint32_t>(_mm_cvtsi128_si32(sums) +
                                         _mm_cvtsi128_si32(_mm_srli_si128(sums, 8)));
        faults = _mm_movemask_epi8(allDigits) == 0xFFFF ? 0 : kNoDigit;
    }
#endif
    for (; at < bytes.size(); ++at) {
        const std::uint32_t value = kHigh[text[2 * at]] | std::uint32_t{kLow[text[2 * at + 1]]};
        faults |= value;
        sum += value;
        bytes[at] = static_cast<std::uint8_t>(value);
    }
    return {sum, (faults & kNoDigit) == 0};
}

/// @return characters of the line whose record ends at `end`; 0 when more than a line end follows
std::size_t lengthWithEnd(Line line, std::size_t end)
{
    // Two characters for the line's end must still be part of this line.
    if (end + 2 > line.size()) {
        return 0;
    }
    if (line[end] == '\n') {
        return end + 1;
    }
    return line[end] == '\r' && line[end + 1] == '\n' ? end + 2 : 0;
}

}  // namespace

QuickRecord quickIntelRecord(Line line, RecordRoom room)
{
    constexpr std::size_t kHead = 9;  // characters of mark, count, offset and type
    std::array<std::uint8_t, 4> head = {};
    const DecodedPairs start = decodePairs(line.subspan(1), head);
    const std::size_t count = head[0];
    if (line[0] != ':' || !start.areDigits || head[3] != 0 || count == 0) {
        return {};
    }
    const std::size_t length = lengthWithEnd(line, kHead + 2 * (count + 1));
    if (length == 0) {
        return {};
    }
    const DecodedPairs body = decodePairs(line.subspan(kHead), room.first(count + 1));
    if (!body.areDigits || (start.sum + body.sum) % 0x100 != 0) {
        return {};
    }
    return {static_cast<std::uint32_t>(head[1]) << 8 | head[2], count, length};
}

QuickRecord quickSRecord(Line line, RecordRoom room)
{
    if (line[0] != 'S' || line[1] < '1' || line[1] > '3') {
        return {};
    }
    const std::size_t addressBytes = line[1] - '0' + std::size_t{1};
    const std::size_t headCharacters = 4 + 2 * addressBytes;
    std::array<std::uint8_t, 5> head = {};
    const DecodedPairs start =
        decodePairs(line.subspan(2), std::span(head).first(1 + addressBytes));
    const std::size_t rest = head[0];
    if (!start.areDigits || rest < addressBytes + 2) {
        return {};
    }
    const std::size_t size = rest - addressBytes - 1;
    const std::size_t length = lengthWithEnd(line, headCharacters + 2 * (size + 1));
    if (length == 0) {
        return {};
    }
    const DecodedPairs body = decodePairs(line.subspan(headCharacters), room.first(size + 1));
    if (!body.areDigits || (start.sum + body.sum) % 0x100 != 0xFF) {
        return {};
    }
    std::uint32_t address = 0;
    for (std::size_t i = 1; i <= addressBytes; ++i) {
        address = address << 8 | head[i];
    }
    return {address, size, length};
}

}  // namespace files
