#include "workbench/tabs/sign/SignFooter.h"

#include <algorithm>
#include <array>

namespace workbench
{

namespace
{

constexpr std::size_t kMagicBytes = 4;
using Magic = std::array<std::uint8_t, kMagicBytes>;

struct Known {
    FooterKind kind;
    Magic magic;
};

constexpr std::array<Known, 3> kKnown = {{
    {FooterKind::First, {0x91, 0x29, 0x37, 0x23}},
    {FooterKind::Limited, {0x21, 0x92, 0x27, 0x32}},
    {FooterKind::OtherImage, {0x11, 0x98, 0x76, 0x42}},
}};

constexpr std::size_t kBlock = 64;  ///< places that are looked at together
constexpr std::size_t kBeforeLimited = 28;

/// Whether bytes of a magic, those from `First` on, stand anywhere in a block. Without a branch in
/// the loop, so that the compiler looks at many places at once.
template <std::size_t First>
bool mayHold(const std::uint8_t *block)
{
    std::uint8_t found = 0;
    for (std::size_t i = 0; i < kBlock; ++i) {
        for (const Known &known : kKnown) {
            std::uint8_t differs = 0;
            for (std::size_t k = First; k < kMagicBytes; ++k) {
                differs = static_cast<std::uint8_t>(differs | (block[i + k] ^ known.magic[k]));
            }
            found = static_cast<std::uint8_t>(found | (differs == 0));
        }
    }
    return found != 0;
}

/// Two bytes are looked at first: enough for nearly all blocks, in half the time. The last two, as
/// what only resembles a magic tends to begin like one.
bool holdsMagic(const std::uint8_t *block)
{
    return mayHold<2>(block) && mayHold<0>(block);
}

std::optional<Footer> footerAt(std::span<const std::uint8_t> file, std::size_t at)
{
    for (const Known &known : kKnown) {
        if (file.size() - at >= known.magic.size() &&
            std::equal(known.magic.begin(), known.magic.end(),
                       file.begin() + static_cast<std::ptrdiff_t>(at))) {
            return Footer{known.kind, at};
        }
    }
    return std::nullopt;
}

}  // namespace

std::optional<std::size_t> Footer::imageBytes() const
{
    if (kind != FooterKind::Limited) {
        return at + kKnown[0].magic.size();
    }
    return at < kBeforeLimited ? std::nullopt : std::optional(at - kBeforeLimited);
}

std::optional<Footer> findFooter(std::span<const std::uint8_t> file)
{
    for (std::size_t at = 0; at < file.size(); at += kBlock) {
        if (file.size() - at >= kBlock + kMagicBytes && !holdsMagic(file.data() + at)) {
            continue;
        }
        for (std::size_t i = at; i < std::min(at + kBlock, file.size()); ++i) {
            if (const auto footer = footerAt(file, i)) {
                return footer;
            }
        }
    }
    return std::nullopt;
}

}  // namespace workbench
