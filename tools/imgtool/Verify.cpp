#include "Commands.h"
#include "Firmware.h"
#include "ImageInfo.h"
#include "KeyOption.h"
#include "files/base/SafeWriter.h"

#include <QFile>

namespace imgtool
{

namespace
{

using files::Result;

struct Paths {
    std::string signer;
    std::string recipient;
};

Result<std::string> verify(const Paths &paths, PassPhrase &phrase, const std::string &path)
{
    std::optional<crypto::PublicKey> signer;
    Wrapping<crypto::KeyPair> recipient;
    preparation::BootKeys keys;
    if (!paths.signer.empty()) {
        auto key = readPublicKey(paths.signer, phrase);
        if (!key) {
            return tl::unexpected(key.error());
        }
        signer = std::move(*key);
        keys.signer = &*signer;
    }
    if (!paths.recipient.empty()) {
        auto key = readDecryptionKey(paths.recipient, phrase);
        if (!key) {
            return tl::unexpected(key.error());
        }
        recipient = std::move(*key);
        keys.recipient = recipient.key ? &*recipient.key : nullptr;
        keys.wrapKey = recipient.aes.span();
    }
    return withImage(path, [&keys](const preparation::BootImage &image) {
        return preparation::verifyBootImage(image, keys).map([&image](const auto &verdict) {
            return verdictText(image, verdict);
        });
    });
}

Result<void> needsOneFile(const console::Arguments &arguments)
{
    return arguments.size() == 1
               ? Result<void>()
               : files::fail(files::ErrorCode::BadValue, "one image file is needed");
}

}  // namespace

console::Program verifyProgram()
{
    const auto paths = std::make_shared<Paths>();
    const auto text = [paths](const char *name, char letter, std::string Paths::*field) {
        return console::Option{name, true,
                               [paths, field](const char *value) {
                                   (*paths).*field = value;
                                   return Result<void>();
                               },
                               letter};
    };
    const auto phrase = std::make_shared<PassPhrase>();
    std::vector<console::Option> options = PassPhrase::options(phrase);
    options.push_back(text("key", 'k', &Paths::signer));
    options.push_back(text("decrypt", 'D', &Paths::recipient));
    return {
        .name = "imgtool",
        .help =
            "Usage: imgtool verify [OPTION]... IMAGE\n"
            "Checks a boot image: order, hash, signature, wrapped key, padding and "
            "trailer.\n\n"
            "  -k, --key FILE      the signer's key (PEM, public or private); without it "
            "the\n                      signature isn't checked\n"
            "  -D, --decrypt FILE  what opens an encrypted image: private key (PEM), or AES key\n"
            "                      (Base64)\n"
            "      --pass-file FILE  pass phrase of a private key: the first line of a file\n"
            "      --pass-fd N       the same from an open descriptor\n",
        .options = std::move(options),
        .check = &needsOneFile,
        .run = [paths, phrase](const console::Arguments &arguments) {
            const auto found = verify(*paths, *phrase, arguments[0]);
            return found ? printText(*found)
                         : console::complain(console::kNotAuthentic, found.error().text);
        }};
}

console::Program dumpInfoProgram()
{
    const auto out = std::make_shared<std::string>();
    const auto isSilent = std::make_shared<bool>(false);
    const auto run = [=](const console::Arguments &arguments) -> int {
        const auto text = withImage(arguments[0], [](const preparation::BootImage &image) {
            return Result<std::string>(imageInfo(image));
        });
        if (!text) {
            return console::complain(console::kNotReadable, text.error().text);
        }
        if (!out->empty() && isSameFile(arguments[0], *out)) {
            return console::complain(console::kUsage, *out + " is the image itself");
        }
        if (!out->empty()) {
            const auto written = files::writeWhole(
                QFile::decodeName(out->c_str()),
                {reinterpret_cast<const std::uint8_t *>(text->data()), text->size()});
            if (!written) {
                return console::complain(console::kOutputFailed,
                                         *out + ": " + written.error().text);
            }
        }
        return *isSilent ? int(console::kFine) : printText(*text);
    };
    return {.name = "imgtool",
            .help = "Usage: imgtool dumpinfo [OPTION]... IMAGE\n"
                    "Prints header, values and trailer of a boot image as YAML. Checks nothing.\n\n"
                    "  -o, --outfile FILE  writes them to a file, too\n"
                    "  -s, --silent        prints nothing\n",
            .options = {textOption("outfile", 'o', out),
                        {"silent", false,
                         [isSilent](const char *) {
                             *isSilent = true;
                             return Result<void>();
                         },
                         's'}},
            .check = &needsOneFile,
            .run = run};
}

}  // namespace imgtool
