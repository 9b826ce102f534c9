#pragma once
#include "files/base/Result.h"
#include "files/firmware/StagedSegment.h"

#include <QFile>

#include <cstdint>
#include <vector>

namespace files
{

/// Why a text file was refused.
struct TextFault {
    std::uint32_t line = 0;  ///< from 1; 0 when no line is to blame
    Error error;
};

/// Reads Intel HEX or S-record text from an open file to its end, in pieces, so that the text never
/// stands in memory whole.
/// @return segments in the order of the text; or the line and the reason
tl::expected<std::vector<OwnedSegment>, TextFault> readHexText(QFile &file);

}  // namespace files
