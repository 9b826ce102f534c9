#pragma once
#include "preparation/smi/ElfImage.h"

namespace preparation
{

/// What is to be in no segment any more: the addresses and the file bytes of a section.
struct ElfHole {
    files::Range addresses;
    FileRange bytes;
};

/// Takes a hole out of all segments: those that cover it are split, shortened or dropped. A segment
/// that isn't loaded keeps its first part only, as there may be just one of its kind. The parts
/// stay where they are in the file, so their offsets still go with their addresses.
void cutSegments(std::vector<Elf32_Phdr> &segments, const ElfHole &hole);

/// Splits segments that load the file's head: what they load of it moves to the file's end, as the
/// head itself is about to change.
void detachHead(ElfImage &image);

/// Whether two files load the same: every byte of `before` outside the hole, and nothing else, in
/// order, at the same physical and virtual address.
bool loadSame(const ElfImage &before, const ElfImage &after, const ElfHole &hole);

}  // namespace preparation
