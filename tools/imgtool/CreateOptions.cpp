#include "CreateOptions.h"

#include <QByteArray>

namespace imgtool
{

using files::ErrorCode;
using files::fail;
using files::Result;

const char *const kCreateHelp =
    "Usage: imgtool create [OPTION]... INFILE OUTFILE   (or: imgtool sign ...)\n"
    "Makes a boot image in the MCUboot format out of firmware: header, hash, signature.\n"
    "INFILE is Intel HEX (.hex), S-records (.srec, .s19, .s28, .s37, .mot), ELF (.elf, .axf,\n"
    ".out, .o, .so) or else raw binary; OUTFILE one of the same, but no ELF.\n"
    "\n"
    "Needed:\n"
    "      --align N             bytes that the flash writes at once: 1, 2, 4, 8, 16, 32\n"
    "  -v, --version VERSION     1.2.3 or 1.2.3+4\n"
    "  -H, --header-size N       bytes before the firmware, 32 at least\n"
    "  -S, --slot-size N         bytes of the slot; image and trailer must fit\n"
    "Header:\n"
    "      --pad-header          puts the header in front; without it the firmware begins\n"
    "                            with that many zero bytes\n"
    "  -L, --load-addr ADDRESS   where the image runs in RAM\n"
    "  -F, --rom-fixed ADDRESS   where the image must stand in flash\n"
    "      --non-bootable        the image belongs to another one and isn't started\n"
    "Signature:\n"
    "  -k, --key FILE            private key (PEM): P-256, RSA-2048, RSA-3072 or Ed25519;\n"
    "                            without it the image has a hash alone\n"
    "      --pass-file FILE      pass phrase of a key: the first line of a file\n"
    "      --pass-fd N           the same from an open descriptor; without both it is asked\n"
    "                            for at the terminal\n"
    "      --vector-to-sign W    payload or digest: writes what a signature is made over,\n"
    "                            and no image\n"
    "      --fix-sig FILE        a signature (Base64) that was made elsewhere\n"
    "      --fix-sig-pubkey FILE its public key (PEM)\n"
    "      --sig-out FILE        writes the signature (Base64), too\n"
    "      --sha 256             the only digest that is made\n"
    "      --public-key-format F hash (default) or full: what stands in the image\n"
    "      --pad-sig             P-256 signatures always of 72 bytes, for old loaders\n"
    "Protected values:\n"
    "  -s, --security-counter N  a number, or auto: made of the version\n"
    "  -d, --dependencies LIST   \"(0, 1.2.3+4)(1, 2.0.0)\": image number and version needed\n"
    "      --boot-record ROLE    role of the image for attestation, 12 characters at most\n"
    "      --custom-tlv TYPE VALUE  a value of your own; TYPE has a low byte from 0xa0 on,\n"
    "                            VALUE is text, or bytes as 0x and digits\n"
    "Encryption (AES-CTR):\n"
    "  -E, --encrypt FILE        what the key is wrapped for: public key (PEM) of P-256, X25519\n"
    "                            or RSA-2048, or AES key (Base64)\n"
    "      --encrypt-keylen N    128 (default) or 256; 256 with RSA-2048 or an AES key\n"
    "  -c, --clear               wraps a key, but leaves the firmware readable\n"
    "      --save-enctlv         the trailer has room for wrapped keys, not for plain ones\n"
    "Slot:\n"
    "      --pad                 fills the slot up to its trailer\n"
    "      --confirm             likewise, and the image stays without being tried\n"
    "      --max-align N         8, 16 or 32; the larger of 8 and --align by default\n"
    "  -M, --max-sectors N       the most sectors of a slot, for the trailer; 128 by default\n"
    "      --overwrite-only      the loader overwrites and never swaps\n"
    "  -R, --erased-val N        what an erased byte reads as: 0 or 0xff (default)\n"
    "  -x, --hex-addr ADDRESS    of the image in HEX and S-records\n"
    "  -e, --endian ORDER        little; big is refused\n"
    "\n"
    "Numbers are decimal, or hexadecimal behind 0x.\n";

namespace
{

using Target = std::shared_ptr<CreateOptions>;
using Use = std::function<Result<void>(CreateOptions &, const char *)>;

console::Option option(const Target &target, const char *name, char letter, bool takesValue,
                       Use use)
{
    return {name, takesValue,
            [target, use = std::move(use)](const char *value) { return use(*target, value); },
            letter};
}

/// An option whose number goes to `store`.
template <typename Store>
console::Option number(const Target &target, const char *name, char letter, Store store,
                       std::uint32_t largest = UINT32_MAX)
{
    return option(target, name, letter, true,
                  [store, largest, name](CreateOptions &options, const char *value) {
                      const auto parsed = console::parseNumber(value, largest);
                      if (!parsed) {
                          return Result<void>(
                              fail(ErrorCode::BadValue,
                                   std::string("--") + name + ": " + parsed.error().text));
                      }
                      store(options, *parsed);
                      return Result<void>();
                  });
}

template <typename Store>
console::Option flag(const Target &target, const char *name, char letter, Store store)
{
    return option(target, name, letter, false, [store](CreateOptions &options, const char *) {
        store(options);
        return Result<void>();
    });
}

Result<void> takeVersion(CreateOptions &options, const char *value)
{
    options.hasVersion = true;
    return preparation::parseBootVersion(value).map(
        [&options](const auto &version) { options.request.version = version; });
}

Result<void> takeDependencies(CreateOptions &options, const char *value)
{
    return preparation::parseBootDependencies(value).map(
        [&options](auto list) { options.request.dependencies = std::move(list); });
}

Result<void> takeCounter(CreateOptions &options, const char *value)
{
    options.hasAutoCounter = std::string_view(value) == "auto";
    if (options.hasAutoCounter) {
        return {};
    }
    return console::parseNumber(value).map(
        [&options](std::uint32_t counter) { options.request.securityCounter = counter; });
}

/// An option of one word among two; the first one is the default.
console::Option word(const Target &target, const char *name, char letter, const char *usual,
                     const char *other, const Use &use)
{
    return option(
        target, name, letter, true, [=](CreateOptions &options, const char *value) -> Result<void> {
            const std::string_view text = value;
            if (text != usual && text != other) {
                return fail(ErrorCode::BadValue, std::string("--") + name + " is " + usual +
                                                     " or " + other + ", not '" + value + "'");
            }
            return use(options, value);
        });
}

/// "0x" and digits are bytes, everything else is text.
Result<void> takeOwnValue(CreateOptions &options, const char *type, const char *value)
{
    const auto number = console::parseNumber(type, UINT16_MAX);
    const std::string_view text = value;
    preparation::BootOwnValue own;
    if (!number) {
        return fail(ErrorCode::BadValue, "--custom-tlv: " + number.error().text);
    }
    own.type = static_cast<std::uint16_t>(*number);
    if (!text.starts_with("0x")) {
        own.value.assign(text.begin(), text.end());
    } else {
        const QByteArray digits(text.data() + 2, static_cast<int>(text.size() - 2));
        const QByteArray bytes = QByteArray::fromHex(digits);
        if (bytes.toHex() != digits.toLower()) {
            return fail(ErrorCode::BadValue,
                        std::string("--custom-tlv: '") + value +
                            "' isn't 0x and an even number of hexadecimal digits");
        }
        own.value.assign(bytes.begin(), bytes.end());
    }
    options.request.ownValues.push_back(std::move(own));
    return {};
}

Result<void> takeVector(CreateOptions &options, const char *value)
{
    const bool isPayload = std::string_view(value) == "payload";
    options.vector = isPayload ? Vector::Payload : Vector::Digest;
    return {};
}

/// What the format has and isn't made here: refused by name, as nothing else would tell why.
console::Option refused(const Target &target, const char *name, bool takesValue,
                        const char *allowed, const char *why)
{
    return option(target, name, 0, takesValue,
                  [=](CreateOptions &, const char *value) -> Result<void> {
                      const std::string_view text = value;
                      if (takesValue && (text == allowed || text == "auto")) {
                          return {};
                      }
                      return fail(ErrorCode::BadValue, std::string("--") + name + ": " + why);
                  });
}

void appendHeaderOptions(const Target &target, std::vector<console::Option> &list)
{
    using Options = CreateOptions;
    list.push_back(option(target, "version", 'v', true, &takeVersion));
    list.push_back(number(
        target, "header-size", 'H',
        [](Options &o, std::uint32_t n) {
            o.request.headerSize = static_cast<std::uint16_t>(n);
            o.hasHeaderSize = true;
        },
        UINT16_MAX));
    list.push_back(flag(target, "pad-header", 0, [](Options &o) { o.request.padHeader = true; }));
    list.push_back(number(target, "load-addr", 'L',
                          [](Options &o, std::uint32_t n) { o.request.loadAddress = n; }));
    list.push_back(number(target, "rom-fixed", 'F', [](Options &o, std::uint32_t n) {
        o.request.loadAddress = n;
        o.request.romFixed = true;
    }));
    list.push_back(option(target, "security-counter", 's', true, &takeCounter));
    list.push_back(option(target, "dependencies", 'd', true, &takeDependencies));
    list.push_back(
        number(target, "hex-addr", 'x', [](Options &o, std::uint32_t n) { o.address = n; }));
    list.push_back(option(target, "endian", 'e', true, [](Options &, const char *value) {
        return std::string_view(value) == "little"
                   ? Result<void>()
                   : fail(ErrorCode::BadValue, "--endian is little: the chips are, and no reader "
                                               "here takes another order");
    }));
    list.push_back(
        flag(target, "non-bootable", 0, [](Options &o) { o.request.nonBootable = true; }));
    list.push_back(option(target, "boot-record", 0, true, [](Options &o, const char *value) {
        o.request.bootRecord = value;
        return *value == 0 ? fail(ErrorCode::BadValue, "--boot-record has no role")
                           : Result<void>();
    }));
    console::Option own{"custom-tlv", true};
    own.takeTwo = [target](const char *type, const char *value) {
        return takeOwnValue(*target, type, value);
    };
    list.push_back(std::move(own));
}

void appendKeyOptions(const Target &target, std::vector<console::Option> &list)
{
    using Options = CreateOptions;
    list.push_back(option(target, "key", 'k', true, [](Options &o, const char *value) {
        o.key = value;
        return Result<void>();
    }));
    list.push_back(option(target, "encrypt", 'E', true, [](Options &o, const char *value) {
        o.recipient = value;
        return Result<void>();
    }));
    list.push_back(
        word(target, "public-key-format", 0, "hash", "full", [](Options &o, const char *value) {
            o.request.wholePublicKey = std::string_view(value) == "full";
            return Result<void>();
        }));
    list.push_back(
        word(target, "encrypt-keylen", 0, "128", "256", [](Options &o, const char *value) {
            o.request.imageKeyBytes = std::string_view(value) == "256"
                                          ? preparation::kLongImageKeyBytes
                                          : preparation::kImageKeyBytes;
            return Result<void>();
        }));
    list.push_back(flag(target, "pad-sig", 0, [](Options &o) { o.request.padSignature = true; }));
    list.push_back(flag(target, "clear", 'c', [](Options &o) { o.request.clear = true; }));
    list.push_back(
        flag(target, "save-enctlv", 0, [](Options &o) { o.request.keepWrappedKeys = true; }));
}

void appendSignatureOptions(const Target &target, std::vector<console::Option> &list)
{
    const auto path = [&](const char *name, std::string CreateOptions::*field) {
        list.push_back(option(target, name, 0, true, [field](CreateOptions &o, const char *value) {
            o.*field = value;
            return Result<void>();
        }));
    };
    path("fix-sig", &CreateOptions::madeSignature);
    path("fix-sig-pubkey", &CreateOptions::madeSignatureKey);
    path("sig-out", &CreateOptions::signatureOut);
    list.push_back(word(target, "vector-to-sign", 0, "payload", "digest", &takeVector));
    list.push_back(refused(target, "sha", true, "256",
                           "only SHA-256 is made, which all the signatures here are over"));
    list.push_back(refused(target, "hmac-sha", true, "256", "keys are wrapped with SHA-256 alone"));
    list.push_back(refused(target, "is-pure", false, nullptr,
                           "a signature is over the digest; over the whole image none is made"));
    for (console::Option &each : PassPhrase::options(target->phrase)) {
        list.push_back(std::move(each));
    }
}

void appendSlotOptions(const Target &target, std::vector<console::Option> &list)
{
    using Options = CreateOptions;
    list.push_back(number(target, "align", 0, [](Options &o, std::uint32_t n) {
        o.request.slot.align = n;
        o.hasAlign = true;
    }));
    list.push_back(number(target, "max-align", 0,
                          [](Options &o, std::uint32_t n) { o.request.slot.maxAlign = n; }));
    list.push_back(number(target, "slot-size", 'S', [](Options &o, std::uint32_t n) {
        o.request.slot.size = n;
        o.hasSlotSize = true;
    }));
    list.push_back(flag(target, "pad", 0, [](Options &o) { o.request.pad = true; }));
    list.push_back(flag(target, "confirm", 0, [](Options &o) { o.request.confirm = true; }));
    list.push_back(number(target, "max-sectors", 'M',
                          [](Options &o, std::uint32_t n) { o.request.slot.maxSectors = n; }));
    list.push_back(
        flag(target, "overwrite-only", 0, [](Options &o) { o.request.slot.overwriteOnly = true; }));
    list.push_back(number(
        target, "erased-val", 'R',
        [](Options &o, std::uint32_t n) { o.request.slot.erased = static_cast<std::uint8_t>(n); },
        UINT8_MAX));
}

}  // namespace

std::vector<console::Option> createOptions(const std::shared_ptr<CreateOptions> &target)
{
    target->request.slot.maxAlign = 0;  // none was named
    std::vector<console::Option> list;
    appendHeaderOptions(target, list);
    appendKeyOptions(target, list);
    appendSignatureOptions(target, list);
    appendSlotOptions(target, list);
    return list;
}

Result<void> checkCreate(const CreateOptions &options, const console::Arguments &arguments)
{
    const std::pair<bool, const char *> needed[] = {{options.hasVersion, "--version"},
                                                    {options.hasHeaderSize, "--header-size"},
                                                    {options.hasSlotSize, "--slot-size"},
                                                    {options.hasAlign, "--align"}};
    for (const auto &[isThere, name] : needed) {
        if (!isThere) {
            return fail(ErrorCode::BadValue, std::string(name) + " is missing");
        }
    }
    if (arguments.size() != 2) {
        return fail(ErrorCode::BadValue, "two files are needed: INFILE and OUTFILE");
    }
    const bool isMade = !options.madeSignature.empty();
    if (isMade && (options.madeSignatureKey.empty() || !options.key.empty())) {
        return fail(ErrorCode::BadValue, "--fix-sig goes with --fix-sig-pubkey and without --key");
    }
    if (options.vector != Vector::None && (isMade || !options.key.empty())) {
        return fail(ErrorCode::BadValue, "--vector-to-sign makes no image and takes no signature");
    }
    if (!options.madeSignatureKey.empty() && !isMade && options.vector == Vector::None) {
        return fail(ErrorCode::BadValue, "--fix-sig is missing");
    }
    if (!options.signatureOut.empty() && options.key.empty() && !isMade) {
        return fail(ErrorCode::BadValue, "--sig-out: without a key there is no signature");
    }
    if (options.request.slot.size > (std::uint32_t{256} << 20)) {
        return fail(ErrorCode::BadValue, "a slot has 256 MiB at most");
    }
    return {};
}

}  // namespace imgtool
