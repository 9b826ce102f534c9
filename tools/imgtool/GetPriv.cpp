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

int run(const std::string &path, PassPhrase &phrase, const Choice &choice)
{
    const auto bytes = readKey(path, phrase).and_then([&choice](const crypto::KeyPair &key) {
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
    const auto phrase = std::make_shared<PassPhrase>();
    std::vector<console::Option> options = PassPhrase::options(phrase);
    options.push_back(keyOption(path));
    options.push_back(flag("minimal", choice, &Choice::minimal));
    options.push_back(flag("raw", choice, &Choice::raw));
    return {.name = "imgtool",
            .help = "Usage: imgtool getpriv [--minimal] [--raw] -k FILE\n"
                    "Prints a private key as a C array (PKCS#8 in DER).\n\n"
                    "  -k, --key FILE        private key (PEM)\n"
                    "      --minimal         without the public half\n"
                    "      --raw             the 32 bytes of the private part alone\n"
                    "      --pass-file FILE  its pass phrase: the first line of a file\n"
                    "      --pass-fd N       its pass phrase, from an open descriptor\n",
            .options = std::move(options),
            .check =
                [path](const console::Arguments &arguments) {
                    return checkAll(arguments, {{"-k", path}});
                },
            .run = [=](const console::Arguments &) { return run(*path, *phrase, *choice); }};
}

}  // namespace imgtool
