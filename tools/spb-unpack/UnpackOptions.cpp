#include "UnpackOptions.h"

#include <getopt.h>

#include <charconv>
#include <string_view>

namespace unpack
{

namespace
{

using files::ErrorCode;
using files::fail;
using files::Result;

/// Above all letters, because there are no options of one letter.
enum LongOption { kJson = 256, kKey, kOut, kArea, kHelp, kVersion };

constexpr option kLongOptions[] = {
    {"json", no_argument, nullptr, kJson},     {"key", required_argument, nullptr, kKey},
    {"out", required_argument, nullptr, kOut}, {"area", required_argument, nullptr, kArea},
    {"help", no_argument, nullptr, kHelp},     {"version", no_argument, nullptr, kVersion},
    {nullptr, no_argument, nullptr, 0},
};

Result<std::uint32_t> areaNumber(std::string_view text)
{
    std::uint32_t number = 0;
    const char *const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || stop != end || number == 0) {
        return fail(ErrorCode::BadValue,
                    "--area needs an index from 1 on, not '" + std::string(text) + "'");
    }
    return number;
}

/// The option that getopt has just refused. `optind` isn't past an argument of several letters
/// while one of its first letters is.
std::string refusedOption(char **argv)
{
    const bool isLetter = optopt > 0 && optopt < kJson;
    return isLetter ? "-" + std::string(1, static_cast<char>(optopt)) : argv[optind - 1];
}

/// Options that only make sense together.
Result<Options> checkTogether(Options options)
{
    if (options.help || options.version) {
        return options;
    }
    if (options.image.empty()) {
        return fail(ErrorCode::BadValue, "no image is named");
    }
    if (options.out && !options.key) {
        return fail(ErrorCode::BadValue, "--out needs --key");
    }
    if (options.area && !options.out) {
        return fail(ErrorCode::BadValue, "--area needs --out");
    }
    return options;
}

}  // namespace

Result<Options> parseOptions(int argc, char **argv)
{
    Options options;
    optind = 0;  // starts anew, also for a second command line in one process
    opterr = 0;
    for (int found = 0; (found = getopt_long(argc, argv, ":", kLongOptions, nullptr)) != -1;) {
        switch (found) {
        case kJson:
            options.json = true;
            break;
        case kKey:
            options.key = optarg;
            break;
        case kOut:
            options.out = optarg;
            break;
        case kArea: {
            const auto number = areaNumber(optarg);
            if (!number) {
                return tl::unexpected(number.error());
            }
            options.area = *number;
            break;
        }
        case kHelp:
            options.help = true;
            break;
        case kVersion:
            options.version = true;
            break;
        case ':':
            return fail(ErrorCode::BadValue, std::string(argv[optind - 1]) + " needs a value");
        default:
            return fail(ErrorCode::BadValue, "unknown option '" + refusedOption(argv) + "'");
        }
    }
    if (argc - optind > 1) {
        return fail(ErrorCode::BadValue, "more than one image is named");
    }
    options.image = optind < argc ? argv[optind] : "";
    return checkTogether(std::move(options));
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

const char *versionText()
{
    return "spb-unpack " SPB_VERSION "\n";
}

}  // namespace unpack
