#include "Commands.h"
#include "CreateOptions.h"
#include "Firmware.h"
#include "KeyOption.h"
#include "crypto/primitives/Digests.h"
#include "files/base/SafeWriter.h"

#include <QByteArray>
#include <QFile>

namespace imgtool
{

namespace
{

using files::ErrorCode;
using files::fail;
using files::Result;

Result<void> checkTargets(const CreateOptions &options, const std::string &in,
                          const std::string &out)
{
    for (const std::string &written : {out, options.signatureOut}) {
        for (const std::string &read : {in, options.key, options.recipient, options.madeSignature,
                                        options.madeSignatureKey, options.phrase->file()}) {
            if (isSameFile(read, written)) {
                return fail(ErrorCode::Refused, written + " is read here, too; it isn't "
                                                          "overwritten");
            }
        }
    }
    if (out == options.signatureOut || isSameFile(out, options.signatureOut)) {
        return fail(ErrorCode::Refused, "image and signature can't both go to " + out);
    }
    return {};
}

/// Where the image begins in a file with addresses.
Result<std::uint32_t> imageAddress(const CreateOptions &options, std::uint32_t firmwareAddress)
{
    if (options.address) {
        return *options.address;
    }
    const std::uint32_t front = options.request.padHeader ? options.request.headerSize : 0;
    if (firmwareAddress != 0 && firmwareAddress < front) {
        return fail(ErrorCode::BadValue, "there is no room for a header before the address of the "
                                         "firmware; --hex-addr names the image's");
    }
    return firmwareAddress == 0 ? 0 : firmwareAddress - front;
}

/// The keys of a request, which points at them.
struct Keys {
    std::optional<crypto::KeyPair> signer;
    std::optional<crypto::PublicKey> signerHalf;
    files::SecretBytes madeSignature;
    Wrapping<crypto::PublicKey> recipient;
};

Result<void> readSigner(CreateOptions &options, Keys &keys)
{
    preparation::BootRequest &request = options.request;
    if (!options.key.empty()) {
        auto key = readKey(options.key, *options.phrase);
        if (!key) {
            return tl::unexpected(key.error());
        }
        keys.signer = std::move(*key);
        request.signer = &*keys.signer;
    }
    if (!options.madeSignatureKey.empty()) {
        auto key = readPublicKey(options.madeSignatureKey, *options.phrase);
        if (!key) {
            return tl::unexpected(key.error());
        }
        keys.signerHalf = std::move(*key);
        request.signerHalf = &*keys.signerHalf;
    }
    if (!options.madeSignature.empty()) {
        auto bytes = readBase64(options.madeSignature);
        if (!bytes) {
            return tl::unexpected(bytes.error());
        }
        keys.madeSignature = std::move(*bytes);
        request.madeSignature = keys.madeSignature.span();
    }
    return {};
}

Result<void> readRecipient(CreateOptions &options, Keys &keys)
{
    if (options.recipient.empty()) {
        return {};
    }
    auto key = readEncryptionKey(options.recipient, *options.phrase);
    if (!key) {
        return tl::unexpected(key.error());
    }
    keys.recipient = std::move(*key);
    options.request.recipient = keys.recipient.key ? &*keys.recipient.key : nullptr;
    options.request.wrapKey = keys.recipient.aes.span();
    return {};
}

/// What is signed elsewhere, in place of an image.
Result<std::string> writeVector(const CreateOptions &options, const Firmware &firmware,
                                const std::string &out)
{
    auto bytes = preparation::signedPart(options.request, firmware.bytes);
    if (bytes && options.vector == Vector::Digest) {
        const auto digest = crypto::sha256(*bytes);
        if (!digest) {
            return tl::unexpected(digest.error());
        }
        bytes->assign(digest->begin(), digest->end());
    }
    if (!bytes) {
        return tl::unexpected(bytes.error());
    }
    if (auto written = files::writeWhole(QFile::decodeName(out.c_str()), *bytes); !written) {
        return fail(written.error().code, out + ": " + written.error().text);
    }
    return out + ": " + std::to_string(bytes->size()) + " bytes to sign\n";
}

Result<void> writeSignature(const std::string &path, const std::vector<std::uint8_t> &image)
{
    const auto parsed = preparation::parseBootImage(image);
    if (!parsed) {
        return tl::unexpected(parsed.error());
    }
    for (const preparation::BootTlv &entry : parsed->plainTlvs) {
        if (preparation::isSignature(entry.type)) {
            const QByteArray text = QByteArray(reinterpret_cast<const char *>(entry.value.data()),
                                               static_cast<int>(entry.value.size()))
                                        .toBase64() +
                                    '\n';
            auto written =
                files::writeWhole(QFile::decodeName(path.c_str()),
                                  {reinterpret_cast<const std::uint8_t *>(text.constData()),
                                   static_cast<std::size_t>(text.size())});
            return written ? written
                           : fail(written.error().code, path + ": " + written.error().text);
        }
    }
    return {};
}

std::string madeText(const preparation::BootRequest &request, const std::string &out,
                     std::size_t bytes)
{
    const bool isEncrypted = request.recipient != nullptr || !request.wrapKey.empty();
    const auto signedBy = [&request] {
        return request.signer != nullptr ? crypto::kindName(request.signer->publicHalf().kind())
               : request.signerHalf != nullptr ? crypto::kindName(request.signerHalf->kind())
                                               : nullptr;
    }();
    return out + ": boot image " + preparation::toText(request.version) + ", " +
           std::to_string(bytes) + " bytes, " +
           (signedBy != nullptr ? std::string("signed (") + signedBy + ")" : "not signed") +
           (isEncrypted && !request.clear ? ", encrypted" : "") +
           (request.confirm ? ", confirmed"
            : request.pad   ? ", padded"
                            : "") +
           "\n";
}

Result<std::string> make(CreateOptions &options, const std::string &in, const std::string &out)
{
    preparation::BootRequest &request = options.request;
    Keys keys;
    if (auto good = checkTargets(options, in, out)
                        .and_then([&] { return readSigner(options, keys); })
                        .and_then([&] { return readRecipient(options, keys); });
        !good) {
        return tl::unexpected(good.error());
    }
    if (request.slot.maxAlign == 0) {
        request.slot.maxAlign = std::max<std::uint32_t>(8, request.slot.align);
    }
    if (options.hasAutoCounter) {
        request.securityCounter = preparation::securityCounterOf(request.version);
    }
    const auto firmware = readFirmware(in, request.slot.erased, request.slot.size);
    if (!firmware) {
        return tl::unexpected(firmware.error());
    }
    if (options.vector != Vector::None) {
        return writeVector(options, *firmware, out);
    }
    const auto image = preparation::buildBootImage(request, firmware->bytes);
    const auto address = imageAddress(options, firmware->address);
    if (!image || !address) {
        return fail(image ? address.error().code : image.error().code,
                    in + ": " + (image ? address.error().text : image.error().text));
    }
    return writeFirmware(out, *address, *image)
        .and_then([&] {
            return options.signatureOut.empty() ? Result<void>()
                                                : writeSignature(options.signatureOut, *image);
        })
        .map([&] { return madeText(request, out, image->size()); });
}

}  // namespace

console::Program createProgram()
{
    const auto options = std::make_shared<CreateOptions>();
    return {.name = "imgtool",
            .help = kCreateHelp,
            .options = createOptions(options),
            .check = [options](const auto &arguments) { return checkCreate(*options, arguments); },
            .run =
                [options](const console::Arguments &arguments) {
                    const auto made = make(*options, arguments[0], arguments[1]);
                    return made ? printText(*made)
                                : console::complain(console::kNotReadable, made.error().text);
                }};
}

}  // namespace imgtool
