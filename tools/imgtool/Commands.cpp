#include "Commands.h"

#include <string>

namespace imgtool
{

namespace
{

constexpr Command kCommands[] = {
    {"keygen", "make a key pair", &keygenProgram},
    {"getpub", "print the public half of a key as a C array", &getpubProgram},
    {"getpriv", "print a private key as a C array", &getprivProgram},
    {"create", "make a boot image out of firmware", &createProgram},
    {"sign", "the same", &createProgram},
    {"verify", "check a boot image", &verifyProgram},
    {"dumpinfo", "print what a boot image holds", &dumpInfoProgram},
};

std::string helpText()
{
    std::string text =
        "Usage: imgtool COMMAND [OPTION]...\n"
        "Makes keys and prints them, makes boot images and checks them.\n\nCommands:\n";
    for (const Command &command : commands()) {
        std::string name = command.name;
        name.resize(10, ' ');
        text += "  " + name + command.summary + "\n";
    }
    return text + "\nimgtool COMMAND --help tells about a command.\n"
                  "The exit status is 0, or 1 after a line on standard error.\n";
}

console::Program ownProgram(const std::string &help)
{
    return {.name = "imgtool",
            .help = help.c_str(),
            .check = [](const console::Arguments &arguments) -> files::Result<void> {
                return files::fail(files::ErrorCode::BadValue,
                                   arguments.empty() ? "a command is missing"
                                                     : "'" + arguments[0] + "' is no command");
            },
            .run = [](const console::Arguments &) { return int(console::kFine); }};
}

}  // namespace

std::span<const Command> commands()
{
    return kCommands;
}

int printText(const std::string &text)
{
    return console::print(text)
               ? static_cast<int>(console::kFine)
               : console::complain(console::kOutputFailed, "standard output can't be written");
}

int runImgtool(int argc, char **argv)
{
    for (const Command &command : commands()) {
        if (argc > 1 && std::string_view(argv[1]) == command.name) {
            // Who runs the tool tells failures by the status 1 alone.
            return console::runProgram(argc - 1, argv + 1, command.program()) == 0 ? 0 : 1;
        }
    }
    const std::string help = helpText();
    return console::runProgram(argc, argv, ownProgram(help)) == 0 ? 0 : 1;
}

}  // namespace imgtool
