#include "certif/Chain.h"

#include "crypto/primitives/Digests.h"
#include "crypto/primitives/EcKey.h"
#include "files/base/ByteCursor.h"

#include <algorithm>
#include <optional>

namespace certif
{

namespace
{

using files::ErrorCode;
using files::fail;

constexpr std::uint16_t kCertificateRecord = 0x0201;
constexpr std::size_t kPadding = 4;

bool isBase64(char letter)
{
    return (letter >= 'A' && letter <= 'Z') || (letter >= 'a' && letter <= 'z') ||
           (letter >= '0' && letter <= '9') || letter == '+' || letter == '/' || letter == '=';
}

bool isBlank(char letter)
{
    return letter == ' ' || letter == '\t' || letter == '\r' || letter == '\n';
}

/// The rights that a chain above grants, and the fields that must be the device's own.
struct Above {
    Mask granted;
    const Certificate *certificate = nullptr;
};

std::string bitList(const Mask &bits)
{
    std::string out;
    for (std::size_t bit = 0; bit < kMaskBits; ++bit) {
        if ((bits[bit / 8] >> (bit % 8) & 1) != 0) {
            out += (out.empty() ? "" : ", ") + std::to_string(bit);
        }
    }
    return out;
}

void judgePlace(const Certificate &certificate, const Certificate *above, Step &step)
{
    const bool isRoot = certificate.role == Role::Root;
    if (above == nullptr) {
        if (!isRoot) {
            step.faults.emplace_back("The chain begins with no root certificate");
        }
        return;
    }
    if (isRoot) {
        step.faults.emplace_back("A second root certificate stands below the first");
    }
    if (above->role == Role::Leaf) {
        step.faults.emplace_back("Nothing may stand below a leaf certificate");
    }
}

void judgeDevice(const Certificate &certificate, const Certificate &above, Step &step)
{
    const auto differs = [](const auto &mine, const auto &other) {
        using Field = std::decay_t<decltype(mine)>;
        return mine != Field{} && other != Field{} && mine != other;
    };
    if (differs(certificate.socClass, above.socClass)) {
        step.faults.emplace_back("The SoC class differs from the one above");
    }
    if (differs(certificate.socId, above.socId)) {
        step.faults.emplace_back("The SoC identifier differs from the one above");
    }
    if (differs(certificate.lifecycle, above.lifecycle)) {
        step.faults.emplace_back("The lifecycle differs from the one above");
    }
    if (differs(certificate.oemConstraint, above.oemConstraint)) {
        step.faults.emplace_back("The OEM constraint differs from the one above");
    }
}

bool isSignedBy(const PublicPoint &issuer, const Certificate &certificate)
{
    const auto key = crypto::EcKey::fromPoint(crypto::Curve::P256, issuer);
    const auto digest = crypto::sha256(signedBytes(certificate));
    if (!key || !digest) {
        return false;
    }
    const auto verdict = key->verify(*digest, certificate.signature);
    return verdict && *verdict;
}

Step judge(const Certificate &certificate, const Above &above)
{
    Step step;
    const Certificate &issuer = above.certificate != nullptr ? *above.certificate : certificate;
    step.issuerMatches = isSignedBy(issuer.subjectKey, certificate);
    judgePlace(certificate, above.certificate, step);
    // Who signed a certificate below the root can't be told without the one above.
    const bool isChecked = above.certificate != nullptr || certificate.role == Role::Root;
    if (isChecked && !step.issuerMatches) {
        step.faults.emplace_back(above.certificate != nullptr
                                     ? "It is not signed by the key of the certificate above"
                                     : "The root certificate is not signed by its own key");
    }
    Mask lost{};
    for (std::size_t i = 0; i < lost.size(); ++i) {
        step.remaining[i] = above.granted[i] & certificate.permissions[i];
        lost[i] = static_cast<std::uint8_t>(certificate.permissions[i] & ~above.granted[i]);
    }
    if (lost != Mask{}) {
        step.faults.emplace_back("Rights that the chain above doesn't grant, bits " +
                                 bitList(lost));
    }
    if (above.certificate != nullptr) {
        judgeDevice(certificate, *above.certificate, step);
    }
    return step;
}

files::Result<Certificate> readRecord(files::ByteCursor &in)
{
    in.skip(2);
    const unsigned type = in.u16le();
    const std::size_t length = in.u32le();
    const auto value = in.bytes(length);
    if (!in.ok()) {
        return fail(ErrorCode::Truncated, "is cut short");
    }
    if (type != kCertificateRecord) {
        return fail(ErrorCode::BadValue, "has type " + std::to_string(type) + ", a certificate " +
                                             std::to_string(kCertificateRecord));
    }
    // The last record's zeros may be missing.
    in.skip(std::min((kPadding - length % kPadding) % kPadding, in.left()));
    return parseCertificate(value);
}

}  // namespace

std::vector<std::uint8_t> encodeChain(const Chain &chain)
{
    std::vector<std::uint8_t> out;
    for (const Certificate &certificate : chain) {
        const auto value = encode(certificate);
        files::appendU16le(out, 0);
        files::appendU16le(out, kCertificateRecord);
        files::appendU32le(out, static_cast<std::uint32_t>(value.size()));
        out.insert(out.end(), value.begin(), value.end());
        out.resize((out.size() + kPadding - 1) / kPadding * kPadding, 0);
    }
    return out;
}

files::Result<Chain> parseChain(std::span<const std::uint8_t> bytes)
{
    files::ByteCursor in(bytes);
    Chain chain;
    while (in.left() > 0) {
        auto certificate = readRecord(in);
        if (!certificate) {
            return fail(certificate.error().code, "record " + std::to_string(chain.size() + 1) +
                                                      ": " + certificate.error().text);
        }
        chain.push_back(std::move(*certificate));
    }
    if (chain.empty()) {
        return fail(ErrorCode::Truncated, "there is no certificate in it");
    }
    return chain;
}

files::Result<QByteArray> decodeTexts(const QByteArray &text)
{
    QByteArray out;
    QByteArray part;
    bool padded = false;
    const auto decodePart = [&out, &part]() -> bool {
        const auto decoded =
            QByteArray::fromBase64Encoding(part, QByteArray::AbortOnBase64DecodingErrors);
        out += decoded.decoded;
        const bool whole = part.size() % 4 == 0 && decoded;
        part.clear();
        return whole;
    };
    for (int at = 0; at < text.size(); ++at) {
        const char letter = text[at];
        if (isBlank(letter)) {
            continue;
        }
        if (!isBase64(letter)) {
            return fail(ErrorCode::BadDigit,
                        "character " + std::to_string(at + 1) + " is no Base64 digit");
        }
        if (padded && letter != '=' && !decodePart()) {
            return fail(ErrorCode::BadDigit, "it is no whole Base64 text");
        }
        padded = letter == '=';
        part += letter;
    }
    if (!decodePart()) {
        return fail(ErrorCode::BadDigit, "it is no whole Base64 text");
    }
    return out;
}

files::Result<Chain> readChain(const QByteArray &content)
{
    const auto bytesOf = [](const QByteArray &bytes) {
        return std::span(reinterpret_cast<const std::uint8_t *>(bytes.constData()),
                         static_cast<std::size_t>(bytes.size()));
    };
    const bool isText = std::all_of(content.begin(), content.end(),
                                    [](char c) { return isBase64(c) || isBlank(c); });
    QByteArray bytes = content;
    if (isText) {
        auto decoded = decodeTexts(content);
        if (!decoded) {
            return tl::unexpected(decoded.error());
        }
        bytes = std::move(*decoded);
    }
    // A record begins with two zero bytes, a certificate with its version.
    if (!bytes.isEmpty() && bytes[0] != 0) {
        auto single = parseCertificate(bytesOf(bytes));
        if (!single) {
            return tl::unexpected(single.error());
        }
        return Chain{std::move(*single)};
    }
    return parseChain(bytesOf(bytes));
}

std::vector<Step> examine(const Chain &chain)
{
    std::vector<Step> steps;
    Above above;
    above.granted.fill(0xFF);
    for (const Certificate &certificate : chain) {
        steps.push_back(judge(certificate, above));
        above.granted = steps.back().remaining;
        above.certificate = &certificate;
    }
    return steps;
}

}  // namespace certif
