#include "UnpackOptions.h"

#include "AreaExtract.h"

namespace unpack
{

using console::Option;
using files::ErrorCode;
using files::fail;
using files::Result;

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
    if (options.out && !options.area && !isFirmwareName(*options.out)) {
        return fail(ErrorCode::BadValue,
                    "the name after --out must end in .bin, .hex, .srec or .s19");
    }
    return {};
}

const char *helpText()
{
    return "Usage: spb-unpack [--json] [--key FILE [--out FILE [--area N]]] IMAGE\n"
           "\n"
           "Shows the areas of a protected image (.sfi, .sfix), checks them, and unpacks them.\n"
           "\n"
           "  --key FILE   check every area with this key (16 bytes)\n"
           "  --out FILE   write the firmware areas to FILE, as raw binary (.bin),\n"
           "               Intel HEX (.hex) or S-record (.srec, .s19)\n"
           "  --area N     with --out: write the plain bytes of area N alone\n"
           "  --json       print the areas as JSON\n"
           "  --help       print this text\n"
           "  --version    print the program's version\n"
           "\n"
           "Exit status: 0 fine; 1 not an image; 2 not authentic, or damaged; 3 wrong usage or\n"
           "a key that isn't 16 bytes; 4 output failed, or there is no firmware to write.\n";
}

}  // namespace unpack
