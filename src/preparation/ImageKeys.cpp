#include "preparation/ImageKeys.h"

#include "files/base/LittleEndian.h"

#include <string_view>

namespace preparation
{

namespace
{

constexpr std::string_view kNonceInfo = "SPB1 nonce SFI";
constexpr std::string_view kAreaInfo = "SPB1 area SFI";
constexpr std::size_t kNonceKeyBytes = 32;

}  // namespace

files::Result<ImageKeys> ImageKeys::derive(ByteView key, std::uint32_t profile, ByteView nonce)
{
    std::vector<std::uint8_t> info(kAreaInfo.begin(), kAreaInfo.end());
    files::appendU32le(info, profile);
    info.insert(info.end(), nonce.begin(), nonce.end());
    auto derived = hkdfSha256(key, info, kKeyBytes + std::tuple_size_v<Iv>);
    if (!derived) {
        return tl::unexpected(derived.error());
    }
    ImageKeys keys;
    keys.m_derived = std::move(*derived);
    return keys;
}

Iv ImageKeys::areaIv(std::uint32_t index) const
{
    Iv iv{};
    const auto base = m_derived.span().subspan(kKeyBytes);
    for (std::size_t i = 0; i < iv.size(); ++i) {
        iv[i] = base[i];
    }
    for (std::size_t i = 0; i < 4; ++i) {
        iv[iv.size() - 1 - i] ^= static_cast<std::uint8_t>(index >> (8 * i));
    }
    return iv;
}

files::Result<files::SecretBytes> deriveNonceKey(ByteView key)
{
    const std::vector<std::uint8_t> info(kNonceInfo.begin(), kNonceInfo.end());
    return hkdfSha256(key, info, kNonceKeyBytes);
}

}  // namespace preparation
