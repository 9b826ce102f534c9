#include "preparation/ImageSealer.h"

#include "files/base/ByteBuffer.h"
#include "files/base/LittleEndian.h"
#include "files/base/PageBlock.h"
#include "preparation/ImageOpener.h"
#include "preparation/sealing/ImageKeys.h"

#include <algorithm>
#include <cstring>

namespace preparation
{

namespace
{

using files::ErrorCode;
using files::fail;
using files::Result;

PrefixBytes prefixOf(const Plan &plan, std::size_t index)
{
    const PlanArea &area = plan.areas[index];
    AreaPrefix prefix;
    prefix.letter = area.letter;
    prefix.imageVersion = plan.imageVersion;
    prefix.index = static_cast<std::uint16_t>(index + 1);
    prefix.dataSize = static_cast<std::uint32_t>(area.size);
    prefix.address = area.address;
    prefix.areaCount = static_cast<std::uint16_t>(plan.areas.size());
    return encodePrefix(prefix);
}

/// The image nonce depends on every input, so that one key and nonce file can serve image after
/// image and still no two of them share a derived key.
Result<NonceBytes> imageNonce(const Plan &plan, ByteView key, ByteView nonceFile)
{
    const auto nonceKey = deriveNonceKey(key, "SFI");
    if (!nonceKey) {
        return tl::unexpected(nonceKey.error());
    }
    HmacSha256 mac(nonceKey->span());
    mac.update(nonceFile);
    std::vector<std::uint8_t> words;
    files::appendU32le(words, plan.profile);
    files::appendU16le(words, plan.version);
    files::appendU16le(words, static_cast<std::uint16_t>(plan.areas.size()));
    mac.update(words);
    for (std::size_t i = 0; i < plan.areas.size(); ++i) {
        mac.update(prefixOf(plan, i));
        words.clear();
        files::appendU32le(words, static_cast<std::uint32_t>(plan.areas[i].size));
        mac.update(words);
        for (const ByteView piece : plan.areas[i].pieces) {
            mac.update(piece);
        }
    }
    const auto digest = mac.finish();
    if (!digest) {
        return tl::unexpected(digest.error());
    }
    NonceBytes nonce{};
    std::copy_n(digest->begin(), nonce.size(), nonce.begin());
    return nonce;
}

/// Writes areas one behind the other into the image's memory.
class AreaWriter
{
public:
    AreaWriter(const HeadBytes &head, const Plan &plan, const ImageKeys &keys, std::uint8_t *out)
        : m_head(head), m_plan(plan), m_keys(keys),
          m_cipher(AreaCipher::Direction::Seal, keys.imageKey()), m_out(out)
    {
    }

    Result<void> write(std::size_t index)
    {
        const PrefixBytes prefix = prefixOf(m_plan, index);
        std::uint8_t *const header = m_out;
        std::uint8_t *const data = header + areaHeaderBytes(m_plan.version);
        std::uint8_t *at = data;
        m_cipher.begin(m_keys.areaIv(static_cast<std::uint32_t>(index + 1)), m_head);
        m_cipher.associate(prefix);
        for (const ByteView piece : m_plan.areas[index].pieces) {
            m_cipher.update(piece, at);
            at += piece.size();
        }
        const auto tag = m_cipher.finishSealing();
        if (!tag) {
            return tl::unexpected(tag.error());
        }
        std::copy(prefix.begin(), prefix.end(), header);
        std::copy(tag->begin(), tag->end(), header + kPrefixBytes);
        m_out = at;
        if (m_plan.version == 1) {
            return {};
        }
        const auto check = checkBlock(m_sha, m_head, {header, kPrefixBytes + kTagBytes},
                                      {data, static_cast<std::size_t>(at - data)});
        if (!check) {
            return tl::unexpected(check.error());
        }
        std::copy(check->begin(), check->end(), header + kPrefixBytes + kTagBytes);
        return {};
    }

private:
    const HeadBytes &m_head;
    const Plan &m_plan;
    const ImageKeys &m_keys;
    AreaCipher m_cipher;
    Sha256 m_sha;
    std::uint8_t *m_out;
};

/// Compares decrypted bytes, as they come, with the pieces of a plan.
class PieceComparer
{
public:
    explicit PieceComparer(const std::vector<ByteView> &pieces) : m_pieces(pieces) {}

