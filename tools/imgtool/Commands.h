#pragma once
#include "tools/console/Program.h"

#include <span>

namespace imgtool
{

/// One subcommand: a file of its own and an entry in the table.
struct Command {
    const char *name;
    const char *summary;            ///< for the tool's own --help
    console::Program (*program)();  ///< its options and what it does
};

/// All subcommands, in the order of the help text.
std::span<const Command> commands();

console::Program keygenProgram();
console::Program getpubProgram();
console::Program getprivProgram();
console::Program createProgram();
console::Program verifyProgram();
console::Program dumpInfoProgram();

/// Prints a text. @return the exit status
int printText(const std::string &text);

/// All of main(): finds the subcommand in the first argument.
/// @return 0, or 1 after one line on standard error
int runImgtool(int argc, char **argv);

}  // namespace imgtool
