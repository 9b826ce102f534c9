#include "preparation/sfu/SfuSealer.h"

#include "files/base/LittleEndian.h"
#include "preparation/sealing/PieceCipher.h"

#include <algorithm>
#include <climits>

namespace preparation
{

namespace
{

using files::ErrorCode;
using files::fail;
using files::Result;

constexpr std::string_view kKind = "SFU";
constexpr std::size_t kNonceAt = 24;
constexpr std::size_t kTagAt = 40;       ///< what stands before is authenticated by the header tag
constexpr std::size_t kReservedAt = 56;  ///< what stands before is authenticated by each piece
constexpr std::uint16_t kHighestVersion = 255;

Result<void> checkRequest(const SfuRequest &request)
{
    for (const auto &checked : {checkInputSize(request.key, kKeyBytes, "encryption key"),
                                checkInputSize(request.nonceFile, kNonceFileBytes, "nonce")}) {
        if (!checked) {
            return checked;
        }
    }
    if (request.imageVersion > kHighestVersion) {
        return fail(ErrorCode::BadValue, "The image version is " +
                                             std::to_string(request.imageVersion) +
                                             ", it must be between 0 and 255");
    }
    const std::uint64_t size = request.firmware.size();
    if (size == 0) {
        return fail(ErrorCode::WrongSize, "The firmware has no bytes");
    }
    // The second limit is that of the result's own type.
    if (size > kMaxImageBytes || kSfuHeaderBytes + sfuBodyBytes(size) > INT_MAX) {
        return fail(ErrorCode::WrongSize, "The firmware has " + std::to_string(size) +
                                              " bytes, an update can't hold that many");
    }
    if (request.loadAddress + size > kAddressSpace) {
        return fail(ErrorCode::BadValue, "The firmware ends above the address 0xFFFFFFFF");
    }
    return {};
}

/// Header with nonce and tag still zero.
std::vector<std::uint8_t> headerOf(const SfuRequest &request)
{
    const auto size = static_cast<std::uint32_t>(request.firmware.size());
    std::vector<std::uint8_t> header(kSfuMagic.begin(), kSfuMagic.end());
    files::appendU16le(header, kSfuProtocol);
    files::appendU16le(header, request.imageVersion);
    files::appendU32le(header, request.loadAddress);
    files::appendU32le(header, size);
    files::appendU16le(header, kSfuHeaderBytes);
    files::appendU16le(header, kSfuPieceBytes);
    files::appendU32le(header, static_cast<std::uint32_t>(sfuPieces(size)));
    header.resize(kSfuHeaderBytes);
    return header;
}

Result<QByteArray> sealRightly(const SfuRequest &request)
{
    const std::vector<std::uint8_t> header = headerOf(request);
    const auto nonce =
        packageNonce(kKind, request.key, {request.nonceFile, header, request.firmware});
    if (!nonce) {
        return tl::unexpected(nonce.error());
    }
    const auto keys = ImageKeys::derive(kKind, request.key, *nonce);
    if (!keys) {
        return tl::unexpected(keys.error());
    }
    const std::uint64_t bytes = kSfuHeaderBytes + sfuBodyBytes(request.firmware.size());
    QByteArray update(static_cast<int>(bytes), Qt::Uninitialized);
    auto *const out = reinterpret_cast<std::uint8_t *>(update.data());
    std::copy(header.begin(), header.end(), out);
    std::copy(nonce->begin(), nonce->end(), out + kNonceAt);
    PieceSealer sealer(*keys);
    const auto headerTag = sealer.seal(0, {out, kTagAt}, {}, nullptr);
    if (!headerTag) {
        return tl::unexpected(headerTag.error());
    }
    std::copy(headerTag->begin(), headerTag->end(), out + kTagAt);
    std::uint8_t *at = out + kSfuHeaderBytes;
    std::uint32_t index = 0;
    for (ByteView rest = request.firmware; !rest.empty();) {
        const ByteView piece = rest.first(std::min(rest.size(), kSfuPieceBytes));
        const auto tag = sealer.seal(++index, {out, kReservedAt}, piece, at);
        if (!tag) {
            return tl::unexpected(tag.error());
        }
        at = std::copy(tag->begin(), tag->end(), at + piece.size());
        rest = rest.subspan(piece.size());
    }
    return update;
}

/// Opens header and pieces, and puts the verdict and, when all fit, the plain bytes into `opened`.
Result<void> verify(OpenedSfu &opened, ByteView body, ByteView key)
{
    const auto keys = ImageKeys::derive(kKind, key, opened.parsed.nonce);
    if (!keys) {
        return tl::unexpected(keys.error());
    }
    const ByteView header = opened.parsed.header;
    PieceOpener opener(*keys);
    opened.verdict = Verdict::WrongKeyOrDamaged;
    auto fits = opener.open(0, header.first(kTagAt), {}, opened.parsed.tag, nullptr);
    if (!fits || !*fits) {
        return fits ? Result<void>() : tl::unexpected(fits.error());
    }
    files::SecretBytes plain(opened.parsed.plainSize);
    std::uint8_t *out = plain.data();
    for (std::uint32_t index = 1; index <= opened.parsed.pieces; ++index) {
        const ByteView piece = body.first(std::min(body.size() - kTagBytes, kSfuPieceBytes));
        fits = opener.open(index, header.first(kReservedAt), piece,
                           body.subspan(piece.size(), kTagBytes), out);
        if (!fits) {
            return tl::unexpected(fits.error());
        }
        if (!*fits) {
            // The header's tag tells the key, so the piece isn't what was sealed.
            opened.verdict = Verdict::Damaged;
            opened.firstBadPiece = index;
            return {};
        }
        out += piece.size();
        body = body.subspan(piece.size() + kTagBytes);
    }
    opened.verdict = Verdict::Authentic;
    opened.plain = std::move(plain);
    return {};
}

}  // namespace

Result<OpenedSfu> openSfu(ByteView header, ByteView body, std::optional<ByteView> key)
{
    if (key) {
        if (auto sized = checkInputSize(*key, kKeyBytes, "key"); !sized) {
            return tl::unexpected(sized.error());
        }
    }
    const auto parsed = parseSfuHeader(header);
    if (!parsed) {
        return tl::unexpected(parsed.error());
    }
    if (const std::uint64_t expected = sfuBodyBytes(parsed->plainSize); body.size() != expected) {
        return fail(ErrorCode::WrongSize, "The body has " + std::to_string(body.size()) +
                                              " bytes, the header says " +
                                              std::to_string(expected));
    }
    OpenedSfu opened{*parsed, Verdict::NotChecked, 0, {}};
    if (std::any_of(parsed->reserved.begin(), parsed->reserved.end(),
                    [](std::uint8_t byte) { return byte != 0; })) {
        opened.verdict = Verdict::Damaged;
    } else if (key) {
        if (auto verified = verify(opened, body, *key); !verified) {
            return tl::unexpected(verified.error());
        }
    }
    return opened;
}

Result<QByteArray> buildSfu(const SfuRequest &request, const SfuSeal &seal)
{
    if (auto checked = checkRequest(request); !checked) {
        return tl::unexpected(checked.error());
    }
    auto update = seal ? seal(request) : sealRightly(request);
    if (!update) {
        return update;
    }
    const ByteView bytes{reinterpret_cast<const std::uint8_t *>(update->constData()),
                         static_cast<std::size_t>(update->size())};
    const auto opened =
        openSfu(bytes.first(kSfuHeaderBytes), bytes.subspan(kSfuHeaderBytes), request.key);
    if (!opened) {
        return tl::unexpected(opened.error());
    }
    if (opened->parsed.loadAddress != request.loadAddress ||
        opened->parsed.imageVersion != request.imageVersion) {
        return differsFromInput("header");
    }
    if (opened->verdict != Verdict::Authentic ||
        !std::ranges::equal(opened->plain.span(), request.firmware)) {
        return differsFromInput("firmware");
    }
    return update;
}

}  // namespace preparation
