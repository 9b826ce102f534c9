#include "ImageInfo.h"

#include "Firmware.h"
#include "files/base/LittleEndian.h"

#include <algorithm>
#include <cstdio>

namespace imgtool
{

using preparation::BootImage;
using preparation::BootRest;
using preparation::BootTlv;

namespace
{

std::string hexNumber(std::uint32_t value, int digits)
{
    char text[16] = "";
    std::snprintf(text, sizeof text, "0x%0*x", digits, value);
    return text;
}

std::string hexBytes(crypto::ByteView bytes)
{
    static const char digits[] = "0123456789abcdef";
    std::string text;
    for (const std::uint8_t byte : bytes) {
        text += digits[byte >> 4];
        text += digits[byte & 15];
    }
    return text;
}

std::string meaning(const BootTlv &entry)
{
    namespace tlv = preparation::boot_tlv;
    if (entry.type == tlv::kSecurityCounter && entry.value.size() == 4) {
        return std::to_string(files::readU32le(entry.value.first<4>()));
    }
    const auto dependency = preparation::readDependency(entry.value);
    if (entry.type == tlv::kDependency && dependency) {
        return "image " + std::to_string(dependency->image) + " in version " +
               preparation::toText(dependency->version) + " or later";
    }
    return {};
}

std::string listText(const char *name, const std::vector<BootTlv> &values)
{
    std::string text = std::string(name) + (values.empty() ? ": []\n" : ":\n");
    for (const BootTlv &entry : values) {
        const char *const known = preparation::tlvName(entry.type);
        text += "  - type: " + hexNumber(entry.type, 4) + "\n";
        text += known != nullptr ? std::string("    name: ") + known + "\n" : "";
        text += "    length: " + std::to_string(entry.value.size()) + "\n";
        text += "    value: \"" + hexBytes(entry.value) + "\"\n";
        const std::string words = meaning(entry);
        text += words.empty() ? "" : "    meaning: \"" + words + "\"\n";
    }
    return text;
}

std::string flagWords(std::uint32_t flags)
{
    namespace flag = preparation::boot_flag;
    std::string words;
    for (const auto &[bit, word] : {std::pair{flag::kEncryptedAes128, "encrypted (AES-128)"},
                                    std::pair{flag::kEncryptedAes256, "encrypted (AES-256)"},
                                    std::pair{flag::kRamLoad, "runs from RAM"},
                                    std::pair{flag::kRomFixed, "fixed in flash"}}) {
        words += (flags & bit) == 0 ? "" : (words.empty() ? "" : ", ") + std::string(word);
    }
    return words;
}

std::string restText(crypto::ByteView rest)
{
    const auto kind = preparation::readBootRest(rest);
    return !kind                       ? "\"" + kind.error().text + "\""
           : *kind == BootRest::None   ? "none"
           : *kind == BootRest::Padded ? "padded"
                                       : "padded, confirmed";
}

}  // namespace

std::string imageInfo(const BootImage &image)
{
    const preparation::BootHeader &header = image.header;
    const std::string words = flagWords(header.flags);
    return "header:\n  magic: " + hexNumber(preparation::kBootMagic, 8) +
           "\n  load_addr: " + hexNumber(header.loadAddress, 8) +
           "\n  hdr_size: " + std::to_string(header.headerSize) +
           "\n  protected_tlv_size: " + std::to_string(header.protectedSize) +
           "\n  img_size: " + std::to_string(header.imageSize) +
           "\n  flags: " + hexNumber(header.flags, 8) +
           (words.empty() ? "" : "\n  flag_words: \"" + words + "\"") +
           "\n  version: " + preparation::toText(header.version) + "\n" +
           listText("protected_tlvs", image.protectedTlvs) + listText("tlvs", image.plainTlvs) +
           "bytes_behind: " + std::to_string(image.rest.size()) +
           "\ntrailer: " + restText(image.rest) + "\n";
}

std::string verdictText(const BootImage &image, const preparation::BootVerdict &verdict)
{
    const auto hash = std::ranges::find_if(image.plainTlvs, [](const BootTlv &entry) {
        return entry.type == preparation::boot_tlv::kSha256;
    });
    const char *const signature = verdict.isSignatureChecked ? "checked, it is the key's"
                                  : verdict.isSigned         ? "NOT CHECKED: no key was given"
                                                             : "none";
    const char *const slot = verdict.rest == BootRest::None     ? "not padded"
                             : verdict.rest == BootRest::Padded ? "padded"
                                                                : "padded, confirmed";
    return "Version: " + preparation::toText(image.header.version) +
           "\nDigest: " + (hash == image.plainTlvs.end() ? "" : hexBytes(hash->value)) +
           "\nSignature: " + signature + "\nEncrypted: " + (verdict.isEncrypted ? "yes" : "no") +
           "\nSlot: " + slot + "\n";
}

files::Result<std::string>
withImage(const std::string &path,
          const std::function<files::Result<std::string>(const preparation::BootImage &)> &use)
{
    const auto file = readFirmware(path, 0xFF, kLargestFile);
    if (!file) {
        return tl::unexpected(file.error());
    }
    auto text = preparation::parseBootImage(file->bytes).and_then(use);
    if (!text) {
        return files::fail(text.error().code, path + ": " + text.error().text);
    }
    return text;
}

}  // namespace imgtool
