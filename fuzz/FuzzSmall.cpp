// The small readers; the first byte chooses one: a provisioning file, a module image as a record,
// the maker's key. What is taken holds the file's own bytes, all of them.
#include "FuzzFile.h"

#include "crypto/primitives/KeyPair.h"
#include "files/base/ByteCursor.h"
#include "files/containers/ObkReader.h"
#include "files/containers/SmiReader.h"
#include "preparation/ssp/OemKey.h"

#include <algorithm>

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

constexpr void (*kReaders[])(QFile &, Bytes) = {&checkObk, &checkSmi, &checkOemKey};

std::vector<std::uint8_t> seed(std::uint8_t reader, const std::string &text)
{
    std::vector<std::uint8_t> bytes = {reader};
    bytes.insert(bytes.end(), text.begin(), text.end());
    return bytes;
}

}  // namespace

std::vector<std::vector<std::uint8_t>> fuzzSeeds()
{
    return {seed(0, "addrsizewordpayload"), seed(1, "SMIMAGIC and the rest"),
            seed(2, std::string(32, 'h')),
            seed(2, crypto::KeyPair::make("ecdsa-p256")->publicPem().value())};
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
