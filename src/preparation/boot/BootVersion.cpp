#include "preparation/boot/BootVersion.h"

#include <charconv>
#include <limits>

namespace preparation
{

using files::ErrorCode;
using files::fail;
using files::Result;

namespace
{

/// Takes a decimal number off the front. @return false when there is none that fits
template <typename Number>
bool takeNumber(std::string_view &text, Number &out)
{
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), out);
    if (error != std::errc()) {
        return false;
    }
    text.remove_prefix(static_cast<std::size_t>(stop - text.data()));
    return true;
}

bool takeChar(std::string_view &text, char c)
{
    if (text.empty() || text.front() != c) {
        return false;
    }
    text.remove_prefix(1);
    return true;
}

void skipBlanks(std::string_view &text)
{
    while (takeChar(text, ' ')) {
    }
}

bool takeVersion(std::string_view &text, BootVersion &out)
{
    if (!takeNumber(text, out.major) || (takeChar(text, '.') && !takeNumber(text, out.minor))) {
        return false;
    }
    return !(takeChar(text, '.') && !takeNumber(text, out.revision)) &&
           !(takeChar(text, '+') && !takeNumber(text, out.build));
}

bool takeDependency(std::string_view &text, BootDependency &out)
{
    if (!takeChar(text, '(')) {
        return false;
    }
    skipBlanks(text);
    if (!takeNumber(text, out.image)) {
        return false;
    }
    skipBlanks(text);
    if (!takeChar(text, ',')) {
        return false;
    }
    skipBlanks(text);
    if (!takeVersion(text, out.version)) {
        return false;
    }
    skipBlanks(text);
    return takeChar(text, ')');
}

}  // namespace

Result<BootVersion> parseBootVersion(std::string_view text)
{
    BootVersion version;
    std::string_view rest = text;
    if (!takeVersion(rest, version) || !rest.empty()) {
        return fail(ErrorCode::BadValue,
                    "'" + std::string(text) +
                        "' is no version such as 1.2.3+4 (255.255.65535+4294967295 at most)");
    }
    return version;
}

std::string toText(const BootVersion &version)
{
    return std::to_string(version.major) + "." + std::to_string(version.minor) + "." +
           std::to_string(version.revision) + "+" + std::to_string(version.build);
}

Result<std::vector<BootDependency>> parseBootDependencies(std::string_view text)
{
    std::vector<BootDependency> list;
    std::string_view rest = text;
    for (skipBlanks(rest); !rest.empty(); skipBlanks(rest)) {
        BootDependency dependency;
        if (!takeDependency(rest, dependency)) {
            return fail(ErrorCode::BadValue,
                        "'" + std::string(text) +
                            "' is no list of dependencies such as (0, 1.2.3+4)(1, 2.0.0)");
        }
        list.push_back(dependency);
        skipBlanks(rest);
        takeChar(rest, ',');
    }
    return list;
}

std::uint32_t securityCounterOf(const BootVersion &version)
{
    return std::uint32_t{version.major} << 24 | std::uint32_t{version.minor} << 16 |
           version.revision;
}

}  // namespace preparation
