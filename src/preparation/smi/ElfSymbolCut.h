#pragma once
#include "preparation/smi/ElfImage.h"

namespace preparation
{

/// Takes the local symbols of one section out of every symbol table that isn't loaded, with their
/// names, and renumbers what refers to the symbols behind them. Global symbols stay.
void removeLocalSymbols(ElfImage &image, std::size_t sectionIndex);

}  // namespace preparation
