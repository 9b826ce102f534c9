#include "tools/console/Program.h"

#include "files/base/Wipe.h"
#include "version/Version.h"

#include <getopt.h>

#include <QFile>

#include <algorithm>
#include <charconv>
#include <clocale>
#include <cstdio>
#include <exception>
#include <new>

namespace console
{

using files::ErrorCode;
using files::fail;
using files::Result;

namespace
{

/// Above all letters, so that a long option is told from its short form.
constexpr int kFirstOption = 256;

/// The name that complaints begin with.
const char *g_name = "";

/// The option that getopt has just refused. `optind` isn't past an argument of several letters
/// while one of its first letters is.
std::string refusedOption(char **argv)
{
    const bool isLetter = optopt > 0 && optopt < kFirstOption;
    return isLetter ? "-" + std::string(1, static_cast<char>(optopt)) : argv[optind - 1];
}

int run(int argc, char **argv, const Program &program)
{
    bool wantsHelp = false;
    bool wantsVersion = false;
    std::vector<Option> options = program.options;
    options.push_back({"help", false, [&wantsHelp](const char *) {
                           wantsHelp = true;
                           return Result<void>();
                       }});
    options.push_back({"version", false, [&wantsVersion](const char *) {
                           wantsVersion = true;
                           return Result<void>();
                       }});
    const auto arguments = parseOptions(argc, argv, options);
    if (!arguments) {
        return complain(kUsage, arguments.error().text + " (see --help)");
    }
    if (wantsHelp || wantsVersion) {
        const std::string versionText = std::string(program.name) + " " + version::kText + "\n";
        return print(wantsHelp ? program.help : versionText)
                   ? kFine
                   : complain(kOutputFailed, "standard output can't be written");
    }
    if (program.check) {
        if (const auto fits = program.check(*arguments); !fits) {
            return complain(kUsage, fits.error().text + " (see --help)");
        }
    }
    return program.run(*arguments);
}

}  // namespace

Result<Arguments> parseOptions(int argc, char **argv, std::span<const Option> options)
{
    std::vector<::option> table;
    std::string letters = ":";
    for (const Option &option : options) {
        if (option.letter != 0) {
            letters += option.letter;
            letters += option.takesValue ? ":" : "";
        }
        table.push_back({option.name, option.takesValue ? required_argument : no_argument, nullptr,
                         kFirstOption + static_cast<int>(table.size())});
    }
    table.push_back({nullptr, no_argument, nullptr, 0});
    optind = 0;  // starts anew, also for a second command line in one process
    opterr = 0;
    for (int found = 0;
         (found = ::getopt_long(argc, argv, letters.c_str(), table.data(), nullptr)) != -1;) {
        if (found == ':') {
            return fail(ErrorCode::BadValue, std::string(argv[optind - 1]) + " needs a value");
        }
        const auto option =
            found >= kFirstOption
                ? options.begin() + (found - kFirstOption)
                : std::find_if(options.begin(), options.end(), [found](const Option &each) {
                      return found != '?' && each.letter == found;
                  });
        if (option == options.end()) {
            return fail(ErrorCode::BadValue, "unknown option '" + refusedOption(argv) + "'");
        }
        if (option->takeTwo && optind >= argc) {
            return fail(ErrorCode::BadValue,
                        std::string("--") + option->name + " needs two values");
        }
        const auto taken = option->takeTwo ? option->takeTwo(optarg, argv[optind++])
                                           : option->take(option->takesValue ? optarg : "");
        if (!taken) {
            return tl::unexpected<files::Error>(taken.error());
        }
    }
    return Arguments(argv + optind, argv + argc);
}

Result<std::uint32_t> parseNumber(std::string_view text, std::uint32_t largest)
{
    const bool isHexadecimal = text.starts_with("0x") || text.starts_with("0X");
    const std::string_view digits = isHexadecimal ? text.substr(2) : text;
    const char *const end = digits.data() + digits.size();
    std::uint32_t number = 0;
    const auto [stop, error] = std::from_chars(digits.data(), end, number, isHexadecimal ? 16 : 10);
    if (error != std::errc() || stop != end || number > largest) {
        return fail(ErrorCode::BadValue, "'" + std::string(text) + "' is no number from 0 to " +
                                             std::to_string(largest));
    }
    return number;
}

int runProgram(int argc, char **argv, const Program &program)
{
    g_name = program.complaintWord != nullptr ? program.complaintWord : program.name;
    files::forbidCoreDumps();
    std::setlocale(LC_CTYPE, "");  // file names are in the user's encoding
    // Turned into a name and back such an argument would be another file's name.
    for (int at = 1; at < argc; ++at) {
        if (QFile::encodeName(QFile::decodeName(argv[at])) != argv[at]) {
            return complain(kUsage, "argument " + std::to_string(at) +
                                        " is not text in the encoding of this locale");
        }
    }
    try {
        return run(argc, argv, program);
    } catch (const std::bad_alloc &) {
        return complain(kOutputFailed, "Unable to allocate memory");
    } catch (const std::exception &fault) {
        return complain(kOutputFailed, fault.what());
    }
}

int complain(int status, const std::string &text)
{
    std::fprintf(stderr, "%s: %s\n", g_name, text.c_str());
    return status;
}

bool print(std::string_view text)
{
    return std::fwrite(text.data(), 1, text.size(), stdout) == text.size() &&
           std::fflush(stdout) == 0;
}

}  // namespace console