    bool takes(ByteView bytes)
    {
        while (!bytes.empty()) {
            if (m_piece == m_pieces.size()) {
                return false;
            }
            const ByteView rest = m_pieces[m_piece].subspan(m_offset);
            const std::size_t count = std::min(rest.size(), bytes.size());
            if (std::memcmp(rest.data(), bytes.data(), count) != 0) {
                return false;
            }
            bytes = bytes.subspan(count);
            m_offset += count;
            if (m_offset == m_pieces[m_piece].size()) {
                ++m_piece;
                m_offset = 0;
            }
        }
        return true;
    }

    [[nodiscard]] bool atEnd() const { return m_piece == m_pieces.size(); }

private:
    const std::vector<ByteView> &m_pieces;
    std::size_t m_piece = 0;
    std::size_t m_offset = 0;
};

tl::unexpected<files::Error> differs(std::size_t index, const char *what)
{
    return fail(ErrorCode::BadValue, "The finished image was checked and dropped: area " +
                                         std::to_string(index + 1) + " differs in its " + what);
}

}  // namespace

Result<QByteArray> sealImage(const Plan &plan, ByteView key, ByteView nonceFile)
{
    const auto nonce = imageNonce(plan, key, nonceFile);
    if (!nonce) {
        return tl::unexpected(nonce.error());
    }
    const auto keys = ImageKeys::derive(key, plan.profile, *nonce);
    if (!keys) {
        return tl::unexpected(keys.error());
    }
    std::uint64_t bytes = kHeadBytes;
    for (const PlanArea &area : plan.areas) {
        bytes += plan.sizeOf(area);
    }
    QByteArray image(static_cast<int>(bytes), Qt::Uninitialized);
    files::preferLargePages(image.data_ptr());
    auto *const out = reinterpret_cast<std::uint8_t *>(image.data());
    const auto count = static_cast<std::uint16_t>(plan.areas.size());
    const HeadBytes head = encodeHead(plan.version, count, *nonce);
    std::copy(head.begin(), head.end(), out);
    AreaWriter writer(head, plan, *keys, out + kHeadBytes);
    for (std::size_t i = 0; i < plan.areas.size(); ++i) {
        if (auto written = writer.write(i); !written) {
            return tl::unexpected(written.error());
        }
    }
    return image;
}

Result<void> compareWithPlan(ByteView image, const Plan &plan, ByteView key)
{
    const auto parsed = parseImage(image);
    if (!parsed) {
        return tl::unexpected(parsed.error());
    }
    if (parsed->version != plan.version || parsed->areas.size() != plan.areas.size()) {
        return differs(0, "head");
    }
    const auto keys = ImageKeys::derive(key, plan.profile, parsed->nonce);
    if (!keys) {
        return tl::unexpected(keys.error());
    }
    auto buffer = files::ByteBuffer::allocate(std::size_t{1} << 18);
    if (!buffer) {
        return fail(ErrorCode::NoMemory, "Unable to allocate memory");
    }
    AreaCipher cipher(AreaCipher::Direction::Open, keys->imageKey());
    Sha256 sha;
    for (std::size_t i = 0; i < plan.areas.size(); ++i) {
        const ParsedArea &area = parsed->areas[i];
        if (!std::ranges::equal(area.header.first(kPrefixBytes), prefixOf(plan, i))) {
            return differs(i, "header");
        }
        PieceComparer comparer(plan.areas[i].pieces);
        cipher.begin(keys->areaIv(static_cast<std::uint32_t>(i + 1)), parsed->head);
        cipher.associate(area.header.first(kPrefixBytes));
        for (ByteView rest = area.data; !rest.empty();) {
            const ByteView part = rest.first(std::min(rest.size(), buffer.size()));
            cipher.update(part, buffer.data());
            if (!comparer.takes({buffer.data(), part.size()})) {
                return differs(i, "data");
            }
            rest = rest.subspan(part.size());
        }
        const auto authentic = cipher.finishOpening(area.tag);
        const auto intact = checkBlockFits(sha, *parsed, area);
        if (!authentic || !intact) {
            return tl::unexpected(authentic ? intact.error() : authentic.error());
        }
        if (!*authentic || !*intact || !comparer.atEnd()) {
            return differs(i, "seal");
        }
    }
    return {};
}

}  // namespace preparation
