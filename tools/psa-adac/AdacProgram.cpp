#include "AdacProgram.h"

#include "Commands.h"

#include <memory>

namespace adac
{

namespace
{

using console::Arguments;
using files::Result;

const char *const kHelp =
    "Usage: PSA_ADAC sign DESCRIPTION\n"
    "       PSA_ADAC chain -o OUT CERTIFICATE...\n"
    "       PSA_ADAC show [--json] FILE...\n"
    "Signs debug-authentication certificates (P-256), joins them to chains and shows them.\n"
    "\n"
    "  sign       signs what DESCRIPTION tells and writes the file that it names, with .cert\n"
    "  chain      checks each certificate against the one before, writes a Base64 text\n"
    "  show       prints certificates and chains, binary or text\n"
    "\n"
    "  -o, --out FILE  the file that chain writes\n"
    "      --json      prints JSON instead of tables\n"
    "      --help      prints this text\n"
    "      --version   prints the version\n"
    "\n"
    "Exit status: 0, or 1 after one line on standard error.\n";

struct Options {
    std::string out;
    bool json = false;
};

/// A command takes so many files, and some of the options.
Result<void> check(const Options &options, const Arguments &arguments)
{
    const std::string command = arguments.empty() ? "" : arguments[0];
    const auto refuse = [](const std::string &why) {
        return files::fail(files::ErrorCode::BadValue, why);
    };
    if (command != "sign" && command != "chain" && command != "show") {
        return refuse("name a command: sign, chain or show");
    }
    if (arguments.size() < 2 || (command == "sign" && arguments.size() > 2)) {
        return refuse(command == "sign" ? "sign takes one description"
                                        : command + " needs a certificate file");
    }
    if ((command == "chain") == options.out.empty()) {
        return refuse(command == "chain" ? "chain needs -o" : "-o is for chain alone");
    }
    if (options.json && command != "show") {
        return refuse("--json is for show alone");
    }
    return {};
}

int fail(const files::Error &error)
{
    return console::complain(console::kNotReadable, error.text);
}

int printed(const std::string &text)
{
    return console::print(text)
               ? static_cast<int>(console::kFine)
               : console::complain(console::kNotReadable, "standard output can't be written");
}

int run(const Options &options, const Arguments &arguments)
{
    const adac::Paths files(arguments.begin() + 1, arguments.end());
    if (arguments[0] == "sign") {
        const auto written = adac::sign(files[0]);
        return written ? printed("Writing certificate file " + *written + "\n")
                       : fail(written.error());
    }
    if (arguments[0] == "chain") {
        const auto made = adac::chain(options.out, files);
        return made ? static_cast<int>(console::kFine) : fail(made.error());
    }
    const auto shown = adac::show(files, options.json);
    return shown ? printed(*shown) : fail(shown.error());
}

}  // namespace

console::Program program()
{
    const auto options = std::make_shared<Options>();
    return {.name = "PSA_ADAC",
            .help = kHelp,
            .options = {{.name = "out",
                         .takesValue = true,
                         .take = [options](const char *value) -> Result<void> {
                             options->out = value;
                             return {};
                         },
                         .letter = 'o'},
                        {.name = "json",
                         .take = [options](const char *) -> Result<void> {
                             options->json = true;
                             return {};
                         }}},
            .check = [options](const Arguments &arguments) { return check(*options, arguments); },
            .run = [options](const Arguments &arguments) { return run(*options, arguments); },
            // The program that calls this tool looks for the word.
            .complaintWord = "error"};
}

}  // namespace adac
