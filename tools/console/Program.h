#pragma once
#include "files/base/Result.h"

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace console
{

/// Exit statuses of all companions.
enum Status {
    kFine = 0,
    kNotReadable = 1,   ///< an input can't be read or isn't of its format
    kNotAuthentic = 2,  ///< a check of the input's content failed
    kUsage = 3,         ///< the command line is wrong, or a key that it names
    kOutputFailed = 4,  ///< a file or standard output couldn't be written
};

/// A long option ("--key"), some with a short form of one letter ("-k").
struct Option {
    const char *name = nullptr;  ///< without the dashes
    bool takesValue = false;     ///< "--name VALUE" or "--name=VALUE"
    /// Keeps the value (empty without one), in the system's encoding. @return BadValue with a
    /// sentence for the user
    std::function<files::Result<void>(const char *value)> take = {};
    char letter = 0;  ///< the short form; 0: none
    /// In place of `take`, of an option that takes two values: "--name FIRST SECOND".
    std::function<files::Result<void>(const char *first, const char *second)> takeTwo = {};
};

/// The command line without its options.
using Arguments = std::vector<std::string>;

/// Hands each option to its taker, in their order.
/// @return what is no option, wherever it stands; BadValue with a sentence for the user
files::Result<Arguments> parseOptions(int argc, char **argv, std::span<const Option> options);

/// A whole number: "0x" hexadecimal, otherwise decimal.
/// @return BadValue when the text is anything else or the value is above `largest`
files::Result<std::uint32_t> parseNumber(std::string_view text, std::uint32_t largest = UINT32_MAX);

/// A companion program. `--help` and `--version` are its options without a word about them.
struct Program {
    const char *name = nullptr;
    const char *help = nullptr;  ///< the whole text of --help
    std::vector<Option> options = {};
    /// Looks at options that only make sense together. @return BadValue with a sentence
    std::function<files::Result<void>(const Arguments &)> check = {};
    std::function<int(const Arguments &)> run = {};  ///< @return the exit status
    /// What complaints begin with; null: the name. For tools whose callers look for a fixed word.
    const char *complaintWord = nullptr;
};

/// All of main(): locale, options, questions, `run`, and what it throws.
/// @return the exit status
int runProgram(int argc, char **argv, const Program &program);

/// One line on standard error, "name: text", with the name (or word) of the program that runs.
/// @return `status`
int complain(int status, const std::string &text);

/// Writes to standard output. @return false when it couldn't take it all
bool print(std::string_view text);

}  // namespace console
