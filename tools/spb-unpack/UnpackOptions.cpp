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

constexpr option kLongOptions[] = {
    {"json", no_argument, nullptr, 'j'},      {"key", required_argument, nullptr, 'k'},
    {"out", required_argument, nullptr, 'o'}, {"area", required_argument, nullptr, 'a'},
    {"help", no_argument, nullptr, 'h'},      {"version", no_argument, nullptr, 'v'},
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
    for (int letter = 0; (letter = getopt_long(argc, argv, ":", kLongOptions, nullptr)) != -1;) {
        switch (letter) {
        case 'j':
            options.json = true;
            break;
        case 'k':
            options.key = optarg;
            break;
        case 'o':
            options.out = optarg;
            break;
        case 'a': {
            const auto number = areaNumber(optarg);
            if (!number) {
                return tl::unexpected(number.error());
            }
            options.area = *number;
            break;
        }
        case 'h':
            options.help = true;
            break;
        case 'v':
            options.version = true;
            break;
        case ':':
            return fail(ErrorCode::BadValue, std::string(argv[optind - 1]) + " needs a value");
        default:
            return fail(ErrorCode::BadValue,
                        "unknown option '" + std::string(argv[optind - 1]) + "'");
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
