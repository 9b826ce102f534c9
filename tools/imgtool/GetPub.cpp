#include "CArray.h"
#include "Commands.h"
#include "KeyOption.h"

namespace imgtool
{

console::Program getpubProgram()
{
    const auto path = std::make_shared<std::string>();
    return {.name = "imgtool",
            .help = "Usage: imgtool getpub -k FILE\n"
                    "Prints the public half of a private key as a C array (SubjectPublicKeyInfo in "
                    "DER).\n\n"
                    "  -k, --key FILE   private key, PEM without a pass phrase\n",
            .options = {keyOption(path)},
            .check =
                [path](const console::Arguments &arguments) {
                    return checkAll(arguments, {{"-k", path}});
                },
            .run =
                [path](const console::Arguments &) {
                    const auto der =
                        readKey(*path).and_then([](const auto &key) { return key.publicDer(); });
                    return der ? printArray("public_key", "Public key in DER", *der)
                               : console::complain(console::kNotReadable, der.error().text);
                }};
}

}  // namespace imgtool
