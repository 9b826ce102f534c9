#include "certif/Chain.h"

#include "files/base/ByteCursor.h"
#include "files/base/FileReader.h"

#include <QFile>

#include <algorithm>

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

files::Result<Certificate> readRecord(files::ByteCursor &in)
{
    const unsigned reserved = in.u16le();
    const unsigned type = in.u16le();
    const std::size_t length = in.u32le();
    const auto value = in.bytes(length);
    if (!in.ok()) {
        return fail(ErrorCode::Truncated, "is cut short");
    }
    if (reserved != 0) {
        return fail(ErrorCode::BadValue, "its reserved field is " + std::to_string(reserved));
    }
    if (type != kCertificateRecord) {
        return fail(ErrorCode::BadValue, "has type " + std::to_string(type) + ", a certificate " +
                                             std::to_string(kCertificateRecord));
    }
    // The last record's zeros may be missing.
    const auto zeros = in.bytes(std::min((kPadding - length % kPadding) % kPadding, in.left()));
    if (std::ranges::any_of(zeros, [](std::uint8_t byte) { return byte != 0; })) {
        return fail(ErrorCode::BadValue, "something stands in its padding");
    }
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
        if (chain.size() == kMostCertificates) {
            return fail(ErrorCode::TooLarge,
                        "a chain has at most " + std::to_string(kMostCertificates) + " records");
        }
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
    if (!bytes.isEmpty() && bytes.at(0) != '\0') {
        auto single = parseCertificate(bytesOf(bytes));
        if (!single) {
            return tl::unexpected(single.error());
        }
        return Chain{std::move(*single)};
    }
    return parseChain(bytesOf(bytes));
}

files::Result<QByteArray> readText(const QString &path)
{
    QFile file;
    if (auto opened = files::openForReading(file, path); !opened) {
        return tl::unexpected(opened.error());
    }
    const auto bytes = files::readAll(file, kMostChainBytes);
    if (!bytes) {
        return tl::unexpected(bytes.error());
    }
    return QByteArray(reinterpret_cast<const char *>(bytes->span().data()),
                      static_cast<int>(bytes->size()));
}

files::Result<Chain> readChainFile(const QString &path)
{
    return readText(path).and_then(readChain);
}

}  // namespace certif
