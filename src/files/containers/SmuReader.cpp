#include "files/containers/SmuReader.h"

#include "files/base/ByteCursor.h"
#include "files/base/Ownership.h"

#include <algorithm>
#include <array>

namespace files
{

namespace
{

constexpr std::uint16_t kProtectedMagic = 0x6908;
constexpr std::uint32_t kModuleFlagBit = 30;
constexpr std::size_t kInfoBytes = 4;  ///< in front of a block, and of each value in it

struct TypeName {
    std::uint16_t type;
    const char *name;
};

constexpr std::array<TypeName, 18> kNames = {{
    {0x01, "KEYHASH"},
    {0x02, "PUBKEY"},
    {0x10, "SHA256"},
    {0x20, "RSA2048"},
    {0x21, "ECDSA224"},
    {0x22, "ECDSA256"},
    {0x23, "RSA3072"},
    {0x24, "ED25519"},
    {0x30, "ENCRSA2048"},
    {0x31, "ENCKW128"},
    {0x32, "ENCEC256"},
    {0x33, "ENCX25519"},
    {0x40, "DEPENDENCY"},
    {0x50, "SEC_CNT"},
    {0x60, "BOOT_RECORD"},
    {0xA0, "MODULE_INFO"},
    {0x2A0, "MODULE_DEPENDENCY"},
    {0x3A0, "AUTH_TAG"},
}};

/// Reads blocks one behind the other. The name slot isn't cleared between values: one of an unknown
/// type has the name of the one ahead of it, and the first of all the name set up last.
class BlockReader
{
public:
    explicit BlockReader(ByteCursor &in) : m_in(in) {}

    /// The block's magic, 0 behind the file's end. Its size is kept for `readValues`.
    std::uint16_t readInfo()
    {
        const std::uint16_t magic = m_in.u16le();
        m_blockBytes = m_in.u16le();
        return magic;
    }

    /// A value that the file ends inside isn't listed; one that the block ends inside is the last.
    Result<void> readValues(std::vector<TLV> &out)
    {
        for (std::size_t at = kInfoBytes; at < m_blockBytes && m_in.ok();) {
            TLV entry;
            entry.tlvType = m_in.u16le();
            entry.length = m_in.u16le();
            const auto bytes = m_in.bytes(entry.length);
            if (!m_in.ok()) {
                break;
            }
            const auto known =
                std::find_if(kNames.begin(), kNames.end(),
                             [&entry](const TypeName &name) { return name.type == entry.tlvType; });
            m_name = known != kNames.end() ? known->name : m_name;
            entry.name = m_name;
            MallocArray<std::uint8_t> value = copyBytes(bytes, 1);
            if (!value) {
                return fail(ErrorCode::NoMemory, "Unable to allocate memory");
            }
            entry.value = value.get();
            out.push_back(entry);
            value.release();
            at += kInfoBytes + entry.length;
        }
        return {};
    }

private:
    ByteCursor &m_in;
    const char *m_name = "MODULE_INFO";
    std::uint16_t m_blockBytes = 0;
};

void readHead(ByteCursor &in, FileSMU &image)
{
    image.magic = in.u32le();
    image.loadAddress = in.u32le();
    image.headerSize = in.u16le();
    image.protectedTlvSize = in.u16le();
    image.imageSize = in.u32le();
    image.flags = in.u32le();
    image.versionMajor = in.u8();
    image.versionMinor = in.u8();
    image.versionRevision = in.u16le();
    image.versionBuild = in.u32le();
}

}  // namespace

Result<RecordOwner<FileSMU>> readSmu(std::span<const std::uint8_t> file, bool *outProtectedMissing)
{
    MallocArray<std::uint8_t> block;
    if (file.size() < UINT32_MAX) {
        block = copyBytes(file);
    }
    if (!block) {
        return fail(ErrorCode::NoMemory, "Unable to allocate memory");
    }
    RecordOwner<FileSMU> image(new FileSMU);
    image->type = file_type::kSmu;
    storeOnlySegment(*image, std::move(block), static_cast<std::uint32_t>(file.size()));
    ByteCursor head(file);
    readHead(head, *image);
    ByteCursor in(file);
    in.skip(image->headerSize);
    in.skip(image->imageSize);
    BlockReader reader(in);
    const std::uint16_t magic = reader.readInfo();
    *outProtectedMissing = magic != kProtectedMagic && image->protectedTlvSize != 0;
    // The first block is read here whatever it is: without a protected one, it holds the plain
    // ones.
    for (auto *list : {&image->protectedTlvs, &image->tlvs}) {
        if (list == &image->tlvs) {
            reader.readInfo();
        }
        if (auto read = reader.readValues(*list); !read) {
            return tl::unexpected<Error>(read.error());
        }
    }
    image->moduleFlag = static_cast<std::uint8_t>(image->flags >> kModuleFlagBit & 1);
    return image;
}

}  // namespace files
