#include "preparation/boot/BootFormat.h"

#include "files/base/ByteCursor.h"
#include "files/base/LittleEndian.h"

#include <algorithm>

namespace preparation
{

using files::appendU16le;
using files::appendU32le;
using files::ByteCursor;
using files::ErrorCode;
using files::fail;
using files::Result;

namespace
{

constexpr std::size_t kInfoBytes = 4;  ///< in front of a block, and of each value in it
constexpr std::size_t kDependencyBytes = 12;

struct TypeName {
    std::uint16_t type;
    const char *name;
};

constexpr TypeName kNames[] = {
    {boot_tlv::kKeyHash, "KEYHASH"},         {boot_tlv::kPublicKey, "PUBKEY"},
    {boot_tlv::kSha256, "SHA256"},           {boot_tlv::kRsa2048, "RSA2048"},
    {boot_tlv::kEcdsaP256, "ECDSASIG"},      {boot_tlv::kRsa3072, "RSA3072"},
    {boot_tlv::kEd25519, "ED25519"},         {boot_tlv::kWrappedRsa, "ENCRSA2048"},
    {boot_tlv::kWrappedAes, "ENCKW"},        {boot_tlv::kWrappedP256, "ENCEC256"},
    {boot_tlv::kWrappedX25519, "ENCX25519"}, {boot_tlv::kDependency, "DEPENDENCY"},
    {boot_tlv::kSecurityCounter, "SEC_CNT"}, {boot_tlv::kBootRecord, "BOOT_RECORD"},
};

void appendVersion(std::vector<std::uint8_t> &out, const BootVersion &version)
{
    out.push_back(version.major);
    out.push_back(version.minor);
    appendU16le(out, version.revision);
    appendU32le(out, version.build);
}

BootVersion readVersion(ByteCursor &in)
{
    BootVersion version;
    version.major = in.u8();
    version.minor = in.u8();
    version.revision = in.u16le();
    version.build = in.u32le();
    return version;
}

/// Reads one block, which its values must fill exactly.
/// @param outSize  bytes of the block
Result<std::vector<BootTlv>> readBlock(ByteCursor &in, std::uint16_t wantedMagic,
                                       std::size_t *outSize)
{
    const std::string name = wantedMagic == kPlainBlockMagic ? "plain block" : "protected block";
    const std::uint16_t magic = in.u16le();
    const std::size_t size = in.u16le();
    if (!in.ok()) {
        return fail(ErrorCode::Truncated, "the file ends before the " + name + " of values");
    }
    if (magic != wantedMagic) {
        return fail(ErrorCode::BadMagic, "no " + name + " of values stands behind the firmware");
    }
    if (size < kInfoBytes) {
        return fail(ErrorCode::BadCount, "the " + name + " is shorter than its head");
    }
    ByteCursor values(in.bytes(size - kInfoBytes));
    if (!in.ok()) {
        return fail(ErrorCode::Truncated, "the file ends inside the " + name);
    }
    std::vector<BootTlv> list;
    while (values.left() > 0) {
        const std::uint16_t type = values.u16le();
        const std::uint16_t length = values.u16le();
        const ByteView value = values.bytes(length);
        if (!values.ok()) {
            return fail(ErrorCode::BadCount, "a value runs past the end of the " + name);
        }
        list.push_back({type, value});
    }
    *outSize = size;
    return list;
}

BootHeader readHeader(ByteCursor &in)
{
    BootHeader header;
    header.loadAddress = in.u32le();
    header.headerSize = in.u16le();
    header.protectedSize = in.u16le();
    header.imageSize = in.u32le();
    header.flags = in.u32le();
    header.version = readVersion(in);
    in.skip(4);
    return header;
}

}  // namespace

const char *tlvName(std::uint16_t type)
{
    const auto *const known =
        std::ranges::find_if(kNames, [type](const TypeName &each) { return each.type == type; });
    return known == std::end(kNames) ? nullptr : known->name;
}

bool isSignature(std::uint16_t type)
{
    return type == boot_tlv::kRsa2048 || type == boot_tlv::kRsa3072 ||
           type == boot_tlv::kEcdsaP256 || type == boot_tlv::kEd25519;
}

std::vector<std::uint8_t> encodeBootHeader(const BootHeader &header)
{
    std::vector<std::uint8_t> bytes;
    appendU32le(bytes, kBootMagic);
    appendU32le(bytes, header.loadAddress);
    appendU16le(bytes, header.headerSize);
    appendU16le(bytes, header.protectedSize);
    appendU32le(bytes, header.imageSize);
    appendU32le(bytes, header.flags);
    appendVersion(bytes, header.version);
    appendU32le(bytes, 0);
    return bytes;
}

Result<std::vector<std::uint8_t>> encodeTlvs(std::uint16_t magic,
                                             const std::vector<BootTlv> &values)
{
    std::size_t size = kInfoBytes;
    for (const BootTlv &entry : values) {
        size += kInfoBytes + entry.value.size();
    }
    if (size > UINT16_MAX) {
        return fail(ErrorCode::TooLarge, "the values take " + std::to_string(size) +
                                             " bytes, and a block counts to 65535");
    }
    std::vector<std::uint8_t> block;
    appendU16le(block, magic);
    appendU16le(block, static_cast<std::uint16_t>(size));
    for (const BootTlv &entry : values) {
        appendU16le(block, entry.type);
        appendU16le(block, static_cast<std::uint16_t>(entry.value.size()));
        block.insert(block.end(), entry.value.begin(), entry.value.end());
    }
    return block;
}

std::vector<std::uint8_t> encodeDependency(const BootDependency &dependency)
{
    std::vector<std::uint8_t> bytes = {dependency.image, 0, 0, 0};
    appendVersion(bytes, dependency.version);
    return bytes;
}

std::optional<BootDependency> readDependency(ByteView value)
{
    ByteCursor in(value);
    BootDependency dependency;
    dependency.image = in.u8();
    in.skip(3);
    dependency.version = readVersion(in);
    return value.size() == kDependencyBytes ? std::optional(dependency) : std::nullopt;
}

Result<BootImage> parseBootImage(ByteView file)
{
    ByteCursor in(file);
    const std::uint32_t magic = in.u32le();
    if (in.ok() && magic != kBootMagic) {
        return fail(ErrorCode::BadMagic, "it doesn't begin as a boot image does");
    }
    BootImage image;
    image.header = readHeader(in);
    if (!in.ok()) {
        return fail(ErrorCode::Truncated, "the file ends inside the header");
    }
    if (image.header.headerSize < kBootHeaderBytes) {
        return fail(ErrorCode::BadValue, "the header's size is " +
                                             std::to_string(image.header.headerSize) +
                                             " bytes, and it has 32 at least");
    }
    in.seek(0);
    image.headerBytes = in.bytes(image.header.headerSize);
    image.body = in.bytes(image.header.imageSize);
    if (!in.ok()) {
        return fail(ErrorCode::Truncated,
                    "the file has " + std::to_string(file.size()) +
                        " bytes; its header counts more for header and firmware");
    }
    const std::size_t blockStart = in.offset();
    std::size_t size = 0;
    if (image.header.protectedSize != 0) {
        auto values = readBlock(in, kProtectedBlockMagic, &size);
        if (!values) {
            return tl::unexpected(values.error());
        }
        if (size != image.header.protectedSize) {
            return fail(ErrorCode::BadCount, "header and protected block disagree about its size");
        }
        image.protectedTlvs = std::move(*values);
        image.protectedBlock = file.subspan(blockStart, size);
    }
    auto values = readBlock(in, kPlainBlockMagic, &size);
    if (!values) {
        return tl::unexpected(values.error());
    }
    image.plainTlvs = std::move(*values);
    image.rest = file.subspan(in.offset());
    return image;
}

}  // namespace preparation
