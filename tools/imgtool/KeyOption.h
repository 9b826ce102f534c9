#pragma once
#include "crypto/primitives/KeyPair.h"
#include "tools/console/Program.h"

#include <memory>
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

/// Reads the private key of a file. @return a sentence with the file's name
files::Result<crypto::KeyPair> readKey(const std::string &path);

/// Reads the public key of a file, or the public half of its private one. @return likewise
files::Result<crypto::PublicKey> readPublicKey(const std::string &path);

}  // namespace imgtool
