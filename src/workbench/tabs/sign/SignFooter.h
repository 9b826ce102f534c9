#pragma once
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace workbench
{

/// The three sequences that end an image, by what they mean.
enum class FooterKind { First, Limited, OtherImage };

struct Footer {
    FooterKind kind = FooterKind::First;
    std::size_t at = 0;  ///< of the sequence's first byte

    /// Bytes of the image; none where the sequence stands too early for its cut.
    [[nodiscard]] std::optional<std::size_t> imageBytes() const;
};

/// The first sequence in file order, one inside the code included. Runs at gigabytes a second.
std::optional<Footer> findFooter(std::span<const std::uint8_t> file);

}  // namespace workbench
