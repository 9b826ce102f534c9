#include "preparation/sealing/ImageKeys.h"

#include "files/base/LittleEndian.h"

#include <algorithm>

namespace preparation
{

namespace
{

constexpr std::string_view kNonceInfo = "SPB1 nonce ";
constexpr std::string_view kAreaInfo = "SPB1 area ";
constexpr std::size_t kNonceKeyBytes = 32;

std::vector<std::uint8_t> infoOf(std::string_view purpose, std::string_view kind)
{
    std::vector<std::uint8_t> info(purpose.begin(), purpose.end());
    info.insert(info.end(), kind.begin(), kind.end());
    return info;
}

}  // namespace

files::Result<ImageKeys> ImageKeys::derive(ByteView key, std::uint32_t profile, ByteView nonce)
{
    std::vector<std::uint8_t> info = infoOf(kAreaInfo, "SFI");
    files::appendU32le(info, profile);
    info.insert(info.end(), nonce.begin(), nonce.end());
    return deriveFrom(key, info);
}

files::Result<ImageKeys> ImageKeys::derive(std::string_view kind, ByteView key, ByteView nonce)
{
    std::vector<std::uint8_t> info = infoOf(kAreaInfo, kind);
    info.insert(info.end(), nonce.begin(), nonce.end());
    return deriveFrom(key, info);
}

files::Result<ImageKeys> ImageKeys::deriveFrom(ByteView key, ByteView info)
{
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

files::Result<files::SecretBytes> deriveNonceKey(ByteView key, std::string_view kind)
{
    return hkdfSha256(key, infoOf(kNonceInfo, kind), kNonceKeyBytes);
}

files::Result<NonceBytes> packageNonce(std::string_view kind, ByteView key,
                                       std::initializer_list<ByteView> inputs)
{
    const auto nonceKey = deriveNonceKey(key, kind);
    if (!nonceKey) {
        return tl::unexpected(nonceKey.error());
    }
    HmacSha256 mac(nonceKey->span());
    for (const ByteView input : inputs) {
        mac.update(input);
    }
    const auto digest = mac.finish();
    if (!digest) {
        return tl::unexpected(digest.error());
    }
    NonceBytes nonce{};
    std::copy_n(digest->begin(), nonce.size(), nonce.begin());
    return nonce;
}

}  // namespace preparation
