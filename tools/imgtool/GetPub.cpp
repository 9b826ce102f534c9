#include "CArray.h"
#include "Commands.h"
#include "KeyOption.h"

namespace imgtool
{

console::Program getpubProgram()
{
    const auto path = std::make_shared<std::string>();
    const auto phrase = std::make_shared<PassPhrase>();
    std::vector<console::Option> options = PassPhrase::options(phrase);
    options.push_back(keyOption(path));
    return {.name = "imgtool",
            .help = "Usage: imgtool getpub -k FILE\n"
                    "Prints the public half of a private key as a C array (SubjectPublicKeyInfo in "
                    "DER).\n\n"
                    "  -k, --key FILE        private key (PEM)\n"
                    "      --pass-file FILE  its pass phrase: the first line of a file\n"
                    "      --pass-fd N       its pass phrase, from an open descriptor\n",
            .options = std::move(options),
            .check =
                [path](const console::Arguments &arguments) {
                    return checkAll(arguments, {{"-k", path}});
                },
            .run =
                [path, phrase](const console::Arguments &) {
                    const auto der = readKey(*path, *phrase).and_then([](const auto &key) {
                        return key.publicDer();
                    });
                    return der ? printArray("public_key", "Public key in DER", *der)
                               : console::complain(console::kNotReadable, der.error().text);
                }};
}

}  // namespace imgtool
