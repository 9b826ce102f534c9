#include "CArray.h"
#include "Commands.h"
#include "KeyOption.h"

namespace imgtool
{

namespace
{

struct Choice {
    bool minimal = false;
    bool raw = false;
};

console::Option flag(const char *name, const std::shared_ptr<Choice> &choice, bool Choice::*field)
{
    return {name, false, [choice, field](const char *) {
                (*choice).*field = true;
                return files::Result<void>();
            }};
}

int run(const std::string &path, const Choice &choice)
{
    const auto bytes = readKey(path).and_then([&choice](const crypto::KeyPair &key) {
        return choice.raw ? key.rawPrivate() : key.privateDer(choice.minimal);
    });
    if (!bytes) {
        return console::complain(console::kNotReadable, bytes.error().text);
    }
    return printArray("private_key", choice.raw ? "Private key, raw" : "Private key in DER",
                      bytes->span());
}

}  // namespace

console::Program getprivProgram()
{
    const auto path = std::make_shared<std::string>();
    const auto choice = std::make_shared<Choice>();
    return {.name = "imgtool",
            .help = "Usage: imgtool getpriv [--minimal] [--raw] -k FILE\n"
                    "Prints a private key as a C array (PKCS#8 in DER).\n\n"
                    "  -k, --key FILE   private key, PEM without a pass phrase\n"
                    "      --minimal    without the public half\n"
                    "      --raw        the 32 bytes of the private part alone\n",
            .options = {keyOption(path), flag("minimal", choice, &Choice::minimal),
                        flag("raw", choice, &Choice::raw)},
            .check =
                [path](const console::Arguments &arguments) {
                    return checkAll(arguments, {{"-k", path}});
                },
            .run = [path, choice](const console::Arguments &) { return run(*path, *choice); }};
}

}  // namespace imgtool
