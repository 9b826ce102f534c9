#include "preparation/ssp/SspSealer.h"

#include "files/base/ByteCursor.h"
#include "files/base/LittleEndian.h"
#include "preparation/sealing/PieceCipher.h"

#include <algorithm>

namespace preparation
{

namespace
{

using files::ErrorCode;
using files::fail;
using files::Result;

constexpr std::string_view kKind = "SSP";
constexpr std::uint16_t kVersion = 1;
constexpr std::size_t kNonceAt = 16;
constexpr std::size_t kTagAt = 64;  ///< what stands before is authenticated
constexpr std::size_t kPayloadAt = 80;

/// The authenticated head, with the nonce still zero.
std::vector<std::uint8_t> headOf(const SspRequest &request)
{
    std::vector<std::uint8_t> head(kSspMagic.begin(), kSspMagic.end());
    files::appendU16le(head, kVersion);
    files::appendU16le(head, request.oem.kind);
    files::appendU32le(head, kSspPayloadBytes);
    head.resize(kNonceAt + kNonceBytes);
    head.insert(head.end(), request.oem.digest.begin(), request.oem.digest.end());
    return head;
}

Result<QByteArray> sealRightly(const SspRequest &request)
{
    const std::vector<std::uint8_t> head = headOf(request);
    const auto nonce = packageNonce(kKind, request.key, {request.nonceFile, head, request.payload});
    if (!nonce) {
        return tl::unexpected(nonce.error());
    }
    const auto keys = ImageKeys::derive(kKind, request.key, *nonce);
    if (!keys) {
        return tl::unexpected(keys.error());
    }
    QByteArray file(static_cast<int>(kSspFileBytes), Qt::Uninitialized);
    auto *const out = reinterpret_cast<std::uint8_t *>(file.data());
    std::copy(head.begin(), head.end(), out);
    std::copy(nonce->begin(), nonce->end(), out + kNonceAt);
    const auto tag = PieceSealer(*keys).seal(0, {out, kTagAt}, request.payload, out + kPayloadAt);
    if (!tag) {
        return tl::unexpected(tag.error());
    }
    std::copy(tag->begin(), tag->end(), out + kTagAt);
    return file;
}

/// Reads the clear fields.
Result<OpenedSsp> parse(ByteView file)
{
    files::ByteCursor cursor(file);
    const auto magic = cursor.bytes(kMagicBytes);
    if (!cursor.ok() || !std::ranges::equal(magic, kSspMagic)) {
        return fail(ErrorCode::BadValue, "It does not begin with SSPIMAGE");
    }
    if (file.size() != kSspFileBytes) {
        return fail(ErrorCode::WrongSize,
                    "It has " + std::to_string(file.size()) + " bytes, it must have 232");
    }
    const std::uint16_t version = cursor.u16le();
    OpenedSsp opened;
    opened.oem.kind = cursor.u16le();
    const std::uint32_t payloadSize = cursor.u32le();
    opened.nonce = cursor.bytes(kNonceBytes);
    std::ranges::copy(cursor.bytes(opened.oem.digest.size()), opened.oem.digest.begin());
    if (version != kVersion) {
        return fail(ErrorCode::BadValue,
                    "Its format version is " + std::to_string(version) + ", only 1 is known");
    }
    if (opened.oem.kind != kOemPublicKey && opened.oem.kind != kOemTableHash) {
        return fail(ErrorCode::BadValue, "Its key kind is " + std::to_string(opened.oem.kind) +
                                             ", only 1 and 2 are known");
    }
    if (payloadSize != kSspPayloadBytes) {
        return fail(ErrorCode::BadValue,
                    "Its payload size is " + std::to_string(payloadSize) + ", it must be 152");
    }
    return opened;
}

}  // namespace

Result<OpenedSsp> openSsp(ByteView file, std::optional<ByteView> key)
{
    if (key) {
        if (auto sized = checkInputSize(*key, kKeyBytes, "key"); !sized) {
            return tl::unexpected(sized.error());
        }
    }
    auto opened = parse(file);
    if (!opened || !key) {
        return opened;
    }
    const auto keys = ImageKeys::derive(kKind, *key, opened->nonce);
    if (!keys) {
        return tl::unexpected(keys.error());
    }
    files::SecretBytes payload(kSspPayloadBytes);
    const auto authentic = PieceOpener(*keys).open(0, file.first(kTagAt), file.subspan(kPayloadAt),
                                                   file.subspan(kTagAt, kTagBytes), payload.data());
    if (!authentic) {
        return tl::unexpected(authentic.error());
    }
    opened->verdict = *authentic ? Verdict::Authentic : Verdict::WrongKeyOrDamaged;
    if (*authentic) {
        opened->payload = std::move(payload);
    }
    return opened;
}

Result<QByteArray> buildSsp(const SspRequest &request, const SspSeal &seal)
{
    for (const auto &checked : {checkInputSize(request.payload, kSspPayloadBytes, "payload"),
                                checkInputSize(request.key, kKeyBytes, "encryption key"),
                                checkInputSize(request.nonceFile, kSspNonceFileBytes, "nonce")}) {
        if (!checked) {
            return tl::unexpected(checked.error());
        }
    }
    auto file = seal ? seal(request) : sealRightly(request);
    if (!file) {
        return file;
    }
    const ByteView bytes{reinterpret_cast<const std::uint8_t *>(file->constData()),
                         static_cast<std::size_t>(file->size())};
    const auto opened = openSsp(bytes, request.key);
    if (!opened) {
        return tl::unexpected(opened.error());
    }
    if (opened->oem.kind != request.oem.kind || opened->oem.digest != request.oem.digest) {
        return differsFromInput("head");
    }
    if (opened->verdict != Verdict::Authentic ||
        !std::ranges::equal(opened->payload.span(), request.payload)) {
        return differsFromInput("payload");
    }
    return file;
}

}  // namespace preparation
