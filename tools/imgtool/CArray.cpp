#include "CArray.h"

#include "files/base/Wipe.h"
#include "tools/console/Program.h"

namespace imgtool
{

std::string cArray(const std::string &name, const std::string &what, crypto::ByteView bytes)
{
    constexpr std::size_t kPerRow = 8;
    constexpr std::size_t kEntryRoom = 12;
    static const char digits[] = "0123456789abcdef";
    std::string text;
    text.reserve(bytes.size() * kEntryRoom + 4 * name.size() + what.size() + 200);
    text += "/* " + what + ", printed by imgtool. */\n";
    text += "const unsigned char " + name + "[] = {\n";
    for (std::size_t at = 0; at < bytes.size(); ++at) {
        text += at % kPerRow == 0 ? "    0x" : " 0x";
        text += digits[bytes[at] >> 4];
        text += digits[bytes[at] & 15];
        text += ',';
        text += at % kPerRow == kPerRow - 1 || at + 1 == bytes.size() ? "\n" : "";
    }
    text += "};\nconst unsigned int " + name + "_len = " + std::to_string(bytes.size()) + ";\n";
    return text;
}

int printArray(const std::string &name, const std::string &what, crypto::ByteView bytes)
{
    std::string text = cArray(name, what, bytes);
    const bool printed = console::print(text);
    files::wipe(text.data(), text.size());
    return printed ? static_cast<int>(console::kFine)
                   : console::complain(console::kOutputFailed, "standard output can't be written");
}

}  // namespace imgtool
