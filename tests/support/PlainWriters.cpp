#include "support/PlainWriters.h"

#include <algorithm>

namespace
{

constexpr char kUpper[] = "0123456789ABCDEF";

/// A number with at least so many digits, more when it needs them.
std::string number(unsigned long long value, int digits, const char *alphabet)
{
    char room[16];
    std::size_t at = sizeof room;
    for (; digits > 0 || value != 0; --digits) {
        room[--at] = alphabet[value % 16];
        value /= 16;
    }
    return {room + at, sizeof room - at};
}

std::string upper(unsigned long long value, int digits)
{
    return number(value, digits, kUpper);
}

std::string lower(unsigned long long value, int digits)
{
    return number(value, digits, "0123456789abcdef");
}

/// Data and what of the sum is still missing, as both formats end a line.
std::string tail(const std::vector<std::uint8_t> &bytes, std::size_t at, std::size_t length,
                 unsigned sum, unsigned flip)
{
    std::string text;
    for (std::size_t i = at; i < at + length; ++i) {
        text += kUpper[bytes[i] / 16];
        text += kUpper[bytes[i] % 16];
        sum += bytes[i];
    }
    return text + upper((flip - sum) & 255, 2) + "\n";
}

unsigned addressSum(std::uint64_t address)
{
    return static_cast<unsigned>((address & 255) + (address >> 8 & 255) + (address >> 16 & 255) +
                                 (address >> 24 & 255));
}

}  // namespace

std::string plainIntelText(const PlainImage &image)
{
    std::string text;
    for (const auto &[start, bytes] : image) {
        std::size_t at = 0;
        while (at < bytes.size()) {
            const std::uint64_t head = start + at;
            if (head > 0xFFFF) {
                text += ":02000004" + upper(head >> 16, 4) +
                        tail({}, 0, 0, 6 + addressSum(head >> 16), 0);
            }
            for (int left = 256; left > 0; --left) {
                const std::size_t length = std::min<std::size_t>(32, bytes.size() - at);
                const std::uint64_t low = (start + at) & 0xFFFF;
                text += ":" + upper(length, 2) + upper(low, 4) + "00" +
                        tail(bytes, at, length, static_cast<unsigned>(length) + addressSum(low), 0);
                at += length;
                const std::uint64_t now = start + at;
                if (now >> 16 != head >> 16) {
                    left = 1;
                } else if (left > 2 && (now & 0xFFE0) == 0xFFE0) {
                    left = 2;
                }
            }
        }
    }
    return image.empty() ? "" : text + ":00000001FF\n";
}

std::string plainSRecordText(const PlainImage &image)
{
    std::uint64_t top = 0;
    for (const auto &[start, bytes] : image) {
        if (!bytes.empty()) {
            top = std::max<std::uint64_t>(top, start + bytes.size() - 1);
        }
    }
    const unsigned kind = top > 0xFFFFFF ? 3 : top > 0xFFFF ? 2 : 1;
    std::string text;
    for (const auto &[start, bytes] : image) {
        for (std::size_t at = 0; at < bytes.size(); at += 32) {
            const std::size_t length = std::min<std::size_t>(32, bytes.size() - at);
            const unsigned count = static_cast<unsigned>(length) + kind + 2;
            text += "S" + std::to_string(kind) + lower(count, 2) +
                    lower(start + at, static_cast<int>(2 * kind + 2)) +
                    tail(bytes, at, length, count + addressSum(start + at), 255);
        }
    }
    return text + (kind == 3 ? "S70500000000FA\n" : kind == 2 ? "S804000000FB\n" : "S9030000FC\n");
}
