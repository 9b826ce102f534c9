#pragma once
#include "support/Piece.h"

#include <string>

/// A reader of Intel HEX and S-record text that is plain instead of fast: one character after the
/// other, a growing vector for each segment. The fast reader must agree with it on every input.
struct PlainHexResult {
    std::uint32_t line = 0;       ///< of the fault
    std::string fault;            ///< Latin-1; empty when the text was read
    std::vector<Piece> segments;  ///< in the order of the text
};

PlainHexResult plainHexText(const std::vector<std::uint8_t> &text);
