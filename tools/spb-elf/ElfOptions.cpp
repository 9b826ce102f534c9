#include "ElfOptions.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace elf_tool
{

using console::Option;
using files::ErrorCode;
using files::fail;
using files::Result;

namespace
{

Option number(const char *name, std::optional<std::uint32_t> &out,
              std::uint32_t largest = UINT32_MAX)
{
    return {name, true, [name, &out, largest](const char *value) -> Result<void> {
                const auto parsed = console::parseNumber(value, largest);
                if (!parsed) {
                    return fail(ErrorCode::BadValue,
                                std::string("--") + name + ": " + parsed.error().text);
                }
                out = *parsed;
                return {};
            }};
}

Option text(const char *name, std::optional<std::string> &out)
{
    return {name, true, [name, &out](const char *value) -> Result<void> {
                if (*value == '\0') {
                    return fail(ErrorCode::BadValue, std::string("--") + name + " is empty");
                }
                out = value;
                return {};
            }};
}

/// An option that some commands need, some may have, and the others have no use for.
struct Use {
    const char *option;
    bool isGiven;
    std::string_view neededBy;
    std::string_view allowedIn = {};
};

std::vector<Use> usesOf(const Options &given)
{
    return {{"--flash-start", given.flashStart.has_value(), "crc"},
            {"--flash-end", given.flashEnd.has_value(), "crc"},
            {"--slice", given.slice.has_value(), "crc"},
            {"--address", given.address.has_value(), "add-segment"},
            {"--data", given.data.has_value(), "add-segment"},
            {"--name", given.name.has_value(), "add-segment"},
            {"--secure", given.secure.has_value(), "merge-secure"},
            {"--header", given.header.has_value(), "merge-secure"},
            {"--padding", given.padding.has_value(), "", "crc add-segment"}};
}

}  // namespace

std::vector<Option> optionTable(Options &out)
{
    return {{"dry-run", false,
             [&out](const char *) -> Result<void> {
                 out.isDryRun = true;
                 return {};
             }},
            number("flash-start", out.flashStart),
            number("flash-end", out.flashEnd),
            number("slice", out.slice),
            number("padding", out.padding, UINT8_MAX),
            number("address", out.address),
            text("data", out.data),
            text("name", out.name),
            text("secure", out.secure),
            text("header", out.header)};
}

Result<void> checkTogether(const Options &options, const console::Arguments &words)
{
    constexpr std::array<std::string_view, 3> kCommands = {"crc", "add-segment", "merge-secure"};
    if (words.empty() ||
        std::find(kCommands.begin(), kCommands.end(), words.front()) == kCommands.end()) {
        return fail(ErrorCode::BadValue, words.empty() ? "no command is named"
                                                       : "'" + words.front() + "' is no command");
    }
    const std::string &command = words.front();
    if (words.size() != 2) {
        return fail(ErrorCode::BadValue,
                    command + (words.size() < 2 ? " needs a file" : " takes one file"));
    }
    for (const Use &use : usesOf(options)) {
        if (use.neededBy == command && !use.isGiven) {
            return fail(ErrorCode::BadValue, command + " needs " + use.option);
        }
        if (use.isGiven && use.neededBy != command &&
            use.allowedIn.find(command) == std::string_view::npos) {
            return fail(ErrorCode::BadValue, command + " has no use for " + use.option);
        }
    }
    return {};
}

const char *helpText()
{
    return "Usage: spb-elf crc --flash-start A --flash-end B --slice N [--padding P] [--dry-run] "
           "FILE\n"
           "       spb-elf add-segment --data FILE --address A --name TEXT [--padding P]\n"
           "               [--dry-run] ELF\n"
           "       spb-elf merge-secure --secure ELF --header FILE [--dry-run] ELF\n"
           "\n"
           "Changes a firmware file in place, whole or not at all.\n"
           "\n"
           "crc           puts a table of CRC-32 sums, one for each slice of the flash range, at\n"
           "              the range's top; FILE is a binary, Intel HEX, S-record or ELF file\n"
           "add-segment   adds a section with a loadable segment of its own\n"
           "merge-secure  adds the segments of a secure boot, and a header (binary) right ahead\n"
           "              of the second segment of the user application ELF\n"
           "\n"
           "  --flash-start A  first address of the flash range; a binary starts there\n"
           "  --flash-end B    one past its last address\n"
           "  --slice N        bytes that each sum covers; must divide the range\n"
           "  --data FILE      what the new segment holds\n"
           "  --address A      where it is loaded to\n"
           "  --name TEXT      name of its section\n"
           "  --secure ELF     the secure boot\n"
           "  --header FILE    the header, a binary\n"
           "  --padding P      byte that fills free places of an ELF file, by default 0\n"
           "  --dry-run        show in a table what would change, write nothing\n"
           "  --help           print this text\n"
           "  --version        print the program's version\n"
           "\n"
           "Numbers are decimal, or hexadecimal behind 0x.\n"
           "\n"
           "Exit status: 0 fine, also when nothing lies in the range; 1 an input can't be read or\n"
           "isn't of its format; 2 a check refused the change; 3 wrong usage; 4 the output "
           "failed;\n"
           "254 the file of crc is read-only.\n";
}

}  // namespace elf_tool
