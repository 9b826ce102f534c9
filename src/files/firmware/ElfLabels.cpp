#include "files/firmware/ElfLabels.h"

#include <algorithm>
#include <iterator>

namespace
{

struct Label {
    unsigned long value;
    const char *text;
};

template <std::size_t count>
QString labelOf(const Label (&labels)[count], unsigned long value, const char *other)
{
    const auto *found = std::find_if(std::begin(labels), std::end(labels),
                                     [value](const Label &one) { return one.value == value; });
    return QString::fromLatin1(found != std::end(labels) ? found->text : other);
}

}  // namespace

QString ELFtype(unsigned short type)
{
    constexpr Label kLabels[] = {
        {1, "Relocatable"}, {2, "Executable"}, {3, "Shared object"}, {4, "Core"}};
    return labelOf(kLabels, type, "Not specified");
}

QString ELFmachine(unsigned short machine)
{
    constexpr Label kLabels[] = {{2, "SPARC"},    {3, "x86"},           {8, "MIPS"},
                                 {20, "PowerPC"}, {40, "ARM"},          {42, "SuperH"},
                                 {50, "IA-64"},   {62, "x86-64 (x64)"}, {183, "AArch64"}};
    return labelOf(kLabels, machine, "No specific instruction set");
}

QString secType(unsigned int type)
{
    constexpr Label kLabels[] = {{0, "NULL"},        {1, "PROGBITS"},     {2, "SYMTAB"},
                                 {3, "STRTAB"},      {4, "RELA"},         {5, "HASH"},
                                 {6, "DYNAMIC"},     {7, "NOTE"},         {8, "NOBITS"},
                                 {9, "REL"},         {10, "SHLIB"},       {11, "DYNSYM"},
                                 {14, "INIT_ARRAY"}, {15, "FINI_ARRAY"},  {16, "PREINIT_ARRAY"},
                                 {17, "GROUP"},      {18, "SYMTAB_SHNDX"}};
    return labelOf(kLabels, type, "No specific information");
}

QString secFlag(unsigned long flags)
{
    constexpr Label kLabels[] = {{0, "none"},          {1, "WRITE"}, {2, "ALLOC"},
                                 {3, "WRITE + ALLOC"}, {4, "EXEC"},  {6, "EXEC + ALLOC"}};
    return labelOf(kLabels, flags, "Processor specific");
}
