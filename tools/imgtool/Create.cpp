#include "Commands.h"
#include "CreateOptions.h"
#include "Firmware.h"
#include "KeyOption.h"

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
    for (const std::string &read : {in, options.key, options.recipient}) {
        if (isSameFile(read, out)) {
            return fail(ErrorCode::Refused, out + " is read here, too; it isn't overwritten");
        }
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

Result<std::string> make(CreateOptions &options, const std::string &in, const std::string &out)
{
    preparation::BootRequest &request = options.request;
    if (auto good = checkTargets(options, in, out); !good) {
        return tl::unexpected(good.error());
    }
    std::optional<crypto::KeyPair> signer;
    if (!options.key.empty()) {
        auto key = readKey(options.key);
        if (!key) {
            return tl::unexpected(key.error());
        }
        signer = std::move(*key);
        request.signer = &*signer;
    }
    std::optional<crypto::PublicKey> recipient;
    if (!options.recipient.empty()) {
        auto key = readPublicKey(options.recipient);
        if (!key) {
            return tl::unexpected(key.error());
        }
        recipient = std::move(*key);
        request.recipient = &*recipient;
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
    const auto image = preparation::buildBootImage(request, firmware->bytes);
    const auto address = imageAddress(options, firmware->address);
    if (!image || !address) {
        return fail(image ? address.error().code : image.error().code,
                    in + ": " + (image ? address.error().text : image.error().text));
    }
    return writeFirmware(out, *address, *image).map([&] {
        return out + ": boot image " + preparation::toText(request.version) + ", " +
               std::to_string(image->size()) + " bytes, " +
               (signer ? std::string("signed (") + kindName(signer->publicHalf().kind()) + ")"
                       : "not signed") +
               (recipient && !request.clear ? ", encrypted" : "") +
               (request.confirm ? ", confirmed"
                : request.pad   ? ", padded"
                                : "") +
               "\n";
    });
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
