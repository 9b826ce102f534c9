#pragma once
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

/// Writers that are plain instead of fast: one `printf` for each field. The real ones must agree.
using PlainImage = std::vector<std::pair<std::uint32_t, std::vector<std::uint8_t>>>;

std::string plainIntelText(const PlainImage &image);
std::string plainSRecordText(const PlainImage &image);
