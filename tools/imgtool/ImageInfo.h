#pragma once
#include "preparation/boot/BootFormat.h"
#include "preparation/boot/BootVerifier.h"

#include <functional>
#include <string>

namespace imgtool
{

/// The image's fields and values as YAML, each value in hexadecimal and, where it has a meaning of
/// its own, in words.
std::string imageInfo(const preparation::BootImage &image);

/// What a check found, for people.
std::string verdictText(const preparation::BootImage &image,
                        const preparation::BootVerdict &verdict);

/// Reads an image file, cuts it into its parts and hands them to `use`.
/// @return what `use` gives; or a sentence with the file's name
files::Result<std::string>
withImage(const std::string &path,
          const std::function<files::Result<std::string>(const preparation::BootImage &)> &use);

}  // namespace imgtool
