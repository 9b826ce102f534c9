#pragma once
#include "support/Piece.h"

#include <string>

/// Writers that are plain instead of fast: one `printf` for each field. The real ones must agree.
using PlainImage = std::vector<Piece>;

std::string plainIntelText(const PlainImage &image);
std::string plainSRecordText(const PlainImage &image);
