#include "KeyOption.h"

#include "files/base/KeyFile.h"

#include <QByteArray>
#include <QFile>

#include <algorithm>

namespace imgtool
{

using files::ErrorCode;
using files::fail;

console::Option textOption(const char *name, char letter, std::shared_ptr<std::string> target)
{
    return {name, true,
            [target = std::move(target)](const char *value) {
                *target = value;
                return files::Result<void>();
            },
            letter};
}

console::Option keyOption(std::shared_ptr<std::string> path)
{
    return textOption("key", 'k', std::move(path));
}

files::Result<void>
checkAll(const console::Arguments &arguments,
         const std::vector<std::pair<const char *, std::shared_ptr<std::string>>> &needed)
{
    if (!arguments.empty()) {
        return fail(ErrorCode::BadValue, "'" + arguments[0] + "' is no option");
    }
    for (const auto &[option, value] : needed) {
        if (value->empty()) {
            return fail(ErrorCode::BadValue, std::string(option) + " is missing");
        }
    }
    return {};
}

namespace
{

using crypto::ByteView;
using files::Result;
using files::SecretBytes;

Result<SecretBytes> readText(const std::string &path)
{
    auto text = files::readKeyFile(QFile::decodeName(path.c_str()), 0);
    if (!text) {
        return fail(text.error().code, path + ": " + text.error().text);
    }
    return text;
}

template <typename Key>
Result<Key> withName(Result<Key> key, const std::string &path)
{
    if (!key) {
        return fail(key.error().code, path + ": " + key.error().text);
    }
    return key;
}

Result<crypto::KeyPair> privateKeyIn(ByteView pem, const std::string &path, PassPhrase &phrase)
{
    if (!crypto::KeyPair::isLocked(pem)) {
        return withName(crypto::KeyPair::readPrivate(pem), path);
    }
    const auto words = phrase.of(path);
    if (!words) {
        return fail(words.error().code, path + ": " + words.error().text);
    }
    return withName(crypto::KeyPair::readPrivate(pem, *words), path);
}

Result<crypto::PublicKey> publicKeyIn(ByteView pem, const std::string &path, PassPhrase &phrase)
{
    if (!crypto::KeyPair::isLocked(pem)) {
        return withName(crypto::PublicKey::read(pem), path);
    }
    return privateKeyIn(pem, path, phrase).map([](const auto &key) { return key.publicHalf(); });
}

Result<SecretBytes> decoded(ByteView text, const std::string &path)
{
    QByteArray lines(reinterpret_cast<const char *>(text.data()), static_cast<int>(text.size()));
    QByteArray packed;
    packed.reserve(lines.size());
    for (const char letter : lines) {
        if (letter != '\n' && letter != '\r' && letter != ' ') {
            packed.append(letter);
        }
    }
    auto bytes = QByteArray::fromBase64Encoding(packed, QByteArray::AbortOnBase64DecodingErrors);
    // One letter over makes no byte: the text was cut, or has a letter too many.
    const bool isWhole = (packed.size() - packed.count('=')) % 4 != 1;
    SecretBytes result(bytes && isWhole ? static_cast<std::size_t>(bytes.decoded.size()) : 0);
    if (result.size() != 0) {
        std::copy(bytes.decoded.cbegin(), bytes.decoded.cend(), result.data());
    }
    files::wipe(lines);
    files::wipe(packed);
    files::wipe(bytes.decoded);
    if (result.size() == 0) {
        return fail(ErrorCode::BadValue, path + ": it is neither a key in PEM form nor Base64");
    }
    return result;
}

/// @param readPem  what a PEM text becomes
template <typename Key>
Result<Wrapping<Key>> readWrapping(const std::string &path, PassPhrase &phrase,
                                   Result<Key> (*readPem)(ByteView, const std::string &,
                                                          PassPhrase &))
{
    const auto text = readText(path);
    if (!text) {
        return tl::unexpected(text.error());
    }
    const std::string_view words(reinterpret_cast<const char *>(text->data()), text->size());
    Wrapping<Key> found;
    if (words.find("-----BEGIN") != std::string_view::npos) {
        auto key = readPem(text->span(), path, phrase);
        if (!key) {
            return tl::unexpected(key.error());
        }
        found.key = std::move(*key);
        return found;
    }
    auto bytes = decoded(text->span(), path);
    if (!bytes) {
        return tl::unexpected(bytes.error());
    }
    if (bytes->size() != 16 && bytes->size() != 32) {
        return fail(ErrorCode::WrongSize,
                    path + ": an AES key has 16 or 32 bytes, not " + std::to_string(bytes->size()));
    }
    found.aes = std::move(*bytes);
    return found;
}

}  // namespace

Result<crypto::KeyPair> readKey(const std::string &path, PassPhrase &phrase)
{
    return readText(path).and_then(
        [&](const SecretBytes &pem) { return privateKeyIn(pem.span(), path, phrase); });
}

Result<crypto::PublicKey> readPublicKey(const std::string &path, PassPhrase &phrase)
{
    return readText(path).and_then(
        [&](const SecretBytes &pem) { return publicKeyIn(pem.span(), path, phrase); });
}

Result<Wrapping<crypto::PublicKey>> readEncryptionKey(const std::string &path, PassPhrase &phrase)
{
    return readWrapping<crypto::PublicKey>(path, phrase, &publicKeyIn);
}

Result<Wrapping<crypto::KeyPair>> readDecryptionKey(const std::string &path, PassPhrase &phrase)
{
    return readWrapping<crypto::KeyPair>(path, phrase, &privateKeyIn);
}

Result<SecretBytes> readBase64(const std::string &path)
{
    return readText(path).and_then(
        [&](const SecretBytes &text) { return decoded(text.span(), path); });
}

}  // namespace imgtool
