#pragma once
#include "PassPhrase.h"
#include "crypto/primitives/KeyPair.h"
#include "tools/console/Program.h"

#include <memory>
#include <optional>
#include <string>

namespace imgtool
{

/// "-k PATH", "--key PATH": keeps the path in `path`.
console::Option keyOption(std::shared_ptr<std::string> path);

/// An option with a text that lands in `target`.
console::Option textOption(const char *name, char letter, std::shared_ptr<std::string> target);

/// Refuses arguments that are no options, and a missing value.
/// @param needed  option as the user writes it, and where its value lands
files::Result<void>
checkAll(const console::Arguments &arguments,
         const std::vector<std::pair<const char *, std::shared_ptr<std::string>>> &needed);

/// Reads the private key of a file; only one behind a pass phrase asks for it.
/// @return a sentence with the file's name
files::Result<crypto::KeyPair> readKey(const std::string &path, PassPhrase &phrase);

/// Reads the public key of a file, or the public half of its private one. @return likewise
files::Result<crypto::PublicKey> readPublicKey(const std::string &path, PassPhrase &phrase);

/// What an image's key is wrapped with: one of two.
template <typename Key>
struct Wrapping {
    std::optional<Key> key;
    files::SecretBytes aes;  ///< 16 or 32 bytes
};

/// Reads the key that an image is encrypted for: PEM, or an AES key in Base64. @return likewise
files::Result<Wrapping<crypto::PublicKey>> readEncryptionKey(const std::string &path,
                                                             PassPhrase &phrase);

/// Reads the key that opens an encrypted image: PEM, or an AES key in Base64. @return likewise
files::Result<Wrapping<crypto::KeyPair>> readDecryptionKey(const std::string &path,
                                                           PassPhrase &phrase);

/// Bytes that a file holds as Base64 text, over any number of lines. @return likewise
files::Result<files::SecretBytes> readBase64(const std::string &path);

}  // namespace imgtool
