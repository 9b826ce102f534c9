#include "preparation/smi/SmiSealer.h"

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

constexpr std::string_view kKind = "SMI";
constexpr std::size_t kNonceAt = 20;
constexpr std::size_t kTagAt = 52;    ///< what stands before is authenticated
constexpr std::size_t kCheckAt = 68;  ///< what stands before is in the check block

Result<void> checkRequest(const SmiRequest &request)
{
    for (const auto &checked :
         {checkInputSize(request.key, kKeyBytes, "encryption key"),
          checkInputSize(request.nonceFile, kNonceFileBytes, "nonce"),
          checkInputSize(request.securityVersion, kSmiVersionBytes, "security version")}) {
        if (!checked) {
            return checked;
        }
    }
    if (request.section.empty()) {
        return fail(ErrorCode::WrongSize, "The section has no bytes");
    }
    // The second limit is that of the result's own type.
    if (request.section.size() > kMaxImageBytes || smiFileBytes(request.section.size()) > INT_MAX) {
        return fail(ErrorCode::WrongSize, "The section has " +
                                              std::to_string(request.section.size()) +
                                              " bytes, a module file can't hold that many");
    }
    if (request.loadAddress + std::uint64_t{request.section.size()} > kAddressSpace) {
        return fail(ErrorCode::BadValue, "The section ends above the address 0xFFFFFFFF");
    }
    return {};
}

/// Head with nonce, tag and check block still zero.
std::vector<std::uint8_t> headOf(const SmiRequest &request)
{
    std::vector<std::uint8_t> head(kSmiMagic.begin(), kSmiMagic.end());
    files::appendU16le(head, 1);
    files::appendU16le(head, request.hash ? kSmiHasCheck : 0);
    files::appendU32le(head, request.loadAddress);
    files::appendU32le(head, static_cast<std::uint32_t>(request.section.size()));
    head.resize(kNonceAt + kNonceBytes);
    head.insert(head.end(), request.securityVersion.begin(), request.securityVersion.end());
    head.resize(kSmiHeadBytes);
    return head;
}

Result<Tag> checkBlockOf(ByteView head, ByteView data)
{
    Sha256 sha;
    sha.begin();
    sha.update(head.first(kCheckAt));
    sha.update(data);
    const auto digest = sha.finish();
    if (!digest) {
        return tl::unexpected(digest.error());
    }
    Tag block{};
    std::copy_n(digest->begin(), block.size(), block.begin());
    return block;
}

Result<QByteArray> sealRightly(const SmiRequest &request)
{
    const std::vector<std::uint8_t> head = headOf(request);
    const auto nonce = packageNonce(kKind, request.key, {request.nonceFile, head, request.section});
    if (!nonce) {
        return tl::unexpected(nonce.error());
    }
    const auto keys = ImageKeys::derive(kKind, request.key, *nonce);
    if (!keys) {
        return tl::unexpected(keys.error());
    }
    QByteArray file(static_cast<int>(smiFileBytes(request.section.size())), '\0');
    auto *const out = reinterpret_cast<std::uint8_t *>(file.data());
    std::copy(head.begin(), head.end(), out);
    std::copy(nonce->begin(), nonce->end(), out + kNonceAt);
    std::uint8_t *const data = out + kSmiHeadBytes;
    const auto tag = PieceSealer(*keys).seal(0, {out, kTagAt}, request.section, data);
    if (!tag) {
        return tl::unexpected(tag.error());
    }
    std::copy(tag->begin(), tag->end(), out + kTagAt);
    if (request.hash) {
        const auto check = checkBlockOf({out, kSmiHeadBytes}, {data, request.section.size()});
        if (!check) {
            return tl::unexpected(check.error());
        }
        std::copy(check->begin(), check->end(), out + kCheckAt);
    }
    return file;
}

bool allZero(ByteView bytes)
{
    return std::all_of(bytes.begin(), bytes.end(), [](std::uint8_t byte) { return byte == 0; });
}

Result<bool> isIntact(const ParsedSmi &smi)
{
    if (!allZero(smi.reserved) || !allZero(smi.padding)) {
        return false;
    }
    if (!smi.hasCheck()) {
        return allZero(smi.check);
    }
    const auto expected = checkBlockOf(smi.head, smi.data);
    if (!expected) {
        return tl::unexpected(expected.error());
    }
    return std::ranges::equal(*expected, smi.check);
}

}  // namespace

Result<OpenedSmi> openSmi(ByteView file, std::optional<ByteView> key)
{
    if (key) {
        if (auto sized = checkInputSize(*key, kKeyBytes, "key"); !sized) {
            return tl::unexpected(sized.error());
        }
    }
    const auto parsed = parseSmi(file, "It");
    if (!parsed) {
        return tl::unexpected(parsed.error());
    }
    OpenedSmi opened{*parsed, Verdict::NotChecked, {}};
    const auto intact = isIntact(opened.parsed);
    if (!intact) {
        return tl::unexpected(intact.error());
    }
    if (!*intact) {
        opened.verdict = Verdict::Damaged;
    }
    if (!key || !*intact) {
        return opened;
    }
    const auto keys = ImageKeys::derive(kKind, *key, opened.parsed.nonce);
    if (!keys) {
        return tl::unexpected(keys.error());
    }
    files::SecretBytes plain(opened.parsed.data.size());
    const auto authentic = PieceOpener(*keys).open(
        0, opened.parsed.head.first(kTagAt), opened.parsed.data, opened.parsed.tag, plain.data());
    if (!authentic) {
        return tl::unexpected(authentic.error());
    }
    opened.verdict = *authentic ? Verdict::Authentic : Verdict::WrongKeyOrDamaged;
    if (*authentic) {
        opened.plain = std::move(plain);
    }
    return opened;
}

Result<QByteArray> buildSmi(const SmiRequest &request, const SmiSeal &seal)
{
    if (auto checked = checkRequest(request); !checked) {
        return tl::unexpected(checked.error());
    }
    auto file = seal ? seal(request) : sealRightly(request);
    if (!file) {
        return file;
    }
    const ByteView bytes{reinterpret_cast<const std::uint8_t *>(file->constData()),
                         static_cast<std::size_t>(file->size())};
    const auto opened = openSmi(bytes, request.key);
    if (!opened) {
        return tl::unexpected(opened.error());
    }
    if (opened->parsed.loadAddress != request.loadAddress ||
        opened->parsed.hasCheck() != request.hash ||
        !std::ranges::equal(opened->parsed.securityVersion, request.securityVersion)) {
        return differsFromInput("head");
    }
    if (opened->verdict != Verdict::Authentic ||
        !std::ranges::equal(opened->plain.span(), request.section)) {
        return differsFromInput("module");
    }
    return file;
}

}  // namespace preparation
