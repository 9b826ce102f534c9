#pragma once
#include "PassPhrase.h"
#include "preparation/boot/BootBuilder.h"
#include "tools/console/Program.h"

#include <memory>

namespace imgtool
{

/// What `--vector-to-sign` writes in place of an image, for a signature that is made elsewhere.
enum class Vector { None, Payload, Digest };

/// What the command line of `create` says.
struct CreateOptions {
    preparation::BootRequest request;
    std::string key;               ///< path of the private key; empty for an unsigned image
    std::string recipient;         ///< path of the key to encrypt for; empty for none
    std::string madeSignature;     ///< path of a signature in Base64; empty for none
    std::string madeSignatureKey;  ///< path of its public key
    std::string signatureOut;      ///< path where the signature goes as Base64; empty for none
    Vector vector = Vector::None;
    std::shared_ptr<PassPhrase> phrase = std::make_shared<PassPhrase>();
    std::optional<std::uint32_t> address;  ///< of the image in HEX and S-records
    bool hasAutoCounter = false;           ///< the security counter comes from the version
    // Options that have to be there
    bool hasVersion = false;
    bool hasHeaderSize = false;
    bool hasSlotSize = false;
    bool hasAlign = false;
};

/// The text of `imgtool create --help`.
extern const char *const kCreateHelp;

/// The options, which land in `target`.
std::vector<console::Option> createOptions(const std::shared_ptr<CreateOptions> &target);

/// @return BadValue with what is missing or doesn't go together
files::Result<void> checkCreate(const CreateOptions &options, const console::Arguments &arguments);

}  // namespace imgtool
