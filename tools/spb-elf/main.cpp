// spb-elf: post-processing of firmware files, without a window.
#include "Commands.h"

int main(int argc, char **argv)
{
    elf_tool::Options options;
    return console::runProgram(
        argc, argv,
        {.name = "spb-elf",
         .help = elf_tool::helpText(),
         .options = elf_tool::optionTable(options),
         .check =
             [&options](const console::Arguments &words) {
                 return elf_tool::checkTogether(options, words);
             },
         .run = [&options](
                    const console::Arguments &words) { return elf_tool::run(options, words); }});
}
