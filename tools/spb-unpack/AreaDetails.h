#pragma once
#include "preparation/ImageOpener.h"

#include <optional>
#include <string>
#include <vector>

namespace unpack
{

using preparation::ByteView;

/// One named value out of an area's plain bytes.
struct Field {
    std::string name;   ///< key in JSON
    std::string title;  ///< column of the table
    std::uint32_t number = 0;
    std::optional<std::string> text;  ///< stands in place of the number where it is there
    bool hexadecimal = false;
};

/// What the plain bytes of one area say about themselves.
struct Details {
    std::string heading;  ///< of the table that lists areas of this kind; empty for none
    std::vector<Field> fields;
};

/// Reads the head of a module, the head of an SMI file, the trailer of external firmware, or the
/// part of a pause or resume. Bytes too short for their structure give no fields.
Details detailsOf(std::uint8_t letter, ByteView plain);

}  // namespace unpack
