// Images and module files as their readers see them, without a key.
#include "corruption/Harness.h"

#include "files/base/FileReader.h"
#include "files/base/LittleEndian.h"
#include "files/containers/ObkReader.h"
#include "files/containers/SfiReader.h"
#include "files/containers/SmiReader.h"
#include "files/containers/SmuReader.h"
#include "support/SfiBytes.h"

namespace corruption
{

namespace
{

using View = std::span<const std::uint8_t>;

template <auto Read>
std::optional<std::string> readImage(View file)
{
    const auto image = Read(file);
    if (!image) {
        return std::nullopt;
    }
    Content content;
    content.add(View((*image)->header, (*image)->headerSize)).add((*image)->version);
    content.add((*image)->imageVersion).add(View((*image)->nonce, (*image)->nonceSize));
    for (const SegmentSFI &area : (*image)->areas) {
        content.add(area.areaType)
            .add(area.address)
            .add(View(area.areaHeader, area.areaHeaderSize));
        content.add(View(area.tag, area.tagSize)).add(View(area.data, area.size));
    }
    return content.done();
}

/// @param versions  accept list of the format version
Seed imageSeed(const std::string &name, const std::vector<AreaBytes> &areas, bool isSsfi,
               std::uint16_t version)
{
    Seed seed;
    seed.name = name;
    seed.bytes = isSsfi ? ssfiBytes(areas, version).done() : sfiBytes(areas, version).done();
    seed.read = isSsfi ? &readImage<&files::readSsfi> : &readImage<&files::readSfi>;
    const bool isLong = isSsfi || version == 2;
    FieldMap map(seed.fields);
    map.bytes(8, "magic")
        .number(2, "format version", isSsfi || areas.size() == 1 ? kRefused | kOther : kRefused);
    if (isSsfi) {
        map.number(4, "image version", kOther);
    }
    map.number(2, "count of areas").bytes(16, "nonce", kOther);
    if (version == 65001) {
        map.bytes(96, "long head", kOther);
    }
    for (const AreaBytes &area : areas) {
        // A last area of another kind leaves the image without its end.
        map.bytes(1, "letter", kRefused | kOther).bytes(1, "area's version", kRefused | kOther);
        // What stands behind the image isn't looked at, so its last area may be shorter.
        const bool isLast = &area == &areas.back();
        map.number(2, "index").number(4, "size", isLast ? kRefused | kOther : kRefused);
        map.number(4, "address", kRefused | kOther);
        map.number(2, "area's count").bytes(isLong ? 32 : 16, "tag", kOther);
        map.bytes(area.size, "data", kOther);
    }
    return seed;
}

std::vector<Seed> imageSeeds()
{
    const std::vector<AreaBytes> all = {{'S', 0, 3},      {'M', 0x100, 32}, {'m', 0x140, 33},
                                        {'O', 0x200, 12}, {'K', 0, 8},      {'F', 0x1000, 20},
                                        {'F', 0x2000, 4}, {'E', 0x90, 24},  {'C', 0, 8}};
    const std::vector<AreaBytes> bare = {{'C', 0, 4}};
    const std::vector<AreaBytes> few = {{'P', 0, 16}, {'R', 0, 16}, {'H', 0, 0}, {'C', 0, 4}};
    std::vector<Seed> seeds;
    for (const std::uint16_t version : std::initializer_list<std::uint16_t>{1, 2}) {
        const std::string name = "SFI of version " + std::to_string(version);
        seeds.push_back(imageSeed(name, all, false, version));
        seeds.push_back(imageSeed(name + ", one area", bare, false, version));
        seeds.push_back(imageSeed(name + ", few areas", few, false, version));
    }
    for (const std::uint16_t version : std::initializer_list<std::uint16_t>{1, 65001}) {
        const std::string name = "SSFI of version " + std::to_string(version);
        seeds.push_back(imageSeed(name, all, true, version));
        seeds.push_back(imageSeed(name + ", few areas", {{'A', 0, 1}, {'C', 0, 4}}, true, version));
    }
    return seeds;
}

std::optional<std::string> readModule(View file)
{
    bool isMissing = false;
    const auto module = files::readSmu(file, &isMissing);
    if (!module) {
        return std::nullopt;
    }
    const FileSMU &smu = **module;
    Content content;
    content.add(smu.magic).add(smu.loadAddress).add(smu.headerSize).add(smu.protectedTlvSize);
    content.add(smu.imageSize).add(smu.flags).add(smu.versionMajor).add(smu.versionMinor);
    content.add(smu.versionRevision).add(smu.versionBuild).add(isMissing ? 1 : 0);
    for (const auto *list : {&smu.protectedTlvs, &smu.tlvs}) {
        content.add(list->size());
        for (const TLV &entry : *list) {
            content.add(std::string(entry.name)).add(entry.tlvType);
            content.add(View(entry.value, entry.length));
        }
    }
    return content.done();
}

/// The format has no refusal of its own: what makes no sense is read as it stands.
Seed moduleSeed(const std::string &name, std::uint16_t protectedBytes, std::size_t firmware)
{
    Seed seed{name, Bytes(8, 0x3D), readModule};
    files::appendU16le(seed.bytes, 32);
    files::appendU16le(seed.bytes, protectedBytes);
    files::appendU32le(seed.bytes, static_cast<std::uint32_t>(firmware));
    seed.bytes.resize(32 + firmware, 0x11);
    FieldMap map(seed.fields);
    map.bytes(8, "magic and load address", kOther).number(2, "size of the head", kOther);
    map.number(2, "size of the protected block", kOther).number(4, "size of the firmware", kOther);
    map.bytes(12, "flags and version", kOther).bytes(4 + firmware, "firmware", kSame);
    for (const std::uint16_t magic : std::initializer_list<std::uint16_t>{0x6908, 0x6907}) {
        files::appendU16le(seed.bytes, magic);
        files::appendU16le(seed.bytes, 4 + 6 + 4);
        map.bytes(2, "magic of a block", kTaken).number(2, "size of a block", kTaken);
        for (const std::uint16_t size : std::initializer_list<std::uint16_t>{2, 4}) {
            files::appendU16le(seed.bytes, 0xA0);
            files::appendU16le(seed.bytes, size);
            seed.bytes.resize(seed.bytes.size() + size, static_cast<std::uint8_t>(size));
            // The second one lies behind the size that the block tells, and is read all the same.
            map.bytes(2, "type of a value", kTaken).number(2, "size of a value", kTaken);
            map.bytes(size, "a value", kTaken);
        }
    }
    seed.prefix = [](std::size_t) { return static_cast<unsigned>(kTaken); };
    return seed;
}

template <auto Read>
std::optional<std::string> readRecord(View file)
{
    QFile opened;
    if (!files::openForReading(opened, storedFile(file))) {
        return std::nullopt;
    }
    const auto record = Read(opened);
    if (!record) {
        return std::nullopt;
    }
    Content content;
    if constexpr (requires { (*record)->obkSize; }) {
        content.add((*record)->obkAddress).add((*record)->obkSize).add((*record)->obkWord3);
    }
    const SegmentData &segment = (*record)->segments.at(0);
    return content.add(View(segment.data, segment.size)).done();
}

/// A front that is looked at, and bytes that are only kept.
Seed keptSeed(const std::string &name, std::optional<std::string> (*read)(View),
              std::size_t frontBytes, unsigned frontAccepted)
{
    Seed seed{name, Bytes(frontBytes + 40, 0x5A), read};
    const std::string magic = "SMIMAGIC";
    if (frontBytes == magic.size()) {
        std::copy(magic.begin(), magic.end(), seed.bytes.begin());
    }
    FieldMap(seed.fields).bytes(frontBytes, "front", frontAccepted).bytes(40, "bytes", kOther);
    seed.prefix = [frontBytes](std::size_t size) {
        return static_cast<unsigned>(size < frontBytes ? kRefused : kOther);
    };
    return seed;
}

}  // namespace

std::vector<Seed> containerSeeds()
{
    std::vector<Seed> seeds = imageSeeds();
    seeds.push_back(moduleSeed("SMU", 14, 8));
    seeds.push_back(moduleSeed("SMU without protection", 0, 8));
    seeds.push_back(moduleSeed("SMU without firmware", 14, 0));
    seeds.push_back(keptSeed("SMI as a record", &readRecord<&files::readSmi>, 8, kRefused));
    seeds.push_back(keptSeed("OBK", &readRecord<&files::readObk>, 12, kOther));
    return seeds;
}

}  // namespace corruption
