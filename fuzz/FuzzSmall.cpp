// The small readers; the first byte chooses one: a provisioning file, a module image as a record,
// the maker's key, raw binary, the two passwords for failure analysis. What is taken holds the
// file's own bytes, all of them.
#include "FuzzFile.h"

#include "crypto/primitives/KeyPair.h"
#include "files/base/ByteCursor.h"
#include "files/containers/ObkReader.h"
#include "files/containers/SmiReader.h"
#include "files/firmware/BinaryReader.h"
#include "preparation/ssp/OemKey.h"
#include "preparation/ssp/RmaPassword.h"

#include <algorithm>
#include <optional>

namespace
{

using Bytes = std::span<const std::uint8_t>;

void checkSegment(const FileData &record, Bytes expected)
{
    require(record.segments.size() == 1 && record.segments[0].size == expected.size());
    require(std::equal(expected.begin(), expected.end(), record.segments[0].data));
}

void checkObk(QFile &file, Bytes bytes)
{
    const auto record = files::readObk(file);
    require(record ? bytes.size() >= 12 : bytes.size() <= 12);
    if (record) {
        files::ByteCursor in(bytes);
        require((*record)->obkAddress == in.u32le() && (*record)->obkSize == in.u32le());
        require((*record)->obkWord3 == in.u32le());
        checkSegment(**record, bytes.subspan(12));
    }
}

void checkSmi(QFile &file, Bytes bytes)
{
    const auto record = files::readSmi(file);
    require(record || !record.error().text.empty());
    if (record) {
        checkSegment(**record, bytes);
    }
}

void checkOemKey(QFile &file, Bytes bytes)
{
    const auto key = preparation::readOemKey(QStringLiteral("/proc/self/fd/%1").arg(file.handle()));
    require(key || (!key.error().text.empty() && bytes.size() != 32));
    if (key && bytes.size() == 32) {
        require(key->kind == preparation::kOemTableHash && std::ranges::equal(key->digest, bytes));
    } else if (key) {
        require(key->kind == preparation::kOemPublicKey && bytes.size() == 178);
    }
}

/// Position and size in front, then the file.
void checkBinary(QFile &file, Bytes bytes)
{
    files::ByteCursor in(bytes);
    const std::uint32_t position = in.u32le();
    const std::uint32_t size = in.u32le();
    const std::uint64_t wanted = size != 0 ? size : bytes.size();
    const auto record = files::readBinary(file, position, size);
    require(record.has_value() == (wanted == 0 || position + wanted <= bytes.size()));
    if (record) {
        checkSegment(**record, wanted == 0 ? Bytes() : bytes.subspan(position, wanted));
    } else {
        require(record.error().text == "Error while reading the file");
    }
}

/// A number as it may be typed, read by the C library; none for another text, or 0x8000 and more.
std::optional<std::uint32_t> plainPassword(const std::string &text)
{
    const bool isHex = text.size() > 2 && (text.starts_with("0x") || text.starts_with("0X")) &&
                       text.find_first_not_of("0123456789abcdefABCDEF", 2) == std::string::npos;
    const std::uint64_t value = isHex ? std::strtoull(text.c_str(), nullptr, 16) : UINT64_MAX;
    return value < 0x8000 ? std::optional(static_cast<std::uint32_t>(value)) : std::nullopt;
}

QString latin1(const std::string &text)
{
    return QString::fromLatin1(text.data(), static_cast<int>(text.size()));
}

/// Both passwords, with a line feed between them.
void checkPasswords(QFile &, Bytes bytes)
{
    const std::string all(bytes.begin(), bytes.end());
    const std::size_t cut = std::min(all.find('\n'), all.size());
    const std::string one = all.substr(0, cut);
    const std::string other = all.substr(std::min(cut + 1, all.size()));
    const auto low = plainPassword(one);
    const auto high = plainPassword(other);
    const auto joined = preparation::joinRmaPasswords(latin1(one), latin1(other));
    require(joined.has_value() == (low && high));
    require(!joined || *joined == (*low | *high << 16));
}

constexpr void (*kReaders[])(QFile &, Bytes) = {&checkObk, &checkSmi, &checkOemKey, &checkBinary,
                                                &checkPasswords};

std::vector<std::uint8_t> seed(std::uint8_t reader, const std::string &text)
{
    std::vector<std::uint8_t> bytes = {reader};
    bytes.insert(bytes.end(), text.begin(), text.end());
    return bytes;
}

}  // namespace

std::vector<std::vector<std::uint8_t>> fuzzSeeds()
{
    return {seed(0, "addrsizewordpayload"),
            seed(1, "SMIMAGIC and the rest"),
            seed(2, std::string(32, 'h')),
            seed(2, crypto::KeyPair::make("ecdsa-p256")->publicPem().value()),
            seed(3, std::string("\4\0\0\0\3\0\0\0raw bytes", 17)),
            seed(3, std::string("\0\0\0\0\0\0\0\0raw bytes", 17)),
            seed(4, "0x7FFF\n0x12")};
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size > 0) {
        const Bytes bytes(data + 1, size - 1);
        FuzzFile file(QStringLiteral("a"), bytes);
        file.seek(0);
        kReaders[data[0] % std::size(kReaders)](file, bytes);
    }
    return 0;
}
