#include "preparation/boot/BootRecord.h"

namespace preparation
{

namespace
{

using Bytes = std::vector<std::uint8_t>;

/// Kinds of CBOR values, in the highest three bits of their first byte.
enum class Major : std::uint8_t { Number = 0, String = 2, Text = 3, Map = 5 };

/// Keys of a software component.
enum class Key : std::uint8_t { Role = 1, Value = 2, Version = 4, Signer = 5, Description = 6 };

/// @param number  below 256
void appendHead(Bytes &out, Major major, std::size_t number)
{
    constexpr std::size_t kInFirstByte = 24;
    const auto kind = static_cast<std::uint8_t>(static_cast<unsigned>(major) << 5U);
    if (number < kInFirstByte) {
        out.push_back(static_cast<std::uint8_t>(kind | number));
        return;
    }
    out.push_back(static_cast<std::uint8_t>(kind | kInFirstByte));
    out.push_back(static_cast<std::uint8_t>(number));
}

void appendKey(Bytes &out, Key key)
{
    appendHead(out, Major::Number, static_cast<std::size_t>(key));
}

void appendText(Bytes &out, Key key, std::string_view text)
{
    appendKey(out, key);
    appendHead(out, Major::Text, text.size());
    out.insert(out.end(), text.begin(), text.end());
}

void appendDigest(Bytes &out, Key key, const crypto::Digest &digest)
{
    appendKey(out, key);
    appendHead(out, Major::String, digest.size());
    out.insert(out.end(), digest.begin(), digest.end());
}

}  // namespace

std::vector<std::uint8_t> encodeBootRecord(std::string_view role, const BootVersion &version,
                                           const crypto::Digest &signerId)
{
    constexpr std::size_t kEntries = 5;
    Bytes record;
    appendHead(record, Major::Map, kEntries);
    appendText(record, Key::Role, role);
    appendText(record, Key::Version,
               std::to_string(version.major) + "." + std::to_string(version.minor) + "." +
                   std::to_string(version.revision));
    appendDigest(record, Key::Signer, signerId);
    appendText(record, Key::Description, "SHA256");
    appendDigest(record, Key::Value, {});
    return record;
}

}  // namespace preparation
