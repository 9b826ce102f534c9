#include "UnpackOptions.h"

#include "AreaExtract.h"

namespace unpack
{

using console::Option;
using files::ErrorCode;
using files::fail;
using files::Result;
using preparation::PackageKind;

std::vector<Option> optionTable(Options &out)
{
    return {
        {"json", false,
         [&out](const char *) -> Result<void> {
             out.json = true;
             return {};
         }},
        {"key", true,
         [&out](const char *value) -> Result<void> {
             out.key = value;
             return {};
         }},
        {"public-key", true,
         [&out](const char *value) -> Result<void> {
             out.publicKey = value;
             return {};
         }},
        {"body", true,
         [&out](const char *value) -> Result<void> {
             out.body = value;
             return {};
         }},
        {"out", true,
         [&out](const char *value) -> Result<void> {
             out.out = value;
             return {};
         }},
        {"area", true,
         [&out](const char *value) -> Result<void> {
             const auto number = console::parseNumber(value);
             if (!number || *number == 0) {
                 return fail(ErrorCode::BadValue,
                             "--area needs an index from 1 on, not '" + std::string(value) + "'");
             }
             out.area = *number;
             return {};
         }},
    };
}

Result<void> checkTogether(const Options &options, const console::Arguments &images)
{
    if (images.size() != 1) {
        return fail(ErrorCode::BadValue,
                    images.empty() ? "no image is named" : "more than one image is named");
    }
    if (options.out && !options.key) {
        return fail(ErrorCode::BadValue, "--out needs --key");
    }
    if (options.area && !options.out) {
        return fail(ErrorCode::BadValue, "--area needs --out");
    }
    return {};
}

Result<void> checkForKind(const Options &options, PackageKind kind)
{
    const std::string what = std::string("a package of the kind ") + kindName(kind);
    const bool isSigned = kind == PackageKind::Signed || kind == PackageKind::Licence;
    const bool hasKey = !isSigned && kind != PackageKind::Ssfi && kind != PackageKind::Smu;
    if (options.key && !hasKey) {
        return fail(ErrorCode::BadValue,
                    what + (isSigned ? " is checked with --public-key, not with --key"
                                     : " has nothing that a key could open"));
    }
    if (options.publicKey && !isSigned) {
        return fail(ErrorCode::BadValue, what + " has no signature, --public-key is for another");
    }
    if (options.body && kind != PackageKind::Sfu) {
        return fail(ErrorCode::BadValue, what + " has no body, --body is for another");
    }
    if (options.area && kind != PackageKind::Sfi) {
        return fail(ErrorCode::BadValue, what + " has no areas to write, --area is for another");
    }
    if (kind == PackageKind::Sfi && options.out && !options.area && !isFirmwareName(*options.out)) {
        return fail(ErrorCode::BadValue,
                    "the name after --out must end in .bin, .hex, .srec or .s19");
    }
    return {};
}

const char *helpText()
{
    return "Usage: spb-unpack [--json] [--key FILE [--out FILE [--area N]]] PACKAGE\n"
           "       spb-unpack [--json] [--public-key PEM] SIGNED_IMAGE|LICENCE\n"
           "\n"
           "Shows a package, checks it, and unpacks it: SFI, SFIx, SMI, SFU, SSP, signed "
           "images\n"
           "and licences; of SMU and SSFI files the structure. The kind is told by the content.\n"
           "\n"
           "  --key FILE   check every part with this key (16 bytes)\n"
           "  --out FILE   write what is inside to FILE: the firmware of an SFI as raw binary\n"
           "               (.bin), Intel HEX (.hex) or S-record (.srec, .s19), the section of an\n"
           "               SMI, the firmware of an SFU, the payload of an SSP (0600)\n"
           "  --area N     with --out: write the plain bytes of area N of an SFI alone\n"
           "  --body FILE  the body of an SFU; without it the .sfu beside the .sfuh\n"
           "  --public-key PEM  verify a signed image or a licence with this key\n"
           "  --json       print one JSON object\n"
           "  --help       print this text\n"
           "  --version    print the program's version\n"
           "\n"
           "Exit status: 0 fine; 1 not a package; 2 not authentic, or damaged; 3 wrong usage or\n"
           "a key that can't be used; 4 output failed, or there is nothing to write.\n";
}

}  // namespace unpack
