#include "certif/Certificate.h"

#include "certif/Words.h"
#include "crypto/primitives/Digests.h"
#include "files/base/ByteCursor.h"

#include <QByteArray>

#include <algorithm>

namespace certif
{

namespace
{

using files::ErrorCode;
using files::fail;

constexpr std::uint8_t kMajorVersion = 1;
constexpr std::uint8_t kEcdsaP256 = 1;

/// Whether the digest that stands for the extensions is theirs.
bool isDigestRight(const Certificate &certificate)
{
    if (certificate.extensions.empty()) {
        return certificate.extensionsDigest == std::array<std::uint8_t, 32>{};
    }
    const auto digest = crypto::sha256(certificate.extensions);
    return digest && *digest == certificate.extensionsDigest;
}

template <std::size_t Size>
std::array<std::uint8_t, Size> take(files::ByteCursor &in)
{
    std::array<std::uint8_t, Size> out{};
    const auto part = in.bytes(Size);
    std::copy(part.begin(), part.end(), out.begin());
    return out;
}

files::Result<void> readKind(files::ByteCursor &in)
{
    const unsigned major = in.u8();
    const unsigned minor = in.u8();
    const unsigned signatureType = in.u8();
    const unsigned keyType = in.u8();
    if (!in.ok()) {
        return fail(ErrorCode::Truncated, "the certificate ends inside its head");
    }
    if (major != kMajorVersion || minor != 0) {
        return fail(ErrorCode::BadValue, "format version " + std::to_string(major) + "." +
                                             std::to_string(minor) + " is not 1.0");
    }
    if (signatureType != kEcdsaP256 || keyType != kEcdsaP256) {
        return fail(ErrorCode::BadValue,
                    "keys of the kind " +
                        keyTypeName(keyType != kEcdsaP256 ? keyType : signatureType) +
                        " can't be checked here");
    }
    return {};
}

/// @return the reserved field
unsigned readFields(files::ByteCursor &in, Certificate &out, std::size_t &extensionBytes)
{
    out.role = static_cast<Role>(in.u8());
    out.usage = in.u8();
    const unsigned reserved = in.u16le();
    out.lifecycle = in.u16le();
    out.oemConstraint = in.u16le();
    extensionBytes = in.u32le();
    out.socClass = in.u32le();
    out.socId = take<16>(in);
    out.permissions = take<16>(in);
    out.subjectKey = take<64>(in);
    return reserved;
}

}  // namespace

std::array<std::uint8_t, kSignedBytes> signedBytes(const Certificate &certificate)
{
    std::vector<std::uint8_t> head{
        kMajorVersion,     0, kEcdsaP256, kEcdsaP256, static_cast<std::uint8_t>(certificate.role),
        certificate.usage, 0, 0};
    head.reserve(kSignedBytes);
    files::appendU16le(head, certificate.lifecycle);
    files::appendU16le(head, certificate.oemConstraint);
    files::appendU32le(head, static_cast<std::uint32_t>(certificate.extensions.size()));
    files::appendU32le(head, certificate.socClass);
    const auto append = [&head](const auto &bytes) {
        head.insert(head.end(), bytes.begin(), bytes.end());
    };
    append(certificate.socId);
    append(certificate.permissions);
    append(certificate.subjectKey);
    append(certificate.extensionsDigest);
    std::array<std::uint8_t, kSignedBytes> out{};
    std::copy(head.begin(), head.end(), out.begin());
    return out;
}

std::vector<std::uint8_t> encode(const Certificate &certificate)
{
    const auto head = signedBytes(certificate);
    std::vector<std::uint8_t> out(head.begin(), head.end());
    out.insert(out.end(), certificate.signature.begin(), certificate.signature.end());
    out.insert(out.end(), certificate.extensions.begin(), certificate.extensions.end());
    return out;
}

files::Result<Certificate> parseCertificate(std::span<const std::uint8_t> bytes)
{
    files::ByteCursor in(bytes);
    if (auto kind = readKind(in); !kind) {
        return tl::unexpected(kind.error());
    }
    Certificate out;
    std::size_t extensionBytes = 0;
    const unsigned reserved = readFields(in, out, extensionBytes);
    out.extensionsDigest = take<32>(in);
    out.signature = take<64>(in);
    if (!in.ok()) {
        return fail(ErrorCode::Truncated, std::to_string(bytes.size()) +
                                              " bytes are no certificate, which has at least " +
                                              std::to_string(kCertificateBytes));
    }
    if (extensionBytes != in.left()) {
        return fail(ErrorCode::WrongSize, "the head tells " + std::to_string(extensionBytes) +
                                              " bytes of extensions, " + std::to_string(in.left()) +
                                              " follow");
    }
    if (reserved != 0) {
        // It is signed, too, but has no place in the fields.
        return fail(ErrorCode::BadValue, "the reserved field is " + std::to_string(reserved));
    }
    const auto extensions = in.bytes(extensionBytes);
    out.extensions.assign(extensions.begin(), extensions.end());
    if (out.role < Role::Root || out.role > Role::Leaf) {
        return fail(ErrorCode::BadValue,
                    "role " + std::to_string(static_cast<unsigned>(out.role)) + " is unknown");
    }
    if (!isDigestRight(out)) {
        return fail(ErrorCode::BadChecksum, "the digest of the extensions doesn't match them");
    }
    return out;
}

std::string keyTypeName(unsigned type)
{
    static constexpr const char *kNames[] = {"ECDSA P-256", "ECDSA P-521", "RSA-3072",
                                             "RSA-4096",    "Ed25519",     "Ed448",
                                             "SM2",         "CMAC-AES",    "HMAC-SHA-256"};
    return type >= 1 && type <= std::size(kNames) ? kNames[type - 1]
                                                  : "key type " + std::to_string(type);
}

std::string roleName(Role role)
{
    const auto number = static_cast<unsigned>(role);
    return number >= 1 && number <= kRoles.size() ? kRoles[number - 1].role
                                                  : "role " + std::to_string(number);
}

std::string usageName(std::uint8_t usage)
{
    return usage >= 1 && usage <= kUsages.size() ? kUsages[usage - 1U]
                                                 : "usage " + std::to_string(usage);
}

std::string lifecycleName(std::uint16_t lifecycle)
{
    for (const LifecycleWords &words : kLifecycles) {
        if (words.number == lifecycle) {
            return words.text;
        }
    }
    return "lifecycle 0x" + QByteArray::number(lifecycle, 16).toStdString();
}

std::string hexText(std::span<const std::uint8_t, 16> littleEndian)
{
    static constexpr char kDigits[] = "0123456789abcdef";
    std::string digits;
    for (auto byte = littleEndian.rbegin(); byte != littleEndian.rend(); ++byte) {
        digits += kDigits[*byte >> 4];
        digits += kDigits[*byte & 0xF];
    }
    const auto first = std::min(digits.find_first_not_of('0'), digits.size() - 1);
    return "0x" + digits.substr(first);
}

}  // namespace certif
